// Any text on its way to the screen, typed, cut into tokens, as a time or a number: nothing is read or written beside
// it, and nothing but characters reaches the terminal. The first byte chooses widths, sizes and the charset.
#include <algorithm>
#include <clocale>
#include <cstring>
#include <vector>

#include "fuzz/fuzz.h"
#include "util/charset.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/times.h"
#include "util/tokens.h"

namespace {

void show(const std::string &text, Charset charset, size_t columns) {
  const std::wstring cells = text_to_cells(text, charset, columns);
  expect(cells.size() <= columns && cells.size() <= text.size());
  for (const wchar_t cell : cells) expect(cell >= L' ' && cell != 0x7F && (cell < 0x80 || cell >= 0xA0));
  text_to_terminal(text, charset);
}

void type(std::string_view typed, Charset charset) {
  while (!typed.empty()) {
    const bool is_ascii = static_cast<unsigned char>(typed[0]) < 0x80;
    const TypedCharacter character = is_ascii ? TypedCharacter{1, ""} : typed_character(typed, charset);
    expect(character.bytes <= typed.size() && character.text.size() <= std::max<size_t>(character.bytes, 2));
    if (character.bytes == 0) return;
    typed.remove_prefix(character.bytes);
  }
}

void cut(const char *text, int size) {
  std::vector<char> piece(static_cast<size_t>(size));
  for (const char *separator : {"|", "", "||", " "}) {
    const int pieces = cnumtoken(text, separator);
    for (int n = 0; n <= pieces + 1 && n < 20; ++n) {
      expect(std::strlen(ctoken(piece.data(), size, text, separator, n)) < static_cast<size_t>(size));
      expect(std::strlen(token(piece.data(), size, text, separator, n)) < static_cast<size_t>(size));
    }
  }
}

void change(const char *text, int size) {
  std::vector<char> copy(std::strlen(text) + static_cast<size_t>(size) + 2);
  for (int mode = 1; mode <= 3; ++mode) strpad(strbufupr(copy.data(), text), size, '.', mode);
  Xalltrim(copy.data(), text);
  Xrtrim(copy.data());
  Xstr_format(copy.data(), text, text, text);
  UCTstr_to_time(text);
  UCTstr_to_logtime(text);
  UCTvalidate_logtime(text);
  to_int32(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const char *const locale = std::setlocale(LC_ALL, "C.UTF-8");
  if (size == 0 || locale == nullptr) return 0;
  const int room = data[0] % 100 + 1;
  const std::string bytes = text_of_bytes(data + 1, size - 1);
  for (const Charset charset : {Charset::bytes, Charset::locale, Charset::euc_jp, Charset::raw_euc_jp}) {
    show(bytes, charset, static_cast<size_t>(room));
    type(bytes, charset);
  }
  cut(bytes.c_str(), room);
  change(bytes.c_str(), room);
  return 0;
}

// Any text on its way to the screen, and typed: nothing is read beside it, and nothing but characters reaches the
// terminal. The first byte chooses the width.
#include <algorithm>
#include <clocale>

#include "fuzz/fuzz.h"
#include "util/charset.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const char *const locale = std::setlocale(LC_ALL, "C.UTF-8");
  if (size == 0 || locale == nullptr) return 0;
  const std::string bytes = text_of_bytes(data + 1, size - 1);
  for (const Charset charset : {Charset::bytes, Charset::locale, Charset::euc_jp, Charset::raw_euc_jp}) {
    show(bytes, charset, data[0] % 100U + 1);
    type(bytes, charset);
  }
  return 0;
}

#include "util/charset.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "util/converter.h"
#include "util/language.h"

namespace {

struct Character {
  size_t bytes;    // in the text
  wchar_t code;    // 0: none, or one that can't be shown
  size_t columns;  // up to `bytes`
};

// Converts the bytes of one character. The number of bytes in `out` (of `size`), 0 when it has no such form.
size_t convert(const Converter &converter, const void *in, size_t length, void *out, size_t size) {
  char buffer[8];
  if (!converter.is_open() || length > sizeof buffer) return 0;
  std::memcpy(buffer, in, length);
  char *from = buffer;
  char *to = static_cast<char *>(out);
  size_t left = size;
  if (iconv(converter.handle, &from, &length, &to, &left) != 0 || length != 0) return 0;
  return size - left;
}

int byte_of(char c) { return static_cast<unsigned char>(c); }

bool is_ascii(char c) { return byte_of(c) < 0x80; }

// As one that fills the columns of its bytes; without a code when it is none to show.
Character shown_character(size_t bytes, wchar_t code) {
  const int columns = wcwidth(code);
  if (columns < 1 || static_cast<size_t>(columns) > bytes) return {bytes, 0, 0};
  return {bytes, code, static_cast<size_t>(columns)};
}

// --- EUC-JP: ASCII, characters of two bytes, half-width kana (a lead byte and one more) and rarer characters (a lead
// byte and two more)

constexpr char kKanaLead = '\x8E';
constexpr char kLongLead = '\x8F';

// True for what both bytes of a two-byte character are, and those after a lead byte.
bool is_euc_jp_part(char c) { return c >= '\xA1' && c <= '\xFE'; }

// The bytes of a character, told by its first one; 1 also for a byte that begins none.
size_t euc_jp_length(char first) {
  return first == kLongLead ? 3 : first == kKanaLead || is_euc_jp_part(first) ? 2 : 1;
}

// Those of the first character of a text; 1 also when it is not there as a whole.
size_t euc_jp_length(std::string_view text) {
  const size_t length = euc_jp_length(text.front());
  return length <= text.size() && std::ranges::all_of(text.substr(1, length - 1), is_euc_jp_part) ? length : 1;
}

wchar_t euc_jp_code(std::string_view character) {
  static const Converter converter("WCHAR_T", "EUC-JP");
  wchar_t code = 0;
  if (convert(converter, character.data(), character.size(), &code, sizeof code) != sizeof code) return 0;
  return code;
}

Character first_of_euc_jp(std::string_view text) {
  const size_t length = euc_jp_length(text);
  if (length == 1) return {1, 0, 0};
  return shown_character(length, euc_jp_code(text.substr(0, length)));
}

// The bytes of the locale's character that begins a text: 0 when more are needed, more than there are when
// they begin none.
size_t locale_length(std::string_view text, wchar_t &code) {
  constexpr auto kIncomplete = static_cast<size_t>(-2);
  mbstate_t state = {};
  const size_t length = std::mbrtowc(&code, text.data(), text.size(), &state);
  return length == kIncomplete ? 0 : length;
}

Character first_of_locale(std::string_view text) {
  wchar_t code = 0;
  const size_t length = locale_length(text, code);
  if (length == 0 || length > text.size()) return {1, 0, 0};
  return shown_character(length, code);
}

// Bytes from 0x80 to 0x9F are control bytes of eight-bit terminals.
Character first_of_bytes(std::string_view text) {
  const int byte = byte_of(text.front());
  return byte >= 0xA0 ? Character{1, static_cast<wchar_t>(byte), 1} : Character{1, 0, 0};
}

Character first_character(std::string_view text, Charset charset) {
  if (is_printable_ascii(text.front())) return {1, static_cast<wchar_t>(text.front()), 1};
  if (is_ascii(text.front())) return {1, 0, 0};
  switch (charset) {
    case Charset::euc_jp:
      return first_of_euc_jp(text);
    case Charset::locale:
      return first_of_locale(text);
    default:
      return first_of_bytes(text);
  }
}

// A character in the locale's charset; empty when that lacks it.
std::string locale_bytes(wchar_t code) {
  char bytes[MB_LEN_MAX];
  mbstate_t state = {};
  const size_t length = std::wcrtomb(bytes, code, &state);
  return length <= sizeof bytes ? std::string(bytes, length) : std::string();
}

// What the input methods of other systems send where the character set has its own form of the same character.
wchar_t own_form(wchar_t code) {
  constexpr wchar_t kForms[][2] = {
      {0xFF5E, 0x301C},  // wave dash
      {0xFF0D, 0x2212},  // minus sign
      {0x2225, 0x2016},  // double vertical line
      {0xFFE0, 0x00A2},  // cent sign
      {0xFFE1, 0x00A3},  // pound sign
      {0xFFE2, 0x00AC},  // not sign
      {0x2014, 0x2015},  // dash
  };
  for (const auto &[typed, own] : kForms) {
    if (code == typed) return own;
  }
  return code;
}

// The form of a character in Japanese texts; empty when they can't hold it.
std::string euc_jp_text(wchar_t code) {
  static const Converter converter("EUC-JP", "WCHAR_T");
  char text[8];
  const wchar_t own = own_form(code);
  const size_t bytes = convert(converter, &own, sizeof own, text, sizeof text);
  return bytes == 2 && text[0] != kKanaLead ? std::string(text, bytes) : std::string();
}

TypedCharacter typed_euc_jp(std::string_view typed) {
  const size_t length = euc_jp_length(typed.front());
  if (length > typed.size()) return {0, ""};
  const bool fits = length == 2 && euc_jp_length(typed) == 2 && typed.front() != kKanaLead;
  return {length, std::string(typed.substr(0, fits ? 2 : 0))};
}

// --- control characters

// The bytes of the UTF-8 character that a text begins with, in its shortest form; 0 when it begins with none.
size_t utf8_length(std::string_view text) {
  const auto follows = [](char c) { return (byte_of(c) & 0xC0) == 0x80; };
  const int first = byte_of(text.front());
  if (is_ascii(text.front())) return 1;
  const size_t length = first < 0xC2 || first > 0xF4 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (length < 2 || length > text.size() || !std::ranges::all_of(text.substr(1, length - 1), follows)) return 0;
  const int second = byte_of(text[1]);
  return (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90) ? 0 : length;
}

// Of ASCII, or from U+0080 to U+009F: a byte of its own, or "\xC2" and that byte.
bool is_control(std::string_view character) {
  const int last = byte_of(character.back());
  if (character.size() == 1) return last < ' ' || (last >= 0x7F && last < 0xA0);
  return character.front() == '\xC2' && last < 0xA0;
}

}  // namespace

Charset present_charset() {
  const auto locale_has = [](wchar_t code) { return !locale_bytes(code).empty(); };
  const bool japanese = language == 1 && locale_has(L'\u3042') && locale_has(L'\u96FB');  // a kana and a kanji
  return text_charset(language, MB_CUR_MAX, japanese);
}

size_t character_length(std::string_view text, Charset charset) {
  if (charset == Charset::bytes) return 1;
  return charset == Charset::locale ? first_of_locale(text).bytes : euc_jp_length(text);
}

std::string_view cut_text(std::string_view text, size_t length) {
  if (text.size() <= length) return text;
  const Charset charset = present_charset();
  size_t taken = 0;
  for (size_t next = 0; next <= length; next += character_length(text.substr(next), charset)) taken = next;
  return text.substr(0, taken);
}

std::wstring text_to_cells(std::string_view text, Charset charset, size_t columns) {
  std::wstring cells;
  for (size_t left = columns; !text.empty() && left > 0;) {
    const Character character = first_character(text, charset);
    const size_t taken = std::min(character.bytes, left);
    if (character.code == 0) {
      cells.append(taken, L'?');
    } else if (character.columns > left) {
      cells.append(left, L' ');
    } else {
      cells += character.code;
      cells.append(taken - character.columns, L' ');
    }
    text.remove_prefix(character.bytes);
    left -= taken;
  }
  return cells;
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = utf8_length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool is_euc_jp(std::string_view text) {
  while (!text.empty()) {
    const size_t length = euc_jp_length(text);
    if (length == 1 && !is_ascii(text.front())) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string printable(std::string text) {
  const bool of_utf8 = is_utf8(text);
  for (size_t at = 0; at < text.size();) {
    const std::string_view rest = std::string_view(text).substr(at);
    const size_t length = of_utf8 ? utf8_length(rest) : euc_jp_length(rest);
    if (is_control(rest.substr(0, length))) text.replace(at, length, length, '?');
    at += length;
  }
  return text;
}

std::string text_to_terminal(std::string_view text, Charset charset) {
  if (charset != Charset::euc_jp) return std::string(text);
  std::string bytes;
  while (!text.empty()) {
    const Character character =
        is_ascii(text.front()) ? Character{1, static_cast<wchar_t>(text.front()), 1} : first_of_euc_jp(text);
    bytes += locale_bytes(character.code == 0 ? L'?' : character.code);
    text.remove_prefix(character.bytes);
  }
  return bytes;
}

void print_text(FILE *stream, const char *text) {
  std::fputs(text_to_terminal(text, present_charset()).c_str(), stream);
}

TypedCharacter typed_character(std::string_view typed, Charset charset) {
  if (charset == Charset::bytes) return {1, {typed.front()}};
  if (charset == Charset::raw_euc_jp) return typed_euc_jp(typed);
  wchar_t code = 0;
  const size_t length = locale_length(typed, code);
  if (length == 0) return {0, ""};
  if (length > typed.size()) return {1, ""};
  return {length, charset == Charset::locale ? std::string(typed.substr(0, length)) : euc_jp_text(code)};
}

bool text_from_terminal(std::string_view typed, std::string &text) {
  const Charset charset = present_charset();
  if (charset != Charset::euc_jp) {
    text = typed;
    return true;
  }
  std::string taken;
  while (!typed.empty()) {
    const TypedCharacter character =
        is_ascii(typed.front()) ? TypedCharacter{1, {typed.front()}} : typed_character(typed, charset);
    if (character.text.empty()) return false;
    taken += character.text;
    typed.remove_prefix(character.bytes);
  }
  text = taken;
  return true;
}

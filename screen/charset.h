// What the terminal speaks: from texts (bytes, one a cell) to the characters that it shows, and from what is typed to
// texts. For scrio only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

enum class Charset {
  bytes,   // a byte is a character, and goes out as it stands
  locale,  // characters of several bytes in the locale's own charset
  euc_jp,  // Japanese texts (EUC-JP), on a terminal that has their characters, in whatever charset
};

// The charset of texts in a language (as `language`), in a locale whose characters have up to `longest` bytes;
// `japanese` tells whether it has the Japanese characters.
constexpr Charset text_charset(int text_language, size_t longest, bool japanese) {
  if (text_language == 1 && japanese) return Charset::euc_jp;
  return longest > 1 ? Charset::locale : Charset::bytes;
}
// That of the present language and locale.
Charset present_charset();

// The first `columns` columns of a text as wide characters (Charset::bytes: as byte values). Every byte of the text
// fills one column: blanks follow a character that is narrower than its bytes, and stand for one that `columns` cuts
// through.
// "?" for a control byte, and for each byte of what is no character or can't be shown.
std::wstring text_to_cells(std::string_view text, Charset charset, size_t columns = std::string_view::npos);

// The bytes that show a text on the terminal; ASCII, control bytes included, as it stands.
std::string text_to_terminal(std::string_view text, Charset charset);

struct TypedCharacter {
  size_t bytes;      // of those that were typed, that it has; 0: more are needed
  std::string text;  // EUC-JP; empty when texts can't hold it: they take characters of two bytes and two columns
};
// The character that begins what was `typed`, in the locale's charset; its first byte is not ASCII.
TypedCharacter typed_character(std::string_view typed);

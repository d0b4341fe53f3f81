// What texts are made of, and what the terminal speaks: from texts (bytes, one a cell) to the characters that it shows,
// and from what is typed to texts.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

enum class Charset {
  bytes,       // a byte is a character, and goes out as it stands
  locale,      // characters of several bytes in the locale's own charset
  euc_jp,      // Japanese texts (EUC-JP), on a terminal that has their characters, in whatever charset
  raw_euc_jp,  // the same in a locale that lacks them: the bytes go out as they stand
};

constexpr bool is_printable_ascii(char c) { return c >= ' ' && c <= '~'; }

// The charset of texts in a language (as `language`), in a locale whose characters have up to `longest` bytes;
// `japanese` tells whether it has the Japanese characters.
constexpr Charset text_charset(int text_language, size_t longest, bool japanese) {
  if (text_language == 1) return japanese ? Charset::euc_jp : Charset::raw_euc_jp;
  return longest > 1 ? Charset::locale : Charset::bytes;
}
// That of the present language and locale.
Charset present_charset();

// The bytes of a text's first character; 1 also for a byte that begins no whole one.
size_t character_length(std::string_view text, Charset charset);
// The whole characters, in the present charset, within the first `length` bytes of a text.
std::string_view cut_text(std::string_view text, size_t length);

// The first `columns` columns of a text as wide characters (bytes that go out as they stand: as their values). Every
// byte of the text fills one column: blanks follow a character that is narrower than its bytes, and stand for one that
// `columns` cuts through. "?" for a control byte, and for each byte of what is no character or can't be shown.
std::wstring text_to_cells(std::string_view text, Charset charset, size_t columns = std::string_view::npos);

// Whether a text has no byte that is not part of a character of that charset.
bool is_utf8(std::string_view text);
bool is_euc_jp(std::string_view text);
// A text of a file, as it may go to a terminal: "?" for each byte of a control character, of ASCII or from U+0080 to
// U+009F. Characters of several bytes stay, of UTF-8 when all of the text is that, else of EUC-JP.
std::string printable(std::string text);

// The bytes that show a text on the terminal; ASCII, control bytes included, as it stands.
std::string text_to_terminal(std::string_view text, Charset charset);
// The same to a stream, in the present charset.
void print_text(FILE *stream, const char *text);

struct TypedCharacter {
  size_t bytes;      // of those that were typed, that it has; 0: more are needed
  std::string text;  // empty for what is no character, and where texts can't hold it: Japanese ones take characters of
                     // two bytes and two columns
};
// The character that begins what was `typed`; its first byte is not ASCII.
TypedCharacter typed_character(std::string_view typed, Charset charset);
// A text as it was typed outside the screens, as records and files hold it. True; or false (`text` untouched) when they
// can't hold one of its characters.
[[nodiscard]] bool text_from_terminal(std::string_view typed, std::string &text);

// C strings in the caller's buffers: copies, comparisons, case, trimming, padding.
// All texts are NUL-terminated bytes; character classes are ASCII unless said otherwise. Nothing is allocated but by
// xstrdup.
#pragma once

#include <cstddef>
#include <string_view>

// 1 for a blank, "\n", "\r", a tab, 0x1A and NUL.
int is_white_space(int c);

// The one bounded copy: at most n - 1 characters of `src` into `dst` (n bytes), terminated. Nothing for n < 1.
void cpynstr(char *dst, std::string_view src, int n);
template <size_t N>
void cpynstr(char (&dst)[N], std::string_view src) {
  cpynstr(dst, src, static_cast<int>(N));
}
// As cpynstr, but stops at the first blank.
void cpynchr(char *dst, std::string_view src, int n);
// At most n characters of `src`; the rest of the n positions become blanks. No terminator.
void cpychr(char *dst, std::string_view src, int n);
// At most n characters of `src`; the rest of the n positions become NUL, and dst[n] too (n + 1 bytes).
void cpyvar(char *dst, std::string_view src, int n);

// Byte comparisons; the result is the difference of the first two signed characters that differ, else 0.
int cmpstr(const char *a, const char *b);
int cmpnstr(const char *a, const char *b, int n);
int lenstr(const char *s);

// Case-blind comparisons that fold A-Z only: < 0, 0, > 0.
int xstricmp(std::string_view a, std::string_view b);
int xstrnicmp(const char *a, const char *b, int n);
// Case-blind; texts of different length are unequal (the result is the difference of the lengths).
int stricmp(std::string_view a, std::string_view b);
// Case-blind over at most n characters.
int strnicmp(const char *a, const char *b, int n);

// Orders names that differ in more than case.
struct CaseBlind {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return xstricmp(a, b) < 0; }
};

// A heap copy that the caller frees with free(); null for null or when memory runs out.
[[nodiscard]] char *xstrdup(const char *s);

// strncpy and strncat that always put a terminator at position n - 1 (at position 0 when n is 0); `dst` holds n bytes
// (one at least).
char *UCTstrncpy(char *dst, const char *src, size_t n);
char *UCTstrncat(char *dst, const char *src, size_t n);

// 1 when `part` occurs within the first `length` characters of `text`; 0 also when `length` is shorter than `part`.
int str_contain(const char *text, const char *part, int length);

// a-z to A-Z and, in Latin-1, the small umlauts a, o, u to the capital ones; every other byte unchanged.
int XToUpper(int c);
// Upper-cases a whole text with XToUpper: into `dst` (as long as `src`, terminator included), or in place.
char *strbufupr(char *dst, const char *src);
char *Xstrupr(char *s);
// In place, ASCII only.
char *strupr(char *s);
char *strlow(char *s);

// Copies without leading and trailing blanks (tabs stay). `dst` holds as much as `src`; they may be the same buffer.
char *Xalltrim(char *dst, const char *src);
char *UCTXalltrim(char *dst, const char *src);
// Cuts trailing white space (is_white_space) in place.
char *Xrtrim(char *s);
// Removes every trailing c in place.
char *UCTstrip_trailing_char(char *s, char c);

// How a text stands in its width.
enum Alignment : int { kLeft = 1, kRight = 2, kCentred = 3 };

// Pads `s` in place to `width` (the buffer holds width + 1 bytes, and the text is taken up to 255 characters); `mode`
// is its alignment: kCentred puts the smaller half in front, any other value aligns left. A text longer than `width` is
// cut when it is centred only.
char *strpad(char *s, int width, char pad, int mode);
// The same with every text cut to `length`. The buffer holds length + 1 bytes when `terminate` is set, else `length`:
// no terminator is written then.
char *strpad(char *str, int length, char pad, int mode, int terminate);

// Fills a template. `dst` starts as a copy of `mask` (and holds as much); each character c of `placeholders` takes the
// next character of `values` and puts it at the first c in the template; further copies of the same c that follow in
// the list fill the following positions as long as those hold c. A placeholder that the template lacks consumes its
// value character.
char *Xstr_format(char *dst, const char *values, const char *mask, const char *placeholders);

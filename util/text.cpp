#include "util/text.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kPaddedText = 255;  // strpad takes no more of a text

int fold_lower(char c) {
  const int byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
}

int fold_upper(char c) {
  const int byte = static_cast<unsigned char>(c);
  return byte >= 'a' && byte <= 'z' ? byte - 'a' + 'A' : byte;
}

// The first n characters of a text, or all of it when it is shorter.
std::string_view head(const char *s, int n) { return {s, strnlen(s, static_cast<size_t>(std::max(n, 0)))}; }

// The characters of `src` that a copy of at most n characters takes.
std::string_view at_most(std::string_view src, int n) { return src.substr(0, static_cast<size_t>(std::max(n, 0))); }

// The difference of the first two folded characters that differ; a text that ends is followed by NUL.
template <typename Fold>
int compare_folded(std::string_view a, std::string_view b, Fold fold) {
  const size_t common = std::min(a.size(), b.size());
  for (size_t i = 0; i < common; ++i) {
    const int difference = fold(a[i]) - fold(b[i]);
    if (difference != 0) return difference;
  }
  if (a.size() > common) return fold(a[common]);
  return b.size() > common ? -fold(b[common]) : 0;
}

// Copies the whole of `src` and terminates; `dst` may overlap it.
char *copy_whole(char *dst, std::string_view src) {
  if (!src.empty()) std::memmove(dst, src.data(), src.size());  // an empty view may point nowhere
  dst[src.size()] = '\0';
  return dst;
}

template <typename Change>
char *change_all(char *s, Change change) {
  for (char *at = s; *at != '\0'; ++at) *at = static_cast<char>(change(*at));
  return s;
}

}  // namespace

int is_white_space(int c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == 0x1A || c == 0; }

void cpynstr(char *dst, std::string_view src, int n) {
  if (n < 1) return;
  copy_whole(dst, at_most(src, n - 1));
}

void cpynchr(char *dst, std::string_view src, int n) { cpynstr(dst, src.substr(0, src.find(' ')), n); }

void cpychr(char *dst, std::string_view src, int n) {
  const std::string_view taken = at_most(src, n);
  std::memmove(dst, taken.data(), taken.size());
  std::fill(dst + taken.size(), dst + std::max(n, 0), ' ');
}

void cpyvar(char *dst, std::string_view src, int n) {
  const std::string_view taken = at_most(src, n);
  std::memmove(dst, taken.data(), taken.size());
  std::fill(dst + taken.size(), dst + std::max(n, 0) + 1, '\0');
}

int cmpstr(const char *a, const char *b) {
  while (*a != '\0' && *a == *b) ++a, ++b;
  return static_cast<signed char>(*a) - static_cast<signed char>(*b);
}

int cmpnstr(const char *a, const char *b, int n) {
  for (int i = 0; i < n; ++i) {
    if (a[i] != b[i]) return static_cast<signed char>(a[i]) - static_cast<signed char>(b[i]);
    if (a[i] == '\0') break;
  }
  return 0;
}

int lenstr(const char *s) { return static_cast<int>(std::strlen(s)); }

int xstricmp(std::string_view a, std::string_view b) { return compare_folded(a, b, fold_lower); }

int xstrnicmp(const char *a, const char *b, int n) { return compare_folded(head(a, n), head(b, n), fold_lower); }

int stricmp(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return static_cast<int>(a.size()) - static_cast<int>(b.size());
  return compare_folded(a, b, fold_upper);
}

int strnicmp(const char *a, const char *b, int n) { return compare_folded(head(a, n), head(b, n), fold_upper); }

char *xstrdup(const char *s) { return s == nullptr ? nullptr : strdup(s); }

char *UCTstrncpy(char *dst, const char *src, size_t n) {
  std::strncpy(dst, src, n);
  dst[n == 0 ? 0 : n - 1] = '\0';
  return dst;
}

char *UCTstrncat(char *dst, const char *src, size_t n) {
  const size_t used = strnlen(dst, n);
  if (used < n) {
    const size_t taken = strnlen(src, n - used - 1);
    std::memmove(dst + used, src, taken);
    dst[used + taken] = '\0';
  }
  dst[n == 0 ? 0 : n - 1] = '\0';
  return dst;
}

int str_contain(const char *text, const char *part, int length) {
  if (length < lenstr(part)) return 0;
  return head(text, length).find(part) != std::string_view::npos;
}

int XToUpper(int c) {
  switch (c) {
    case 0xE4:
      return 0xC4;  // a umlaut
    case 0xF6:
      return 0xD6;  // o umlaut
    case 0xFC:
      return 0xDC;  // u umlaut
    default:
      return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
  }
}

char *strbufupr(char *dst, const char *src) { return Xstrupr(copy_whole(dst, src)); }

char *Xstrupr(char *s) {
  return change_all(s, [](char c) { return XToUpper(static_cast<unsigned char>(c)); });
}

char *strupr(char *s) { return change_all(s, fold_upper); }

char *strlow(char *s) { return change_all(s, fold_lower); }

char *Xalltrim(char *dst, const char *src) {
  const std::string_view text = src;
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return copy_whole(dst, "");
  return copy_whole(dst, text.substr(first, text.find_last_not_of(' ') - first + 1));
}

char *UCTXalltrim(char *dst, const char *src) { return Xalltrim(dst, src); }

char *Xrtrim(char *s) {
  size_t length = std::strlen(s);
  while (length > 0 && is_white_space(static_cast<unsigned char>(s[length - 1]))) --length;
  s[length] = '\0';
  return s;
}

char *UCTstrip_trailing_char(char *s, char c) {
  size_t length = std::strlen(s);
  while (length > 0 && s[length - 1] == c) --length;
  s[length] = '\0';
  return s;
}

char *strpad(char *s, int width, char pad, int mode) {
  s[strnlen(s, kPaddedText)] = '\0';
  return strpad(s, mode == kCentred ? width : std::max(width, lenstr(s)), pad, mode, 1);
}

char *strpad(char *str, int length, char pad, int mode, int terminate) {
  const auto width = static_cast<size_t>(std::max(length, 0));
  const size_t kept = strnlen(str, width);
  const size_t missing = width - kept;
  const size_t in_front = mode == kRight ? missing : mode == kCentred ? missing / 2 : 0;

  std::memmove(str + in_front, str, kept);
  std::memset(str, pad, in_front);
  std::memset(str + in_front + kept, pad, missing - in_front);
  if (terminate != 0) str[width] = '\0';
  return str;
}

char *Xstr_format(char *dst, const char *values, const char *mask, const char *placeholders) {
  const std::string_view pattern = mask;
  copy_whole(dst, pattern);
  size_t at = std::string_view::npos;  // where the last placeholder went
  char last = '\0';
  for (; *placeholders != '\0' && *values != '\0'; ++placeholders, ++values) {
    const bool run_goes_on = *placeholders == last && at + 1 < pattern.size() && pattern[at + 1] == last;
    at = run_goes_on ? at + 1 : pattern.find(*placeholders);
    last = *placeholders;
    if (at != std::string_view::npos) dst[at] = *values;
  }
  return dst;
}

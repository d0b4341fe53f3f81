#include "util/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr int64_t kBeyond32Bits = int64_t{1} << 40;  // where reading digits stops to count

// The number that the text begins with; 32 bits and their sign are always told apart from what lies beyond.
int64_t read_decimal(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  int64_t value = 0;
  for (size_t i = 0; i < text.size() && is_digit(text[i]); ++i) {
    value = std::min(value * 10 + (text[i] - '0'), kBeyond32Bits);
  }
  return negative ? -value : value;
}

// Digits and at most one point, as most numbers are written. 15 digits and their power of ten are exact, and so their
// quotient is what strtod would take ten times as long for.
bool read_plain(std::string_view text, double &value) {
  int64_t digits = 0;
  int64_t scale = 0;
  if (text.size() > 15) return false;
  for (const char c : text) {
    if (c == '.' && scale == 0) {
      scale = 1;
    } else if (is_digit(c)) {
      digits = digits * 10 + (c - '0');
      scale *= 10;
    } else {
      return false;
    }
  }
  value = static_cast<double>(digits) / static_cast<double>(std::max<int64_t>(scale, 1));
  return true;
}

template <typename Integer>
Integer clamp_to(int64_t value) {
  using Limits = std::numeric_limits<Integer>;
  return static_cast<Integer>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

std::string_view first_characters(const char *text, int n) {
  return {text, strnlen(text, static_cast<size_t>(std::max(n, 0)))};
}

}  // namespace

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_whole_number(std::string_view text) { return !text.empty() && std::ranges::all_of(text, is_digit); }

int32_t to_int32(std::string_view text) { return clamp_to<int32_t>(read_decimal(text)); }

uint32_t to_uint32(std::string_view text) { return clamp_to<uint32_t>(read_decimal(text)); }

double to_double(std::string_view text) {
  double value = 0;
  return read_plain(text, value) ? value : std::strtod(std::string(text).c_str(), nullptr);
}

int32_t to_int32(double value) {
  using Limits = std::numeric_limits<int32_t>;
  if (std::isnan(value)) return 0;
  return static_cast<int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

char *xtoa(uint32_t value, char *out, int base, int negative) {
  constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
  char *end = out;
  if (base >= 2 && base <= 36) {
    if (negative != 0) value = 0U - value;
    for (const auto divisor = static_cast<uint32_t>(base); end == out || value != 0; value /= divisor) {
      *end++ = kDigits[value % divisor];
    }
    if (negative != 0) *end++ = '-';
    std::reverse(out, end);
  }
  *end = '\0';
  return out;
}

char *qitoa(int32_t value, char *out, int base) {
  return xtoa(static_cast<uint32_t>(value), out, base, base == 10 && value < 0);
}

char *qltoa(int32_t value, char *out, int base) { return qitoa(value, out, base); }

char *qultoa(uint32_t value, char *out, int base) { return xtoa(value, out, base, 0); }

int getHexDigit(char c) {
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return getDecDigit(c);
}

int getDecDigit(char c) { return is_digit(c) ? c - '0' : 0; }

uint32_t getHexASCII(const char *text, int n) {
  const std::string_view digits = first_characters(text, n);
  uint32_t value = 0;
  for (size_t k = 0; k < digits.size(); ++k) {
    const auto digit = static_cast<uint32_t>(getHexDigit(digits[digits.size() - 1 - k]));
    value += digit << (4 * k % 32);
  }
  return value;
}

uint32_t getDecASCII(const char *text, int n) {
  uint32_t value = 0;
  for (const char c : first_characters(text, n)) value = value * 10 + static_cast<uint32_t>(getDecDigit(c));
  return value;
}

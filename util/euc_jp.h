// Characters of EUC-JP, the encoding of Japanese texts: ASCII, characters of two bytes, half-width kana (a lead byte
// and one more) and rarer characters (a lead byte and two more).
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

inline constexpr char kKanaLead = '\x8E';
inline constexpr char kLongLead = '\x8F';

// True for what both bytes of a two-byte character are, and those after a lead byte.
constexpr bool is_euc_jp_part(char c) { return c >= '\xA1' && c <= '\xFE'; }

// The bytes of a character, told by its first one; 1 also for a byte that begins none.
constexpr size_t euc_jp_length(char first) {
  return first == kLongLead ? 3 : first == kKanaLead || is_euc_jp_part(first) ? 2 : 1;
}
// Those of the first character of a text; 1 also when it is not there as a whole.
constexpr size_t euc_jp_length(std::string_view text) {
  const size_t length = euc_jp_length(text.front());
  return length <= text.size() && std::ranges::all_of(text.substr(1, length - 1), is_euc_jp_part) ? length : 1;
}

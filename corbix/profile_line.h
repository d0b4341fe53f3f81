// What the text of one profile line means: a topic ("[log]"), an entry ("key=value"), a comment (";" or "#" first) or
// blank; and the modes, which say how exactly.
//
// Results are 1 or 0. White space: is_white_space() of util/text.h. Letters and case are ASCII.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "corbix/xconfig.h"
#include "util/text.h"

// --- modes

// What a mode means, as bits of its mask.
inline constexpr unsigned kModeWrite = 0x01;          // may be changed, is written on close, is created on open
inline constexpr unsigned kModeBinary = 0x02;         // a coded file
inline constexpr unsigned kModeMerge = 0x04;          // "#" ends a value, comments stay, blanks beside the "="
inline constexpr unsigned kModeKeyless = 0x08;        // every entry line gets a generated key
inline constexpr unsigned kModeKeys = 0x10;           // no line gets a generated key; keys may hold blanks
inline constexpr unsigned kModeTopics = 0x20;         // no generated topic before leading entries
inline constexpr unsigned kModeCaseSensitive = 0x40;  // names compare exactly, and without the index

inline constexpr int kModeCount = kWriteKeysCoded + 1;  // mode 0 is none
extern const unsigned ModeMask[kModeCount];

inline int is_valid_mode(int mode) { return mode >= 1 && mode < kModeCount; }
// 0 for every mode that is not valid.
inline int has_mode_bit(int mode, unsigned bit) { return is_valid_mode(mode) && (ModeMask[mode] & bit) != 0; }
inline int is_write(int mode) { return has_mode_bit(mode, kModeWrite); }
inline int is_binary(int mode) { return has_mode_bit(mode, kModeBinary); }
inline int is_merge(int mode) { return has_mode_bit(mode, kModeMerge); }
inline int is_keyless(int mode) { return has_mode_bit(mode, kModeKeyless); }
inline int is_keys(int mode) { return has_mode_bit(mode, kModeKeys); }
inline int is_topics(int mode) { return has_mode_bit(mode, kModeTopics); }
inline int is_case_sensitive(int mode) { return has_mode_bit(mode, kModeCaseSensitive); }

// --- questions to one line

inline bool is_white_byte(char c) { return static_cast<unsigned char>(c) <= ' ' && is_white_space(c); }
inline size_t count_leading_white(std::string_view line) {
  size_t i = 0;
  while (i < line.size() && is_white_byte(line[i])) ++i;
  return i;
}
inline int is_white_space_line(std::string_view line) { return count_leading_white(line) == line.size(); }
// The first character that is not white space exists and is neither ";" nor "#". Topics are entry lines for this test.
inline int is_entry_line(std::string_view line) {
  const size_t start = count_leading_white(line);
  return start < line.size() && line[start] != ';' && line[start] != '#';
}
// "[", something, "]". A two-byte character counts for nothing.
int is_topic(std::string_view line);
// The generated topic's line, and a line with a generated key.
int is_tmp_topic(std::string_view line);
int is_tmp_key(std::string_view line);
// A key with a letter in it and no blank, then "=".
int has_key_entry(std::string_view line);

// Each puts what it takes from the line into `out`, kValueBufferSize bytes at most, terminated.
// The text from the first "[" to the next "]" or the end, without further "[", not trimmed: 1 when there is a "["
// and no ";" before it, else "".
int get_topic(std::string_view line, char *out);
// The key: 1 when there is the start of one (which may be the "=" itself).
int get_entry(std::string_view line, char *out, int mode);
// What stands after the first "=": 1 when there is one, else "". Trimmed: tabs are dropped, blanks cut at both ends.
int get_value(std::string_view line, char *out, int mode);
int get_value_notrim(std::string_view line, char *out, int mode);
// The whole line as get_value takes a value: what a line without a key is read as.
void get_keyless_value(std::string_view line, char *out, int mode);
// Ten blanks and the trailing "#" comment (only the blanks when there is none, result 0).
inline constexpr std::string_view kCommentGap = "          ";
int getComment(std::string_view line, char *out);
// The line of a new entry into `out` (the lengths of both texts and kFormatRoom bytes). Returns `out`.
inline constexpr size_t kFormatRoom = 5;
char *format_line(char *out, std::string_view key, std::string_view value, int mode);

// --- the same where it lies in the line: nothing is copied, and nothing given where it is not there

bool find_entry(std::string_view line, int mode, std::string_view &key);
bool find_comment(std::string_view line, std::string_view &comment);
// Would get_topic succeed, and with this name? Would get_entry, with this key? Names compare as the mode says.
bool holds_topic(std::string_view line);
bool holds_topic(std::string_view line, std::string_view name, int mode);
bool holds_entry(std::string_view line, std::string_view key, int mode);

// The quick looks of a search: most lines need no other. False when the line can't hold a topic, or not this key.
inline bool may_hold_topic(std::string_view line) { return line.find('[') != std::string_view::npos; }
inline bool may_hold_entry(std::string_view line, std::string_view key) {
  constexpr int kCaseBit = 'a' ^ 'A';
  line.remove_prefix(count_leading_white(line));
  if (line.size() < key.size()) return false;
  size_t left = key.size();  // from the end: that is where keys differ
  while (left > 0 && ((line[left - 1] ^ key[left - 1]) & ~kCaseBit) == 0) --left;
  return left == 0;
}

// --- generated names

inline constexpr std::string_view kTmpTopicLine = "[@$tmp_topic$@]\n";
static_assert(kTmpTopicLine.substr(1, kTmpTopicLine.size() - 3) == kTmpTopic);
// "@$tmp_key$@00012=", into `out` (kGeneratedKeyLength bytes, no terminator).
inline constexpr size_t kGeneratedKeyLength = std::string_view(kTmpKey).size() + 6;
void write_generated_key(char *out, uint16_t number);
// Does an entry line get one, in a mode that generates keys?
inline bool needs_key(std::string_view line, int mode) { return is_keyless(mode) || !has_key_entry(line); }

#include "corbix/profile_line.h"

#include <algorithm>

namespace {

constexpr size_t kLongestText = kValueBufferSize - 1;  // what a caller's buffer takes

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// A byte that starts a two-byte character of EUC-JP.
bool is_lead_byte(std::string_view line, size_t i) {
  return static_cast<unsigned char>(line[i]) >= 0x80 && i + 1 < line.size();
}

std::string_view before(std::string_view text, char end) { return text.substr(0, text.find(end)); }

std::string_view trim_end(std::string_view text) {
  while (!text.empty() && is_white_byte(text.back())) text.remove_suffix(1);
  return text;
}

bool same_name(std::string_view a, std::string_view b, bool exactly) {
  return a.size() == b.size() && (exactly ? a == b : xstricmp(a, b) == 0);
}

// Gives each character of the line's topic name to `take`; false when the line has none.
template <typename Take>
bool walk_topic_name(std::string_view line, Take take) {
  bool inside = false;
  for (size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (is_lead_byte(line, i)) {
      ++i;  // kept: of a two-byte character only the second byte belongs to the name, as in every file so far
      if (inside) take(line[i]);
    } else if (c == '[') {
      inside = true;
    } else if (c == (inside ? ']' : ';')) {
      break;
    } else if (inside) {
      take(c);
    }
  }
  return inside;
}

// Copies `text` after the first `length` characters of `out`, as far as a caller's buffer takes it.
size_t append_bounded(char *out, size_t length, std::string_view text) {
  text = text.substr(0, kLongestText - length);
  std::copy(text.begin(), text.end(), out + length);
  out[length + text.size()] = '\0';
  return length + text.size();
}

// What of the text `text` is a value.
std::string_view cut_value(std::string_view text, int mode) {
  text = before(text, '\n');
  return is_merge(mode) ? before(text, '#') : text;
}

// What stands after the first "="; false without one.
bool find_value(std::string_view line, int mode, std::string_view &value) {
  const size_t equals = line.find('=');
  const bool found = equals != std::string_view::npos;
  value = found ? cut_value(line.substr(equals + 1), mode) : "";
  return found;
}

void copy_trimmed(std::string_view value, char *out) {
  size_t length = 0;
  while (!value.empty()) {
    std::string_view piece = before(value, '\t');
    value.remove_prefix(std::min(piece.size() + 1, value.size()));
    while (length == 0 && piece.starts_with(' ')) piece.remove_prefix(1);
    length = append_bounded(out, length, piece);
  }
  while (length > 0 && out[length - 1] == ' ') --length;
  out[length] = '\0';
}

}  // namespace

// --- modes

const unsigned ModeMask[kModeCount] = {
    // clang-format off
  0,
  0,                                                                              // kReadText
  kModeWrite,                                                                     // kWriteText
  kModeBinary,                                                                    // kReadCoded
  kModeBinary | kModeWrite,                                                       // kWriteCoded
  kModeMerge | kModeKeys | kModeTopics | kModeCaseSensitive,                      // kReadMerge
  kModeMerge | kModeKeys | kModeTopics | kModeCaseSensitive | kModeWrite,         // kWriteMerge
  kModeKeyless,                                                                   // kReadKeyless
  kModeKeyless | kModeWrite,                                                      // kWriteKeyless
  kModeKeyless | kModeBinary,                                                     // kReadKeylessCoded
  kModeKeyless | kModeBinary | kModeWrite,                                        // kWriteKeylessCoded
  kModeKeys | kModeTopics,                                                        // kReadKeys
  kModeKeys | kModeTopics | kModeWrite,                                           // kWriteKeys
  kModeKeys | kModeTopics | kModeBinary,                                          // kReadKeysCoded
  kModeKeys | kModeTopics | kModeBinary | kModeWrite,                             // kWriteKeysCoded
};  // clang-format on

// --- questions to one line

int is_topic(std::string_view line) {
  // Counts "["; one of them and then something else makes 2. Kept: a "[" as that something does, too ("[[]" is a
  // topic), a third one makes a topic of a line without "]", and names of two-byte characters alone are none. Files
  // depend on it.
  if (!may_hold_topic(line)) return 0;
  int count = 0;
  for (size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (is_lead_byte(line, i)) {
      ++i;
    } else if (c == '[') {
      ++count;
    } else if (c == ']') {
      return count == 2;
    } else if (c == ';' && count == 0) {
      return 0;
    } else if (count == 1) {
      count = 2;
    }
  }
  return count == 3;
}

int is_tmp_topic(std::string_view line) {
  const std::string_view generated = kTmpTopicLine.substr(0, kTmpTopicLine.size() - 1);  // without the line feed
  return line.starts_with('[') && same_name(line.substr(0, generated.size()), generated, false);
}

int is_tmp_key(std::string_view line) {
  return line.starts_with('@') && same_name(line.substr(0, std::string_view(kTmpKey).size()), kTmpKey, false);
}

int has_key_entry(std::string_view line) {
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos) return 0;
  std::string_view key = line.substr(0, equals);
  while (key.starts_with(' ')) key.remove_prefix(1);
  while (key.ends_with(' ')) key.remove_suffix(1);
  return key.find(' ') == std::string_view::npos && std::ranges::any_of(key, is_letter);
}

void write_generated_key(char *out, uint16_t number) {
  const std::string_view start = kTmpKey;
  start.copy(out, start.size());
  out[kGeneratedKeyLength - 1] = '=';
  for (size_t i = kGeneratedKeyLength - 2; i >= start.size(); --i, number /= 10) {
    out[i] = static_cast<char>('0' + number % 10);
  }
}

bool holds_topic(std::string_view line) {
  return may_hold_topic(line) && walk_topic_name(line, [](char) {});
}

bool holds_topic(std::string_view line, std::string_view name, int mode) {
  if (!may_hold_topic(line)) return false;
  const bool exactly = is_case_sensitive(mode);
  size_t length = 0;
  bool same = true;
  const bool found = walk_topic_name(line, [&](char c) {
    same = same && length < name.size() && same_name({&c, 1}, name.substr(length, 1), exactly);
    ++length;
  });
  return found && same && length == name.size();
}

int get_topic(std::string_view line, char *out) {
  size_t length = 0;
  const bool found = walk_topic_name(line, [&](char c) {
    if (length < kLongestText) out[length++] = c;
  });
  out[length] = '\0';
  return found;
}

bool find_entry(std::string_view line, int mode, std::string_view &key) {
  const bool with_blanks = is_keys(mode);
  const size_t start = count_leading_white(line);
  if (start == line.size() || line[start] == ';') return false;
  size_t end = start;
  while (end < line.size() && line[end] != '=' && line[end] != ';' && (with_blanks || !is_white_byte(line[end]))) ++end;
  key = trim_end(line.substr(start, end - start));
  return true;
}

bool holds_entry(std::string_view line, std::string_view key, int mode) {
  std::string_view found;
  return find_entry(line, mode, found) && same_name(found, key, is_case_sensitive(mode));
}

int get_entry(std::string_view line, char *out, int mode) {
  std::string_view key;
  const bool found = find_entry(line, mode, key);
  append_bounded(out, 0, key);
  return found;
}

int get_value(std::string_view line, char *out, int mode) {
  std::string_view value;
  const bool found = find_value(line, mode, value);
  copy_trimmed(value, out);
  return found;
}

void get_keyless_value(std::string_view line, char *out, int mode) { copy_trimmed(cut_value(line, mode), out); }

int get_value_notrim(std::string_view line, char *out, int mode) {
  std::string_view value;
  const bool found = find_value(line, mode, value);
  append_bounded(out, 0, value);
  return found;
}

bool find_comment(std::string_view line, std::string_view &comment) {
  const size_t start = line.find('#', 1);  // kept: one in the first column is a comment line, not a trailing comment
  if (start == std::string_view::npos) return false;
  comment = before(line.substr(start), '\n');
  return true;
}

int getComment(std::string_view line, char *out) {
  std::string_view comment;
  const bool found = find_comment(line, comment);
  append_bounded(out, append_bounded(out, 0, kCommentGap), comment);
  return found;
}

char *format_line(char *out, std::string_view key, std::string_view value, int mode) {
  const std::string_view equals = is_merge(mode) ? " = " : "=";
  char *end = std::copy(key.begin(), key.end(), out);
  end = std::copy(equals.begin(), equals.end(), end);
  end = std::copy(value.begin(), value.end(), end);
  *end++ = '\n';
  *end = '\0';
  return out;
}

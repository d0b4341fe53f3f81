#include "corbix/xconfig.h"

#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "corbix/profile_list.h"
#include "util/files.h"
#include "util/memory.h"
#include "util/text.h"

namespace {

constexpr const char *kBanner = "; Corbix profile";
constexpr const char *kFileVersion = "1.6.1.1";
constexpr const char *kLibName = "Corbix";
constexpr const char *kInterfaceVersion = "1.1.0.0";
constexpr const char *pszDelim = "::";

constexpr std::string_view kCodedEnd = "\r\n";
// Files in the field are coded with exactly these bytes.
constexpr unsigned char codeKey[] = {0x3C, 0x91, 0x5E, 0x07, 0xA2, 0xD4, 0x68, 0x1F};

// The profile of the simple calls. Filled by XOpenProfile, emptied by XCloseProfile.
ProfileRecord OpProfile{};

// --- coded lines

// Coding and decoding are the same; the key starts anew with every line.
char coded(char c, size_t position) {
  return static_cast<char>(static_cast<unsigned char>(c) ^ codeKey[position % sizeof codeKey]);
}

// Decodes the next byte of a line after the `length` bytes that it has. True when that completes the line: it has lost
// its "\r\n" then.
bool decode_byte(char byte, char *line, size_t &length) {
  line[length] = coded(byte, length);
  ++length;
  if (line[length - 1] != '\n' || length < 2 || line[length - 2] != '\r') return false;
  length -= kCodedEnd.size();
  return true;
}

// Decodes the next kKeySize bytes of a line at once, in place, unless the line may end in them. A database has 100 kB
// of them, and the program's start waits for it.
constexpr size_t kKeySize = sizeof codeKey;
bool decode_piece(char *bytes) {
  constexpr auto kKey = std::bit_cast<uint64_t>(codeKey);
  constexpr uint64_t kOnes = ~uint64_t{0} / 0xFF;  // 1 in each byte
  uint64_t piece = 0;
  std::memcpy(&piece, bytes, kKeySize);
  piece ^= kKey;
  const uint64_t line_feeds_are_0 = piece ^ (kOnes * '\n');
  if (((line_feeds_are_0 - kOnes) & ~line_feeds_are_0 & (kOnes * 0x80)) != 0) return false;
  std::memcpy(bytes, &piece, kKeySize);
  return true;
}

// Decodes the line at `at` in place and moves `at` past it. True when it is complete, with its "\r\n" or by its
// length.
bool decode_line(std::string &content, size_t &at, size_t &length) {
  char *line = content.data() + at;
  const size_t room = std::min(content.size() - at, kCodedPiece);
  bool complete = false;
  size_t used = 0;
  for (length = 0; !complete && used < room;) {
    if (used % kKeySize == 0 && used + kKeySize <= room && decode_piece(line + used)) {
      used += kKeySize;
      length = used;
    } else {
      complete = decode_byte(line[used++], line, length);
    }
  }
  at += used;
  return complete || used == kCodedPiece;
}

// --- reading

int read_all_lines(ProfileRecord *record) {
  std::string &content = record->pool.content;
  const bool without_nul = content.find('\0') == std::string::npos;
  LineReading reading = {record, nullptr, 0, !is_topics(record->mode), without_nul, content.data()};
  for (size_t at = 0; at < content.size();) {
    if (content.data() + at >= reading.bracket)
      reading.bracket = content.data() + std::min(content.find('[', at), content.size());
    const std::string_view piece = std::string_view(content).substr(at, kTextPiece);
    const size_t length = std::min(piece.find('\n'), piece.size() - 1) + 1;
    if (!take_line(&reading, content.data() + at, length)) return 0;
    at += length;
  }
  return 1;
}

// Decodes in place. Kept: after the last line's end comes one empty line, and a line of 1023 bytes loses its end.
int read_all_coded_lines(ProfileRecord *record) {
  std::string &content = record->pool.content;
  LineReading reading = {record, nullptr, 0, !is_topics(record->mode), false, nullptr};
  size_t at = 0;
  for (bool at_end = false; !at_end;) {
    char *line = content.data() + at;
    size_t length = 0;
    at_end = !decode_line(content, at, length);
    if (!take_line(&reading, line, length)) return 0;
  }
  return 1;
}

// A write mode needs a file with a first line. Only a file that is empty gets one: what can't be read may not be lost.
bool prepare_file(const char *file, int mode) {
  struct stat state = {};
  if (stat(file, &state) != 0 && errno != ENOENT) return false;
  if (state.st_size > 0) return true;
  return WriteInitialLine(file, kBanner, is_binary(mode) ? kWriteCoded : kWriteText);
}

void free_profile(ProfileRecord *record) {
  free_all_lines(&record->first, record->hash);
  HashDestroy(record->hash);
  record->hash = nullptr;
  free_pool(&record->pool);
  record->is_open = 0;
}

// The lines of the content, or of the file where that is empty.
int load_profile(ProfileRecord *record) {
  std::string &content = record->pool.content;
  if (content.empty() && !read_file(record->name, content)) return 0;
  return is_binary(record->mode) ? read_all_coded_lines(record) : read_all_lines(record);
}

int _open_profile(ProfileRecord *record, const char *file, int mode, std::string_view text = {}) {
  if (record == nullptr || file == nullptr || !is_valid_mode(mode)) return 0;
  if (record->is_open) return 1;
  if (std::strlen(file) >= sizeof record->name) return 0;
  if (is_write(mode) && text.empty() && !prepare_file(file, mode)) return 0;
  cpynstr(record->name, file);
  record->mode = mode;
  record->modified = !text.empty();
  record->out_of_memory = 0;
  if (!initHashTable(&record->hash)) return 0;
  record->is_open = in_memory([&] {
    record->pool.content = text;
    return load_profile(record);
  });
  if (!record->is_open) free_profile(record);
  return record->is_open;
}

// --- writing

// Gives each text that goes into the file to `take`.
template <typename Take>
void for_each_written(const ProfileRecord *record, Take take) {
  for (const ProfileLine *line = &record->first; line != nullptr; line = line->next) {
    std::string_view text;
    if (written_text(*line, record->mode, text)) take(text);
  }
}

std::string write_all_lines(const ProfileRecord *record) {
  std::string output;
  output.reserve(record->pool.content.size());
  for_each_written(record, [&](std::string_view text) { output += text; });
  return output;
}

std::string write_all_coded_lines(const ProfileRecord *record) {
  std::string output;
  output.reserve(record->pool.content.size());
  for_each_written(record, [&](std::string_view text) { append_coded(output, text); });
  return output;
}

int save_profile(const ProfileRecord *record) {
  return replace_file(record->name, is_binary(record->mode) ? write_all_coded_lines(record) : write_all_lines(record));
}

int _discard_profile(ProfileRecord *record) {
  if (record == nullptr || !record->is_open) return 0;
  free_profile(record);
  return 1;
}

int _close_profile(ProfileRecord *record) {
  if (record == nullptr || !record->is_open) return 0;
  int result = 1;
  if (is_write(record->mode) && record->modified) {
    result = !record->out_of_memory && in_memory([&] { return save_profile(record); });
  }
  free_profile(record);
  return result;
}

int close_handle(ProfileHandle *handle, int (*close)(ProfileRecord *)) {
  if (handle == nullptr || *handle == nullptr) return 0;
  const int result = close(*handle);
  delete *handle;
  *handle = nullptr;
  return result;
}

// --- getting and setting

using Extraction = int (*)(std::string_view line, char *out, int mode);

int get_string(ProfileRecord *record, const char *topic, const char *key, char *buffer, Extraction extract) {
  if (record == nullptr || !record->is_open || topic == nullptr || key == nullptr || buffer == nullptr) return 0;
  const ProfileLine *line = search_topic(&record->first, topic, record->hash, record->mode);
  if (line != nullptr) line = search_entry(line->next, key, record->mode);
  if (line == nullptr) return 0;
  extract(text_of(*line), buffer, record->mode);
  return 1;
}

int _get_private_profile_string(ProfileRecord *record, const char *topic, const char *key, char *buffer) {
  return get_string(record, topic, key, buffer, get_value);
}

int _get_private_profile_string_notrim(ProfileRecord *record, const char *topic, const char *key, char *buffer) {
  return get_string(record, topic, key, buffer, get_value_notrim);
}

// A new value for an entry, with the line's trailing comment after it in merge modes.
int replace_value(ProfileRecord *record, ProfileLine *line, std::string_view key, std::string_view value) {
  std::string new_value(value);
  std::string_view comment;
  if (is_merge(record->mode) && find_comment(text_of(*line), comment)) {
    new_value.append(kCommentGap).append(comment);
  }
  std::string text(key.size() + new_value.size() + kFormatRoom, '\0');
  return set_line_text(line, format_line(text.data(), key, new_value, record->mode), record->hash);
}

int set_in_new_topic(ProfileRecord *record, std::string_view topic, std::string_view key, std::string_view value) {
  ProfileLine *topic_line = new_topic(&record->first, topic, record->hash);
  if (topic_line == nullptr) return 0;
  if (new_entry(topic_line, key, value, record->mode) != nullptr) return 1;
  ProfileLine *blank = topic_line->prev;
  delete_line(topic_line, record->hash);
  delete_line(blank, record->hash);
  return 0;
}

bool has_line_feed(std::string_view text) { return text.find('\n') != std::string_view::npos; }

// Deletes the line, or without a key the topic; 0 when there is neither.
int delete_setting(ProfileRecord *record, ProfileLine *topic_line, ProfileLine *line, std::string_view key) {
  if (line != nullptr) {
    delete_line(line, record->hash);
  } else if (topic_line != nullptr && key.empty()) {
    delete_topic(topic_line, record->hash);
  } else {
    return 0;
  }
  return 1;
}

int set_string(ProfileRecord *record, std::string_view topic, std::string_view key, std::string_view value) {
  if (key.size() + value.size() + 1 > kValueBufferSize) return 0;
  if (has_line_feed(topic) || has_line_feed(key) || has_line_feed(value)) return 0;
  ProfileLine *topic_line = search_topic(&record->first, topic, record->hash, record->mode);
  ProfileLine *line = topic_line != nullptr ? search_entry(topic_line->next, key, record->mode) : nullptr;
  if (key.empty() && !value.empty() && line == nullptr) return 0;
  const bool set = in_memory([&] {
    if (value.empty()) return delete_setting(record, topic_line, line, key);
    if (line != nullptr) return replace_value(record, line, key, value);
    if (topic_line == nullptr) return set_in_new_topic(record, topic, key, value);
    return new_entry(topic_line, key, value, record->mode) != nullptr ? 1 : 0;
  });
  if (set) record->modified = 1;
  if (!set && !value.empty()) record->out_of_memory = 1;  // nothing else is in its way any more
  return set;
}

int _set_private_profile_string(ProfileRecord *record, const char *topic, const char *key, const char *value) {
  if (record == nullptr || !record->is_open || !is_write(record->mode)) return 0;
  if (topic == nullptr || key == nullptr || value == nullptr) return 0;
  return set_string(record, topic, key, value);
}

int read_once(const char *topic, const char *key, char *buffer, const char *file, int mode) {
  ProfileRecord record{};
  if (!_open_profile(&record, file, mode)) return 0;
  const int result = _get_private_profile_string(&record, topic, key, buffer);
  _close_profile(&record);
  return result;
}

int write_once(const char *topic, const char *key, const char *value, const char *file, int mode) {
  ProfileRecord record{};
  if (!_open_profile(&record, file, mode)) return 0;
  const int result = _set_private_profile_string(&record, topic, key, value);
  _close_profile(&record);  // kept: its result is not told, callers judge by the set alone
  return result;
}

}  // namespace

int GetMaxCfgBuf() { return kValueBufferSize; }

// --- the one profile of the simple calls

int XOpenProfile(const char *file, int mode) { return _open_profile(&OpProfile, file, mode); }

int XCreateProfile(const char *file, std::string_view text) {
  return _open_profile(&OpProfile, file, kWriteText, text);
}

int XCloseProfile() { return _close_profile(&OpProfile); }

int XDiscardProfile() { return _discard_profile(&OpProfile); }

int XGetPrivateProfileString(const char *topic, const char *key, char *buffer, int) {
  return _get_private_profile_string(&OpProfile, topic, key, buffer);
}

int XGetPrivateProfileStringNoTrim(const char *topic, const char *key, char *buffer, int) {
  return _get_private_profile_string_notrim(&OpProfile, topic, key, buffer);
}

int XSetPrivateProfileString(const char *topic, const char *key, const char *value, const char *) {
  return _set_private_profile_string(&OpProfile, topic, key, value);
}

int XSetPrivateProfileStringNoTrim(const char *topic, const char *key, const char *value, const char *) {
  return _set_private_profile_string(&OpProfile, topic, key, value);
}

// --- profiles by handle

ProfileHandle XOpenProfileEx(const char *file, int mode) {
  auto record = std::unique_ptr<ProfileRecord>(new (std::nothrow) ProfileRecord{});
  return _open_profile(record.get(), file, mode) ? record.release() : nullptr;
}

int XCloseProfileEx(ProfileHandle *handle) { return close_handle(handle, _close_profile); }

int XDiscardProfileEx(ProfileHandle *handle) { return close_handle(handle, _discard_profile); }

int XGetPrivateProfileStringEx(ProfileHandle handle, const char *topic, const char *key, char *buffer, int) {
  return _get_private_profile_string(handle, topic, key, buffer);
}

int XGetPrivateProfileStringNoTrimEx(ProfileHandle handle, const char *topic, const char *key, char *buffer, int) {
  return _get_private_profile_string_notrim(handle, topic, key, buffer);
}

int XSetPrivateProfileStringNoTrimEx(ProfileHandle handle, const char *topic, const char *key, const char *value,
                                     const char *) {
  return _set_private_profile_string(handle, topic, key, value);
}

bool XNextLine(ProfileText &line) { return OpProfile.is_open && XNextLineEx(&OpProfile, line); }

bool XNextLineEx(ProfileHandle handle, ProfileText &line) {
  if (handle == nullptr) return false;
  const ProfileLine *place = line.place == nullptr ? &handle->first : line.place->next;
  if (place == nullptr || place->txt == nullptr) return false;
  std::string_view whole;
  line.place = place;
  line.is_generated = !written_text(*place, handle->mode, whole);
  line.text = before_nul(whole);
  line.has_nul = place->has_nul;
  if (line.is_generated) return true;
  if (!line.continues) ++line.number;
  line.continues = !is_binary(handle->mode) && !whole.ends_with('\n') && place->next != nullptr;
  return true;
}

bool XNextEntry(const char *topic, ProfileEntry &entry) {
  if (!OpProfile.is_open) return false;
  const ProfileLine *line = entry.place;
  if (line == nullptr) line = search_topic(&OpProfile.first, topic, OpProfile.hash, OpProfile.mode);
  if (line == nullptr) return false;
  for (line = line->next; line != nullptr; line = line->next) {
    entry = {line, {}, text_of(*line)};
    if (is_end_of_topic(*line)) return false;
    if (find_entry(entry.text, OpProfile.mode, entry.key)) return true;
  }
  return false;
}

// --- one operation on a file

int XReadPrivateProfileString(const char *topic, const char *key, char *buffer, const char *file) {
  return read_once(topic, key, buffer, file, kReadText);
}

int XReadInCodedPrivateProfileString(const char *topic, const char *key, char *buffer, const char *file) {
  return read_once(topic, key, buffer, file, kReadCoded);
}

int XReadMergePrivateProfileString(const char *topic, const char *key, char *buffer, const char *file) {
  return read_once(topic, key, buffer, file, kReadMerge);
}

int XWritePrivateProfileString(const char *topic, const char *key, const char *value, const char *file) {
  return write_once(topic, key, value, file, kWriteText);
}

int XWriteInCodedPrivateProfileString(const char *topic, const char *key, const char *value, const char *file) {
  return write_once(topic, key, value, file, kWriteCoded);
}

int XWriteMergePrivateProfileString(const char *topic, const char *key, const char *value, const char *file) {
  return write_once(topic, key, value, file, kWriteMerge);
}

// --- what the format can't give back

namespace {

bool topic_comes_back(std::string_view topic) {
  const std::string line = '[' + std::string(topic) + "]\n";
  char name[kValueBufferSize];
  return line.size() <= kTextPiece && is_topic(line) && get_topic(line, name) && name == topic;
}

bool key_comes_back(std::string_view line, std::string_view key) {
  std::string_view found;
  return is_entry_line(line) && !is_tmp_key(line) && has_key_entry(line) && find_entry(line, kReadText, found) &&
         found == key;
}

}  // namespace

ProfileFault XSurvives(std::string_view topic, std::string_view key, std::string_view value) {
  const std::string text = std::string(key).append("=").append(value);
  char name[kValueBufferSize];
  if (has_line_feed(topic)) return ProfileFault::line_feed;
  if (!topic_comes_back(topic)) return ProfileFault::topic;
  if (!key_comes_back(text, key)) return ProfileFault::key;
  if (value.empty()) return ProfileFault::empty;
  if (text.size() > kTextPiece) return ProfileFault::too_long;
  if (has_line_feed(value)) return ProfileFault::line_feed;
  if (value.find('\0') != std::string_view::npos) return ProfileFault::nul;
  if (get_topic(text, name)) return ProfileFault::bracket;
  if (value.find('\t') != std::string_view::npos) return ProfileFault::tab;
  return value.starts_with(' ') || value.ends_with(' ') ? ProfileFault::blank : ProfileFault::none;
}

// --- coded files

void append_coded(std::string &output, std::string_view text) {
  size_t position = 0;
  for (const char c : text) output += coded(c, position++);
  for (const char c : kCodedEnd) output += coded(c, position++);
}

int fwriteln(FILE *stream, std::string_view text) {
  return in_memory([&] {
    std::string line;
    append_coded(line, text);
    return static_cast<int>(std::fwrite(line.data(), line.size(), 1, stream));
  });
}

char *freadln(FILE *stream, char *buffer, int limit) {
  *buffer = '\0';
  if (std::feof(stream) != 0) return nullptr;
  size_t length = 0;
  bool complete = false;
  while (!complete && length < static_cast<size_t>(limit)) {
    const int byte = std::fgetc(stream);
    if (byte == EOF) break;
    complete = decode_byte(static_cast<char>(byte), buffer, length);
  }
  buffer[length] = '\0';
  return buffer;
}

int WriteInitialLine(const char *file, const char *text, int kind) {
  if (file == nullptr || text == nullptr) return 0;
  return in_memory([&] {
    std::string line;
    if (kind == kWriteText) {
      line = text;
    } else {
      append_coded(line, text);
    }
    return replace_file(file, line);
  });
}

// --- the library itself

int XIsReadProfileMode(int mode) { return is_valid_mode(mode) && !is_write(mode); }

const char *CORBXGetFileVersion() { return kFileVersion; }

const char *CORBXGetLibName() { return kLibName; }

int CORBXCheckLibCompatibility() { return 1; }

int CORBXCheckInterfaceVersion(const char *version) {
  return version != nullptr && std::strcmp(version, kInterfaceVersion) == 0;
}

int XAppendVersionErr(char *buffer, int size, const char *prefix, const char *text) {
  if (buffer == nullptr || text == nullptr || size < 0) return 0;
  const size_t used = std::strlen(buffer);
  size_t needed = std::strlen(text) + 1;
  if (prefix != nullptr) needed += std::strlen(prefix) + 1 + std::strlen(pszDelim) + 1;
  if (needed + used + 1 >= static_cast<size_t>(size)) return 0;
  std::snprintf(buffer + used, static_cast<size_t>(size) - used, "%s%s%s%s", used == 0 ? "" : ",",
                prefix == nullptr ? "" : prefix, prefix == nullptr ? "" : pszDelim, text);
  return 1;
}

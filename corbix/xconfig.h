// Profiles: INI-style files, plain or coded, read and changed by topic and key. What was not set stays as it was in the
// file: comments, blank lines, unknown lines, the order.
//
// One thread. A change lives in memory until the profile is closed. All results are 1, or 0 for failure, unless said
// otherwise; null arguments give 0.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

struct ProfileLine;
struct ProfileRecord;
using ProfileHandle = ProfileRecord *;

// --- numbers and names

// How a file is opened.
enum ProfileMode : int {
  // clang-format off
  // to read         to change              meaning
  kReadText = 1,     kWriteText,         // a plain text
  kReadCoded,        kWriteCoded,        // a coded file
  kReadMerge,        kWriteMerge,        // "#" ends a value, names compare exactly, keys may hold blanks
  kReadKeyless,      kWriteKeyless,      // every entry gets a generated key
  kReadKeylessCoded, kWriteKeylessCoded,
  kReadKeys,         kWriteKeys,         // nothing gets a generated name, keys may hold blanks
  kReadKeysCoded,    kWriteKeysCoded,
};  // clang-format on

// Bytes of the buffer of every get call: values of up to 1023 characters and their terminator.
inline constexpr int kValueBufferSize = 1024;
int GetMaxCfgBuf();  // the same

// A longer line of a file is read in pieces of so many bytes, each as a line of its own.
inline constexpr size_t kTextPiece = 1023;
inline constexpr size_t kCodedPiece = 1024;

// The topic under which the lines before the first topic of a file are read and set.
inline constexpr const char *kTmpTopic = "@$tmp_topic$@";
// The start of the keys that nameless lines get: "@$tmp_key$@00000" is the first one of its topic.
inline constexpr const char *kTmpKey = "@$tmp_key$@";

// --- the one profile of the simple calls

// Opens `file` in a ProfileMode. A write mode creates a missing file and gives an empty one its first comment line.
// While a profile is open, another open gives 1 and changes nothing: close first.
// 0: wrong mode, no such file, not readable (a directory too), a name of more than 255 characters, out of memory.
int XOpenProfile(const char *file, int mode);
// The same, in kWriteText, for a file that is not there yet and begins with `text` (not empty): the close creates it.
int XCreateProfile(const char *file, std::string_view text);

// Closes the profile; when it was set anything in a write mode, writes it as replace_file() does.
// 0: none was open, memory ran out for something that was set, or the file could not be written: it is then as it was,
// and the changes are lost.
int XCloseProfile();

// Closes the profile without writing it; tests begin with it. 0: none was open.
int XDiscardProfile();

// Copies the value of `key` in `topic` into `buffer` (kValueBufferSize bytes, whatever `size` says; it is not used).
// Tabs are dropped, blanks at both ends are cut; the NoTrim call keeps both. 1 also for a key without "=" (value "").
// 0 when no profile is open, or topic or key is missing: `buffer` then keeps the caller's default.
int XGetPrivateProfileString(const char *topic, const char *key, char *buffer, int size);
int XGetPrivateProfileStringNoTrim(const char *topic, const char *key, char *buffer, int size);

// Sets `key` in `topic` to `value`; `file` is not used. A new key goes to the end of the topic's first block of lines,
// a new topic to the end of the file. An empty value deletes the key's line; an empty key and value together delete
// the topic up to the next one.
// 0, and nothing is changed: not open in a write mode; key and value of more than 1023 characters together; a line feed
// in one of the three; an empty value for a missing key; an empty key with a value; out of memory.
int XSetPrivateProfileString(const char *topic, const char *key, const char *value, const char *file);
int XSetPrivateProfileStringNoTrim(const char *topic, const char *key, const char *value, const char *file);

// --- profiles by handle

// As the simple calls, on a profile of the caller's. XOpenProfileEx returns null where XOpenProfile gives 0;
// XCloseProfileEx and XDiscardProfileEx free the profile and set the handle to null in every case.
[[nodiscard]] ProfileHandle XOpenProfileEx(const char *file, int mode);
int XCloseProfileEx(ProfileHandle *handle);
int XDiscardProfileEx(ProfileHandle *handle);
int XGetPrivateProfileStringEx(ProfileHandle handle, const char *topic, const char *key, char *buffer, int size);
int XGetPrivateProfileStringNoTrimEx(ProfileHandle handle, const char *topic, const char *key, char *buffer, int size);
int XSetPrivateProfileStringNoTrimEx(ProfileHandle handle, const char *topic, const char *key, const char *value,
                                     const char *file);

// A line of a profile as its file has it, or a piece of a long one.
struct ProfileText {
  const ProfileLine *place = nullptr;  // in the walk; null before the first line
  std::string_view text = {};          // with its line feed, but only up to a NUL; lives until the next set or close
  int number = 0;                      // of the line, from 1
  bool continues = false;              // the next text is of the same line
  bool has_nul = false;                // the line ends at a NUL for everybody who reads it
  bool is_generated = false;           // the topic in front of nameless entries, which the file does not have
};
// Moves `line` to the next line, at first to the first one. False when there is none.
bool XNextLine(ProfileText &line);
bool XNextLineEx(ProfileHandle handle, ProfileText &line);

// An entry as the calls by topic and key find it.
struct ProfileEntry {
  const ProfileLine *place = nullptr;  // in the walk; null before the first entry
  std::string_view key = {};           // also a generated one
  std::string_view text = {};          // of the line, up to a NUL; both live until the next set or close
};
// Moves `entry` to the next entry of `topic`, at first to its first one. False when there is none.
bool XNextEntry(const char *topic, ProfileEntry &entry);

// --- one operation on a file: open, get or set, close

// Plain, coded ("InCoded") and merge profiles. The result is that of the operation: whether the close could write the
// file is not told.
int XReadPrivateProfileString(const char *topic, const char *key, char *buffer, const char *file);
int XReadInCodedPrivateProfileString(const char *topic, const char *key, char *buffer, const char *file);
int XReadMergePrivateProfileString(const char *topic, const char *key, char *buffer, const char *file);
int XWritePrivateProfileString(const char *topic, const char *key, const char *value, const char *file);
int XWriteInCodedPrivateProfileString(const char *topic, const char *key, const char *value, const char *file);
int XWriteMergePrivateProfileString(const char *topic, const char *key, const char *value, const char *file);

// --- what the format can't give back

// Why a setting would not come back.
enum class ProfileFault {
  none,
  topic,      // the topic's line is no topic, or one of another name
  key,        // the key's line has no key, or another one
  empty,      // the line is deleted: nothing comes back
  too_long,   // refused, or cut where lines are cut on reading
  line_feed,  // refused, in the topic too
  nul,        // the value ends there
  bracket,    // "[" ends the topic: this setting and those after it are hidden
  tab,        // tabs are dropped
  blank,      // blanks at the ends are cut
};

// Would `value`, set in kWriteText under `topic` and `key`, be read in kReadText as it stands, without hiding others?
// Texts, not null; any byte may stand in them.
[[nodiscard]] ProfileFault XSurvives(std::string_view topic, std::string_view key, std::string_view value);

// --- coded files

// Append, or write, `text` and "\r\n" as one coded line. 0 when the stream did not take it.
void append_coded(std::string &output, std::string_view text);
int fwriteln(FILE *stream, std::string_view text);

// Reads one coded line of up to `limit` bytes (files: kCodedPiece) into `buffer` (limit + 1 bytes; terminated, without
// its "\r\n"); a longer one comes in pieces. After the last "\r\n" comes one empty line more, then null and "".
char *freadln(FILE *stream, char *buffer, int limit);

// Makes `file` hold `text` alone: kind kWriteText as plain text without a line end, any other one as a coded line.
int WriteInitialLine(const char *file, const char *text, int kind);

// --- the library itself

// 1 for the modes that only read.
int XIsReadProfileMode(int mode);
const char *CORBXGetFileVersion();  // "1.6.1.1"
const char *CORBXGetLibName();      // "Corbix"
int CORBXCheckLibCompatibility();   // always 1
int CORBXCheckInterfaceVersion(const char *version);

// Appends "prefix::text" (`text` alone when `prefix` is null) to the comma-separated list in `buffer` (`size` bytes).
// 0, and `buffer` as it was, when `buffer` or `text` is null or the room does not suffice.
int XAppendVersionErr(char *buffer, int size, const char *prefix, const char *text);

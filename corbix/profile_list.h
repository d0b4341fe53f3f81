// The lines of a profile: a list with one node for each line of the file, exactly as read, and an index of its topics.
// Nothing is parsed once and kept: every question is asked of the line's text anew (corbix/profile_line.h).
//
// Results are 1 or 0 unless said otherwise. A null index, or a null line or text where one is needed, stops the
// program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "corbix/profile_line.h"
#include "corbix/xhash.h"

inline constexpr size_t kMostLineBytes = (size_t{1} << 27) - 1;  // more than a file may hold

struct ProfileLine {
  char *txt;  // `length` bytes with the line's own "\n", not terminated; null only in the empty first node of a profile
  ProfileLine *prev;
  ProfileLine *next;
  uint32_t length : 27;       // with the flags in one word, a node is smaller than a list's with two pieces of memory
  uint32_t hash_flag : 1;     // 1 while the topic index leads to this line
  uint32_t has_bracket : 1;   // a "[" is in the text: without one it ends no topic
  uint32_t has_nul : 1;       // the line ends at its first NUL for every question, but it is written back whole
  uint32_t text_is_lent : 1;  // txt and the node lie in the profile's pool: they are given back with it, not one by one
  uint32_t node_is_lent : 1;
};

// The memory of the lines that were read from the file: a few big pieces instead of two small ones for each line.
struct PoolPiece {
  PoolPiece *next;
  alignas(ProfileLine) char room[127 * sizeof(ProfileLine)];  // 4 kB with the allocator's own words
};

struct LinePool {
  std::string content;  // the file; the texts of most lines lie in it
  PoolPiece *pieces;    // nodes, and the texts that got a generated key; the newest piece first
  size_t left;          // bytes of that one
};

struct ProfileRecord {
  char name[256];
  ProfileLine first;
  int is_open;
  int mode;
  HashHandle hash;
  int modified;
  int out_of_memory;  // for a set: what the close would write is not all that was set
  LinePool pool;
};

// --- the topic index

// Buckets of an index, and the longest topic line that is indexed: any line of a file, also when it was cut there and
// got a line feed. Longer ones, which only a set can make, are found by the scan.
inline constexpr uint32_t glHashTableSize = 1000;
inline constexpr size_t kLongestTopicLine = 1024;

int initHashTable(HashHandle *h);
// The text without brackets and white space, in capitals, into `buffer` (its length and 1).
void getTopicHashKey(char *buffer, std::string_view topicLine);
int testHashTopic(std::string_view txt);
// Registers a topic line, unless another line is registered under its key already: the first one counts.
// 1 also for any other line; 0 when memory runs out.
int hashNewTextVal(ProfileLine *ptr, HashHandle h);
void removeTopicHashEntry(ProfileLine *ptr, HashHandle h);
ProfileLine *findTopicHashPtr(std::string_view topic, HashHandle h);

// --- the list

// What is asked of a line: its text up to a NUL.
inline std::string_view before_nul(std::string_view text) { return text.substr(0, text.find('\0')); }
inline std::string_view text_of(const ProfileLine &line) {
  const std::string_view whole(line.txt, line.length);
  return line.has_nul ? before_nul(whole) : whole;
}
inline bool is_end_of_topic(const ProfileLine &line) { return line.has_bracket && holds_topic(text_of(line)); }
// What of a line goes into the file: false for the generated topic, and nothing of a generated key.
bool written_text(const ProfileLine &line, int mode, std::string_view &text);

// An empty node, or one with a text buffer of `size` bytes (length 0), next to `after`. Null when memory runs out:
// nothing is linked then.
ProfileLine *new_node(ProfileLine *after);
ProfileLine *new_line(ProfileLine *after, size_t size);

// Replace the text (`text` may not lie in the line itself) and keep the index true. 0 for a null line, and when memory
// runs out: the line is as it was, or only missing in the index.
int set_line_text(ProfileLine *line, std::string_view text, HashHandle h);
// The same, with a generated key in front where the mode asks for one; it takes its number from `counter`.
int set_line_text_and_check_key(ProfileLine *line, std::string_view text, uint16_t *counter, HashHandle h, int mode);

// Takes the line out of list and index and returns the next line. The first node of a profile stays: it takes over
// the text of the next line and is itself what is returned, or null (and its text) when no line is left.
ProfileLine *delete_line(ProfileLine *line, HashHandle h);
// Frees a line without mending the links, when the whole list goes.
ProfileLine *free_line(ProfileLine *line, HashHandle h);
// Frees all lines; the first node is empty then.
void free_all_lines(ProfileLine *first, HashHandle h);

// The topic's line; the entry's line, from `line` (may be null) to the end of the topic. Null when there is none.
ProfileLine *search_topic(ProfileLine *first, std::string_view name, HashHandle h, int mode);
ProfileLine *search_entry(ProfileLine *line, std::string_view key, int mode);
// Appends an empty line and the topic's line, which is returned; null when memory runs out.
ProfileLine *new_topic(ProfileLine *first, std::string_view name, HashHandle h);
// Puts a new entry at the end of the topic's first block of lines and returns it; null when memory runs out.
ProfileLine *new_entry(ProfileLine *topicLine, std::string_view key, std::string_view value, int mode);
// Deletes the topic's line and all lines before the next topic.
void delete_topic(ProfileLine *topicLine, HashHandle h);

// --- reading

// The state of making lines of a file; `last` is null before the first one.
struct LineReading {
  ProfileRecord *record;
  ProfileLine *last;
  uint16_t counter;     // of the generated keys of the present topic
  bool topic_missing;   // no topic yet: the first entry gets the generated one in front
  bool without_nul;     // no line holds a NUL
  const char *bracket;  // no "[" stands before it
};

// Appends the line of `length` bytes at `text`, which lies in the pool, with what the record's mode generates for it.
// 0 when memory runs out.
[[nodiscard]] int take_line(LineReading *reading, char *text, size_t length);
void free_pool(LinePool *pool);

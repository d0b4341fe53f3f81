#include "corbix/profile_list.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "util/check.h"
#include "util/text.h"

namespace {

constexpr const char *kPath = "corbix/xconfig";  // kept: this file is a part of that module

// What becomes of each character of a topic in its key: capitals, and 0 for what is left out.
constexpr std::array<char, 256> kKeyCharacters = [] {
  std::array<char, 256> table = {};
  for (int c = 0; c < 256; ++c) table[c] = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  for (const char c : {'[', ']', ' ', '\n', '\r', '\t', '\x1A'}) table[c] = 0;
  return table;
}();

void free_text(ProfileLine *line) {
  if (!line->text_is_lent) delete[] line->txt;
  line->txt = nullptr;
  line->length = 0;
  line->text_is_lent = 0;
}

// For a line whose text has become the first `length` bytes of its buffer.
void note_text(ProfileLine *line, size_t length) {
  const std::string_view text(line->txt, length);
  line->length = static_cast<uint32_t>(length);
  line->has_bracket = may_hold_topic(text);
  line->has_nul = text.find('\0') != std::string_view::npos;
}

void free_node(ProfileLine *line) {
  if (!line->text_is_lent) delete[] line->txt;
  if (!line->node_is_lent) delete line;
}

void link_after(ProfileLine *after, ProfileLine *line) {
  line->prev = after;
  line->next = after->next;
  if (line->next != nullptr) line->next->prev = line;
  after->next = line;
}

// Gives the line the text `prefix` + `text`. A buffer that does not suffice is replaced, and got before anything
// changes.
int store_text(ProfileLine *line, std::string_view prefix, std::string_view text, HashHandle h) {
  require(h != nullptr, "h", kPath);
  const size_t length = prefix.size() + text.size();
  if (line == nullptr || length > kMostLineBytes) return 0;
  const bool fits = line->txt != nullptr && length <= line->length;
  char *room = fits ? line->txt : new (std::nothrow) char[length];
  if (room == nullptr) return 0;
  removeTopicHashEntry(line, h);
  if (!fits) {
    free_text(line);
    line->txt = room;
  }
  std::copy(text.begin(), text.end(), std::copy(prefix.begin(), prefix.end(), room));
  note_text(line, length);
  return hashNewTextVal(line, h);
}

// A line that is to get one after it needs its line feed, or the two would run together in the file. Coded lines
// don't. The index stays as it is: a line feed is no part of a key.
bool complete_line(ProfileLine *line, int mode) {
  const std::string_view text(line->txt, line->length);
  if (is_binary(mode) || text.ends_with('\n')) return true;
  char *room = new (std::nothrow) char[text.size() + 1];
  if (room == nullptr) return false;
  *std::copy(text.begin(), text.end(), room) = '\n';
  if (!line->text_is_lent) delete[] line->txt;
  line->txt = room;
  line->text_is_lent = 0;
  ++line->length;
  return true;
}

// Moves the text of the second line into the first, empty node, whose place is fixed: scans end at an empty first node.
ProfileLine *refill_first(ProfileLine *first, HashHandle h) {
  ProfileLine *next = first->next;
  if (next == nullptr) return nullptr;
  removeTopicHashEntry(next, h);
  first->txt = next->txt;
  first->length = next->length;
  first->has_bracket = next->has_bracket;
  first->has_nul = next->has_nul;
  first->text_is_lent = next->text_is_lent;
  next->txt = nullptr;
  first->next = next->next;
  if (first->next != nullptr) first->next->prev = first;
  free_node(next);
  hashNewTextVal(first, h);  // without memory for its index entry, the scan still finds it
  return first;
}

// Room in the pool for `size` bytes, for a node or for a line's text; null when memory runs out.
char *take_room(LinePool *pool, size_t size) {
  size = (size + alignof(ProfileLine) - 1) & ~(alignof(ProfileLine) - 1);
  if (size > pool->left) {
    auto *piece = new (std::nothrow) PoolPiece;
    if (piece == nullptr) return nullptr;
    piece->next = std::exchange(pool->pieces, piece);
    pool->left = sizeof piece->room;
  }
  return std::end(pool->pieces->room) - std::exchange(pool->left, pool->left - size);
}

// Appends a line whose text lies in the pool; null when memory runs out.
ProfileLine *append_line(LineReading *reading, char *text, size_t length, bool has_bracket, bool has_nul) {
  ProfileLine *last = reading->last;
  void *room = &reading->record->first;
  if (last != nullptr) room = take_room(&reading->record->pool, sizeof(ProfileLine));
  if (room == nullptr) return nullptr;
  reading->last =
      new (room) ProfileLine{text, last, nullptr, static_cast<uint32_t>(length), 0, has_bracket, has_nul, 1, 1};
  if (last != nullptr) last->next = reading->last;
  return reading->last;
}

// Registers a topic's line, of which `text` is the text.
int index_topic(ProfileLine *line, std::string_view text, HashHandle h) {
  char key[kLongestTopicLine + 1];
  getTopicHashKey(key, text);
  bool stored = false;
  const int result = hash_insert_new(h, key, &line, &stored);
  line->hash_flag = stored;
  return result;
}

bool append_tmp_topic(LineReading *reading) {
  char *text = take_room(&reading->record->pool, kTmpTopicLine.size());
  if (text == nullptr) return false;
  kTmpTopicLine.copy(text, kTmpTopicLine.size());
  ProfileLine *line = append_line(reading, text, kTmpTopicLine.size(), true, false);
  return line != nullptr && hashNewTextVal(line, reading->record->hash);
}

}  // namespace

// --- the topic index

int initHashTable(HashHandle *h) { return HashCreate(glHashTableSize, h, kHashBlock, sizeof(void *)); }

void getTopicHashKey(char *buffer, std::string_view topicLine) {
  require(buffer != nullptr, "Buffer", kPath);
  require(topicLine.data() != nullptr, "TopicLine", kPath);
  require(buffer != topicLine.data(), "Buffer!=TopicLine", kPath);
  for (const char c : topicLine) {
    *buffer = kKeyCharacters[static_cast<unsigned char>(c)];
    buffer += *buffer != '\0';
  }
  *buffer = '\0';
}

int testHashTopic(std::string_view txt) {
  require(txt.data() != nullptr, "txt", kPath);
  return is_topic(txt);
}

int hashNewTextVal(ProfileLine *ptr, HashHandle h) {
  require(h != nullptr, "h", kPath);
  require(ptr != nullptr, "ptr", kPath);
  require(!ptr->hash_flag, "!(ptr->hash_flag)", kPath);
  const std::string_view line = text_of(*ptr);
  return line.size() > kLongestTopicLine || !is_topic(line) ? 1 : index_topic(ptr, line, h);
}

void removeTopicHashEntry(ProfileLine *ptr, HashHandle h) {
  require(ptr != nullptr, "ptr", kPath);
  require(h != nullptr, "h", kPath);
  if (!ptr->hash_flag) return;
  require(testHashTopic(text_of(*ptr)), "testHashTopic(ptr->txt)", kPath);
  char key[kLongestTopicLine + 1];
  getTopicHashKey(key, text_of(*ptr));
  HashRemove(h, key, nullptr);
  ptr->hash_flag = 0;
}

ProfileLine *findTopicHashPtr(std::string_view topic, HashHandle h) {
  require(h != nullptr, "h", kPath);
  require(topic.data() != nullptr, "topic", kPath);
  if (topic.size() > kLongestTopicLine) return nullptr;
  char key[kLongestTopicLine + 1];
  getTopicHashKey(key, topic);
  void *registered = nullptr;
  return HashGet(h, key, &registered) ? *static_cast<ProfileLine **>(registered) : nullptr;
}

// --- the list

bool written_text(const ProfileLine &line, int mode, std::string_view &text) {
  text = {line.txt, line.length};
  if (line.txt == nullptr || (!is_topics(mode) && is_tmp_topic(text))) return false;
  if (!is_keys(mode) && is_tmp_key(text)) text.remove_prefix(text.find('=') + 1);  // all of it without a "="
  return true;
}

ProfileLine *new_node(ProfileLine *after) {
  require(after != nullptr, "ptr", kPath);
  auto *line = new (std::nothrow) ProfileLine{};
  if (line != nullptr) link_after(after, line);
  return line;
}

ProfileLine *new_line(ProfileLine *after, size_t size) {
  char *room = size <= kMostLineBytes ? new (std::nothrow) char[size] : nullptr;
  if (room == nullptr) return nullptr;
  ProfileLine *line = new_node(after);
  if (line == nullptr) {
    delete[] room;
  } else {
    line->txt = room;
  }
  return line;
}

int set_line_text(ProfileLine *line, std::string_view text, HashHandle h) { return store_text(line, "", text, h); }

int set_line_text_and_check_key(ProfileLine *line, std::string_view text, uint16_t *counter, HashHandle h, int mode) {
  const bool is_entry = is_entry_line(text) && !is_topic(text);
  if (!is_entry || !needs_key(text, mode)) return store_text(line, "", text, h);
  char prefix[kGeneratedKeyLength];
  write_generated_key(prefix, (*counter)++);
  return store_text(line, {prefix, kGeneratedKeyLength}, text, h);
}

ProfileLine *delete_line(ProfileLine *line, HashHandle h) {
  removeTopicHashEntry(line, h);
  if (line->prev == nullptr) {
    free_text(line);
    return refill_first(line, h);
  }
  ProfileLine *next = line->next;
  line->prev->next = next;
  if (next != nullptr) next->prev = line->prev;
  free_node(line);
  return next;
}

ProfileLine *free_line(ProfileLine *line, HashHandle h) {
  removeTopicHashEntry(line, h);
  ProfileLine *next = line->next;
  free_node(line);
  return next;
}

void free_all_lines(ProfileLine *first, HashHandle h) {
  require(h != nullptr, "h", kPath);
  hash_empty(h);  // at once: every entry leads to one of these lines
  for (ProfileLine *line = first->next; line != nullptr;) {
    ProfileLine *next = line->next;
    free_node(line);
    line = next;
  }
  free_text(first);
  *first = {};
}

ProfileLine *search_topic(ProfileLine *first, std::string_view name, HashHandle h, int mode) {
  require(h != nullptr, "h", kPath);
  if (!is_case_sensitive(mode)) {
    ProfileLine *line = findTopicHashPtr(name, h);
    if (line != nullptr) return line;
  }
  for (ProfileLine *line = first; line != nullptr && line->txt != nullptr; line = line->next) {
    if (line->has_bracket && holds_topic(text_of(*line), name, mode)) return line;
  }
  return nullptr;
}

ProfileLine *search_entry(ProfileLine *line, std::string_view key, int mode) {
  for (; line != nullptr && line->txt != nullptr; line = line->next) {
    const std::string_view text = text_of(*line);
    // Kept: also an entry with "[" ends its topic, as monitors in the field read files.
    if (is_end_of_topic(*line)) return nullptr;
    if (may_hold_entry(text, key) && holds_entry(text, key, mode)) return line;
  }
  return nullptr;
}

ProfileLine *new_topic(ProfileLine *first, std::string_view name, HashHandle h) {
  ProfileLine *blank = first;
  while (blank->next != nullptr) blank = blank->next;
  if (blank->txt != nullptr) blank = new_node(blank);
  if (blank == nullptr) return nullptr;
  constexpr size_t kBrackets = 3;  // "[]\n"
  ProfileLine *topic = new_line(blank, name.size() + kBrackets);
  if (topic != nullptr) {
    *topic->txt = '[';
    char *end = std::copy(name.begin(), name.end(), topic->txt + 1);
    *end++ = ']';
    *end = '\n';
    note_text(topic, name.size() + kBrackets);
    if (store_text(blank, "", "\n", h) && hashNewTextVal(topic, h)) return topic;
    delete_line(topic, h);
  }
  delete_line(blank, h);
  return nullptr;
}

ProfileLine *new_entry(ProfileLine *topicLine, std::string_view key, std::string_view value, int mode) {
  ProfileLine *last = topicLine;
  while (last->next != nullptr && !is_white_space_line(text_of(*last->next)) && !is_topic(text_of(*last->next))) {
    last = last->next;
  }
  if (!complete_line(last, mode)) return nullptr;
  ProfileLine *line = new_line(last, key.size() + value.size() + kFormatRoom);
  if (line == nullptr) return nullptr;
  format_line(line->txt, key, value, mode);
  note_text(line, std::strlen(line->txt));
  return line;
}

void delete_topic(ProfileLine *topicLine, HashHandle h) {
  ProfileLine *line = delete_line(topicLine, h);
  while (line != nullptr && !is_topic(text_of(*line))) line = delete_line(line, h);
}

// --- reading

int take_line(LineReading *reading, char *text, size_t length) {
  const int mode = reading->record->mode;
  const std::string_view whole(text, length);
  const std::string_view line = reading->without_nul ? whole : before_nul(whole);
  const bool has_bracket = reading->bracket != nullptr ? text + length > reading->bracket : may_hold_topic(line);
  const bool topic = has_bracket && is_topic(line);
  const bool entry = !topic && is_entry_line(line);
  if (topic) reading->counter = 0;
  if (entry && reading->topic_missing && !append_tmp_topic(reading)) return 0;
  if (topic || entry) reading->topic_missing = false;

  if (entry && !is_keys(mode) && needs_key(line, mode)) {
    text = take_room(&reading->record->pool, kGeneratedKeyLength + length);
    if (text == nullptr) return 0;
    write_generated_key(text, reading->counter++);
    whole.copy(text + kGeneratedKeyLength, length);
    length += kGeneratedKeyLength;
  }
  ProfileLine *node = append_line(reading, text, length, has_bracket, line.size() < whole.size());
  if (node == nullptr) return 0;
  return topic ? index_topic(node, line, reading->record->hash) : 1;
}

void free_pool(LinePool *pool) {
  while (pool->pieces != nullptr) delete std::exchange(pool->pieces, pool->pieces->next);
  std::string().swap(pool->content);
  pool->left = 0;
}

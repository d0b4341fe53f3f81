#include "screen/sequences.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "util/numbers.h"

namespace {

constexpr char kEscape = '\033';
constexpr char kBell = '\a';

struct KnownSequence {
  std::string_view bytes;  // after Escape, without modifiers
  int key;
};

constexpr KnownSequence kKnown[] = {
    // clang-format off
  // bytes    key                   of
    {"[A",    kKeyUp},            // arrows, normal mode
    {"[B",    kKeyDown},
    {"[C",    kKeyRight},
    {"[D",    kKeyLeft},
    {"OA",    kKeyUp},            // application mode
    {"OB",    kKeyDown},
    {"OC",    kKeyRight},
    {"OD",    kKeyLeft},
    {"[a",    kKeyUp},            // rxvt with Shift
    {"[b",    kKeyDown},
    {"[c",    kKeyRight},
    {"[d",    kKeyLeft},
    {"Oa",    kKeyUp},            // rxvt with Control
    {"Ob",    kKeyDown},
    {"Oc",    kKeyRight},
    {"Od",    kKeyLeft},
    {"[H",    kKeyHome},          // xterm
    {"[F",    kKeyEnd},
    {"OH",    kKeyHome},
    {"OF",    kKeyEnd},
    {"[1~",   kKeyHome},          // VT220 (Find and Select there), PuTTY, the console
    {"[2~",   kKeyInsert},
    {"[3~",   kKeyDelete},
    {"[4~",   kKeyEnd},
    {"[5~",   kKeyPreviousPage},
    {"[6~",   kKeyNextPage},
    {"[7~",   kKeyHome},          // rxvt
    {"[8~",   kKeyEnd},
    {"[Z",    kKeyBackTab},
    {"[[A",   kKeyF0 + 1},
    {"[[B",   kKeyF0 + 2},
    {"[[C",   kKeyF0 + 3},
    {"[[D",   kKeyF0 + 4},
    {"[[E",   kKeyF0 + 5},
    {"OP",    kKeyF0 + 1},        // VT100, xterm
    {"OQ",    kKeyF0 + 2},
    {"OR",    kKeyF0 + 3},
    {"OS",    kKeyF0 + 4},
    {"[P",    kKeyF0 + 1},        // xterm with modifiers; with an R a terminal tells its cursor's position
    {"[Q",    kKeyF0 + 2},
    {"[S",    kKeyF0 + 4},
    {"[11~",  kKeyF0 + 1},        // VT220, rxvt, PuTTY
    {"[12~",  kKeyF0 + 2},
    {"[13~",  kKeyF0 + 3},
    {"[14~",  kKeyF0 + 4},
    {"[15~",  kKeyF0 + 5},
    {"[17~",  kKeyF0 + 6},
    {"[18~",  kKeyF0 + 7},
    {"[19~",  kKeyF0 + 8},
    {"[20~",  kKeyF0 + 9},
    {"[21~",  kKeyF10},
    {"[23~",  kKeyF0 + 11},
    {"[24~",  kKeyF0 + 12},
    {"OM",    kKeyEnter},         // keypad, application mode
    {"Op",    kKeyInsert},        // 0
    {"Oq",    kKeyEnd},
    {"Or",    kKeyDown},
    {"Os",    kKeyNextPage},
    {"Ot",    kKeyLeft},
    {"Ov",    kKeyRight},
    {"Ow",    kKeyHome},
    {"Ox",    kKeyUp},
    {"Oy",    kKeyPreviousPage},  // 9
    {"On",    kKeyDelete},        // .
    {"[200~", kPasteBegins},
    {"[201~", kPasteEnds},
    // clang-format on
};

bool is_control(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\177'; }
bool is_high(char c) { return static_cast<unsigned char>(c) >= 0x80; }

// Bytes of a sequence with so many of them, unless one before is no part of any.
size_t fixed_length(std::string_view bytes, size_t count) {
  const auto end = std::find_if(bytes.begin() + 2, bytes.end(), is_control);
  if (end != bytes.end()) return static_cast<size_t>(end - bytes.begin());
  return bytes.size() < count ? 0 : count;
}

// Escape "[", parameters, a last byte.
size_t control_length(std::string_view bytes) {
  constexpr size_t kConsoleKey = 4, kMouse = 6;
  if (bytes.substr(2, 1) == "[") return fixed_length(bytes, kConsoleKey);
  if (bytes.substr(2, 1) == "M") return fixed_length(bytes.substr(0, kMouse), kMouse);
  for (size_t at = 2; at < bytes.size(); ++at) {
    const char c = bytes[at];
    if (is_control(c) || is_high(c)) return at;
    if (c >= '@') return at + 1;
    if (c == '$' && is_whole_number(bytes.substr(2, at - 2))) return at + 1;  // rxvt with Shift
  }
  return 0;
}

// Escape "O", perhaps a modifier, a last byte.
size_t shifted_length(std::string_view bytes) {
  for (size_t at = 2; at < bytes.size(); ++at) {
    if (is_control(bytes[at]) || is_high(bytes[at])) return at;
    if (!is_digit(bytes[at]) && bytes[at] != ';') return at + 1;
  }
  return 0;
}

// What a terminal tells of itself: up to a bell, or to Escape and a backslash. No key is in it.
size_t string_length(std::string_view bytes) {
  const auto end = std::find_if(bytes.begin() + 2, bytes.end(), is_control);
  if (end == bytes.end()) return 0;
  const auto at = static_cast<size_t>(end - bytes.begin());
  if (*end == kBell) return at + 1;
  if (*end != kEscape) return at;
  return at + 1 == bytes.size() ? 0 : bytes[at + 1] == '\\' ? at + 2 : at;
}

size_t plain_length(std::string_view bytes) {
  switch (bytes[1]) {
    case '[':
      return control_length(bytes);
    case 'O':
      return shifted_length(bytes);
    case ']':
    case 'P':
    case '_':
      return string_length(bytes);
    default:
      return 2;  // Alt and a key
  }
}

// Alt puts an Escape before the key's own sequence.
size_t alt_bytes(std::string_view typed) { return typed.starts_with("\033\033") ? 1 : 0; }

// A sequence (without Escape) as the key sends it without modifiers.
std::string without_modifiers(std::string_view bytes) {
  if (bytes.size() < 3) return std::string(bytes);
  const char last = bytes.back();
  const std::string_view parameters = bytes.substr(1, bytes.size() - 2);
  const size_t split = parameters.find(';');
  const std::string_view first = parameters.substr(0, split);
  const bool has_second = split != std::string_view::npos;
  if (!is_whole_number(first) || (has_second && !is_whole_number(parameters.substr(split + 1))))
    return std::string(bytes);
  // rxvt tells modifiers by the last byte
  if (last == '~' || last == '^' || last == '$' || last == '@') return bytes.front() + std::string(first) + '~';
  // a letter's own number is 1; older terminals send the modifier alone
  if (has_second ? first == "1" : first.size() == 1) return {bytes.front(), last};
  return std::string(bytes);
}

}  // namespace

SequenceLength sequence_length(std::string_view typed) {
  const size_t alt = alt_bytes(typed);
  const std::string_view bytes = typed.substr(alt);
  if (bytes.size() == 1) return {0, Patience::brief};
  if (alt != 0 && bytes[1] != '[' && bytes[1] != 'O') return {1, Patience::none};
  const size_t length = plain_length(bytes);
  return length == 0 ? SequenceLength{0, Patience::ample} : SequenceLength{alt + length, Patience::none};
}

size_t unfinished_length(std::string_view typed) { return typed == "\033\033" ? 1 : typed.size(); }

int key_of_sequence(std::string_view sequence) {
  if (sequence == "\033") return kKeyEscape;
  const std::string bytes = without_modifiers(sequence.substr(1 + alt_bytes(sequence)));
  const auto *const known = std::ranges::find(kKnown, bytes, &KnownSequence::bytes);
  return known == std::end(kKnown) ? kNoKey : known->key;
}

bool is_known_key(int key) { return std::ranges::count(kKnown, key, &KnownSequence::key) != 0; }

// What terminals send for their keys: sequences of bytes that begin with Escape. How long one is, and which key.
#pragma once

#include <cstddef>
#include <string_view>

// Keys as the terminal library numbers them.
inline constexpr int kKeyControlH = 8;  // Backspace on some terminals
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyLineFeed = 10;
inline constexpr int kKeyControlL = 12;
inline constexpr int kKeyReturn = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeyHelp = '?';
inline constexpr int kKeyDown = 258;
inline constexpr int kKeyUp = 259;
inline constexpr int kKeyLeft = 260;
inline constexpr int kKeyRight = 261;
inline constexpr int kKeyHome = 262;
inline constexpr int kKeyBackspace = 263;
inline constexpr int kKeyF0 = 264;  // the other function keys follow it
inline constexpr int kKeyF10 = kKeyF0 + 10;
inline constexpr int kKeyDelete = 330;
inline constexpr int kKeyInsert = 331;
inline constexpr int kKeyNextPage = 338;
inline constexpr int kKeyPreviousPage = 339;
inline constexpr int kKeyEnter = 343;  // on the keypad
inline constexpr int kKeyBackTab = 353;
inline constexpr int kKeyEnd = 360;
// And what is none of its keys.
inline constexpr int kNoKey = 0;
inline constexpr int kKeyUnfit = 0x10000;  // a character that texts can't hold
inline constexpr int kPasteBegins = 0x10001;
inline constexpr int kPasteEnds = 0x10002;

// How long to wait for the next byte of a sequence that is not whole.
enum class Patience {
  none,
  brief,  // it may be Escape alone, or twice
  ample,  // it is a sequence, however slow the line
};
struct SequenceLength {
  size_t bytes;  // 0: more must come
  Patience patience;
};
// The length of the sequence that begins `typed`, whose first byte is Escape. It never depends on bytes in the middle
// of a long one: they may be left out.
SequenceLength sequence_length(std::string_view typed);
// The same when nothing more came in time. Of two Escapes the first is one for itself.
size_t unfinished_length(std::string_view typed);
// The key of a whole sequence, whatever modifiers were held with it; kNoKey for one that is not known.
int key_of_sequence(std::string_view sequence);
// Whether some sequence is known for the key.
bool is_known_key(int key);

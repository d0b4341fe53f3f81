// Every key that is read, and the editing of one line.
#pragma once

#include <string>

#include "screen/scrio.h"

// Keys as the terminal library numbers them.
inline constexpr int kKeyControlH = 8;  // Backspace on some terminals
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyLineFeed = 10;
inline constexpr int kKeyReturn = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeyHelp = '?';
inline constexpr int kKeyDown = 258;
inline constexpr int kKeyUp = 259;
inline constexpr int kKeyLeft = 260;
inline constexpr int kKeyRight = 261;
inline constexpr int kKeyHome = 262;
inline constexpr int kKeyBackspace = 263;
inline constexpr int kKeyF10 = 274;
inline constexpr int kKeyNextPage = 338;
inline constexpr int kKeyPreviousPage = 339;
inline constexpr int kKeyEnter = 343;  // on the keypad
inline constexpr int kKeyEnd = 360;
// True for the three codes that an Enter key may send.
constexpr bool is_enter(int key) { return key == kKeyLineFeed || key == kKeyReturn || key == kKeyEnter; }

// The key, 0 when a read failed. A resize of the terminal is no key; when the terminal is gone, the program ends. A
// character of several bytes arrives byte by byte, in the encoding of texts; what is no whole character, or one that
// texts can't hold, gives kKeyUnfit once.
int inkey();
int winkey(WINDOW *win);
inline constexpr int kKeyUnfit = 0x10000;
// The bytes of the character whose first one was read last, for a reader that takes characters whole.
std::string take_rest_of_character();
// Waits for any key, or character.
void wait_for_key(WINDOW *win);
// Reads a key and echoes it where the cursor stood before.
int inkeye(int32_t attr);
// One read without waiting: the raw value, -1 when there is no key.
int inkeyx();
// Waits; the low 8 bits of the key, bits 8 to 15 in *scan when given.
int inkeysys(int *scan);
// 1 when a key waits (it stays to be read), else 0. Leaves the standard screen in no-delay mode.
int kbhit();
// Waits, busy, for n seconds of processor time. Returns 0.
int time_wait(int n);
// Drops every key that has arrived but was not read yet.
void drop_typed_keys();

// Edits the text of `buf` (280 bytes) in a field of `length` cells; returns the key that ended it. See the differences:
// the window form ends on every key that does not edit and leaves the window in no-delay mode; the standard-screen form
// ends on 13 and 27 only, shows at most `length` characters and blanks one cell more.
int finputs(int row, int col, int length, int32_t attr, char *buf);
int wfinputs(WINDOW *win, int row, int col, int length, int32_t attr, char *buf);

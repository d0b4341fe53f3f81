// Every key that is read, and the editing of one line.
#pragma once

#include <string>

#include "screen/scrio.h"
#include "screen/sequences.h"

// True for the three codes that an Enter key may send.
constexpr bool is_enter(int key) { return key == kKeyLineFeed || key == kKeyReturn || key == kKeyEnter; }

// The key, 0 when a read failed. While it is waited for, the terminal shows all that was drawn, its cursor on the
// window's. A resize of the terminal is no key; when the terminal is gone, the program ends. Control-L paints
// everything anew. A sequence of bytes that is no known key beeps, as a paste does: neither is a key. A character of
// several bytes arrives byte by byte, in the encoding of texts; what is no whole character, or one that texts can't
// hold, gives kKeyUnfit once.
int inkey();
int winkey(WINDOW *win);
// As winkey, for who edits a text: a paste arrives, too, its printable characters up to its first line end.
int editkey(WINDOW *win);
// Beeps for what was typed and can't be taken; in a paste once.
void refuse_typed();
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

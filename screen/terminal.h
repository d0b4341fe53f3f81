// The terminal that the screen is shown on: its signals, its input, and giving it back when the program is stopped. For
// scrio only.
#pragma once

#include <sys/types.h>

// Remembers the line settings and takes the signals that end the program and the one that tells of a new size; those
// that are ignored, or taken already, stay as they are. A file that grows too large is no signal any more. Before
// curses starts, which then leaves them alone.
void watch_terminal();
// The line as the screens need it: Control-S is a key, and pastes are told from typing, until curses ends or the
// program is stopped. Once curses runs.
void prepare_line();
// Whether the terminal is to tell what is pasted. prepare_line does it at the start.
void mark_pastes(bool on);
// The device that keys come from, and the milliseconds after which an Escape that came from it alone is the key: on a
// serial line the bytes of a sequence come one by one.
dev_t input_device();
int escape_wait(dev_t device);
// Makes ready what a signal handler writes to give the terminal back. Once curses runs, and after a change of size.
void prepare_giving_back();
// The terminal has been given back in an orderly way: nothing is left to do for a signal.
void forget_giving_back();

enum class Arrival {
  input,    // or the end of it: reading will not wait
  nothing,  // the time is over
  signal,
};
// Waits for input, `limit` milliseconds at most (-1: without limit).
Arrival wait_for_input(int limit);
// The signal that asked the program to end where it waits for a key; 0: none. And its end by it, once the terminal is
// given back.
int signal_to_leave();
void end_by_left_signal();
// True when no input can ever come: the terminal is hung up, or what stands in for it is at its end.
bool input_has_ended();

struct TerminalSize {
  int rows;  // 0 when it did not change, or can't be told
  int columns;
};
// The terminal's size, if it changed since the last call.
TerminalSize take_new_size();

// Preconditions, tested in every build type.
#pragma once

// Called before the program stops at a broken precondition; the screen layer plants the function that ends curses here.
// Null while there is no screen to give back.
extern void (*give_terminal_back)();

// Gives the terminal back, prints "Assertion failed: <condition>, <path>" to standard error and aborts.
[[noreturn]] void stop_at(const char *condition, const char *path);

// Stops the program when `holds` is false. `path` is the module's source path without an extension, as "corbix/xhash".
inline void require(bool holds, const char *condition, const char *path) {
  if (!holds) stop_at(condition, path);
}

// The way through the menus of the program in a Terminal.
#pragma once

#include <vector>

#include "tools/terminal/terminal.h"

// Entries of the session menu.
inline constexpr int kUps = 1, kSystem = 2, kPaths = 3, kEvents = 4, kMail = 5, kSpacer = 6, kSave = 7, kLeave = 8;

// Chooses an entry, from 1, of a menu whose first entry is selected.
inline void choose(Terminal &t, int entry) {
  std::vector<Key> keys(static_cast<size_t>(entry - 1), Down);
  keys.push_back(Enter);
  t.press(keys);
}

// The session menu of a new configuration.
inline void open_new_session(Terminal &t, const Start &how = {}) {
  t.start(how);
  t.press({Enter, Down, Enter});
}

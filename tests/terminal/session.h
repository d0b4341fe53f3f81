// What the screen tests of the program share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/terminal/terminal.h"

// Entries of the session menu.
inline constexpr int kUps = 1, kSystem = 2, kPaths = 3, kEvents = 4, kMail = 5, kSpacer = 6, kSave = 7, kLeave = 8;

// The session menu of a new configuration.
inline void open_new_session(Terminal &t, const Start &how = {}) {
  t.start(how);
  t.press({Enter, Down, Enter});
}

// Chooses an entry, from 1, of a menu whose first entry is selected.
inline void choose(Terminal &t, int entry) {
  std::vector<Key> keys(static_cast<size_t>(entry - 1), Down);
  keys.push_back(Enter);
  t.press(keys);
}

// All that the screen shows.
inline std::string screen(Terminal &t) {
  std::string rows;
  for (int row = 0; row < 24; row++) rows += t.row(row) + "\n";
  return rows;
}

// The value of a key in the saved configuration.
inline std::string setting(const Terminal &t, const std::string &key) {
  const std::string file = "\n" + t.file("ups.cfg");
  const size_t start = file.find("\n" + key + "=");
  if (start == std::string::npos) return "(none)";
  const size_t value = start + key.size() + 2;
  return file.substr(value, file.find('\n', value) - value);
}

// Saves from the session menu and ends the program.
inline void save_and_exit(Terminal &t) {
  choose(t, kSave);
  t.settle();
  if (t.find("Exit Configuration").row >= 0) choose(t, 2);
  EXPECT_EQ(t.wait_exit(), 1);
}

// What the screen tests of the program share.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tools/terminal/menus.h"

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

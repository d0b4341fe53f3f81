// What keyboards, mice, terminals and pastes send, on many types of terminal: no screen closes and no text changes by
// what is no key of ours, and the cursor tells where one is.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <tuple>

#include "tests/keyboards.h"
#include "tests/terminal/session.h"

namespace {

TEST(Keyboard, WhatIsNoKeyOfAScreenBeepsAndChangesNothing) {
  const std::vector<int> kRefused = {kKeyDelete, kKeyInsert, kKeyF0 + 1, kKeyBackTab, kKeyPreviousPage, kKeyNextPage};
  const struct {
    std::vector<Key> way;
    const char *title;
    std::vector<int> refused;  // keys that the screen does not take
    bool is_box = false;       // known keys close it
  } kScreens[] = {
      {{}, "KAVLON Pro Configuration", {}},
      {{Down, Down, Enter}, "Path for textfile", kRefused},
      {{Enter, Down, Down, Down, Down, Down, Down, Enter}, "Select UPS modelname", {}},
      {{Enter, F10}, "You must select", {}, true},
  };
  for (const std::string terminal : kTerminalTypes) {
    for (const auto &[way, title, refused, is_box] : kScreens) {
      Terminal t;
      open_new_session(t, {.environment = {"TERM=" + terminal}});
      t.press(way);
      for (const auto &[key, sequences] : kSentByKeyboards) {
        const bool is_refused = key == kNoKey || std::ranges::count(refused, key) > 0;
        if (key == kKeyEnter || key == kKeyF10 || (is_box && !is_refused)) continue;
        for (const std::string sequence : sequences) {
          const auto before = std::tuple(t.screen(), t.cursor(), t.bells() + is_refused);
          t.type("\033" + sequence);
          const auto after = std::tuple(t.screen(), t.cursor(), t.bells());
          EXPECT_EQ(std::get<2>(after), std::get<2>(before)) << terminal << title << sequence;
          EXPECT_TRUE(!is_refused || after == before) << terminal << title << sequence << t.dump();
        }
      }
      EXPECT_GE(t.find(title).row, 0) << terminal << t.dump();
    }
  }
}

// Pieces come 50 ms apart. Escape alone has less time on a pseudo-terminal, unless the person wants it otherwise.
void type_slowly(Terminal &t, std::string_view bytes, size_t first_piece) {
  t.type(bytes.substr(0, first_piece));
  for (const char byte : bytes.substr(first_piece)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    t.type({&byte, 1});
  }
}

TEST(Keyboard, ASlowLineCutsNoSequence) {
  for (const auto &[setting, first_piece] : {std::pair("HOME=/", 2), std::pair("ESCDELAY=400", 1)}) {
    Terminal t;
    open_new_session(t, {.environment = {setting}});
    const std::string screen = t.screen();
    int bells = t.bells();
    for (const std::string_view unknown : {"\033[24;80R", "\033[M 12", "\033]0;a\033\\", "\033[[Z"}) {
      type_slowly(t, unknown, static_cast<size_t>(first_piece));
      EXPECT_EQ(t.bells(), ++bells) << unknown.substr(1);
      EXPECT_EQ(t.screen(), screen);
    }
    for (const std::string_view down : {"\033[B", "\033OB", "\033[1;5B"}) {
      type_slowly(t, down, static_cast<size_t>(first_piece));
    }
    EXPECT_EQ(t.cursor().row, 13);
    t.type("\033[");  // alone it is Alt and "[", after a while
    t.settle();
    EXPECT_EQ(t.bells(), ++bells);
    t.type("\033\033");  // leaves this menu, and not the first one
    t.see("Create a new configuration file");
  }
}

TEST(Keyboard, APasteGoesIntoAFieldUpToItsLineEndAndNowhereElse) {
  constexpr int kRow = 9, kColumn = 12, kCells = 30;
  const std::string lines = "/a/b\rc\rd\re\rf\rg\rh\ri\rj\rk\rl\rm", begins = "\033[200~", ends = "\033[201~";
  const struct {
    std::string text, field;
    int beeps;
  } kPastes[] = {
      {begins + "/var/log" + ends, "/var/log", 0},
      {begins + "/var log\r" + ends, "/var log", 0},
      {begins + lines + ends, "/a/b", 1},
      {begins + "/x\t\033[B\033\001?\177\bÿ" + ends, "/xÿ", 1},
      {begins + std::string(1 << 20, 'y') + ends, std::string(kCells, 'y'), 1},
      {std::string(5000, 'x'), std::string(kCells, 'x'), 5000 - kCells},  // a terminal that does not tell
  };
  Terminal t;
  open_new_session(t);
  int bells = t.bells();
  t.type(begins + lines + ends);
  EXPECT_EQ(t.bells(), ++bells);
  EXPECT_EQ(t.cursor().row, 10);
  choose(t, kPaths);
  for (const auto &[text, field, beeps] : kPastes) {
    t.type(std::string(kCells, ' '));
    t.press({Home});
    t.type(text);
    ASSERT_TRUE(t.settle(60000));
    EXPECT_EQ(t.text(kRow, kColumn, kCells).substr(0, field.size()), field);
    EXPECT_EQ(t.cursor().row, kRow);
    EXPECT_EQ(t.bells(), bells += beeps) << text.substr(0, 50);
    t.press({Home});
  }
  t.type(begins + "lost end");  // what is typed after a while is typed
  std::this_thread::sleep_for(std::chrono::milliseconds(1200));
  t.press({Escape});
  t.see("Set Path values");
  t.press({Escape, Down, Enter});
  t.wait_exit();
  const std::string written = t.written();
  EXPECT_NE(written.substr(written.rfind("\033[?2004h")).find("\033[?2004l"), std::string::npos);
}

TEST(Cursor, StandsOnTheChosenEntryOrTheTextBeforeEachKey) {
  const struct {
    std::vector<Key> keys;
    const char *text;
    bool is_edited = false;
  } kSteps[] = {
      {{}, "Create a new"},
      {{Down}, "Exit Configuration"},
      {{Up, Enter, Down, Enter}, "Set UPS values"},
      {{Up}, "Exit Menu"},
      {{Down, Enter}, "Unknown", true},
      {{F10}, "You must select"},
      {{Space, ShiftQuestion}, "Enter the UPS Server"},
      {{Escape, Down, Down, Down, Down, Down, Down, Enter}, "Halvoris 500VA"},
      {{PageUp, Down, Escape, Escape, Down, Down, Down, Enter, Down, Down}, "UPS/System shutdown"},
      {{Enter}, "Sends the messageid"},
  };
  for (const std::string terminal : {"xterm-256color", "vt100", "vt220"}) {
    const bool has_colours = terminal == "xterm-256color";
    Terminal t;
    t.start({.environment = {"TERM=" + terminal}});
    for (const auto &[keys, text, is_edited] : kSteps) {
      t.press(keys);
      EXPECT_EQ(t.cursor().row, t.find(text).row) << terminal << text << t.dump();
      const bool is_list_entry = t.text(t.cursor().row, t.cursor().column - 1, 2) == "│ ";
      EXPECT_TRUE(is_list_entry || t.cursor() == t.find(text)) << terminal << text << t.dump();
      EXPECT_EQ(t.cursor_visible(), is_edited || !has_colours) << terminal << text;
    }
  }
}

TEST(Start, WithoutATerminalThatShowsScreensOneLineSaysSo) {
  for (const char *command : {"</dev/null", "| cat", "<&-", ">/dev/null", ">&-"}) {
    Terminal t;
    t.start({.options = {"-c", std::string("\"$0\" ") + command + "; echo status $?", KAVSETUP_PROGRAM},
             .program = "/bin/sh"});
    t.wait_exit();
    constexpr char kLine[] = "kavsetup: standard input and output must be a terminal that can move its cursor\r\n";
    EXPECT_EQ(t.written(), kLine + std::string(command[0] == '|' ? "status 0\r\n" : "status 1\r\n")) << command;
  }
  for (const char *type : {"dumb", "no-such-type"}) {
    Terminal t;
    t.start({.environment = {"TERM=" + std::string(type)}});
    EXPECT_EQ(t.wait_exit(), 1);
    EXPECT_EQ(t.written().find('\033'), std::string::npos) << type;
  }
}

}  // namespace

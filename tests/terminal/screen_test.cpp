// The screen layer in a real terminal: what its menus and boxes show and give back, and what happens to the terminal.
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>

#include "tests/terminal/terminal.h"

namespace {

Start demo(bool japanese = false, const char *charset = "UTF-8") {
  Start how = {.program = SCREEN_DEMO, .charset = charset};
  if (japanese) how.options = {"-japanese"};
  return how;
}

// In Japanese on an EUC-JP terminal, in a locale made for this one.
Start euc_jp_demo(const Terminal &t) {
  EXPECT_EQ(std::system(("localedef -i ja_JP -f EUC-JP " + t.path("ja_JP.eucJP")).c_str()), 0);
  Start how = demo(true, "EUC-JP");
  how.environment = {"LOCPATH=" + t.directory(), "LC_ALL=ja_JP.eucJP"};
  return how;
}

// Chooses an entry of the demo's menu, by its position from 0.
void choose(Terminal &t, int entry) {
  for (int i = 0; i < entry; ++i) t.press({Down});
  t.press({Enter});
}

std::string screen(Terminal &t) {
  t.settle();
  const std::string rows = t.dump();
  return rows.substr(0, rows.find("cursor"));  // where a hidden one stands does not matter
}

TEST(Menus, DownWritesFewBytesAndEscapeIsQuick) {
  Terminal t;
  t.start(demo());
  t.press({Down});
  EXPECT_LT(t.measure(Up).bytes, 80u);
  t.press({Enter, Down});
  EXPECT_LT(t.measure(Up).bytes, 160u);
  EXPECT_LT(t.measure(Escape).first_output, 50);
}

TEST(Menus, KeypadEnterOnTerminalsThatDoNotDescribeIt) {
  for (const char *term : {"vt100", "screen-256color", "linux", "tmux-256color"}) {
    Terminal t;
    Start how = demo();
    how.environment = {std::string("TERM=") + term};
    t.start(how);
    choose(t, 5);
    t.type("\033OM");
    EXPECT_TRUE(t.see("343")) << term;
  }
}

TEST(Windows, EveryClosedOneUncoversWhatWasThere) {
  for (const bool japanese : {false, true}) {
    Terminal t;
    t.start(demo(japanese));
    for (const int entry : {0, 1, 3}) {
      choose(t, entry);
      t.press({Escape});  // its result stands on the last row from now on
      const std::string before = screen(t);
      choose(t, entry);
      EXPECT_NE(screen(t), before) << entry;
      t.press({Escape, ShiftQuestion, Escape});
      EXPECT_EQ(screen(t), before) << entry;
    }
  }
}

TEST(Japanese, OneByteIsOneColumnInBothCharsets) {
  Terminal utf8, euc;
  utf8.start(demo(true));
  euc.start(euc_jp_demo(euc));
  const std::string first = screen(utf8);
  EXPECT_EQ(screen(euc), first);
  EXPECT_EQ(utf8.text(17, 4, 72), "                            Exception 設定                              ");
  for (Terminal *t : {&utf8, &euc}) {
    choose(*t, 4);
    t->press({Backspace});  // half of a character is left
    EXPECT_EQ(t->text(12, 20, 16), "│ 設?           ");
    t->press({Backspace});
    t->type("あ漢ｱ字x");  // a half-width kana does not fit
    EXPECT_EQ(t->text(12, 20, 16), "│ 設あ漢字x     ");
    EXPECT_EQ(t->bells(), 1);
    if (t == &utf8) t->type("€\xE3\x81\xE3\x81\x82\xE3");  // not in EUC-JP, broken ones
    t->type("y");
    EXPECT_EQ(t->bells(), t == &utf8 ? 4 : 1);
    EXPECT_EQ(t->cursor(), (Position{12, t == &utf8 ? 34 : 32}));
    t->press({Up});
    EXPECT_TRUE(t->see(t == &utf8 ? "key 259 text '設あ漢字xあy'#" : "key 259 text '設あ漢字xy'#"));
  }
}

TEST(Japanese, BytesGoOutAsTheyAreWhereTheLocaleLacksIt) {
  Terminal t;
  Start how = demo(true);
  how.environment = {"LC_ALL=C"};
  t.start(how);
  EXPECT_NE(t.written_since(0).find("KAVLON \xC0\xDF\xC4\xEA"), std::string::npos);
}

TEST(TerminalSize, ComesBackAndEntersNoKey) {
  Terminal t;
  t.start(demo());
  choose(t, 5);
  t.type("x");
  choose(t, 0);
  const std::string before = screen(t);
  for (const auto &[rows, columns] : {std::pair(10, 40), std::pair(24, 79), std::pair(50, 132), std::pair(24, 80)}) {
    t.resize(rows, columns);
    t.settle();
  }
  EXPECT_EQ(screen(t), before);
  t.resize(40, 100);
  EXPECT_EQ(t.text(2, 3, 74) + t.row(30), t.text(2, 3, 1) + t.text(2, 4, 72) + "┐");
}

TEST(Stopping, GivesTheTerminalBackAndDiesByTheSignal) {
  for (const int number : {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGABRT}) {
    Terminal t;
    t.start(demo());
    choose(t, 0);
    t.send_signal(number);
    EXPECT_EQ(t.wait_exit(), 128 + number);
    EXPECT_TRUE(t.given_back()) << number;
  }
}

TEST(Stopping, ByAFailedConditionAndAnException) {
  const std::pair<int, const char *> cases[] = {{6, "Assertion failed: entry != 7, tests/screen_demo"}, {7, "thrown"}};
  for (const auto &[entry, message] : cases) {
    Terminal t;
    t.start(demo());
    choose(t, entry);
    EXPECT_EQ(t.wait_exit(), 128 + SIGABRT);
    EXPECT_TRUE(t.see(message) && t.given_back());
  }
}

TEST(Stopping, SuspendedAndResumedShowsTheSameScreen) {
  Terminal t;
  t.start(demo(true));
  choose(t, 3);
  const std::string before = screen(t);
  t.press({ControlZ});
  EXPECT_TRUE(t.given_back());
  t.send_signal(SIGCONT);
  EXPECT_EQ(screen(t), before);
  EXPECT_FALSE(t.cursor_visible());
  t.press({Down, Enter});
  EXPECT_EQ(t.text(23, 0, 8), "answer 2");
}

TEST(Stopping, EndsWhenTheTerminalIsGone) {
  for (const std::string script : {"exec ", "trap '' HUP; exec "}) {
    Terminal t;
    t.start({.options = {"-c", script + SCREEN_DEMO}, .program = "/bin/sh"});
    t.hang_up();
    EXPECT_EQ(t.wait_exit(1000), 1);
  }
  Terminal t;
  t.start({.options = {"-c", std::string("exec " SCREEN_DEMO " </dev/null")}, .program = "/bin/sh"});
  EXPECT_EQ(t.wait_exit(1000), 1);
  EXPECT_TRUE(t.given_back());
}

}  // namespace

#include "tests/terminal/terminal.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

Start echo_keys() { return {.program = ECHO_KEYS}; }

TEST(TestTerminal, ShowsTextColoursAndTheCursor) {
  Terminal t;
  const Timing started = t.start(echo_keys());
  EXPECT_GT(started.first_output, 0);
  EXPECT_LE(started.first_output, started.last_output);
  EXPECT_LE(started.last_output, started.idle);
  EXPECT_EQ(t.find("KEYS"), (Position{1, 30}));
  EXPECT_EQ(t.text(0, 0, 2) + t.text(0, 79, 1) + t.text(23, 79, 1), "\u250c\u2500\u2510\u2518");
  const Cell title = t.cell(1, 30), plain = t.cell(5, 5);
  EXPECT_TRUE(title.bold && title.reverse && !plain.bold && !plain.reverse);
  EXPECT_EQ(plain.foreground, kYellow);
  EXPECT_EQ(plain.background, kBlue);
  EXPECT_EQ(t.cursor(), (Position{2, 2}));
  t.type("bc");
  EXPECT_EQ(t.text(2, 2, 6), "98 99 ");
  EXPECT_EQ(t.bells(), 1);
  EXPECT_FALSE(t.cursor_visible());
  EXPECT_LT(t.measure(Key::Tab).bytes, 100u);
}

TEST(TestTerminal, KeysArriveAsThemselvesAndEscapeAlone) {
  Terminal t;
  for (int i = 0; i < 5; i++) {
    t.start(echo_keys());
    t.press({Up, Escape, Down, Escape, Escape, KeypadEnter, Escape});
    t.type("OB");
    t.press({Escape});
    t.type("[A");
    t.press({Home, End, PageUp, PageDown, Backspace});
    EXPECT_EQ(t.text(2, 2, 74), "259 27 258 27 27 343 27 79 66 27 91 65 262 360 339 338 263                ");
  }
}

TEST(TestTerminal, SettlesWhenASlowProgramIsDone) {
  Terminal t;
  t.start(echo_keys());
  t.type("sx");
  EXPECT_NE(t.dump().find(" 2 \u2502                      "), std::string::npos);
  EXPECT_EQ(t.text(2, 2, 8), "115 120 ");
  EXPECT_TRUE(t.see_not("27"));
}

TEST(TestTerminal, TellsWhetherTheTerminalWasGivenBack) {
  Terminal t;
  t.start(echo_keys());
  EXPECT_FALSE(t.given_back());
  t.press({F10});
  EXPECT_EQ(t.wait_exit(), 3);
  EXPECT_TRUE(t.given_back());
  t.start(echo_keys());
  t.send_signal(SIGKILL);
  EXPECT_EQ(t.wait_exit(), 128 + SIGKILL);
  EXPECT_FALSE(t.given_back());
  t.start(echo_keys());
  t.hang_up();
  EXPECT_EQ(t.wait_exit(), 128 + SIGHUP);
}

TEST(TestTerminal, PastesMoreThanTheLineHolds) {
  Terminal t;
  t.start(echo_keys());
  t.paste(std::string(49999, 'x') + "#");
  EXPECT_EQ(t.text(22, 2, 10), "50000 keys");
}

TEST(TestTerminal, KeepsADirectoryOfItsOwn) {
  std::string directory;
  {
    Terminal t;
    directory = t.directory();
    t.start({.options = {"-c", "cat in.txt; pwd; echo $NAME $TERM > out.txt; exit 7"},
             .environment = {"NAME=me", "TERM=vt100"},
             .files = {{"in.txt", "hello\n"}},
             .program = "/bin/sh"});
    EXPECT_EQ(t.wait_exit(), 7);
    EXPECT_TRUE(t.see("hello") && t.see(directory));
    EXPECT_EQ(t.file("out.txt"), "me vt100\n");
  }
  EXPECT_NE(access(directory.c_str(), F_OK), 0);
}

}  // namespace

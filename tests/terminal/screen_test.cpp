// The screen layer in a real terminal: what sessions of the program do not come to.
#include <gtest/gtest.h>
#include <signal.h>

#include "tests/terminal/terminal.h"

namespace {

TEST(Keys, KeypadEnterOnTerminalsThatDoNotDescribeIt) {
  for (const std::string term : {"vt100", "screen-256color", "linux", "tmux-256color"}) {
    Terminal t;
    t.start({.environment = {"TERM=" + term}, .program = SCREEN_DEMO});
    t.type("\033OM");
    EXPECT_TRUE(t.see("343")) << term;
  }
}

TEST(LineInput, OfJapaneseHalvesAndBrokenCharacters) {
  Terminal t;
  t.start({.options = {"line"}, .program = SCREEN_DEMO});
  t.press({Backspace});  // half of a character is left
  EXPECT_EQ(t.text(2, 2, 14), "設?           ");
  t.press({Backspace});
  t.type("あ漢ｱ字x");  // a half-width kana does not fit
  EXPECT_EQ(t.text(2, 2, 14), "設あ漢字x     ");
  EXPECT_EQ(t.bells(), 1);
  t.type("€\xE3\x81\xE3\x81\x82\xE3y");  // not in EUC-JP, broken ones
  EXPECT_EQ(t.bells(), 4);
  EXPECT_EQ(t.cursor(), (Position{2, 14}));
  t.press({Up});
  EXPECT_TRUE(t.see("key 259 text '設あ漢字xあy'#"));
}

TEST(Stopping, ByAFailedConditionAndAnException) {
  const std::pair<std::string, const char *> cases[] = {
      {"assertion", "Assertion failed: what != assertion, tests/screen_demo"}, {"exception", "thrown"}};
  for (const auto &[option, message] : cases) {
    Terminal t;
    t.start({.options = {option}, .program = SCREEN_DEMO});
    EXPECT_EQ(t.wait_exit(), 128 + SIGABRT);
    EXPECT_TRUE(t.see(message) && t.given_back());
  }
}

TEST(Stopping, EndsWhenTheTerminalIsGone) {
  for (const std::string script : {"exec ", "trap '' HUP; exec "}) {
    Terminal t;
    t.start({.options = {"-c", script + SCREEN_DEMO}, .program = "/bin/sh"});
    t.hang_up();
    EXPECT_EQ(t.wait_exit(1000), 1);
  }
  Terminal t;
  t.start({.options = {"-c", "exec " SCREEN_DEMO " </dev/null"}, .program = "/bin/sh"});
  EXPECT_EQ(t.wait_exit(1000), 1);
  EXPECT_TRUE(t.given_back());
}

}  // namespace

// Random keys over all screens, for as long as wanted: no crash, no hang, memory and descriptors stay constant.
//   KAV_SOAK_KEYS    keys in each language (default 2000)
//   KAV_SOAK_SEED    another course of keys
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/terminal/ports.h"
#include "tests/terminal/session.h"

namespace {

int number_in_environment(const char *name, int otherwise) {
  const char *text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

// What a process holds.
struct Holdings {
  long memory = 0;  // resident, kB
  long descriptors = 0;
};

Holdings holdings_of(const std::string &process) {
  std::ifstream pages(process + "/statm");
  long memory = 0;
  pages >> memory >> memory;
  return {memory * 4, std::distance(std::filesystem::directory_iterator(process + "/fd"), {})};
}

// A sanitizer keeps freed memory back: how much there is says nothing then.
bool is_sanitized(const std::string &process) {
  std::ifstream maps(process + "/maps");
  return std::string(std::istreambuf_iterator<char>(maps), {}).find("asan") != std::string::npos;
}

// clang-format off
constexpr Key kKeys[] = {Enter, Enter, Enter, Enter, KeypadEnter, Escape, Space, ShiftQuestion, Tab, ShiftTab, Up, Up,
  Down, Down, Down, Left, Right, Home, End, PageUp, F1, F10, Delete, F2, Backspace, Insert, Down, ControlL, PageDown};
constexpr const char *kTexts[] = {"60", "/dev/ttyS1", "SHUTDOWN(\"60\")O;", "[", "|", "\"", "=", ";", "#", "%s%n",
  "漢字", "ｱ", "€", "yes", "default", "99999999999999999999", "-1", "é", "\xE3\x81", "\xFF\xFE", "\xE3", "\xC0\x80",
  "\xED\xA0\x80", "\033[31m", "\033[200~x\033[201~", "\033[99;99H", "\033]0;title\007", "\033OZ", "\033[1;5A",
  "\033[<0;1;1M", "\2331m", "\001\002\005\006\007", "\016\017\020\022\024\025", "\033\033\033"};
// clang-format on

struct Soak {
  Terminal t;
  std::mt19937 random{static_cast<unsigned>(number_in_environment("KAV_SOAK_SEED", 1))};
  size_t below(size_t limit) { return random() % limit; }
  // Bytes of any kind, but for those that end, suspend or stop the program.
  std::string burst(size_t size) {
    std::string bytes(size, ' ');
    for (char &c : bytes) c = static_cast<char>(below(6) == 0 ? below(256) : ' ' + below(95));
    for (const char of_the_line : {'\003', '\034', '\032', '\023'}) std::ranges::replace(bytes, of_the_line, '.');
    return bytes;
  }
};

// A key, or a few that a person can't press one by one, or what a terminal does besides.
void press_something(Soak &s) {
  const size_t kind = s.below(100);
  if (kind < 60) s.t.press({kKeys[s.below(std::size(kKeys))]});
  if (kind >= 60 && kind < 85) s.t.type(std::string(1, static_cast<char>(' ' + s.below(95))));
  if (kind >= 85 && kind < 95) s.t.type(kTexts[s.below(std::size(kTexts))]);
  if (kind == 95 || kind == 96) s.t.type(s.burst(s.below(2000) + 1));
  if (kind == 97) {
    s.t.resize(static_cast<int>(s.below(60) + 1), static_cast<int>(s.below(150) + 1));
    s.t.settle();
    s.t.resize(24, 80);
  }
  if (kind == 98) {
    s.t.press({ControlZ});
    s.t.settle();
    s.t.send_signal(SIGCONT);
  }
  if (kind == 99) s.t.send_signal(SIGWINCH);
}

// Leads the session to where most screens are.
void press_next(Soak &s) {
  const std::string screen = s.t.dump();
  const auto shows = [&](const char *english, const char *japanese) {
    return screen.find(english) != std::string::npos || screen.find(japanese) != std::string::npos;
  };
  if (shows("Create a new configuration file", "新しい設定ファイルを作成")) {
    std::filesystem::remove(s.t.path("ups.cfg"));  // or no new session could begin
    s.t.press({Enter});
  } else if (shows("Skip automatic probe", "自動検出を省略")) {
    choose(s.t, s.below(5) == 0 ? 1 : 2);
  } else if (shows("KAVLON Pro Configuration", "KAVLON Pro 設定一覧") && s.below(4) != 0) {
    choose(s.t, static_cast<int>(s.below(kMail) + 1));
  } else if (shows("Value must be in range:", "値は次の範囲") && s.below(3) == 0) {
    s.t.press({Enter});  // random keys would hardly ever mend the value
    s.t.type("50      ");
  } else {
    press_something(s);
  }
}

void soak(const std::vector<std::string> &options) {
  constexpr long kGrowth = 1024;  // kB: what a screen that is opened late takes, and the heap's own raggedness
  const int wanted = number_in_environment("KAV_SOAK_KEYS", 2000);
  const int warm = std::min(wanted / 2, 5000);  // until every screen was open once
  Soak s;
  if (!start_with_ports(s.t, {"-0", "--model K-TRN010VQ12", "-1", "absent", "-2", "absent", "-3", "absent"}, options))
    GTEST_SKIP();
  const std::string process = "/proc/" + std::to_string(s.t.process());
  Holdings before;
  for (int keys = 0; keys < wanted; ++keys) {
    if (keys == warm) before = holdings_of(process);
    press_next(s);
    s.t.settle();
    ASSERT_FALSE(s.t.has_ended() || testing::Test::HasFailure()) << "after " << keys << " keys";
  }
  const Holdings after = holdings_of(process);
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_TRUE(after.memory - before.memory < kGrowth || is_sanitized(process)) << before.memory << " " << after.memory;
  std::printf("from key %d to key %d: %ld to %ld kB, %ld to %ld descriptors\n", warm, wanted, before.memory,
              after.memory, before.descriptors, after.descriptors);
}

TEST(Soak, RandomKeysInEnglish) { soak({}); }
TEST(Soak, RandomKeysInJapanese) { soak({"-japanese"}); }

}  // namespace

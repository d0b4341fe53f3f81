// Random keys over all screens, for as long as wanted: no crash, no hang, memory and descriptors stay constant.
//   KAV_SOAK_KEYS    keys in each language (default 5000)
//   KAV_SOAK_PASTE   kB that are pasted at once (default 64)
//   KAV_SOAK_SEED    another course of keys
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
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

// ---- What a process holds -------------------------------------------------------------------------------------------

struct Holdings {
  long memory = 0;  // resident, kB
  long descriptors = 0;
};

Holdings holdings_of(int process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::ifstream pages(folder + "/statm");
  long memory = 0;
  pages >> memory >> memory;
  return {memory * 4, std::distance(std::filesystem::directory_iterator(folder + "/fd"), {})};
}

// A sanitizer keeps freed memory back: how much there is says nothing then.
bool is_sanitized(int process) {
  std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
  return std::string(std::istreambuf_iterator<char>(maps), {}).find("asan") != std::string::npos;
}

// ---- Keys -----------------------------------------------------------------------------------------------------------

// clang-format off
constexpr Key kKeys[] = {Enter, Enter, Enter, Enter, KeypadEnter, Escape, Space, ShiftQuestion, Tab, ShiftTab, Up, Up,
  Down, Down, Down, Left, Right, Home, End, PageUp, F1, F10, Delete, F2, Backspace, Insert, Down, ControlL, PageDown};
constexpr const char *kTexts[] = {"60", "/dev/ttyS1", "SHUTDOWN(\"60\")O;", "[", "|", "\"", "=", ";", "#", "%s%n",
  "漢字", "ｱ", "€", "yes", "default", "99999999999999999999", "-1", "é"};
constexpr const char *kNoise[] = {"\xE3\x81", "\xFF\xFE", "\xE3", "\xC0\x80", "\xED\xA0\x80", "\033[31m",
  "\033[200~x\033[201~", "\033[99;99H", "\033]0;title\007", "\033OZ", "\033[1;5A", "\033[<0;1;1M", "\2331m",
  "\001\002\005\006\007", "\016\017\020\022\024\025", "\033\033\033"};
// clang-format on

struct Soak {
  Terminal t;
  std::mt19937 random{static_cast<unsigned>(number_in_environment("KAV_SOAK_SEED", 1))};
  std::vector<std::string> options;
  int starts = 0;
  std::string screen;
  size_t below(size_t limit) { return random() % limit; }

  // A new configuration each time: the program lives through its sessions.
  bool start() {
    std::filesystem::remove(t.path("ups.cfg"));
    ++starts;
    return start_with_ports(t, {"-0", "--model K-TRN010VQ12", "-1", "absent", "-2", "absent", "-3", "absent"}, options);
  }
  // Waits for the program, and takes the screen.
  bool has_ended() {
    t.settle();
    screen = t.dump();
    return sees("the program has ended");
  }
  bool sees(const char *text) const { return screen.find(text) != std::string::npos; }
};

// Sends one key, or a few that a person can't send one by one. The number of keys.
int press_something(Soak &s) {
  const size_t kind = s.below(100);
  if (kind < 60) {
    s.t.press({kKeys[s.below(std::size(kKeys))]});
  } else if (kind < 85) {
    s.t.type(std::string(1, static_cast<char>(' ' + s.below(95))));
  } else if (kind < 92) {
    s.t.type(kTexts[s.below(std::size(kTexts))]);
  } else if (kind < 95) {
    s.t.type(kNoise[s.below(std::size(kNoise))]);
  } else if (kind < 97) {
    std::string burst(s.below(60) + 1, ' ');
    for (char &c : burst) c = static_cast<char>(s.below(6) == 0 ? s.below(256) : ' ' + s.below(95));
    for (const char of_the_line : {'\003', '\034', '\032', '\023'}) {  // these end, suspend or stop the program
      std::replace(burst.begin(), burst.end(), of_the_line, '.');
    }
    s.t.type(burst);
    return static_cast<int>(burst.size());
  } else if (kind < 98) {
    s.t.resize(static_cast<int>(s.below(60) + 1), static_cast<int>(s.below(150) + 1));
    s.t.settle();
    s.t.resize(24, 80);
  } else if (kind < 99) {
    s.t.press({ControlZ});
    s.t.settle();
    s.t.send_signal(SIGCONT);
  } else {
    s.t.send_signal(SIGWINCH);
  }
  return 1;
}

// Leads the session to where most screens are; the number of keys.
int press_next(Soak &s) {
  if (s.sees("Create a new configuration file") || s.sees("新しい設定ファイルを作成")) {
    std::filesystem::remove(s.t.path("ups.cfg"));  // or no new session could begin
    s.t.press({Enter});
    return 1;
  }
  if (s.sees("Skip automatic probe") || s.sees("自動検出を省略")) {
    if (s.below(5) != 0) s.t.press({Down});
    s.t.press({Enter});
    return 2;
  }
  if ((s.sees("KAVLON Pro Configuration") || s.sees("KAVLON Pro 設定一覧")) && s.below(4) != 0) {
    const auto entry = static_cast<int>(s.below(kMail) + 1);
    choose(s.t, entry);
    return entry;
  }
  if ((s.sees("Value must be in range:") || s.sees("値は次の範囲")) && s.below(3) == 0) {
    s.t.press({Enter});  // random keys would hardly ever mend the value
    s.t.type("50      ");
    return 9;
  }
  return press_something(s);
}

void expect_constant(const Holdings &before, const Holdings &after, bool sanitized) {
  constexpr long kGrowth = 1024;  // kB: what a screen that is opened late takes, and the heap's own raggedness
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_TRUE(sanitized || after.memory - before.memory < kGrowth) << before.memory << " kB grew to " << after.memory;
}

void soak(const std::vector<std::string> &options) {
  Soak s;
  s.options = options;
  const int wanted = number_in_environment("KAV_SOAK_KEYS", 5000);
  const int warm = std::min(wanted / 2, 5000);  // until every screen was open once
  if (!s.start()) GTEST_SKIP();
  Holdings first, last;
  int process = 0, process_keys = 0;
  for (int keys = 0; keys < wanted && !testing::Test::HasFailure();) {
    const int pressed = press_next(s);
    keys += pressed;
    process_keys += pressed;
    if (s.has_ended()) {
      ASSERT_EQ(s.t.wait_exit(), 1) << "after " << keys << " keys";
      ASSERT_TRUE(s.start());
    }
    if (process != s.t.process()) process_keys = 0, first = {};
    process = s.t.process();
    if (first.memory == 0 && process_keys >= warm) first = holdings_of(process);
    if (first.memory > 0 && keys >= wanted) last = holdings_of(process);
  }
  ASSERT_GT(last.memory, 0) << "the last program did not live long enough";
  expect_constant(first, last, is_sanitized(process));
  std::printf("%d keys, %d program starts; from key %d to key %d: %ld to %ld kB, %ld to %ld descriptors\n", wanted,
              s.starts, warm, process_keys, first.memory, last.memory, first.descriptors, last.descriptors);
}

TEST(Soak, RandomKeysInEnglish) { soak({}); }
TEST(Soak, RandomKeysInJapanese) { soak({"-japanese"}); }

// ---- Pasted text ----------------------------------------------------------------------------------------------------

TEST(Soak, PastedTextIsTakenWhole) {
  for (const char *piece : {"Server room 1 ", "電源", "\x80\xE3\xFF\x07\x01"}) {
    Soak s;
    s.options = {"-japanese"};
    if (!s.start()) GTEST_SKIP();
    s.t.press({Enter, Down, Enter});
    choose(s.t, kUps);
    s.t.settle();
    const Holdings before = holdings_of(s.t.process());
    std::string text;
    while (text.size() < static_cast<size_t>(number_in_environment("KAV_SOAK_PASTE", 64)) * 1024) text += piece;
    const auto start = std::chrono::steady_clock::now();
    s.t.type(text);
    ASSERT_TRUE(s.t.settle(600000));
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    expect_constant(before, holdings_of(s.t.process()), is_sanitized(s.t.process()));
    std::printf("pasted in %.1f s\n", seconds.count());
    s.t.press({Escape});
    EXPECT_TRUE(s.t.see("KAVLON Pro"));
    EXPECT_FALSE(std::filesystem::exists(s.t.path("ups.cfg")));
  }
}

}  // namespace

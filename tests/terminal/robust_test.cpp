// What the tool must survive: files and answers full of control bytes, terminals that are gone, no memory left.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <cwchar>

#include "tests/database_file.h"
#include "tests/terminal/ports.h"
#include "tests/terminal/session.h"

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds_since(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Stands in hostile texts only: sequences that a terminal would act upon, in their seven-bit and their eight-bit form,
// a bell, a change of the character set, halves of characters. No "[", which would hide the settings behind it.
constexpr char kHostile[] = "\033]31337\007\23331337m\033c\016\205\216\343";
constexpr char kHostileShown[] = "?]31337?";

// The length of the sequence at the start of `text`, if it is one that curses sends; else 0.
size_t sequence_length(std::string_view text) {
  if (text.size() < 2 || text[0] != '\033') return 0;
  if (std::string_view("78=>M").find(text[1]) != std::string_view::npos) return 2;
  if (text[1] == '(' || text[1] == ')') return 3;
  const size_t end = text[1] == '[' ? text.find_first_not_of("0123456789;?", 2) : std::string_view::npos;
  return end == std::string_view::npos ? 0 : end + 1;
}

// The bytes of the character at the start of `text`; 0 for a control byte and for what is no character in UTF-8.
size_t character_length(std::string_view text) {
  wchar_t code = 0;
  mbstate_t state = {};
  const size_t length = std::mbrtowc(&code, text.data(), text.size(), &state);
  return length > text.size() || code < L' ' || (code >= 0x7F && code < 0xA0) ? 0 : length;
}

// What was written from the first byte on that is neither a character, nor part of a sequence that curses sends, nor a
// movement of the cursor; "" when there is none.
std::string first_control_byte(std::string_view written) {
  while (!written.empty()) {
    const bool moves = written[0] == '\r' || written[0] == '\n' || written[0] == '\b';
    const size_t length = moves ? 1 : std::max(sequence_length(written), character_length(written));
    if (length == 0) return std::string(written.substr(0, 40));
    written.remove_prefix(length);
  }
  return "";
}

std::string hostile_configuration() {
  const std::string text = kHostile;
  std::string file = "; " + text + "\n";
  for (const char *key : {"UpsLocation", "UpsDevice", "UpsModel", "PASSWORD", "SysDownAllowed", "LogFileTxt",
                          "DataLoggingName", "MailSubject", "MailSignFile", "MailFromAddr", "SmtpHost"}) {
    file += std::string(key) + "=" + text + "\n";
  }
  for (int event = 0; event < 25; event++) {
    file += "Event" + std::to_string(event) + "=MESSAGE(\"" + text + "\",\"" + text + "\")O;" + text + "(1)O;\n";
  }
  return file;
}

std::string hostile_database() {
  const std::string text = kHostile, rest = "|8|1|0x1|99|1|1|1|1|1|1|1|P\n";
  std::string coded;
  std::vector<Finding> findings;
  EXPECT_EQ(code_text("[UPS]\n" + text + "|2400|n" + rest + "K-TRN" + text + "|2400|" + text + rest, coded, findings),
            1);
  return coded;
}

bool is_at_session_menu(Terminal &t) {
  return t.find("KAVLON Pro Configuration").row >= 0 || t.find("KAVLON Pro 設定").row >= 0;
}

// Opens every mask, and what its fields open, and every help.
void look_everywhere(Terminal &t) {
  for (int entry = kUps; entry <= kMail; entry++) {
    choose(t, entry);
    for (const Key key : {ShiftQuestion, Enter}) {
      for (int field = 0; field < 10; field++) {
        t.press({key});
        if (!is_at_session_menu(t)) t.press({Escape});
        if (is_at_session_menu(t)) choose(t, entry);
        t.press({Down});
      }
    }
    for (int i = 0; i < 20 && !is_at_session_menu(t); i++) t.press({Escape});
    ASSERT_TRUE(is_at_session_menu(t)) << t.dump();
  }
}

void expect_clean(Terminal &t) {
  const std::string written = t.written_since(0);
  EXPECT_EQ(first_control_byte(written), "");
  EXPECT_EQ(first_control_byte(std::string("\033[1m") + kHostile), kHostile);
  EXPECT_NE(written.find(kHostileShown), std::string::npos) << "it was not shown at all";
  EXPECT_EQ(t.bells(), 0);
}

TEST(HostileContents, NeverReachTheTerminalAsControlBytes) {
  setlocale(LC_CTYPE, "C.UTF-8");
  for (const char *option : {"-d", "-japanese"}) {
    Terminal t;
    t.write_file("upstyp.ups", hostile_database());
    t.write_file("ups.cfg", hostile_configuration());
    t.start({.options = {option}});
    look_everywhere(t);
    expect_clean(t);
  }
  Terminal missing;
  missing.start({.options = {std::string("-u") + kHostile}});
  missing.press({Enter});
  expect_clean(missing);
}

TEST(HostileContents, OfAUpsNeither) {
  setlocale(LC_CTYPE, "C.UTF-8");
  Terminal t;
  t.write_file("upstyp.ups", hostile_database());
  const std::string answer = "--answer %MK-TRN\\x1b]31337\\x07\\x9b31337m\\x1bc\\x0e\\x85\\x8e\\xe3\\r";
  if (!start_with_ports(t, {"-0", "absent", "-1", answer})) GTEST_SKIP();
  t.press({Enter, Enter});
  t.see(kHostileShown, 15000);
  t.press({Enter});
  choose(t, kUps);
  expect_clean(t);
}

// ---- The terminal is gone -------------------------------------------------------------------------------------------

// Starts the tool by a shell command in which $0 is the tool.
Start by_shell(const std::string &command, const std::string &configuration = "UpsPower=500\n") {
  return {.options = {"-c", command, KAVSETUP}, .files = {{"ups.cfg", configuration}}, .program = "/bin/sh"};
}

constexpr double kEndsWithin = 1000;  // ms; 100 without the sanitizers on an idle machine

TEST(LostTerminal, InputAtItsEndEndsTheProgram) {
  for (const char *command :
       {"exec \"$0\" </dev/null", "printf '' | \"$0\"; exit $?", "printf '\\r' | exec \"$0\"", "exec \"$0\" <&-"}) {
    Terminal t;
    const auto start = Clock::now();
    t.start(by_shell(command));
    EXPECT_EQ(t.wait_exit(2000), 1) << command;
    RecordProperty(std::string("ms: ") + command, std::to_string(milliseconds_since(start)));
    EXPECT_TRUE(t.given_back()) << command;
    EXPECT_EQ(t.file("ups.cfg"), "UpsPower=500\n");
  }
}

TEST(LostTerminal, AHangUpEndsTheProgramAlsoWhenItsSignalIsIgnored) {
  for (const char *command : {"exec \"$0\"", "trap '' HUP; exec \"$0\""}) {
    for (const std::vector<Key> &keys :
         {std::vector<Key>{}, {Enter}, {Down, Enter, Down, Down, Down}, {Enter, Up, Up, Enter}}) {
      Terminal t;
      t.start(by_shell(command));
      t.press(keys);
      t.settle();
      const auto start = Clock::now();
      t.hang_up();
      EXPECT_EQ(t.wait_exit(5000), 1) << command;
      EXPECT_LT(milliseconds_since(start), kEndsWithin) << command;
      EXPECT_EQ(t.file("ups.cfg"), "UpsPower=500\n");
    }
  }
}

// ---- No memory left -------------------------------------------------------------------------------------------------

bool has_ended(Terminal &t) {
  t.settle();
  return t.dump().find("has ended") != std::string::npos;
}

// KAV_ALLOCATION_STEP: every how many allocations of a session fail.
TEST(NoMemory, EndsTheProgramInOrderOrNotAtAll) {
  const char *wanted = std::getenv("KAV_ALLOCATION_STEP");
  const int step = wanted == nullptr ? 37 : std::atoi(wanted);
  int runs = 0, aborted = 0, fallen = 0;
  bool met = true;
  for (int allocation = 1; met && !HasFailure(); allocation += step) {
    Terminal t;
    t.start({.environment = {"KAV_FAIL_ALLOCATION=" + std::to_string(allocation)},
             .files = {{"ups.cfg", "; site\nUpsPower=500\nUpsHoldMins=10\n"}},
             .program = FAULTY_KAVSETUP});
    choose(t, kUps);
    t.press({ShiftQuestion, Escape, Up, Up});
    t.type("11    ");
    t.press({Up, Up, Up, Up, Enter, End, Escape, Escape});
    choose(t, kEvents);
    t.press({Enter, Enter, ShiftQuestion, Escape, Escape, Escape});
    choose(t, kMail);
    t.press({Escape});
    choose(t, kSave);
    for (int i = 0; i < 10 && !has_ended(t); i++) t.press({Escape});
    const int status = t.wait_exit();
    met = t.has_file("fault-met");
    aborted += status == 128 + SIGABRT;
    // Curses itself can reach for what it did not get; with the sanitizers only our own allocations fail.
    fallen += status == 128 + SIGSEGV;
    if (status == 128 + SIGSEGV) std::printf("curses fell at %d\n", allocation);
    EXPECT_TRUE(status == 1 || status == 128 + SIGABRT || status == 128 + SIGSEGV) << status << " at " << allocation;
    EXPECT_TRUE(t.given_back()) << allocation;
    EXPECT_TRUE(t.file("ups.cfg").starts_with("; site\nUpsPower=500\n") && t.file("ups.cfg").ends_with('\n'));
    runs++;
  }
  std::printf("%d runs, %d ended by abort, %d fell in curses\n", runs, aborted, fallen);
}

}  // namespace

// What the tool must survive: files and answers full of control bytes, terminals that are gone, no memory left.
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>

#include "tests/database_file.h"
#include "tests/terminal/ports.h"
#include "tests/terminal/session.h"

namespace {

// Stands in hostile texts only: sequences that a terminal would act upon, in their seven-bit and their eight-bit form,
// a bell, a change of the character set, halves of characters. No "[", which would hide the settings behind it.
constexpr char kHostile[] = "\033]31337\007\23331337m\033c\016\205\216\343";
constexpr char kHostileShown[] = "?]31337?";

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
    for (int i = 0; i < 20 && !is_at_session_menu(t); ++i) t.press({Escape});
    ASSERT_TRUE(is_at_session_menu(t)) << t.dump();
  }
}

void expect_clean(Terminal &t) {
  const std::string written = t.written();
  for (const char *sequence : {"\033]", "\033c", "\007", "\016", "\23331337", "\302\233", "\302\205"}) {
    EXPECT_EQ(written.find(sequence), std::string::npos);
  }
  EXPECT_NE(written.find(kHostileShown), std::string::npos) << "it was not shown at all";
}

TEST(HostileContents, NeverReachTheTerminalAsControlBytes) {
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
  Terminal t;
  t.write_file("upstyp.ups", hostile_database());
  const std::string answer = "--answer %MK-TRN\\x1b]31337\\x07\\x9b31337m\\x1bc\\x0e\\x85\\x8e\\xe3\\r";
  if (!start_with_ports(t, {"-0", "absent", "-1", answer})) GTEST_SKIP();
  t.press({Enter, Enter});
  t.see(kHostileShown, 15000);
  expect_clean(t);
}

// ---- The terminal is gone -------------------------------------------------------------------------------------------

TEST(LostTerminal, EndsTheProgramAlsoWhenItsSignalIsIgnored) {
  for (const char *command : {"exec \"$0\"", "trap '' HUP; exec \"$0\""}) {
    Terminal t;
    t.start(
        {.options = {"-c", command, KAVSETUP_PROGRAM}, .files = {{"ups.cfg", "UpsPower=500\n"}}, .program = "/bin/sh"});
    t.press({Down, Enter, Down, Down, Down});
    if (command[0] == 't') t.send_signal(SIGHUP);
    EXPECT_FALSE(t.has_ended()) << command;
    t.hang_up();
    EXPECT_EQ(t.wait_exit(1000), 1) << command << ": takes 100 ms without the sanitizers on an idle machine";
    EXPECT_EQ(t.file("ups.cfg"), "UpsPower=500\n");
  }
}

// ---- No memory left -------------------------------------------------------------------------------------------------

// KAV_ALLOCATION_STEP: every how many allocations of a session fail.
TEST(NoMemory, EndsTheProgramInOrderOrNotAtAll) {
  const char *wanted = std::getenv("KAV_ALLOCATION_STEP");
  const int step = wanted == nullptr ? 37 : std::atoi(wanted);
  int runs = 0, fallen = 0;
  bool met = true;
  for (int allocation = 1; met && !HasFailure(); allocation += step) {
    Terminal t;
    t.start({.environment = {"KAV_FAIL_ALLOCATION=" + std::to_string(allocation)},
             .files = {{"ups.cfg", "; site\nUpsPower=500\nUpsHoldMins=10\n"}},
             .program = FAULTY_KAVSETUP_PROGRAM});
    choose(t, kUps);
    t.press({ShiftQuestion, Escape, Up, Up});
    t.type("11    ");
    t.press({Up, Up, Up, Up, Enter, End, Escape, Escape});
    choose(t, kEvents);
    t.press({Enter, Enter, ShiftQuestion, Escape, Escape, Escape});
    choose(t, kMail);
    t.press({Escape});
    choose(t, kSave);
    for (int i = 0; i < 10 && !t.has_ended(); ++i) t.press({Escape});
    const int status = t.wait_exit();
    met = std::filesystem::exists(t.path("fault-met"));
    fallen += status == 128 + SIGSEGV;  // curses itself can reach for what it did not get
    EXPECT_TRUE(status == 1 || status == 128 + SIGSEGV) << status << " at " << allocation;
    EXPECT_TRUE(t.given_back()) << allocation;
    EXPECT_TRUE(t.file("ups.cfg").starts_with("; site\nUpsPower=500\n") && t.file("ups.cfg").ends_with('\n'));
    ++runs;
  }
  std::printf("%d runs, %d fell in curses\n", runs, fallen);
}

}  // namespace

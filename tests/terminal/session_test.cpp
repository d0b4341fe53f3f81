// Whole sessions, as an administrator has them: the menus, the settings masks, saving, the end.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>

#include "tests/run.h"
#include "tests/terminal/session.h"

namespace {

TEST(Session, WritesNothingUnlessItIsSavedAndEndsThroughTheExitEntryOnly) {
  Terminal t;
  t.start();
  t.press({Escape});
  for (const bool by_escape : {true, false}) {
    t.press({Enter, Down, Enter});
    choose(t, kUps);
    t.type("Server room");
    t.press({Escape});
    choose(t, kSpacer);
    by_escape ? t.press({Escape}) : choose(t, kLeave);
    t.see("Create a new configuration file");
  }
  for (const char *file : {"ups.cfg", "ups.cfg.unsaved", "setup.dbg"})
    EXPECT_FALSE(std::filesystem::exists(t.path(file)));
  t.write_file("ups.cfg", "UpsID=1\n");  // another program's, meanwhile
  t.press({Enter});
  EXPECT_EQ(t.find("Can't open file:"), (Position{10, 31}));
  t.press({Space, Up, Enter});
  EXPECT_EQ(t.wait_exit(), 1);
  EXPECT_TRUE(t.given_back());
  EXPECT_EQ(t.file("ups.cfg"), "UpsID=1\n");
}

// Makes or changes the file other.cfg by commands for kavcfg.
void make_other(const Terminal &t, const std::string &commands) {
  const std::string kavcfg = "kavcfg() { '" KAVCFG_PROGRAM "' -f other.cfg \"$@\"; }; ";
  EXPECT_EQ(run_shell("cd " + t.directory() + "; " + kavcfg + commands).status, 0);
}

void edit_ups_mask(Terminal &t) {
  choose(t, kUps);
  t.press({Down, Down});
  t.type("   29");
  for (const Key key : {Down, Tab, Escape, Home}) {
    t.press({key});
    t.see("30 <= value <= 9999");
    t.press({Enter});
    EXPECT_EQ(t.find("Value must be in range:").row, -1);
    EXPECT_EQ(t.cursor(), (Position{9, 26}));
  }
  t.type("   30");
  t.press({Down, Down});
  t.type("45  ");
  t.press({Down});
  EXPECT_EQ(t.text(11, 26, 5), "45.0 ");
  t.press({Down, Enter, Down, Enter, F10});
}

TEST(Session, EditsANewConfigurationInAllMasksAsKavcfgDoes) {
  Terminal t;
  open_new_session(t);
  edit_ups_mask(t);
  choose(t, kSystem);
  t.type("Pass1            ");
  t.press({Home, Down, Down, Enter});
  t.see(" enable shutdown ");
  t.press({Down, Enter, Down, Enter, Down, Enter});
  t.see(" enable UPS restore ");
  t.press({Escape, Enter});
  EXPECT_EQ(t.find("enable fixed").row, -1);
  t.press({F10});
  choose(t, kPaths);
  t.press({Down, Down, Enter, Down, Enter, Escape});
  choose(t, kMail);
  t.press({End});
  const int bells = t.bells();
  t.type("x");
  EXPECT_EQ(t.bells(), bells + 1) << "not before SMTP is used";
  t.press({F10, Up, Up, Enter});
  EXPECT_EQ(t.find("Enable SMTP client ?"), (Position{12, 28}));
  t.press({Enter});
  t.type("kav");
  t.press({Escape});
  choose(t, kSave);
  t.press({Down, Enter});
  ASSERT_EQ(t.wait_exit(), 1);
  make_other(t,
             "kavcfg new UpsModel='Halvoris 700VA K-TSN007' TempCaution=45.0 DataLoggingRate=30 SysDownAllowed=no "
             "LoggingData=0 MailEnableFlag=yes SmtpUser=kav; echo Pass1 | kavcfg set PASSWORD");
  EXPECT_TRUE(t.file("ups.cfg") == t.file("other.cfg")) << t.file("ups.cfg");
  t.start();
  choose(t, kUps);
  t.press({Down, Down});
  t.type("00600");
  t.press({Escape});
  choose(t, kMail);
  t.press({End});
  t.type("secret");
  t.press({Tab});
  choose(t, kSave);
  ASSERT_EQ(t.wait_exit(), 1);
  make_other(t, "kavcfg set DataLoggingRate=600; echo secret | kavcfg set SmtpPassword");
  EXPECT_TRUE(t.file("ups.cfg") == t.file("other.cfg")) << t.file("ups.cfg");
}

TEST(Session, OptionsAreAbbreviatedAndUnknownOnesExplained) {
  Terminal t;
  for (const char *options : {"-zorvikx", "-u", "x"}) {
    t.start({.options = {options, "name.ups"}});
    EXPECT_EQ(t.wait_exit(), 0) << options;
    EXPECT_NE(t.written().find("kavsetup [-u <dbfile>] [-japanese]\r\n\r\n   -u <dbfile>    default is"),
              std::string::npos);
  }
  t.start({.options = {"-jfoo", "-dx", "-zorvik"}});
  t.see("KAVLON インストール");
  t.press({Enter, Down, Enter});
  choose(t, kSystem);
  t.press({Escape, Escape});
  t.see("KAVLON インストール");
  EXPECT_NE(t.file("setup.dbg").find("setup/cfgmask: edit_custom_cfg enter\n"), std::string::npos);
}

TEST(UpsMask, AModelBringsItsValuesAlong) {
  Terminal t;
  t.start({.files = {{"ups.cfg", "PASSWORD= \nUpsDevice=/dev/ttyS9\nEvent0=LOGMSG(\"mine\")O;\nUpsModel=Old\n"}}});
  choose(t, kUps);
  t.press({Up, Up, Down, Down, Down, Down, Down, Down, Enter});
  t.press({End, Up, Home, Down, Down, Down, Down, Enter, F10});
  choose(t, kEvents);
  t.press({End});
  EXPECT_NE(t.find("Bypass mode").row, -1) << "only this series has it";
  t.press({Escape});
  choose(t, kSave);
  ASSERT_EQ(t.wait_exit(), 1);
  const std::string file = t.file("ups.cfg");
  EXPECT_TRUE(file.starts_with("PASSWORD=SWNL\nUpsDevice=/dev/ttyS9\nEvent0=MESSAGEID("))
      << "no line settings without a colon; the default password and jobs";
  EXPECT_EQ(setting(t, "UpsModel") + setting(t, "UpsPower"), "ZELK K-TSN030-2003000");
}

TEST(Masks, SayAtOnceWhatTheFileCanNotGiveBack) {
  constexpr char kHidden[] = "This value can not be read back: '[' hides what follows";
  constexpr char kNothing[] = "────────────";
  const struct {
    bool is_new;
    int entry;
    std::vector<Key> way;
    const char *typed, *notice;
  } cases[] = {
      // clang-format off
      {true,  kUps,    {},    "[1]",                            kHidden},
      {true,  kUps,    {},    "       \033OB",                  "An empty value can not be read back, and what follows it is not saved"},
      {false, kUps,    {},    "       \033OB",                  "An empty value can not be read back: the default comes instead"},
      {true,  kUps,    {},    "       \033OB\033OAOffice\033OB", kNothing},
      {false, kUps,    {},    "",                               "ups.cfg:3: CheckRate: is not from 1 to 600"},
      {true,  kSystem, {},    "E",                              kHidden},  // scrambled, it becomes a bracket
      {true,  kSystem, {},    "E\177Attic",                     kNothing},
      {true,  kPaths,  {},    "[",                              kHidden},
      {false, kMail,   {End}, "production",                     "This value can not be read back: a part of it is lost"},  // its ninth letter ends it
      // clang-format on
  };
  for (const auto &[is_new, entry, way, typed, notice] : cases) {
    Terminal t;
    if (is_new) {
      open_new_session(t);
    } else {
      t.start({.files = {{"ups.cfg", "UpsLocation=Office\nMailEnableFlag=yes\nCheckRate=0\n"}}});
    }
    choose(t, entry);
    const int row = t.find("help>").row - 1;
    t.press(way);
    t.type(typed);
    EXPECT_EQ(t.text(row, 4, 70).substr(0, std::string_view(notice).size()), notice) << t.dump();
    EXPECT_EQ(t.cell(row, 4).foreground == kRed, notice != kNothing);
  }
}

TEST(Terminal, IsGivenBackHoweverTheProgramEnds) {
  for (const int signal :
       {SIGINT, SIGTERM, SIGQUIT, SIGHUP, SIGABRT, SIGXCPU, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGTRAP, SIGSYS}) {
    Terminal t;
    open_new_session(t);
    choose(t, kUps);
    t.settle();
    t.send_signal(signal);
    EXPECT_EQ(t.wait_exit(), 128 + signal);
    EXPECT_TRUE(t.given_back()) << signal;
  }
}

TEST(FailedSave, IsToldAndLeavesTheFile) {
  const struct {
    std::string cause, reason;  // what is done before the program starts, in a mount namespace of its own
    bool is_known_before;
  } kRows[] = {
      // clang-format off
      {"mount --bind ups.cfg ups.cfg && mount -o remount,bind,ro ups.cfg",         "Read-only file system",        true},
      {"mount --bind . . && cd \"$PWD\" && mount -o remount,bind,ro .",            "Read-only file system",        true},
      {"mount -t tmpfs -o size=4k none /mnt && cp ups.cfg upstyp.ups /mnt; cd /mnt", "No space left on device",      false},
      {"ulimit -f 0",                                                              "File too large",               false},
      {"chattr +i ups.cfg",                                                        "Operation not permitted",      true},
      {"exec 9>.ups.cfg.lock && flock 9",                                          "another program is saving it", true},
      // clang-format on
  };
  for (const auto &[cause, reason, is_known_before] : kRows) {
    Terminal t;
    t.start({.options = {"--mount", "/bin/sh", "-c", cause + " && exec \"$0\"", KAVSETUP_PROGRAM},
             .files = {{"ups.cfg", "UpsModel=K-TRN010VQ-100\nUpsLocation=Hall\n"}},
             .program = "/usr/bin/unshare"});
    if (t.has_ended() && getuid() != 0) GTEST_SKIP();
    if (t.has_ended() && cause.starts_with("chattr")) continue;  // no such flag on this file system
    choose(t, kUps);
    EXPECT_EQ(t.find("ups.cfg can not be saved: " + reason).row, is_known_before ? 19 : -1) << t.dump();
    t.type("Attic");
    t.press({Escape});
    const int bells = t.bells();
    choose(t, kSave);
    t.see("Save Configuration & Exit");
    t.settle();
    EXPECT_EQ(t.bells(), bells + 1);
    EXPECT_EQ(setting(t, "UpsLocation"), "Hall");
    EXPECT_EQ(get_file("/proc/" + std::to_string(t.process()) + "/cwd/ups.cfg"), t.file("ups.cfg"));
    t.press({Escape});
    EXPECT_EQ(t.wait_exit(), 1);
    EXPECT_NE(t.written().find("kavsetup: ups.cfg: not saved: " + reason), std::string::npos) << t.dump();
    run_shell("chattr -i " + t.path("ups.cfg"));
  }
}

// At the start, or when it went after the first screen, which nothing was read for.
TEST(Session, NamesAFileThatCanNotBeReadAndEnds) {
  constexpr const char *kBoxes[][2] = {{"ups.cfg", "ups.cfg doesn't exist(press key) !"},
                                       {"upstyp.ups", "UPS-Database error: 'upstyp.ups'"}};
  for (const auto &[file, text] : kBoxes) {
    for (const bool at_start : {true, false}) {
      Terminal t;
      t.write_file("ups.cfg", "UpsPower=500\n");
      const std::string replace = "cd " + t.directory() + "; rm " + file + "; mkdir " + file;
      if (at_start) run_shell(replace);
      t.start();
      t.settle();
      if (!at_start) run_shell(replace);
      if (!at_start) t.press({Enter});
      t.see(text);
      t.press({Space});
      EXPECT_EQ(t.wait_exit(), 1);
      EXPECT_TRUE(t.given_back());
    }
  }
}

TEST(Masks, NameADatabaseWithoutModels) {
  for (const bool is_empty : {true, false}) {
    Terminal t;
    const std::string whole = t.file("upstyp.ups");
    t.start({.files = {{"upstyp.ups", is_empty ? "" : whole.substr(0, 40)}, {"ups.cfg", "UpsPower=500\n"}}});
    choose(t, kUps);
    t.see("upstyp.ups holds no UPS model: it is empty, or not whole");
    t.press({Up, Up, Up, Up, Enter});
  }
}

TEST(Unsaved, OutlivesALineThatDropsOnEveryScreenAndNothingElse) {
  constexpr int kHangUp = 0;
  constexpr char kBefore[] = "UpsModel=K-TRN010VQ-100\nUpsLocation=Hall\nPASSWORD=SWNL\nEvent0=LOGMSG(\"power\")O;\n";
  const struct {
    int entry;
    std::vector<Key> keys;
    const char *shown;
  } kScreens[] = {
      // clang-format off
      {kUps,    {},                                               "UPS modelname"},
      {kUps,    {Tab, Tab, Tab, Tab, Tab, Tab, Enter},            "Select UPS modelname"},
      {kUps,    {ShiftQuestion},                                  "Standard settings help"},
      {kUps,    {Down, Down, Space, Space, Space, Down},          "Value must be in range:"},
      {kSystem, {Down, Down, Enter},                              " enable shutdown "},
      {kPaths,  {},                                               "Path for textfile:"},
      {kEvents, {},                                               "Eventlist"},
      {kEvents, {Enter},                                          "Add Job to List"},
      {kEvents, {Enter, Down, Down, Enter},                       "Send a Shutdown UPS"},
      {kEvents, {Enter, Enter},                                   "power"},
      {kMail,   {},                                               "Subject"},
      {kUps,    {Escape},                                         "Save Configuration & Exit"},
      // clang-format on
  };
  for (const auto &[entry, keys, shown] : kScreens) {
    for (const int signal : {SIGTERM, SIGHUP, kHangUp, SIGINT}) {
      const bool keeps = signal != SIGINT;
      Terminal t;
      t.start({.files = {{"ups.cfg", kBefore}}});
      choose(t, kUps);
      t.type("Attic");
      t.press({Escape});
      choose(t, kSystem);
      t.type("MSRW");
      t.press({Escape});
      choose(t, entry);
      t.press(keys);
      t.see(shown);
      signal == kHangUp ? t.hang_up() : t.send_signal(signal);
      t.wait_exit();
      EXPECT_EQ(t.file("ups.cfg"), kBefore);
      const std::string kept = t.file("ups.cfg.unsaved");
      EXPECT_EQ(kept.substr(kept.find('\n') + 1), keeps ? "UpsLocation=Attic\nPASSWORD=SMNI\n" : "") << shown << signal;
      if (!keeps || entry != kPaths) continue;
      EXPECT_EQ(std::filesystem::status(t.path("ups.cfg.unsaved")).permissions(), std::filesystem::perms{0600});
      t.start();
      choose(t, kPaths);
      t.see("ups.cfg.unsaved holds changes that an earlier session could not save");
      t.press({Escape});
      save_and_exit(t);
      EXPECT_EQ(t.file("ups.cfg.unsaved"), "");
    }
  }
}

TEST(Terminal, ComesBackCellForCellAndAKeyCostsLittle) {
  Terminal t;
  open_new_session(t);
  EXPECT_LT(t.measure(Down).bytes, 200u);
  EXPECT_EQ(t.written().find("\033[37m\033[40m"), std::string::npos) << "colours that are the terminal's own";
  t.press({Up, Enter});
  t.press({Down, Down, Down, Down, Down, Down, Enter});
  const std::string before = t.screen();
  for (const auto &[rows, columns] : {std::pair{50, 132}, {10, 20}, {24, 40}, {1, 1}, {24, 80}}) {
    t.resize(rows, columns);
    t.settle();
    EXPECT_TRUE(columns <= 80 || t.cell(5, 80).background == kDefault);
  }
  EXPECT_EQ(t.screen(), before);
  t.press({ControlZ});
  EXPECT_TRUE(t.given_back());
  EXPECT_NE(t.written().find("\033[?2004l"), std::string::npos) << "pastes are marked no longer";
  t.send_signal(SIGCONT);
  t.settle();
  EXPECT_EQ(t.screen(), before);
  t.disturb("\033[3;1HBroadcast message");
  EXPECT_NE(t.screen(), before);
  t.press({ControlL});
  EXPECT_EQ(t.screen(), before);
  t.type("\023");  // a key like any other
  t.press({Enter});
  t.see("Halvoris 500VA K-TSN005");
  EXPECT_LT(t.measure(Escape).last_output, 250) << "50 ms without the sanitizers on an idle machine";
}

}  // namespace

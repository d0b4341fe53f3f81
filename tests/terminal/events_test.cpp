// The event editor's three nested screens, and the mail mask.
#include <gtest/gtest.h>

#include "tests/terminal/session.h"

namespace {

constexpr char kAllJobs[] =
    "SHUTDOWN(\"60\")O;MESSAGE(\"local\",\"hello\")A;EXECUTE(\"send\",\"host\",\"6003\")P5;"
    "EXECUTEH(\"sendvik.exe\",\"-ini\",\"upsext.cfg\",\"-ofi\",\"upsext.cfg\",\"-s\",\"kavlon "
    "service\",\"-t\",\"me@site\""
    "${#USEEMAILSIGNF?,\"-sig\",\"#EMAILSIGNF\"}${}${}${}${},\"down\")O;EXECUTE(\"alarm.bat\",\"Alarm\")O;"
    "EXECUTE(\"/bin/x\",\"-a\")T15;LOGMSG(\"note\")O;MESSAGEID(\"local\",601)R60;EVENTLOG(\"success\",100,\"text\")O;"
    "FROB(1,2)X9;";

// The job list of one event of an existing configuration.
void open_event(Terminal &t, const std::string &configuration, int event) {
  t.start({.files = {{"ups.cfg", configuration}}});
  choose(t, kEvents);
  choose(t, event + 1);
}

void leave_editor(Terminal &t) { t.press({Escape, Escape}); }

TEST(EventEditor, ShowsEachJobInOneLineAndKeepsWhatIsNotEdited) {
  Terminal t;
  open_event(t, std::string("Event6=") + kAllJobs + "\n", 6);
  EXPECT_EQ(t.find("UPS in sleep mode").row, 6);
  for (const char *line :
       {"Message to local", "Send a NIMBRO signal to host", "send eMail to me@site", " Alarm", "/bin/x", "Log Event",
        "Sends the messageid 601", "FROB(1,2)X9", "Shutdown System/ UPS in 60 sec."}) {
    EXPECT_GE(t.find(line).row, 8) << line;
  }
  t.press({PageUp, Up, Up, Up, Up, Up, Up});  // whatever is chosen there is left again
  t.press({Home});
  choose(t, 9);  // the job of no known function
  t.see("The function of this job is not known,");
  t.press({Space});
  leave_editor(t);
  save_and_exit(t);
  const std::string stored = setting(t, "Event6");
  EXPECT_EQ(stored, std::string(kAllJobs).substr(std::string("SHUTDOWN(\"60\")O;").size()) + "SHUTDOWN(\"60\")O;");
  EXPECT_EQ(setting(t, "Event5"), "(none)");
}

TEST(EventEditor, SaysWhatAJobOrItsListWouldLoseBeforeItIsLeft) {
  const std::string mail =
      "EXECUTEH(\"sendvik.exe\",\"-ini\",\"upsext.cfg\",\"-ofi\",\"upsext.cfg\",\"-s\",\"kavlon "
      "service\",\"-t\",\"a,b\"${ #SIGN },\"c\")O;";
  std::string full;
  for (int job = 0; job < 32; ++job) full += "LOGMSG(\"x\")O;";
  const std::string long_job = "LOGMSG(\"" + std::string(58, 'l') + "\")O;";
  std::string long_list = "LOGMSG(\"short\")O;LOGMSG(\"not so short any more\")O;";
  while (long_list.size() + long_job.size() < 980) long_list += long_job;
  long_list += "SHUTDOWN(\"60\")O;";
  const struct {
    std::string list;
    int job;
    const char *typed, *notice;
  } cases[] = {
      {mail, 1, "x, y", "a part of it is lost"},
      {"LOGMSG(\"a\")O;", 1, "b ]", nullptr},
      {long_list, 1, "llllllllllllllllllllllllllllllllllllllllllllllllllllll", "a job of it is lost"},
      {full, 34, "one more", "a job of it is lost"},
  };
  for (const auto &c : cases) {
    Terminal t;
    open_event(t, "UpsModel=K-TRN010VQ-100\nEvent0=" + c.list + "\n", 0);
    choose(t, c.job);
    if (c.job > 32) choose(t, 7);
    if (c.list == mail) t.press({Down});
    t.type(c.typed);
    t.settle();
    if (c.notice != nullptr) t.see(c.notice);
    EXPECT_TRUE(c.notice != nullptr || t.text(20, 3, 3) == "\u2500\u2500\u2500") << t.dump();
  }
  Terminal t;
  open_event(t, "UpsModel=K-TRN010VQ-100\nEvent0=" + mail + "\n", 0);
  t.press({Enter, Down, Down, Escape});
  leave_editor(t);
  save_and_exit(t);
  EXPECT_EQ(setting(t, "Event0"), mail) << "only looked at";
}

TEST(EventEditor, EditedJobsAreStoredAndRefusedOnesAreNot) {
  Terminal t;
  open_event(t, "Event3=SHUTDOWN(\"60\")O;LOGMSG(\"old\")O;\n", 3);
  choose(t, 1);
  t.type("   ");
  t.press({Down});
  t.see("field can not be left blanc");
  t.press({Enter});
  t.type("x");
  t.press({Down, Enter});
  t.see("Periodic");
  t.press({Down, Down, Enter});
  EXPECT_EQ(t.text(13, 4, 9) + t.text(14, 4, 17), "Periodic 60      seconds  ");
  t.press({Down});
  t.type("0090");
  t.press({Enter});
  t.see("Log Event");
  choose(t, 2);
  t.type("12a    ");
  t.press({Enter, Up});
  EXPECT_EQ(t.text(10, 14, 7), "12     ");
  t.type("9999");
  t.press({Down, F10});
  t.see("Shutdown System/ UPS in 5940 sec.");
  leave_editor(t);
  save_and_exit(t);
  EXPECT_EQ(setting(t, "Event3"), "LOGMSG(\"x\")P90;SHUTDOWN(\"5940\")O;");
}

TEST(EventEditor, AddsAndDeletesJobs) {
  Terminal t;
  open_event(t, "Event4=LOGMSG(\"a\")O;SHUTDOWN(\"10\")O;\n", 4);
  choose(t, 4);  // add, behind two jobs and the spacer
  EXPECT_EQ(t.find("Add Job to List").row, 7);
  t.press({Enter});
  t.see("Send a Shutdown UPS Signal");
  t.type("default");
  t.press({F10});
  t.see("Shutdown System/ UPS in default sec.");
  EXPECT_EQ(t.find("UPS in 10 sec."), (Position{-1, -1})) << "a list shuts down once";
  choose(t, 5);
  t.see("Delete Job from List");
  t.press({Enter});
  EXPECT_EQ(t.find("Log Event").row, -1);
  choose(t, 4);  // delete mode again; leaving it leaves the job list too
  t.press({Escape});
  t.see("Eventlist");
  t.press({Escape});
  save_and_exit(t);
  EXPECT_EQ(setting(t, "Event4"), "SHUTDOWN(\"default\")O;");
}

TEST(EventEditor, BypassModeIsOfferedForItsSeriesOnly) {
  for (const auto &[model, offered] : {std::pair{"K-TRN010VQ-100", false}, {"ZELK K-TSN030-200", true}}) {
    Terminal t;
    t.start({.files = {{"ups.cfg", "UpsModel=" + std::string(model) + "\nEvent24=LOGMSG(\"life\")O;\n"}}});
    choose(t, kEvents);
    t.press({End});
    EXPECT_EQ(t.find("Bypass mode").row >= 0, offered) << model;
  }
}

TEST(EventEditor, AsksForAttachmentsAndLevels) {
  Terminal t;
  open_event(t, std::string("Event6=") + kAllJobs + "\n", 6);
  choose(t, 3);
  EXPECT_EQ(t.text(10, 4, 20), "ADDRESS   me@site   ");
  t.press({Down, Down, Enter});
  EXPECT_EQ(t.find("Attach data log to email?").row, 11);
  const std::string mask_corner = t.text(22, 77, 1);
  t.press({Enter});
  EXPECT_EQ(t.text(12, 14, 4), "yes ");
  EXPECT_EQ(t.text(11, 77, 2), mask_corner == "\u2518" ? "\u2502#" : "") << "the question was wider than the mask";
  t.press({F10});
  choose(t, 8);
  EXPECT_EQ(t.text(10, 14, 12), "notice      ") << "an alias becomes the level's name";
  t.press({Enter});
  EXPECT_EQ(t.find("syslog level:").row, 8);
  t.press({Down, Enter, F10});
  leave_editor(t);
  save_and_exit(t);
  const std::string stored = setting(t, "Event6");
  EXPECT_NE(stored.find("${#USEDATAEX?,\"-attach\",\"#LOGFILEBINEX\"}${}${}${},\"down\")O;"), std::string::npos);
  EXPECT_NE(stored.find("EVENTLOG(\"alert\",100,\"text\")O;"), std::string::npos);
}

TEST(MailMask, SmtpOpensItsFields) {
  Terminal t;
  open_new_session(t);
  choose(t, kMail);
  EXPECT_EQ(t.find("SMTP Authentification (optional)"), (Position{17, 4}));
  EXPECT_EQ(t.find("< ENTER for list!"), (Position{9, 56}));
  t.press({End});
  t.type("x");
  EXPECT_EQ(t.bells(), 1);
  EXPECT_EQ(t.text(19, 27, 2), "  ");
  t.press({F10, Up, Up, Enter});
  EXPECT_EQ(t.find("Enable SMTP client ?"), (Position{12, 28}));
  t.press({Enter});
  t.type("kav");
  t.press({Down});
  t.type("secret");
  t.press({Tab});
  t.see("KAVLON Pro Configuration");
  save_and_exit(t);
  EXPECT_EQ(setting(t, "SmtpUser"), "kav");
  EXPECT_EQ(setting(t, "MailEnableFlag"), "yes");
  EXPECT_EQ(setting(t, "SmtpHost"), " ");
  EXPECT_EQ(setting(t, "SmtpPassword").size(), 6u);
  EXPECT_EQ(t.file("ups.cfg").find("secret"), std::string::npos);
}

}  // namespace

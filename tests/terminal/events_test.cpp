// The event editor's three nested screens.
#include <gtest/gtest.h>

#include "tests/terminal/session.h"

namespace {

// The job list of one event of an existing configuration.
void open_event(Terminal &t, const std::string &configuration, int event) {
  t.start({.files = {{"ups.cfg", configuration}}});
  choose(t, kEvents);
  choose(t, event + 1);
}

const std::string kMailJob =
    R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t",)";
const std::string kShutdown = R"(SHUTDOWN("60")O;)";

TEST(EventEditor, ShowsEachJobInOneLineAndStoresWhatIsEdited) {
  std::string jobs =
      R"(MESSAGE("local","hello")A;EXECUTE("send","host","6003")P5;)" + kMailJob +
      R"("me@site"${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${}${}${},"down")P90;EXECUTE("alarm.bat","Alarm")O;)"
      R"(EXECUTE("/bin/x","-a")T15;LOGMSG("note")O;MESSAGEID("local",601)R60;EVENTLOG("success",100,"text")O;)"
      "FROB(1,2)X9;" +
      kMailJob + R"("a,b"${ #SIGN },"c")O;)";
  Terminal t;
  open_event(t, "Event6=" + kShutdown + jobs + "\n", 6);
  t.press({PageUp, Up, Up, Up, Up, Up, Up});  // whatever is chosen there is left again
  t.press({Home});
  choose(t, 9);
  t.see("The function of this job is not known,");
  t.press({Space});
  choose(t, 10);
  t.press({Down, Down, F10});  // only looked at
  choose(t, 2);
  t.press({Down});
  t.type("70000");
  t.press({Down});
  t.see("1 <= value <= 65535");
  t.press({Enter});
  t.type("6003 ");
  t.press({F10});
  choose(t, 3);
  EXPECT_EQ(t.text(10, 4, 17) + t.text(18, 4, 9) + t.text(19, 4, 15), "ADDRESS   me@sitePeriodic 90      seconds");
  t.press({Down, Down, Enter});
  EXPECT_EQ(t.find("Attach data log to email?"), (Position{11, 47}));
  t.press({Enter});
  EXPECT_EQ(t.text(12, 14, 4), "yes ");
  EXPECT_EQ(t.text(11, 77, 2), "│#") << "the question was wider than the mask";
  t.press({F10});
  choose(t, 8);
  EXPECT_EQ(t.text(10, 14, 12), "notice      ") << "an alias becomes the level's name";
  t.press({Enter});
  EXPECT_EQ(t.find("syslog level:").row, 8);
  t.press({Down, Enter, F10, Escape, Escape});
  save_and_exit(t);
  jobs.replace(jobs.find("${}"), 3, "${#USEDATAEX?,\"-attach\",\"#LOGFILEBINEX\"}");
  jobs.replace(jobs.find("success"), 7, "alert");
  EXPECT_EQ(setting(t, "Event6"), jobs + kShutdown);
  EXPECT_EQ(setting(t, "Event5"), "(none)");
}

TEST(EventEditor, SaysWhatAJobOrItsListWouldLoseBeforeItIsLeft) {
  std::string full, long_list = "LOGMSG(\"short\")O;LOGMSG(\"not so short any more\")O;";
  for (int job = 0; job < 32; ++job) full += "LOGMSG(\"x\")O;";
  while (long_list.size() < 911) long_list += "LOGMSG(\"" + std::string(58, 'l') + "\")O;";
  const struct {
    std::string list;
    std::vector<Key> way;
    std::string typed;
    const char *notice;
  } cases[] = {
      {kMailJob + "\"a,b\"${ #SIGN },\"c\")O;", {Enter, Down}, "x, y", "a part of it is lost"},
      {"LOGMSG(\"a\")O;", {Enter}, "b ]", "──────────"},
      {long_list + kShutdown, {Enter}, std::string(54, 'l'), "a job of it is lost"},
      {full, {Enter}, "last", "──────────"},
      {full, {End, Up, Up, Enter, Up, Up, Up, Up, Enter}, "one more", "a job of it is lost"},
  };
  for (const auto &[list, way, typed, notice] : cases) {
    Terminal t;
    open_event(t, "UpsModel=K-TRN010VQ-100\nEvent0=" + list + "\n", 0);
    t.press(way);
    t.type(typed);
    EXPECT_NE(t.text(20, 3, 74).find(notice), std::string::npos) << t.dump();
  }
}

TEST(EventEditor, JobsAreEditedAddedAndDeletedAndRefusedValuesAreNotTaken) {
  const std::string more = "LOGMSG(\"1\")O;LOGMSG(\"2\")O;LOGMSG(\"3\")O;LOGMSG(\"4\")O;";
  Terminal t;
  open_event(t,
             "Event3=" + kShutdown + "LOGMSG(\"old\")O;" + more +
                 "\nEvent24=LOGMSG(\"z\")O;LOGMSG(\"a\")O;SHUTDOWN(\"10\")O;\n",
             3);
  choose(t, 1);
  t.type("   ");
  t.press({Down});
  t.see("field can not be left blanc");
  t.press({Enter});
  t.type("x");
  t.press({Down, Enter, Down, Down, Enter});
  EXPECT_EQ(t.text(13, 4, 9) + t.text(14, 4, 17), "Periodic 60      seconds  ");
  t.press({Down});
  t.type("0090");
  t.press({Enter});
  t.see("Log Event");
  choose(t, 6);
  t.type("12a    ");
  t.press({Enter, Up});
  EXPECT_EQ(t.text(10, 14, 7), "12     ");
  t.type("9999");
  t.press({Down, F10});
  t.see("Shutdown System/ UPS in 5940 sec.");
  t.press({Up, Enter});  // not more than ten entries go round
  choose(t, 24);         // the bypass mode is not offered
  choose(t, 5);          // add, after three jobs and the spacer
  EXPECT_EQ(t.find("Add Job to List").row, 7);
  t.press({Enter});
  t.see("Send a Shutdown UPS Signal");
  t.type("default");
  t.press({F10});
  t.see("Shutdown System/ UPS in default sec.");
  EXPECT_EQ(t.find("UPS in 10 sec."), (Position{-1, -1})) << "a list shuts down once";
  for (const int job : {3, 1}) {
    choose(t, job == 3 ? 6 : 5);
    choose(t, job);
    EXPECT_EQ(t.find("default sec.").row, -1);
  }
  choose(t, 4);  // delete mode again; leaving it leaves the job list too
  t.press({Escape});
  t.see("Eventlist");
  t.press({Escape});
  save_and_exit(t);
  EXPECT_EQ(setting(t, "Event3"), "LOGMSG(\"x\")P90;" + more + "SHUTDOWN(\"5940\")O;");
  EXPECT_EQ(setting(t, "Event24"), "LOGMSG(\"a\")O;");
}

}  // namespace

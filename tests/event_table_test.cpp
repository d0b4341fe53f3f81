#include "setup/events_cfg/event_table.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "corbix/xconfig.h"
#include "setup/cfgmask/settings.h"
#include "setup/events_cfg/job_language.h"
#include "util/text.h"

namespace {

const std::string kFile = "event_table_test." + std::to_string(getpid()) + ".cfg";
const std::string kOther = "; site note\nPort=1\n";  // what else stands in the file

void write_cfg(const std::string &content) { std::ofstream(kFile) << content; }
std::string read_cfg() {
  std::ostringstream content;
  content << std::ifstream(kFile).rdbuf();
  return content.str();
}

std::string list_of(int event) { return CStrArr_GetStr(&EventStrings, event); }
void set_list(int event, const std::string &list) { ASSERT_EQ(store_event_jobs(event, list.c_str()), 1); }

void add_job(int event, int function, const std::vector<const char *> &values, const char *timing) {
  JobRec job;
  std::string text;
  ASSERT_EQ(fill_function_rec(job, function, event), 1);
  for (size_t k = 0; k < values.size(); ++k) cpynstr(job.params[k].value, values[k]);
  cpynstr(job.timing, timing);
  ASSERT_EQ(build_func_string(job, text), 1);
  ASSERT_EQ(append_event_function(event, text), 1);
}

class EventTable : public testing::Test {
 protected:
  void SetUp() override {
    language = 0;
    DbFuncListCnt = 0;
    event_ups_name[0] = '\0';
    StdRec = {};
    write_cfg(kOther);
    ASSERT_EQ(init_event_strings(kFile.c_str()), 25);
  }
  void TearDown() override {
    XCloseProfile();
    std::remove(kFile.c_str());
  }
};

}  // namespace

TEST_F(EventTable, JapaneseDefaultsDifferWhereTheyShould) {
  language = 1;
  EXPECT_EQ(fill_event_strings("any"), 25);
  EXPECT_EQ(EventStrings.nCount, 25);
  EXPECT_TRUE(list_of(18).ends_with(")O;SHUTDOWN(\"default\")T15;"));
  EXPECT_NE(list_of(19).find("EVENTLOG(\"information\",100"), std::string::npos);
}

TEST_F(EventTable, MissingKeysAreEmptyListsAndAMissingFileChangesNothing) {
  EXPECT_EQ(save_new_event_cfg(kFile.c_str()), 25);
  EXPECT_EQ(read_cfg(), kOther);
  write_cfg("Port=1\nEvent3 = LOGMSG(\"x\")O; \nEvent24=;;\nEvent25=y\n");
  cpynstr(StdRec.model, "Halvoris 500VA");
  EXPECT_EQ(init_event_strings(kFile.c_str()), 25);
  for (int event = 0; event < kEventCount; ++event) {
    EXPECT_EQ(list_of(event), event == 3 ? "LOGMSG(\"x\")O;" : event == 24 ? ";;" : "");
  }
  EXPECT_STREQ(event_ups_name, "Halvoris 500VA");
  EXPECT_EQ(init_event_strings("no such file"), 0);
  EXPECT_EQ(list_of(24), ";;");
}

TEST_F(EventTable, AnotherModelBringsTheDefaultsBack) {
  const std::string model(30, 'm');
  EXPECT_EQ(reset_lists_for_model(""), 25);  // no model, as the file was read
  EXPECT_EQ(list_of(3), "");
  EXPECT_EQ(reset_lists_for_model((model + "x").c_str()), 25);
  EXPECT_EQ(list_of(3), eventlist[3].jobs[0]);
  set_list(3, "LOGMSG(\"mine\")O;");
  EXPECT_EQ(reset_lists_for_model((model + "y").c_str()), 25);  // the same in its first 30 characters
  EXPECT_EQ(list_of(3), "LOGMSG(\"mine\")O;");
  DbEventListCnt = 0;
  EXPECT_EQ(reset_lists_for_model(model.c_str()), 25);
  EXPECT_EQ(list_of(3), eventlist[3].jobs[0]);
}

TEST_F(EventTable, SavesTheDefaults) {
  fill_event_strings("");
  std::string expected = kOther;
  for (int event = 0; event < kEventCount; ++event) {
    expected += "Event" + std::to_string(event) + "=" + eventlist[event].jobs[0] + "\n";
  }
  ASSERT_EQ(save_new_event_cfg(kFile.c_str()), 25);
  EXPECT_EQ(read_cfg(), expected);
}

TEST_F(EventTable, SavesEveryFunctionInOneListAndTheSchedulersJobs) {
  add_job(7, 0, {"300"}, "T15");
  add_job(7, 1, {"local", "in a (b), c"}, "O");
  add_job(7, 2, {"10.0.0.1", "6003"}, "A");
  add_job(7, 3, {"a@b", "X", "no", "yes", "no", "no"}, "O");
  add_job(7, 4, {"beep"}, "O");
  add_job(7, 5, {"/bin/x", ""}, "R5");
  add_job(7, 6, {"a | b"}, "P60");
  add_job(7, 7, {"*", "601"}, "P30");
  add_job(7, 8, {"notice", "100", "t"}, "O");
  add_job(kSchedulerEvent, 6, {"in time"}, "OX5");
  EXPECT_EQ(tail_shutdown_function(7), kFunctionCount);
  const std::string list =
      R"(MESSAGE("local","in a (b), c")O;EXECUTE("send","10.0.0.1","6003")A;)"
      R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t","a@b")"
      R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${#USETEXT?,"-attach","#LOGFILETXT"}${}${},"X")O;)"
      R"(EXECUTE("alarm.bat","beep")O;EXECUTE("/bin/x","")R5;LOGMSG("a | b")P60;MESSAGEID("*",601)P30;)"
      R"(EVENTLOG("notice",100,"t")O;SHUTDOWN("300")T15;)";
  const std::string scheduled = "Event20=LOGMSG(\"in time\")OX5;\n";
  ASSERT_EQ(save_new_event_cfg(kFile.c_str()), 25);
  EXPECT_EQ(read_cfg(), kOther + "Event7=" + list + "\n" + scheduled);

  ASSERT_EQ(init_event_strings(kFile.c_str()), 25);
  EXPECT_EQ(list_of(7), list);
  set_list(7, "");
  ASSERT_EQ(save_new_event_cfg(kFile.c_str()), 25);
  EXPECT_EQ(read_cfg(), kOther + scheduled);
}

TEST_F(EventTable, ARefusedListLeavesTheProfileOpen) {
  set_list(3, std::string(1018, 'x'));
  EXPECT_EQ(save_new_event_cfg(kFile.c_str()), 0);
  EXPECT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(save_new_event_cfg("no such folder/ups.cfg"), 0);
}

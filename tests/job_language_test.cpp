#include "setup/jobs/job_language.h"

#include <tuple>

#include "corbix/xconfig.h"
#include "setup/jobs/email_job.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_fields.h"
#include "setup/settings/settings.h"
#include "tests/folder.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

using Texts = std::vector<std::string>;

struct Jobs : testing::Test {
  Jobs() {
    init_function_tab();
    fill_event_strings("");
  }
  ~Jobs() override { free_act_event(); }
};

std::unique_ptr<JobRec> parsed(const std::string &text) {
  auto job = std::make_unique<JobRec>();
  parse_job(text.c_str(), 0, *job);
  return job;
}

std::string built(const JobRec &job) {
  std::string text;
  return build_func_string(job, text) ? text : "refused: " + text;
}

Texts values_of(const JobRec &job) {
  Texts values;
  for (int k = 0; k < job.param_count; ++k) values.emplace_back(job.params[k].value);
  return values;
}

std::string line_of(const JobRec &job) {
  char line[kJobLineLength + 1];
  job_line(job, line);
  return line;
}

void set_list(int event, const std::string &list) { ASSERT_EQ(store_event_jobs(event, list.c_str()), 1); }
std::string list_of(int event) { return CStrArr_GetStr(&EventStrings, event); }

TEST_F(Jobs, HaveAllThatTheCatalogueSaysOfTheirFunction) {
  for (const int chosen : {1, 0}) {
    language = chosen;
    DbFuncListCnt = 0;
    auto job = std::make_unique<JobRec>();
    for (int i = 0; i < kFunctionCount; ++i) {
      EXPECT_EQ(fill_function_rec(*job, i, 0), 1);
      std::string prefix = job->fixed_prefix;
      if (!prefix.empty()) prefix = "(" + prefix.substr(0, prefix.size() - 1) + ")";
      const Texts texts = {job->name + prefix, job->title, job->description, job->summary,
                           std::to_string(job->param_count)};
      EXPECT_EQ(joined(texts, "|"), func_list[i][chosen]);
      for (int k = 0; k < job->param_count; ++k) {
        const auto &[name, type, help, example] = job->params[k].desc;
        const std::string text = joined(Texts{name, type, help, example}, "|");
        EXPECT_EQ(text, std::string(funcpar_list[i][k][chosen]).substr(0, text.size()));
      }
    }
    EXPECT_EQ(fill_function_rec(*job, kFunctionCount, kSchedulerEvent), 0);
    EXPECT_STREQ(job->timing, "OX");
  }
}

TEST_F(Jobs, SplitsOneJob) {
  const std::tuple<std::string, int, const char *, const char *, const char *> cases[] = {
      // clang-format off
  //  text                                       function  values                timing      line
    { R"(MESSAGE( "a" ,"b")O)",                     1,     " a;,b",              "O",        "Message to  a" },  // kept
    { R"(MESSAGE("a","b)O)",                        1,     "a;",                 "O",        "Message to a" },
    { R"(MESSAGE("2","x")O)",                       1,     "2;x",                "O",        "Message to x" },  // kept
    { R"(EXECUTE("alarm.bat","Al|arm")O)",          4,     "Al|arm",             "O",        " Al arm" },
    { R"(EVENTLOG("Warning",,"t")O)",               8,     "information;;t",     "O",        " information" },
    { "LOGMSG(\"no end\"O",                         6,     "",                   "",         "Log Event" },
    { "LOGMSG)\"x\"(O",                            -1,     "",                   "\"x\"(O",  "LOGMSG)\"x\"(O" },
    { "|||(",                                      -1,     "",                   "",         "   (" },
      // clang-format on
  };
  for (const auto &[text, function, values, timing, line] : cases) {
    const auto job = parsed(text);
    EXPECT_EQ(job->function, function) << text;
    EXPECT_EQ(joined(values_of(*job), ";"), values);
    EXPECT_STREQ(job->timing, timing) << text;
    EXPECT_EQ(line_of(*job), line);
    EXPECT_EQ(job->name, text.substr(0, text.find('(')));
    EXPECT_TRUE(function >= 0 || built(*job) == text + ";") << text;
  }
  const auto job = parsed("MESSAGE(\"\",\"\")O");
  cpynstr(job->summary, "#3 #x ## #" + std::string(80, '.') + "#");
  EXPECT_EQ(line_of(*job), "3 x # " + std::string(58, '.'));
  char rest[] = "re\"s\"t";
  EXPECT_EQ(getRepTime(nullptr, rest, 5) + getRepTime("a)O", nullptr, 5) + getRepTime("a)O", rest, 0), 0);
  EXPECT_TRUE(removeQuotes(nullptr) == nullptr && std::string_view(removeQuotes(rest)) == "s");
}

TEST_F(Jobs, ComeBackFromTheirMaskUnlessAValueIsMissing) {
  const std::tuple<std::string, int, const char *, std::string> cases[] = {
      // clang-format off
  //  job                             field  typed      comes back, "" for never
    { R"(LOGMSG("a")P60)",              0,   "b",       R"(LOGMSG("b")P60;)" },
    { R"(LOGMSG("a")P60)",              0,   "",        "" },
    { R"(MESSAGEID("u",601)O)",         1,   "",        "" },
    { R"(EVENTLOG("error",5,"t")R7)",   2,   "x",       R"(EVENTLOG("error",100,"x")R7;)" },
    { R"(EVENTLOG("error",5,"t")R7)",   2,   "",        "" },
    { R"(EXECUTE("send","h","1")A)",    1,   "",        R"(EXECUTE("send","h","")A;)" },
    { R"(SHUTDOWN("5")O)",              0,   "9999999", R"(SHUTDOWN("5940")O;)" },
      // clang-format on
  };
  for (const auto &[text, field, typed, expected] : cases) {
    const auto job = parsed(text);
    load_function_values(*job, 0);
    put_mask_text(job->function, field, typed);
    EXPECT_EQ(save_function_values(*job, 0), !expected.empty());
    EXPECT_EQ(built(*job), expected.empty() ? text + ";" : expected);
  }
}

TEST_F(Jobs, TimingThroughTheTwoFields) {
  const std::tuple<int, const char *, const char *, const char *, int, const char *> cases[] = {
      // clang-format off
  //  event             code         label        number   field            stored
    { 0,               "",          "Once     ", "0",      kFieldReadOnly, "O" },
    { 0,               "X9",        "Once     ", "0",      kFieldReadOnly, "O" },
    { 0,               "P",         "Periodic ", "",       kFieldDigits,   "P0" },
    { 0,               "T12345678", "Timed    ", "123456", kFieldDigits,   "T123456" },
    { kSchedulerEvent, "OX",        "Do before", "0",      kFieldDigits,   "OX0" },
    { kSchedulerEvent, "OX5",       "Do before", "5",      kFieldDigits,   "OX5" },
    { kSchedulerEvent, "P60",       "Do before", "0",      kFieldDigits,   "OX0" },
      // clang-format on
  };
  char label[kTimingLabelSize], time[kTimingNumberSize], stored[256] = "before";
  EXPECT_EQ(set_repeat_value(stored, "Sometimes", "1", 0), 0);
  EXPECT_STREQ(stored, "before");
  for (const auto &[event, code, shown, number, field, expected] : cases) {
    int state = 0;
    get_repeat_value(code, label, time, &state, event);
    EXPECT_EQ(std::tuple(std::string(label), std::string(time), state), std::tuple(shown, number, field)) << code;
    Xrtrim(label);  // as the field gives it back
    EXPECT_EQ(set_repeat_value(stored, label, time, event), 1);
    EXPECT_STREQ(stored, expected);
  }
}

TEST_F(Jobs, EmailsTakeTheirTextFromTheLastCommaOn) {
  const std::string start =
      R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t",)";
  const std::string signature = R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"})";
  for (const char *end : {"\"R\",\"X\")O", "$a)O"}) {  // no blocks, no comma
    const auto bad = parsed(start + end);
    EXPECT_EQ(values_of(*bad), Texts(6));
    EXPECT_EQ(get_function_params(*bad), 0);
  }
  const auto job = parsed(start + "\"R\"" + signature + "${}${a}${}${},\"cost: $5\")O");
  EXPECT_EQ(values_of(*job), (Texts{"R", "cost: $5", "", "a", "", ""}));
  cpynstr(job->params[1].value, "one, two");  // kept: a text with a comma comes apart
  EXPECT_EQ(built(*job), start + "\"R\",\"one" + signature + "${}${}${}${}, two\")O;");
}

TEST_F(Jobs, ListsSplitAtEverySemicolonAndKeepToTheirLength) {
  EXPECT_EQ(split_joblist(";;a;;b(\"x;y\")O;"), (Texts{"a", "b(\"x", "y\")O"}));
  EXPECT_EQ(split_joblist(join_joblist(Texts(33, "j")).c_str()).size(), 32U);
  EXPECT_EQ(split_joblist(std::string(1100, 'j').c_str())[0].size(), 1023U);
  const std::string most(1019, 'a');
  EXPECT_EQ(join_joblist(Texts{most, "bcd"}), most + ";bcd;");
  EXPECT_EQ(join_joblist(Texts{most, "bcde", "fg"}), most + ";fg;");
}

TEST_F(Jobs, ChangingAListLeavesItsOtherJobsAsTheyStand) {
  const std::string odd = " LOGMSG ( odd )x;MESSAGE(\"a\";";
  set_list(3, odd + "LOGMSG(\"b\")O;");
  ASSERT_EQ(parse_joblist("ignored", 3), 3);
  cpynstr(ActEvent[2]->params[0].value, "new");
  EXPECT_EQ(replace_event_function(3, 2, built(*ActEvent[2])), 1);
  EXPECT_EQ(append_event_function(3, "MESSAGEID(\"u\",1)O;"), 1);
  EXPECT_EQ(list_of(3), odd + "LOGMSG(\"new\")O;MESSAGEID(\"u\",1)O;");
  EXPECT_EQ(del_event_function(3, 2), 1);
  for (const int none : {-1, 3}) EXPECT_EQ(del_event_function(3, none) + replace_event_function(3, none, "x"), 0);
  EXPECT_EQ(append_event_function(3, std::string(1000, 'x')), 0);
  EXPECT_EQ(list_of(3), odd + "MESSAGEID(\"u\",1)O;");
  EXPECT_EQ(del_event_function(3, 0) + replace_event_function(3, 0, "x"), 2);
  EXPECT_EQ(list_of(3), "x;MESSAGEID(\"u\",1)O;");
  EXPECT_EQ(parse_joblist("", 3), 2);
  EXPECT_EQ(ActEvent[2], nullptr) << "the record of the list before";
  set_list(3, "SHUTDOWN(\"1\")O;LOGMSG(\"a\")O;SHUTDOWN(\"2\")O;??;");  // the last one stays and is last
  EXPECT_EQ(tail_shutdown_function(3), 3);
  EXPECT_EQ(list_of(3), "LOGMSG(\"a\")O;??;SHUTDOWN(\"2\")O;");
  set_list(3, join_joblist(Texts(32, "j")));
  EXPECT_EQ(append_event_function(3, "j"), 0);
}

// --- the lists in the file

TEST_F(Jobs, ListsAreReadAndWrittenAndAMissingFileChangesNothing) {
  const WorkingFolder folder;
  const std::string other = "; site note\nPort=1\n";
  event_ups_name[0] = '\0';
  StdRec = {};
  put_file("ups.cfg", other);
  EXPECT_EQ(init_event_strings("ups.cfg") + save_new_event_cfg("ups.cfg"), 50);
  EXPECT_EQ(get_file("ups.cfg"), other);
  put_file("ups.cfg", "Port=1\nEvent3 = LOGMSG(\"x\")O; \nEvent24=;;\nEvent25=y\n");
  cpynstr(StdRec.model, "Halvoris 500VA");
  EXPECT_EQ(init_event_strings("ups.cfg"), 25);
  for (int event = 0; event < kEventCount; ++event) {
    EXPECT_EQ(list_of(event), event == 3 ? "LOGMSG(\"x\")O;" : event == 24 ? ";;" : "");
  }
  EXPECT_STREQ(event_ups_name, "Halvoris 500VA");
  EXPECT_EQ(init_event_strings("no such file"), 0);
  EXPECT_EQ(list_of(24), ";;");
  set_list(3, std::string(1018, 'x'));
  EXPECT_EQ(save_new_event_cfg("ups.cfg"), 0);  // the profile stays open
  EXPECT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(save_new_event_cfg("no such folder/ups.cfg"), 0);
}

TEST_F(Jobs, AnotherModelBringsTheDefaultListsBack) {
  const std::string mine = "LOGMSG(\"mine\")O;", model(29, 'm');
  const std::tuple<std::string, int, bool> cases[] = {
      {"", 25, true},  // no model, as the file was read
      {model + "ax", 25, false},
      {model + "ay", 25, true},  // the same in its first 30 characters
      {model + "b", 25, false},
      {model + "b", 0, false},
  };
  event_ups_name[0] = '\0';
  for (const auto &[name, lists, stay] : cases) {
    set_list(3, mine);
    DbEventListCnt = lists;
    EXPECT_EQ(reset_lists_for_model(name.c_str()), 25);
    EXPECT_EQ(list_of(3), stay ? mine : eventlist[3].jobs[0]) << name;
  }
}

}  // namespace

#include "setup/jobs/job_language.h"

#include <cstdlib>
#include <cstring>
#include <random>

#include "corbix/xconfig.h"
#include "setup/jobs/email_job.h"
#include "setup/jobs/event_table.h"
#include "setup/settings/settings.h"
#include "tests/folder.h"
#include "util/text.h"

namespace {

using Texts = std::vector<std::string>;

void use_language(int chosen) {
  language = chosen;
  DbFuncListCnt = 0;
}

struct Jobs : testing::Test {
  Jobs() {
    use_language(0);
    init_function_tab();
    fill_event_strings("");
  }
  ~Jobs() override { free_act_event(); }
};

std::unique_ptr<JobRec> parsed(const std::string &text, int event = 0) {
  auto job = std::make_unique<JobRec>();
  parse_job(text.c_str(), event, *job);
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

// What the mask does to a job that is stored as it was shown: the timing goes through its two fields, the e-mail blocks
// through their answers.
void pass_through_mask(JobRec &job, int event) {
  char label[kTimingLabelSize], number[kTimingNumberSize];
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  ASSERT_EQ(set_repeat_value(job.timing, label, number, event), 1);
  for (int k = 2; job.function == kEmailFunction && k < job.param_count; ++k) {
    cpynstr(job.params[k].value, getEmailParamVal(job.params[k].value) ? "yes" : "no");
  }
}

void set_list(int event, const std::string &list) { ASSERT_EQ(store_event_jobs(event, list.c_str()), 1); }
std::string list_of(int event) { return CStrArr_GetStr(&EventStrings, event); }

const std::string kMailStart =
    R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t",)";
const std::string kSignature = R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"})";

TEST_F(Jobs, SplitsOneJob) {
  const struct {
    std::string text;
    int function;
    Texts values;
    const char *timing, *line;
  } cases[] = {
      {R"(MESSAGE( "a" ,"b")O)", 1, {" a", ",b"}, "O", "Message to  a"},  // kept: all in front of a quote is value
      {R"(MESSAGE("a","b)O)", 1, {"a", ""}, "O", "Message to a"},
      {R"(MESSAGE("2","x")O)", 1, {"2", "x"}, "O", "Message to x"},  // kept: a value is taken for a later number
      {R"(EXECUTE("alarm.bat","Al|arm")O)", 4, {"Al|arm"}, "O", " Al arm"},
      {R"(EVENTLOG("Warning",,"t")O)", 8, {"information", "", "t"}, "O", " information"},
      {"LOGMSG(\"no end\"O", 6, {""}, "", "Log Event"},
      {"LOGMSG)\"x\"(O", -1, {}, "\"x\"(O", "LOGMSG)\"x\"(O"},
      {"||| ", -1, {}, "", "    "},
  };
  for (const auto &c : cases) {
    const auto job = parsed(c.text);
    EXPECT_EQ(job->function, c.function) << c.text;
    EXPECT_EQ(values_of(*job), c.values) << c.text;
    EXPECT_STREQ(job->timing, c.timing) << c.text;
    EXPECT_EQ(line_of(*job), c.line) << c.text;
    EXPECT_TRUE(c.function >= 0 || built(*job) == c.text + ";") << c.text;
  }
  const auto job = parsed("MESSAGE(\"\",\"\")O");
  cpynstr(job->summary, "#3 #x ## #" + std::string(80, '.') + "#");
  EXPECT_EQ(line_of(*job), "3 x # " + std::string(58, '.'));
}

TEST_F(Jobs, TimingThroughTheTwoFields) {
  const struct {
    const char *code, *label, *time;
    int state, event;
    const char *stored;
  } cases[] = {
      {"X9", "Once     ", "0", kFieldReadOnly, 0, "O"},
      {"P", "Periodic ", "", kFieldDigits, 0, "P0"},
      {"OX", "Do before", "0", kFieldDigits, kSchedulerEvent, "OX0"},
      {"T12345678", "Timed    ", "123456", kFieldDigits, 0, "T123456"},
      {"OX5", "Do before", "5", kFieldDigits, kSchedulerEvent, "OX5"},
      {"P60", "Do before", "0", kFieldDigits, kSchedulerEvent, "OX0"},
  };
  char label[kTimingLabelSize], time[kTimingNumberSize], code[256] = "before";
  EXPECT_EQ(set_repeat_value(code, "Sometimes", "1", 0), 0);
  EXPECT_STREQ(code, "before");
  for (const auto &c : cases) {
    int state = 0;
    get_repeat_value(c.code, label, time, &state, c.event);
    EXPECT_STREQ(label, c.label);
    EXPECT_STREQ(time, c.time);
    EXPECT_EQ(state, c.state);
    Xrtrim(label);  // as the field gives it back
    EXPECT_EQ(set_repeat_value(code, label, time, c.event), 1);
    EXPECT_STREQ(code, c.stored);
  }
}

TEST_F(Jobs, EmailBlocksInBothDirections) {
  const std::pair<Texts, std::string> cases[] = {
      {{"R", "X", "yes", "no", "no", "no"}, R"(${#USEDATAEX?,"-attach","#LOGFILEBINEX"}${}${}${})"},
      {{"", "cost: $5", "yes", "yes", "yes", "yes"},
       R"(${#USEDATAEX?,"-attach","#LOGFILEBINEX"}${#USETEXT?,"-attach","#LOGFILETXT"})"
       R"(${@FUPSFUNC("trouble.dat","Trouble records",2013,"")?,"-attach","trouble.dat"})"
       R"(${@FUPSFUNC("opinfo.dat","Operating records",2012,"")?,"-attach","opinfo.dat"})"},
  };
  for (const auto &[values, blocks] : cases) {
    const std::string text = kMailStart + '"' + values[0] + '"' + kSignature + blocks + ",\"" + values[1] + "\")O";
    const auto job = parsed(text);
    parseEmailFuncStr(*job, 0);
    for (int field = 0; field < 6; ++field) get_field(&Func3Rec, Function3TabArr, field, job->params[field].value);
    EXPECT_EQ(values_of(*job), values);
    EXPECT_EQ(built(*job), text + ";");
  }
  const auto job = parsed(kMailStart + "\"R\",\"X\")O");  // no blocks
  EXPECT_EQ(values_of(*job), Texts(6));
  EXPECT_EQ(get_function_params(*job), 0);
}

TEST_F(Jobs, AnEmailTextWithACommaComesApart) {
  auto job = parsed(kMailStart + "\"R\"" + kSignature + "${}${}${}${},\"X\")O");
  cpynstr(job->params[1].value, "one, two");
  EXPECT_EQ(built(*job), kMailStart + "\"R\",\"one" + kSignature + "${}${}${}${}, two\")O;");
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
  EXPECT_EQ(ActEvent[3], nullptr);
  cpynstr(ActEvent[2]->params[0].value, "new");
  EXPECT_EQ(replace_event_function(3, 2, built(*ActEvent[2])), 1);
  EXPECT_EQ(append_event_function(3, "MESSAGEID(\"u\",1)O;"), 1);
  EXPECT_EQ(list_of(3), odd + "LOGMSG(\"new\")O;MESSAGEID(\"u\",1)O;");
  EXPECT_EQ(del_event_function(3, 2), 1);
  EXPECT_EQ(del_event_function(3, 3), 0);
  EXPECT_EQ(replace_event_function(3, -1, "x"), 0);
  EXPECT_EQ(append_event_function(3, std::string(1000, 'x')), 0);
  EXPECT_EQ(list_of(3), odd + "MESSAGEID(\"u\",1)O;");
  set_list(3, "SHUTDOWN(\"1\")O;LOGMSG(\"a\")O;SHUTDOWN(\"2\")O;??;");  // the last one stays and is last
  EXPECT_EQ(tail_shutdown_function(3), 3);
  EXPECT_EQ(list_of(3), "LOGMSG(\"a\")O;??;SHUTDOWN(\"2\")O;");
  set_list(3, join_joblist(Texts(32, "j")));
  EXPECT_EQ(append_event_function(3, "j"), 0);
}

// --- random lists

std::mt19937 random_number(20);
int below(size_t limit) { return static_cast<int>(random_number() % limit); }

// What the mask's fields let pass: two-byte characters, and ASCII without the characters of the language.
std::string random_text(const char *refused) {
  std::string text;
  for (int left = below(61); left > 0; --left) {
    const char c = static_cast<char>(' ' + below(95));
    if (left >= 2 && below(4) == 0) {
      text += {'\xA4', static_cast<char>(0xA1 + below(0x5E))};
      --left;
    } else if (std::strchr(refused, c) == nullptr) {
      text += c;
    }
  }
  return text;
}

std::unique_ptr<JobRec> random_job(int event) {
  auto job = std::make_unique<JobRec>();
  fill_function_rec(*job, below(kFunctionCount), event);
  const bool email = job->function == kEmailFunction;
  for (int k = 0; k < job->param_count; ++k) {
    const bool text = std::string_view(job->params[k].desc.type) == "STRING";
    std::string value = text ? random_text(email ? "\"();|,$" : "\"();|") : std::to_string(below(100000));
    if (email && k >= 2) value = below(2) ? "yes" : "no";
    if (job->function == kSyslogFunction && k == 0) value = funcframe_label07[below(kSyslogLevelCount)][0];
    cpynstr(job->params[k].value, value);
  }
  const char *label = funcframe_label02[below(kTimingCount)][language];
  EXPECT_EQ(set_repeat_value(job->timing, label, std::to_string(below(9999999)).c_str(), event), 1);
  return job;
}

TEST_F(Jobs, RandomListsReadBackToTheSameRecords) {
  const char *wanted = std::getenv("KAV_JOB_LISTS");  // a short run by default; the long one sets 100,000
  for (int round = 0; round < (wanted == nullptr ? 2000 : std::atoi(wanted)); ++round) {
    use_language(round % 2);
    const int event = below(kEventCount);
    Texts texts;
    std::vector<std::unique_ptr<JobRec>> jobs;
    for (size_t length = 0; length < kMaxListText - 500;) {
      jobs.push_back(below(5) ? random_job(event) : parsed(R"(?EXECUTEH("$,LOGMSG(")", event));
      texts.push_back(built(*jobs.back()));
      length += texts.back().size();
      texts.back().pop_back();
    }
    if (texts.size() > kMaxJobs) continue;
    const std::string list = join_joblist(texts);
    set_list(event, list);
    ASSERT_EQ(parse_joblist("", event), static_cast<int>(texts.size()));
    for (size_t i = 0; i < texts.size(); ++i) {
      JobRec &read = *ActEvent[i];
      pass_through_mask(read, event);
      ASSERT_EQ(values_of(read), values_of(*jobs[i])) << texts[i];
      ASSERT_EQ(built(read), texts[i] + ";");
      ASSERT_EQ(replace_event_function(event, static_cast<int>(i), built(read)), 1);
    }
    ASSERT_EQ(list_of(event), list);
  }
}

// --- the lists in the file

constexpr char kFile[] = "ups.cfg";
const std::string kOther = "; site note\nPort=1\n";  // what else stands in the file

struct EventTable : Jobs {
  const WorkingFolder folder;
  EventTable() {
    event_ups_name[0] = '\0';
    StdRec = {};
    put_file(kFile, kOther);
    EXPECT_EQ(init_event_strings(kFile), 25);
  }
};

TEST_F(EventTable, MissingKeysAreEmptyListsAndAMissingFileChangesNothing) {
  EXPECT_EQ(save_new_event_cfg(kFile), 25);
  EXPECT_EQ(get_file(kFile), kOther);
  put_file(kFile, "Port=1\nEvent3 = LOGMSG(\"x\")O; \nEvent24=;;\nEvent25=y\n");
  cpynstr(StdRec.model, "Halvoris 500VA");
  EXPECT_EQ(init_event_strings(kFile), 25);
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

TEST_F(EventTable, ARefusedListLeavesTheProfileOpen) {
  set_list(3, std::string(1018, 'x'));
  EXPECT_EQ(save_new_event_cfg(kFile), 0);
  EXPECT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(save_new_event_cfg("no such folder/ups.cfg"), 0);
}

}  // namespace

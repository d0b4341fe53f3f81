#include "setup/jobs/job_language.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

#include "setup/jobs/email_job.h"
#include "setup/jobs/event_table.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

std::unique_ptr<JobRec> ActEvent[kMaxJobs];

namespace {

constexpr const char *kJobEnd = ";";
constexpr int kJobBuffer = 1024;
constexpr size_t kMaxJobText = 1024;  // of name, arguments and timing code together
constexpr std::string_view kShutdownName = "SHUTDOWN";
constexpr char kTimingLetters[kTimingCount] = {'O', 'A', 'P', 'T', 'R'};
constexpr int kFirstTimingWithNumber = 2;

// Accepted beside the names of funcframe_label07, row by row.
constexpr std::string_view kSyslogAliases[kSyslogLevelCount] = {"",        "",        "",           "error",
                                                                "warning", "success", "information"};

bool is_quoted(const ParamDesc &param) {
  const std::string_view type = param.type;
  return type == "STRING" || type == "FILE";
}

// The value at position `at`, which moves past its closing quote; what stands in front of the opening one belongs to
// it. Empty when the quotes are not closed.
std::string quoted_value(std::string_view text, size_t &at) {
  std::string value;
  for (int quotes = 0; at < text.size();) {
    const char c = text[at++];
    if (c != '"') {
      value += c;
    } else if (++quotes == 2) {
      return value;
    }
  }
  return "";
}

// The value at position `at`, which moves to the "," after it or to the end.
std::string bare_value(std::string_view text, size_t &at) {
  const size_t end = std::min(text.find(',', at), text.size());
  std::string value(text.substr(at, end - at));
  at = end;
  return value;
}

// What stands between the first "(" and the last ")"; empty without either.
std::string_view argument_part(std::string_view job) {
  const size_t open = job.find('(');
  const size_t close = job.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return "";
  return job.substr(open + 1, close - open - 1);
}

// The argument list of a record. 1, or 0 when it can't be put together.
int write_arguments(const JobRec &job, std::string &arguments) {
  arguments = job.fixed_prefix;
  if (job.function == kEmailFunction) return getEmailParamStr(job, arguments);
  for (int k = 0; k < job.param_count; ++k) {
    const JobParam &param = job.params[k];
    const char *quote = is_quoted(param.desc) ? "\"" : "";
    if (k > 0) arguments += ',';
    arguments += quote;
    arguments += param.value;
    arguments += quote;
  }
  return 1;
}

int timing_of_letter(char letter) {
  const char *const end = kTimingLetters + kTimingCount;
  const char *const found = std::find(kTimingLetters, end, letter);
  return found == end ? 0 : static_cast<int>(found - kTimingLetters);
}

std::vector<std::string> jobs_of_event(int event) { return split_joblist(CStrArr_GetStr(&EventStrings, event)); }

int store_jobs(int event, std::span<const std::string> jobs) {
  return store_event_jobs(event, join_joblist(jobs).c_str());
}

std::string without_job_end(const std::string &text) { return text.substr(0, text.find(kJobEnd)); }

}  // namespace

// --- lists

std::vector<std::string> split_joblist(const char *list) {
  std::vector<std::string> jobs;
  const int count = std::min(numtoken(list, kJobEnd), kMaxJobs);
  for (int i = 1; i <= count; ++i) {
    char job[kJobBuffer];
    jobs.emplace_back(token(job, kJobBuffer, list, kJobEnd, i));
  }
  return jobs;
}

std::string join_joblist(std::span<const std::string> jobs) {
  std::string list;
  for (const std::string &job : jobs) {
    if (list.size() + job.size() >= kMaxListText) continue;
    list += job;
    list += kJobEnd;
  }
  return list;
}

void put_shutdown_last(std::vector<std::string> &jobs) {
  std::string shutdown;
  for (const std::string &job : jobs) {
    if (job.starts_with(kShutdownName)) shutdown = job;
  }
  std::erase_if(jobs, [](const std::string &job) { return job.starts_with(kShutdownName); });
  if (!shutdown.empty()) jobs.push_back(shutdown);
}

// --- one job

int getNameAndParameter(const char *job, char *name, int name_size, char *args, int args_size) {
  const std::string_view text = job;
  const size_t open = text.find('(');
  cpynstr(name, open == std::string_view::npos ? "" : text.substr(0, open), name_size);
  cpynstr(args, argument_part(text), args_size);
  return open != std::string_view::npos && text.find(')') != std::string_view::npos;
}

int getRepTime(const char *job, char *out, int size) {
  if (job == nullptr || out == nullptr || size < 1) return 0;
  const std::string_view text = job;
  const size_t close = text.rfind(')');
  cpynstr(out, close == std::string_view::npos ? "" : text.substr(close + 1), size);
  return 1;
}

int find_function(std::span<const FuncListRec> catalogue, const char *name, const char *args) {
  const std::string_view arguments = args;
  const auto found = std::find_if(catalogue.begin(), catalogue.end(), [&](const FuncListRec &row) {
    return std::string_view(row.name) == name && arguments.starts_with(row.fixed_prefix);
  });
  return found == catalogue.end() ? -1 : static_cast<int>(found - catalogue.begin());
}

int get_function_typ(const char *name, const char *args) { return find_function(function_catalogue(), name, args); }

int get_function_params(JobRec &job) {
  if (job.function == kEmailFunction) return getEmailParams(job);
  const std::string_view text = job.arguments;
  size_t at = std::min(std::strlen(job.fixed_prefix), text.size());
  for (int k = 0; k < job.param_count; ++k) {
    if (k > 0 && at < text.size()) ++at;  // the "," after the value before
    JobParam &param = job.params[k];
    const std::string value = is_quoted(param.desc) ? quoted_value(text, at) : bare_value(text, at);
    const bool is_level = job.function == kSyslogFunction && std::string_view(param.desc.name) == "TYPE";
    cpynstr(param.value, is_level ? ms_to_syslog(value.c_str()) : value);
  }
  return 1;
}

void parse_job(const char *text, int event, JobRec &job) {
  char name[kJobTextSize];
  char arguments[kJobTextSize];
  char timing[sizeof(job.timing)];
  getNameAndParameter(text, name, sizeof(name), arguments, sizeof(arguments));
  getRepTime(text, timing, sizeof(timing));
  fill_function_rec(job, get_function_typ(name, arguments), event);
  cpynstr(job.text, text);
  cpynstr(job.timing, timing);
  cpynstr(job.arguments, arguments);
  cpynstr(job.name, name);
  get_function_params(job);
}

int build_func_string(const JobRec &job, std::string &out) {
  if (job.function < 0) {
    out = job.text;
    out += kJobEnd;
    return 1;
  }
  out = job.name;
  std::string arguments;
  if (!write_arguments(job, arguments)) return 0;
  if (out.size() + arguments.size() + std::strlen(job.timing) > kMaxJobText) return 0;
  out += '(' + arguments + ')' + job.timing + kJobEnd;
  return 1;
}

const char *ms_to_syslog(const char *level) {
  const std::string_view text = level;
  if (text.empty()) return level;
  for (int i = 0; i < kSyslogLevelCount; ++i) {
    const char *name = funcframe_label07[i][language];
    if (text == name || text == kSyslogAliases[i]) return name;
  }
  // kept: levels with a capital letter, as in lists in use, come here too
  return funcframe_label07[kSyslogLevelCount - 1][language];
}

char *removeQuotes(char *text) {
  if (text == nullptr) return nullptr;
  const std::string_view all = text;
  const size_t first = all.find('"');
  if (first == std::string_view::npos) return text;
  const size_t last = all.rfind('"');
  const std::string_view inside = all.substr(first + 1, last == first ? std::string_view::npos : last - first - 1);
  cpynstr(text, inside, lenstr(text) + 1);
  return text;
}

// --- the timing in the mask's two fields

void get_repeat_value(const char *code, char (&label)[kTimingLabelSize], char (&time)[kTimingNumberSize], int *state,
                      int event) {
  const std::string_view text = code;
  if (event == kSchedulerEvent) {
    cpynstr(label, funcframe_label06[language]);
    cpynstr(time, text.size() > 2 ? text.substr(2) : "0");
    *state = kFieldDigits;
    return;
  }
  const int timing = text.empty() ? 0 : timing_of_letter(text[0]);
  const bool has_number = timing >= kFirstTimingWithNumber;
  cpynstr(label, funcframe_label02[timing][language]);
  cpynstr(time, has_number ? text.substr(1) : "0");
  *state = has_number ? kFieldDigits : kFieldReadOnly;
}

int set_repeat_value(char (&code)[256], const char *label, const char *time, int event) {
  std::string number(std::string_view(time).substr(0, kTimingNumberSize - 1));
  if (number.find_first_not_of(' ') == std::string::npos) number = "0";  // no code is a bare letter
  if (event == kSchedulerEvent) {
    cpynstr(code, "OX" + number);
    return 1;
  }
  for (int timing = 0; timing < kTimingCount; ++timing) {
    // the form library gives a label back without its trailing blanks
    if (!std::string_view(funcframe_label02[timing][language]).starts_with(label)) continue;
    cpynstr(code, kTimingLetters[timing] + (timing >= kFirstTimingWithNumber ? number : ""));
    return 1;
  }
  return 0;
}

JobTimes job_times(const char *code, int event, int32_t check_rate) {
  char label[kTimingLabelSize];
  char text[kTimingNumberSize];
  int state = 0;
  get_repeat_value(code, label, text, &state, event);
  const int32_t number = to_int32(text);
  if (event == kSchedulerEvent) return {-number * 60, 0};
  switch (kTimingLetters[timing_of_letter(*code)]) {
    case 'A':
      return {0, check_rate};
    case 'P':
      return {0, number};
    case 'T':
      return {number, 0};
    case 'R':
      return {number, number};
    default:
      return {0, 0};
  }
}

// --- the jobs of one event in EventStrings

int parse_joblist(const char * /*joblist*/, int event) {
  free_act_event();
  int count = 0;
  for (const std::string &text : jobs_of_event(event)) {
    std::unique_ptr<JobRec> job(new (std::nothrow) JobRec);
    if (job == nullptr) {
      std::perror("parse_joblist");
      break;
    }
    parse_job(text.c_str(), event, *job);
    ActEvent[count++] = std::move(job);
  }
  return count;
}

void free_act_event() {
  for (std::unique_ptr<JobRec> &job : ActEvent) job.reset();
}

int replace_event_function(int event, int job, const std::string &text) {
  std::vector<std::string> jobs = jobs_of_event(event);
  if (job < 0 || job >= static_cast<int>(jobs.size())) return 0;
  jobs[static_cast<size_t>(job)] = without_job_end(text);
  return store_jobs(event, jobs);
}

int del_event_function(int event, int job) {
  std::vector<std::string> jobs = jobs_of_event(event);
  if (job < 0 || job >= static_cast<int>(jobs.size())) return 0;
  jobs.erase(jobs.begin() + job);
  return store_jobs(event, jobs);
}

int append_event_function(int event, const std::string &text) {
  std::vector<std::string> jobs = jobs_of_event(event);
  if (jobs.size() == kMaxJobs) return 0;
  const std::string list = join_joblist(jobs);
  jobs.push_back(without_job_end(text));
  const std::string longer = join_joblist(jobs);
  return longer == list ? 0 : store_event_jobs(event, longer.c_str());
}

int tail_shutdown_function(int event) {
  std::vector<std::string> jobs = jobs_of_event(event);
  put_shutdown_last(jobs);
  const std::string list = join_joblist(jobs);
  return store_event_jobs(event, list.c_str()) ? numtoken(list.c_str(), kJobEnd) : 0;
}

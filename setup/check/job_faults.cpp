#include "setup/check/job_faults.h"

#include <algorithm>
#include <memory>

#include "setup/check/faults.h"
#include "setup/check/texts.h"
#include "setup/jobs/job_fields.h"
#include "setup/jobs/job_language.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

std::string known_levels() {
  std::vector<std::string> levels;
  for (const auto &level : funcframe_label07) levels.emplace_back(level[language]);
  return joined(levels, ", ");
}

// Case counts for the editor alone: lists in use have "Warning".
std::string level_fault(const JobRec &job) {
  char word[kJobTextSize];
  ctoken(word, sizeof word, job.arguments, "\"", 2);
  const std::string level = word;
  strlow(word);
  const std::string_view known = ms_to_syslog(word);
  const std::string_view otherwise = funcframe_label07[kSyslogLevelCount - 1][language];
  return !level.empty() && (known != otherwise || word == otherwise) ? ""
                                                                     : filled(level_label, {level, known_levels()});
}

std::string value_fault(const JobRec &job, int k) {
  const FieldDescriptor &field = job_mask(job.function).fields[k];
  const JobParam &parameter = job.params[k];
  const std::string_view type = parameter.desc.type;
  if (job.function == kSyslogFunction && k == 0) return level_fault(job);
  if ((type == "ULONG" || type == "LONG") && !is_whole_number(parameter.value)) return number_label[language];
  if (is_read_only_field(field.type) || is_skip_field(field.type)) return "";
  std::string fault = fault_of_text(field, parameter.value);
  if (fault.empty() && !func_value_check(job, k)) fault = parameter_value_label[language];
  return fault;
}

std::string parameter_fault(const JobRec &job) {
  for (int k = 0; k < job.param_count; ++k) {
    const std::string fault = value_fault(job, k);
    if (!fault.empty()) return filled(parameter_label, {job.params[k].desc.name, fault});
  }
  return "";
}

// The codes of all timings, with a number as an example.
std::string known_timings(int event) {
  std::vector<std::string> codes;
  char code[sizeof JobRec::timing];
  for (const auto &timing : funcframe_label02) {
    if (!set_repeat_value(code, timing[language], event == kSchedulerEvent ? "5" : "60", event)) continue;
    if (std::ranges::find(codes, code) == codes.end()) codes.emplace_back(code);
  }
  return joined(codes, ", ");
}

std::string timing_fault(const JobRec &job, int event) {
  char label[kTimingLabelSize], number[kTimingNumberSize], code[sizeof job.timing] = "";
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  const bool has_code = set_repeat_value(code, label, number, event) && std::string_view(code) == job.timing;
  return has_code && is_whole_number(number) ? "" : filled(timing_label, {job.timing, known_timings(event)});
}

// The editor knows one event number, and levels in small letters: what stands in front of the text does not count.
std::string_view without_level(const JobRec &job, std::string_view text) {
  return job.function == kSyslogFunction ? text.substr(std::min(text.find(",\""), text.size())) : text;
}

// What the editor would make of the job without a change by the person.
std::string rewriting_fault(JobRec &job, int event) {
  const std::string text = std::string(job.text) + ';';
  std::string edited;
  if (!save_function_values(job, event) || !build_func_string(job, edited)) return job_form_label[language];
  return without_level(job, text) == without_level(job, edited) ? "" : filled(becomes_label, {edited});
}

std::string fault_of_job(JobRec &job, int event) {
  char name[kJobTextSize], arguments[kJobTextSize];
  if (!getNameAndParameter(job.text, name, sizeof name, arguments, sizeof arguments)) return job_form_label[language];
  if (job.function < 0) return filled(function_label, {name});
  load_function_values(job, event);
  std::string fault = parameter_fault(job);
  if (fault.empty()) fault = timing_fault(job, event);
  if (fault.empty()) fault = rewriting_fault(job, event);
  return fault;
}

std::string fault_of_list(const std::string &list, const std::vector<std::string> &jobs) {
  if (numtoken(list.c_str(), ";") > kMaxJobs) return filled(too_many_jobs_label, {std::to_string(kMaxJobs)});
  if (join_joblist(jobs) != list) return job_end_label[language];
  std::vector<std::string> in_order = jobs;
  put_shutdown_last(in_order);
  return in_order == jobs ? "" : last_job_label[language];
}

}  // namespace

std::vector<std::string> faults_of_job_list(int event, const std::string &list) {
  std::vector<std::string> faults;
  const std::vector<std::string> jobs = split_joblist(list.c_str());
  const auto job = std::make_unique_for_overwrite<JobRec>();  // parse_job clears it
  for (size_t i = 0; i < jobs.size(); ++i) {
    parse_job(jobs[i].c_str(), event, *job);
    const std::string fault = fault_of_job(*job, event);
    if (!fault.empty()) faults.push_back(filled(job_label, {std::to_string(i + 1), fault}));
  }
  const std::string fault = fault_of_list(list, jobs);
  if (!fault.empty()) faults.push_back(fault);
  return faults;
}

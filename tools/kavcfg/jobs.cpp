// The commands about the jobs of the events.
#include "tools/kavcfg/jobs.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include "setup/check/faults.h"
#include "setup/check/texts.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

using Words = std::vector<std::string>;

std::string without_padding(std::string_view text) {
  const size_t start = std::min(text.find_first_not_of(' '), text.size());
  return std::string(text.substr(start, text.find_last_not_of(' ') + 1 - start));
}

bool is_word(const std::string &word, const std::string &other) { return stricmp(word, other) == 0; }

// --- the words of the catalogue, the same in both languages

// A function's name; and what it starts, where others have the name too.
std::string function_word(const FuncListRec &function) {
  const std::span<const FuncListRec> rows = function_catalogue();
  const auto has_name = [&](const FuncListRec &row) { return std::string_view(row.name) == function.name; };
  const std::string_view prefix = function.fixed_prefix;
  if (std::ranges::count_if(rows, has_name) == 1 || prefix.empty()) return function.name;
  return std::string(function.name) + ":" + std::string(prefix.substr(1, prefix.find('"', 1) - 1));
}

Words function_words() {
  Words words;
  for (const FuncListRec &function : function_catalogue()) words.push_back(function_word(function));
  return words;
}

std::string parameter_word(int function, int parameter) {
  const std::string text = funcpar_list[function][parameter][0];
  return text.substr(0, text.find('|'));
}

const FieldDescriptor &parameter_field(const JobRec &job, int parameter) {
  return job_mask(job.function).fields[parameter];
}
// One that the editor fills in by itself can't be given.
bool can_be_given(const JobRec &job, int parameter) { return !is_skip_field(parameter_field(job, parameter).type); }

Words parameter_words(const JobRec &job) {
  Words words;
  for (int k = 0; k < job.param_count; ++k) {
    if (can_be_given(job, k)) words.push_back(parameter_word(job.function, k));
  }
  words.emplace_back("TIMING");
  return words;
}

// What a parameter takes when it is chosen from a list; none when it is typed.
Words choices_of(const JobRec &job, int parameter) {
  if (!is_read_only_field(parameter_field(job, parameter).type)) return {};
  if (job.function != kSyslogFunction) return {"yes", "no"};
  Words levels;
  for (const auto &level : funcframe_label07) levels.emplace_back(level[0]);
  return levels;
}

// The last word of a timing's label.
std::string timing_word(const char *label) {
  std::string word = without_padding(label);
  word = word.substr(word.rfind(' ') + 1);
  strlow(word.data());
  return word;
}

Words timing_words(int event) {
  if (event == kSchedulerEvent) return {timing_word(funcframe_label06[0])};
  Words words;
  for (const auto &label : funcframe_label02) words.push_back(timing_word(label[0]));
  return words;
}

bool has_number(const JobRec &job, int event) {
  char label[kTimingLabelSize];
  char number[kTimingNumberSize];
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  return state == kFieldDigits;
}

// --- a job from words

// Why a value is no value of a parameter; "" when it is one.
std::string fault_of_value(const JobRec &job, int parameter, const std::string &value) {
  const Words choices = choices_of(job, parameter);
  if (choices.empty()) return fault_of_text(parameter_field(job, parameter), value);
  const bool is_there = std::ranges::find(choices, value) != choices.end();
  return is_there ? "" : filled(no_such_word_label, {value, joined(choices, ", ")});
}

std::string take_timing(JobRec &job, int event, const std::string &text) {
  const size_t colon = text.find(':');
  const std::string word = text.substr(0, colon);
  const std::string number = colon == std::string::npos ? "" : text.substr(colon + 1);
  const Words words = timing_words(event);
  for (size_t i = 0; i < words.size(); ++i) {
    if (!is_word(word, words[i])) continue;
    const char *label = event == kSchedulerEvent ? funcframe_label06[language] : funcframe_label02[i][language];
    if (!set_repeat_value(job.timing, label, number.c_str(), event)) break;
    if (has_number(job, event) ? is_whole_number(number) : colon == std::string::npos) return "";
    return filled(parameter_label, {text, number_label[language]});
  }
  return filled(no_such_word_label, {text, joined(words, ", ")});
}

// One argument PARAMETER=VALUE into the job; why not, or "".
std::string take_word(JobRec &job, int event, const std::string &argument) {
  const size_t equals = argument.find('=');
  const std::string word = argument.substr(0, equals);
  if (equals == std::string::npos) return filled(value_missing_label, {argument});
  std::string value;
  if (!text_from_terminal(argument.substr(equals + 1), value)) return filled(not_convertible_label, {word});
  if (is_word(word, "TIMING")) return take_timing(job, event, value);
  for (int k = 0; k < job.param_count; ++k) {
    if (!can_be_given(job, k) || !is_word(word, parameter_word(job.function, k))) continue;
    cpynstr(job.params[k].value, value);
    const std::string fault = fault_of_value(job, k, value);
    return fault.empty() ? "" : filled(parameter_label, {word, fault});
  }
  return filled(no_such_parameter_label, {job.name, word, joined(parameter_words(job), ", ")});
}

// The job of the arguments FUNCTION PARAMETER=VALUE... as text; why not, or "".
std::string build_job(const Arguments &words, int event, std::string &text) {
  const Words functions = function_words();
  const auto found = std::ranges::find_if(functions, [&](const std::string &word) { return is_word(word, words[0]); });
  if (found == functions.end()) return filled(no_such_function_label, {words[0], joined(functions, ", ")});
  const auto job = std::make_unique<JobRec>();
  fill_function_rec(*job, static_cast<int>(found - functions.begin()), event);
  for (int k = 0; k < job->param_count; ++k) {
    if (!can_be_given(*job, k)) cpynstr(job->params[k].value, "100");  // as the editor fills it in
  }
  std::string fault = take_timing(*job, event, timing_words(event)[0] + (has_number(*job, event) ? ":0" : ""));
  for (size_t i = 1; i < words.size() && fault.empty(); ++i) fault = take_word(*job, event, words[i]);
  return fault.empty() && !build_func_string(*job, text) ? filled(no_room_label, {event_key(event)}) : fault;
}

// --- a job in words

std::string quoted(const std::string &value) {
  constexpr std::string_view kPlain = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_-.,:/@%+";
  if (!value.empty() && value.find_first_not_of(kPlain) == std::string::npos) return value;
  std::string text = value;
  for (size_t at = 0; (at = text.find('\'', at)) != std::string::npos; at += 4) text.replace(at, 1, "'\\''");
  return "'" + text + "'";
}

// The timing as word and number, as take_timing() takes it.
std::string timing_in_words(const JobRec &job, int event) {
  char label[kTimingLabelSize];
  char number[kTimingNumberSize];
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  size_t timing = 0;
  while (event != kSchedulerEvent && std::string_view(label) != funcframe_label02[timing][language]) ++timing;
  return timing_words(event)[timing] + (state == kFieldDigits ? ":" + without_padding(number) : "");
}

std::string value_in_words(const JobRec &job, int parameter) {
  std::string value = job.params[parameter].value;
  if (job.function != kEmailFunction || choices_of(job, parameter).empty()) return value;
  return value.empty() ? "no" : "yes";
}

// The words that build_job() makes the job of; of a job of no known function, its text.
std::string words_of(const JobRec &job, int event) {
  if (job.function < 0) return job.text;
  std::string line = function_words()[static_cast<size_t>(job.function)];
  for (int k = 0; k < job.param_count; ++k) {
    if (can_be_given(job, k)) line += " " + parameter_word(job.function, k) + "=" + quoted(value_in_words(job, k));
  }
  return line + " TIMING=" + timing_in_words(job, event);
}

// --- the list of an event

const Setting &list_setting(int event) { return job_list_settings()[static_cast<size_t>(event)]; }

// kGood, or a status after a complaint.
int read_jobs(int event, Words &jobs) {
  std::vector<std::string> values;
  if (!values_of_file(options.file, values)) return tell_outcome(Outcome::file_unreadable, errno, options.file);
  jobs = split_joblist(values[place_of(list_setting(event))].c_str());
  return kGood;
}

int store_list(int event, Words jobs) {
  put_shutdown_last(jobs);
  const std::string list = join_joblist(jobs);
  if (split_joblist(list.c_str()) != jobs) return complain(kRefused, filled(no_room_label, {event_key(event)}));
  return carry_out({{&list_setting(event), list}});
}

int list_jobs(int event, const Arguments &) {
  Words jobs;
  if (const int status = read_jobs(event, jobs); status != kGood) return status;
  const auto record = std::make_unique<JobRec>();
  for (size_t i = 0; i < jobs.size(); ++i) {
    parse_job(jobs[i].c_str(), event, *record);
    print_line(stdout, std::to_string(i + 1) + " " + words_of(*record, event));
  }
  return kGood;
}

int add_job(int event, const Arguments &words) {
  std::string text;
  Words jobs;
  const std::string fault = build_job(words, event, text);
  if (!fault.empty()) return complain(kRefused, fault);
  if (const int status = read_jobs(event, jobs); status != kGood) return status;
  jobs.push_back(text.substr(0, text.size() - 1));
  return store_list(event, jobs);
}

int remove_job(int event, const Arguments &words) {
  Words jobs;
  if (const int status = read_jobs(event, jobs); status != kGood) return status;
  const int number = to_int32(words[0].c_str());
  if (number < 1 || number > static_cast<int>(jobs.size()) || words[0] != std::to_string(number)) {
    return complain(kRefused, filled(no_such_job_label, {event_key(event), words[0]}));
  }
  jobs.erase(jobs.begin() + number - 1);
  return store_list(event, jobs);
}

struct JobCommand {
  const char *name;
  size_t fewest, most;  // arguments after the event
  int (*run)(int event, const Arguments &words);
};
constexpr JobCommand kJobCommands[] = {
    // clang-format off
    {"list",   0, 0,                        list_jobs},
    {"add",    1, static_cast<size_t>(-1),  add_job},
    {"remove", 1, 1,                        remove_job},
    // clang-format on
};

void print_event(int event) {
  print_line(stdout, std::string(event_key(event)) + ": " + eventlist[event].name[language]);
  tail_shutdown_function(event);
  const int jobs = parse_joblist("", event);
  for (int i = 0; i < jobs; ++i) {
    const JobRec &job = *ActEvent[i];
    const std::string timing = job.function < 0 ? "" : " (" + timing_of(job, event) + ")";
    print_line(stdout, "  " + deed_of(job) + timing);
  }
}

}  // namespace

std::string deed_of(const JobRec &job) {
  char line[kJobLineLength + 1];
  job_line(job, line);
  std::string deed = without_padding(line);
  const std::string_view summary = job.summary;
  for (int k = 0; job.function >= 0 && k < job.param_count; ++k) {
    const bool is_told = summary.find("#" + std::to_string(k + 1)) != std::string_view::npos;
    const int type = parameter_field(job, k).type;
    const std::string value = job.params[k].value;
    if (!is_told && !is_skip_field(type) && !is_read_only_field(type) && !value.empty()) deed += " \"" + value + "\"";
  }
  return deed;
}

std::string timing_of(const JobRec &job, int event) {
  char label[kTimingLabelSize];
  char number[kTimingNumberSize];
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  std::string words = without_padding(label);
  if (state != kFieldDigits) return words;
  return words + " " + filled(event == kSchedulerEvent ? minutes_label : seconds_label, {without_padding(number)});
}

int events(const Arguments &) {
  if (!init_config_vals(options.file)) return tell_outcome(Outcome::file_unreadable, errno, options.file);
  for (int event = 0; event < DbEventListCnt; ++event) print_event(event);
  free_act_event();
  return kGood;
}

int job(const Arguments &arguments) {
  const auto named = [&](const JobCommand &command) { return arguments[0] == command.name; };
  const auto *command = std::ranges::find_if(kJobCommands, named);
  const std::string name = "job " + arguments[0];
  if (command == std::end(kJobCommands)) return misuse(filled(no_such_command_label, {name}));
  const int event = known_event(arguments[1]);
  if (event < 0) return kMisused;
  const Arguments words(arguments.begin() + 2, arguments.end());
  if (words.size() < command->fewest) return misuse(filled(too_few_label, {name}));
  if (words.size() > command->most) return misuse(filled(too_many_label, {name, words[command->most]}));
  return command->run(event, words);
}

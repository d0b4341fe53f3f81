// The monitor's job language: job lists "NAME(arguments)timing;..." as text and as records.
//
// A list splits at ";", wherever it stands; a job's name ends at its first "(", its arguments at its last ")". There
// are no escapes. Jobs of a list that are not edited stay, as text, what they are.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "setup/jobs/catalogue.h"

inline constexpr int kMaxJobs = 32;        // further jobs of a list are left out
inline constexpr int kMaxListText = 1024;  // a list with one more job stays under this many characters
inline constexpr int kTimingLabelSize = sizeof(TimingFields::label) + 1;
inline constexpr int kTimingNumberSize = sizeof(TimingFields::number) + 1;

// --- lists

// The jobs of a list, at most 32 and each at most 1023 characters, without ";".
std::vector<std::string> split_joblist(const char *list);
// The list of these jobs, ";" after each. A job that does not fit any more is left out.
std::string join_joblist(std::span<const std::string> jobs);
// Moves the last SHUTDOWN job to the end; others of that name go. A list shuts down at most once, and last.
void put_shutdown_last(std::vector<std::string> &jobs);

// --- one job

// Name and arguments, each cut to its size - 1. 1 when the job holds both a "(" and a ")", else 0.
int getNameAndParameter(const char *job, char *name, int name_size, char *args, int args_size);
// The timing code, cut to size - 1; empty when the job holds no ")". 1, or 0 for a null argument or no size.
int getRepTime(const char *job, char *out, int size);
// The first function of `catalogue` of that name whose prefix the arguments begin with; its index, or -1.
int find_function(std::span<const FuncListRec> catalogue, const char *name, const char *args);
int get_function_typ(const char *name, const char *args);

// Fills the parameters' values from the arguments. 1; for an e-mail job getEmailParams()'s result.
int get_function_params(JobRec &job);
// The record of one job of `event` from its text, without ";". A job that is none of the catalogue's functions keeps
// its text only.
void parse_job(const char *text, int event, JobRec &job);

// Writes one job, ";" included, to `out`, which is empty. 1; or 0 when name, arguments and timing have more than 1024
// characters: `out` then holds the name.
[[nodiscard]] int build_func_string(const JobRec &job, std::string &out);

// The name of a syslog level from a name or alias; "information" for any other text, an empty text as it is.
const char *ms_to_syslog(const char *level);
// Keeps what stands between the first and the last double quote, or what follows the only one. Returns `text`,
// which may be null.
char *removeQuotes(char *text);

// --- the timing in the mask's two fields

// Label and number, and the type of the number's field: kFieldDigits or
// kFieldReadOnly.
void get_repeat_value(const char *code, char (&label)[kTimingLabelSize], char (&time)[kTimingNumberSize], int *state,
                      int event);
// The code from label and number; of the number the first six characters count, of the label what is given of it. 1; or
// 0, `code` unchanged, when there is no such label.
[[nodiscard]] int set_repeat_value(char (&code)[256], const char *label, const char *time, int event);

// When a job runs, in seconds after its event; or of the scheduler's event, below 0, before the shutdown.
struct JobTimes {
  int32_t first;
  int32_t every;  // further runs, as long as the event is present; 0: none
};
// `check_rate` is the time between two looks at the UPS, in seconds.
JobTimes job_times(const char *code, int event, int32_t check_rate);

// --- the jobs of one event in EventStrings

// The jobs of the event being edited; written by parse_joblist, read by the screens.
extern std::unique_ptr<JobRec> ActEvent[kMaxJobs];
// Reads the jobs of `event` into the first entries of ActEvent; returns their number. The list is always that of
// EventStrings; the first argument is not used. free_act_event() frees the records.
int parse_joblist(const char *joblist, int event);
void free_act_event();

// Changes to the list of `event`, which is put together again each time. `job` counts from 0; `text` is one job, with
// or without ";". The first three return 1; or 0, nothing changed, when there is no such job, the list has no room for
// one more, or memory runs out.
[[nodiscard]] int replace_event_function(int event, int job, const std::string &text);
[[nodiscard]] int del_event_function(int event, int job);
[[nodiscard]] int append_event_function(int event, const std::string &text);
// Puts the event's SHUTDOWN job last. Returns the number of jobs written.
int tail_shutdown_function(int event);

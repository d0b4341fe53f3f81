// Texts of the job language: the job functions, the events with their default jobs, the words of timings and levels.
#pragma once

#include "util/language.h"

// The job functions, one row each: name with an optional argument prefix in parentheses, title, description, summary
// ("#1" is the first parameter's value), number of parameters; "|" between the fields. The order decides which row a
// job of a name with several rows belongs to: the rows with a prefix stand before the general one.
inline constexpr int kFunctionCount = 9;
inline constexpr int kShutdownFunction = 0;
inline constexpr int kNimbroFunction = 2;
inline constexpr int kEmailFunction = 3;
inline constexpr int kMessageIdFunction = 7;
inline constexpr int kSyslogFunction = 8;
extern Label func_list[kFunctionCount];

// Their parameters: name, type, help, example; "|" between the fields, those after the fourth are not shown. Unused
// slots are empty.
inline constexpr int kParameterSlots = 7;
extern Label funcpar_list[kFunctionCount][kParameterSlots];

// The events by number, closed by a row of empty texts.
inline constexpr int kEventCount = 25;
inline constexpr int kPowerFailEvent = 0;
inline constexpr int kSchedulerEvent = 20;  // its jobs are timed in minutes before the shutdown
inline constexpr int kBypassEvent = 21;     // offered for the UPS of one series only
struct EventTexts {
  Label name;  // at most 70 bytes
  Label jobs;  // the default job list
};
extern const EventTexts eventlist[kEventCount + 1];

// The timings, nine bytes long and padded with blanks; and the words of the syslog levels.
inline constexpr int kTimingCount = 5;
inline constexpr int kSyslogLevelCount = 7;
extern Label funcframe_label02[kTimingCount];       // once, always, periodic, timed, repeated
extern Label funcframe_label06;                     // the timing of the scheduler event
extern Label funcframe_label07[kSyslogLevelCount];  // words of the job language in both columns

// Texts of the event and job editor: the job functions, the events with their default jobs, labels, help, messages.
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

// Their parameters: name, type, help, example; "|" between the fields, those behind the fourth are not shown. Unused
// slots are empty.
inline constexpr int kParameterSlots = 7;
extern Label funcpar_list[kFunctionCount][kParameterSlots];

// The events by number, closed by a row of empty texts.
inline constexpr int kEventCount = 25;
inline constexpr int kSchedulerEvent = 20;  // its jobs are timed in minutes before the shutdown
inline constexpr int kBypassEvent = 21;     // offered for the UPS of one series only
struct EventTexts {
  Label name;  // at most 70 bytes
  Label jobs;  // the default job list
};
extern const EventTexts eventlist[kEventCount + 1];

// Menus
extern Label MENU_EVENT_TITLE, MENU_EVENT_ADD, MENU_EVENT_DEL, MENU_EVENT_EXIT;
extern Label no_events_label;                 // %s model
extern Label unknown_function_label;          // a job that only its text is known of was chosen
extern Label hlptxt_label07, hlptxt_label06;  // help of the event menu: title, text
extern Label hlptxt_label08, hlptxt_label09;  // of the job menu; the title is that of the function list too
extern Label hlptxt_label15, hlptxt_label14;  // of the delete menu

// The job mask. The timing labels are nine bytes long and padded with blanks.
inline constexpr int kTimingCount = 5;
inline constexpr int kSyslogLevelCount = 7;
extern Label funcframe_label01;                     // above the parameters
extern Label funcframe_label02[kTimingCount];       // once, always, periodic, timed, repeated
extern Label funcframe_label03;                     // above the timing fields; title of the timing list
extern Label funcframe_label04, funcframe_label05;  // unit of the timing number: seconds, minutes
extern Label funcframe_label06;                     // the timing of the scheduler event
extern Label funcframe_label07[kSyslogLevelCount];  // syslog levels, words of the job language in both columns
extern Label syslog_list_title;
extern Label attach_questions[4];  // data log, text log, trouble record, operation info
extern Label empty_field_label;

extern Label parameter_help_title, timer_help_title;
extern Label timing_help_label;  // one line and more for each timing
extern Label scheduler_timing_help_label;
extern Label repeat_time_help_label, scheduler_time_help_label;

// Texts of the event and job editor: menus, labels, help, messages.
#pragma once

#include "util/language.h"

// Menus
extern Label MENU_EVENT_TITLE, MENU_EVENT_ADD, MENU_EVENT_DEL, MENU_EVENT_EXIT;
extern Label no_events_label;                 // %s model
extern Label unknown_function_label;          // a job that only its text is known of was chosen
extern Label hlptxt_label07, hlptxt_label06;  // help of the event menu: title, text
extern Label hlptxt_label08, hlptxt_label09;  // of the job menu; the title is that of the function list too
extern Label hlptxt_label15, hlptxt_label14;  // of the delete menu

// The job mask
extern Label funcframe_label01;                     // above the parameters
extern Label funcframe_label03;                     // above the timing fields; title of the timing list
extern Label funcframe_label04, funcframe_label05;  // unit of the timing number: seconds, minutes
extern Label syslog_list_title;
extern Label attach_questions[4];  // data log, text log, trouble record, operation info
extern Label empty_field_label;
extern Label job_too_long_label, list_full_label;  // on the notice row

extern Label parameter_help_title, timer_help_title;
extern Label timing_help_label;  // one line and more for each timing
extern Label scheduler_timing_help_label;
extern Label repeat_time_help_label, scheduler_time_help_label;

// Texts of kavcfg: usage, and why a command fails. "%s" is the value that the comment names.
#pragma once

#include "util/language.h"

extern Label usage_label;  // "|" between the lines

// Of the command line
extern Label no_command_label;
extern Label no_such_command_label, no_such_option_label;  // %s word
extern Label too_few_label, no_input_label;                // %s command
extern Label too_many_label;                               // %s command, %s first argument too many

// Of files and keys
extern Label unreadable_label, unwritable_label, database_unreadable_label;  // %s file, %s reason
extern Label no_such_key_label, given_twice_label, value_missing_label;      // %s argument, cut at the first "="
extern Label password_given_label, password_missing_label, password_hidden_label;
extern Label not_convertible_label;
extern Label no_value_label;    // a key that is not in the file and has no default
extern Label hidden_label;      // in the place of a password
extern Label follower_label;    // follows from other keys
extern Label not_json_label;    // of a text to apply
extern Label not_simple_label;  // %s key

// Of repairs
extern Label fix_how_label;
extern Label not_misspelt_label;  // %s key

// Of jobs
extern Label no_such_event_label;                         // %s word
extern Label no_such_job_label;                           // %s key, %s number
extern Label no_such_function_label, no_such_word_label;  // %s word, %s all that there are
extern Label no_such_parameter_label;                     // %s function, %s word, %s all that there are
extern Label no_room_label;                               // %s key
extern Label seconds_label, minutes_label, hours_label;   // %s number
// Of what follows a power failure
extern Label shutdown_begins_label, system_down_label, ups_off_label, battery_empty_label;

// Of ports
extern Label unknown_answer_label;  // %s answer
extern Label no_answer_label, held_label, permission_label;
extern Label locked_label;  // %s number of the process

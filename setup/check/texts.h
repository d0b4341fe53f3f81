// Texts of the check: why a value or a line is not accepted. "%s" is the value that the comment names.
#pragma once

#include "util/language.h"

// Of values
extern Label too_long_label;             // %s bytes
extern Label character_label;            // %s character, %s what is taken: one of the next two
extern Label only_label, all_but_label;  // %s characters
extern Label blanks_label;               // at the end of these
extern Label range_label;                // %s smallest, %s largest
extern Label yes_or_no_label;            // neither of the two words
extern Label shutdown_label;             // needs a system that may be shut down
extern Label model_unknown_label;        // %s database
extern Label model_meant_label;          // %s database, %s model
extern Label model_late_label;           // %s number of models, %s database
extern Label no_model_label;
extern Label cable_label;
extern Label mail_label;     // is erased without SMTP
extern Label becomes_label;  // %s what would be stored

// Of job lists
extern Label job_label;                      // %s number, %s fault
extern Label job_form_label;                 // no job at all
extern Label function_label;                 // %s name
extern Label parameter_label;                // %s name, %s fault
extern Label parameter_value_label;          // empty or out of its range
extern Label number_label;                   // no number
extern Label level_label, timing_label;      // %s word, %s all that there are
extern Label too_many_jobs_label;            // %s most
extern Label job_end_label, last_job_label;  // ";" and SHUTDOWN are not where they should be

// Of lines
extern Label duplicate_label, covered_label;  // %s line
extern Label no_place_label;                  // the file begins with a topic
extern Label pieces_label;                    // %s longest line
extern Label nul_label, carriage_return_label;
extern Label junk_label;
extern Label misspelt_label;     // %s key
extern Label after_topic_label;  // %s line
extern Label byte_order_label, inner_return_label;
extern Label no_encoding_label;
extern Label two_encodings_label;  // %s encoding, %s other line, %s its encoding

// Warnings
extern Label battery_label;  // %s and %s minutes
extern Label no_shutdown_label;
extern Label mail_disabled_label;  // %s number of the job
extern Label mail_missing_label;   // the same, %s key
extern Label no_message_label;     // the same, %s number of the message, %s file
extern Label folder_label;         // %s directory
extern Label default_password_label, windows_end_label;

// Repairs
extern Label mark_removed_label, returns_removed_label, comment_changed_label, tabs_removed_label, repeat_removed_label;
extern Label key_changed_label;  // %s key

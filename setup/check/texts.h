// Texts of the check: why a value or a line is not accepted. "%s" is the value that the comment names.
#pragma once

#include "util/language.h"

// Of values
extern Label too_long_label;       // %s bytes
extern Label character_label;      // %s position, from 1
extern Label range_label;          // %s smallest, %s largest
extern Label yes_or_no_label;      // neither of the two words
extern Label shutdown_label;       // needs a system that may be shut down
extern Label model_unknown_label;  // %s database
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
extern Label level_label, timing_label;      // %s word
extern Label too_many_jobs_label;            // %s most
extern Label job_end_label, last_job_label;  // ";" and SHUTDOWN are not where they should be

// Of lines
extern Label duplicate_label, covered_label;  // %s line
extern Label no_place_label;                  // the file begins with a topic
extern Label pieces_label;                    // %s longest line
extern Label nul_label, carriage_return_label;

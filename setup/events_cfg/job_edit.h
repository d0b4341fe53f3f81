// The mask of one job: its parameters and its timing.
#pragma once

#include <cstdint>

#include "screen/scrio.h"
#include "setup/jobs/catalogue.h"

// Edits `job`, whose function is one of the catalogue, of `event`. Nonzero when the mask's values were stored in it; 0,
// and `job` unchanged, when they were not valid, or when nobody changed those of an e-mail job.
int edit_function_values(WINDOW *screen, int32_t attr, JobRec &job, int event);

// Puts a syslog level, an index of the levels' list, into the field of an EVENTLOG job and shows it.
void fill_syslog_level(WINDOW *win, int level);
// Puts "yes" (choice 1) or "no" (choice 2) into an attach field of the e-mail job and shows it; any other choice
// changes nothing.
void fill_attach_rec(WINDOW *win, int choice, int field);

// The mask of one job: its parameters and its timing.
#pragma once

#include <cstdint>

#include "screen/scrio.h"
#include "setup/events_cfg/catalogue.h"

// Edits `job`, whose function is one of the catalogue, of `event`. Nonzero when the mask's values were stored in it; 0,
// and `job` unchanged, when they were not valid.
int edit_function_values(WINDOW *screen, int32_t attr, JobRec &job, int event);

// 1 when the value in the mask's field is valid for a job of `function`, else 0. A shutdown delay that is too long for
// the monitor is replaced by the longest one.
int func_value_check(int function, int field);

// Job and mask into one another. save_function_values returns 0, `job` unchanged, when a value that must be valid is
// not.
void load_function_values(const JobRec &job, int event);
int save_function_values(JobRec &job, int event);

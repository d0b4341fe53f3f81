// A job in the fields of its function's mask: the way into them and back, and what they may hold.
#pragma once

#include <string>

#include "setup/jobs/catalogue.h"
#include "setup/settings/settings.h"

// The fields of the timing, after the parameters.
int label_field(int function);
int number_field(int function);
// A field of a function's mask; its text without trailing blanks; a text into it.
RecordField mask_field(int function, int field);
std::string mask_text(int function, int field);
void put_mask_text(int function, int field, const char *text);

inline constexpr int32_t kLongestDelay = 9999999;  // s, what the field of a shutdown's delay can hold
inline constexpr int32_t kLastPort = 65535;
// 1 when the value in the mask's field is valid for a job of `job`'s function, else 0. A shutdown delay that is too
// long for the monitor is replaced by the longest one.
int func_value_check(const JobRec &job, int field);

// Job and mask into one another. save_function_values returns 0, `job` unchanged, when a value that must be valid is
// not.
void load_function_values(const JobRec &job, int event);
int save_function_values(JobRec &job, int event);

// The settings of the extra-job mask: three programs that run at a certain remaining time.
#pragma once

#include "setup/settings/setting.h"
#include "setup/settings/texts.h"

struct ExtraJob {
  char enabled[4];
  int32_t delay;  // minutes
  char path[40];
};
// Members follow the fields; texts may fill their member without a terminator. Filled by loading a configuration and by
// the mask; read by the writers.
struct SpecialRecord {
  ExtraJob job[3];
};
inline constexpr int kFieldsPerExtraJob = 3;
inline constexpr int kSpecialFieldCount = 9;
extern SpecialRecord SpecialRec;
extern FieldDescriptor SpecialTabArr[kSpecialFieldCount + 1];  // built by init_tab, once a session

// clang-format off
inline constexpr auto kExtraJobSettings = settings_of_mask(kMaskExtraJobs, {
  // key              kind          default             read  field smallest largest  unit
  //   type            row col length   label                              help
  {"EnableExtra1",  Kind::yes_no, "no",                  25, 0,         0,      0, Unit::none,
     {kFieldReadOnly,   2, 23,  4},  {2,  2, specialframe_label01}, help_extra_switch},
  {"ExtraTime1",    Kind::number, "0",                   26, 1,         0,     99, Unit::minutes,
     {kFieldNumber,     2, 60,  2},  {2, 41, specialframe_label04}, help_extra_time},
  {"ExtraJob1",     Kind::path,   "/usr/ups/ups_exe1",   27, 2,         0,      0, Unit::none,
     {kFieldText,       3, 23, 40},  {3,  2, specialframe_label05}, help_extra_path},
  {"EnableExtra2",  Kind::yes_no, "no",                  28, 3,         0,      0, Unit::none,
     {kFieldReadOnly,   5, 23,  4},  {5,  2, specialframe_label02}, help_extra_switch},
  {"ExtraTime2",    Kind::number, "0",                   29, 4,         0,     99, Unit::minutes,
     {kFieldNumber,     5, 60,  2},  {5, 41, specialframe_label04}, help_extra_time},
  {"ExtraJob2",     Kind::path,   "/usr/ups/ups_exe2",   30, 5,         0,      0, Unit::none,
     {kFieldText,       6, 23, 40},  {6,  2, specialframe_label05}, help_extra_path},
  {"EnableExtra3",  Kind::yes_no, "no",                  31, 6,         0,      0, Unit::none,
     {kFieldReadOnly,   8, 23,  4},  {8,  2, specialframe_label03}, help_extra_switch},
  {"ExtraTime3",    Kind::number, "0",                   32, 7,         0,     99, Unit::minutes,
     {kFieldNumber,     8, 60,  2},  {8, 41, specialframe_label04}, help_extra_time},
  {"ExtraJob3",     Kind::path,   "/usr/ups/ups_exe3",   33, 8,         0,      0, Unit::none,
     {kFieldText,       9, 23, 40},  {9,  2, specialframe_label05}, help_extra_path},
});
// clang-format on

inline constexpr auto kSpecialFields = fields_of<kSpecialFieldCount>(kExtraJobSettings);
static_assert(have_one_row_each(kExtraJobSettings, kSpecialFieldCount));
static_assert(member_offset(kSpecialFields.data(), 8) == offsetof(SpecialRecord, job[2].path));

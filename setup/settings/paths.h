// The settings of the path mask.
#pragma once

#include "setup/settings/setting.h"
#include "setup/settings/texts.h"

// Members follow the fields; texts may fill their member without a terminator. Filled by loading a configuration and by
// the mask; read by the writers.
struct PathRecord {
  char log_file[30];
  char data_log_file[30];
  char data_logging[4];
  int32_t data_log_size;  // kB
};
enum PathField { kLogFile, kDataLogFile, kDataLogging, kDataLogSize, kPathFieldCount };
extern PathRecord PathRec;
extern FieldDescriptor PathTabArr[kPathFieldCount + 1];  // built by init_tab, once a session

void take_data_logging(const Setting &, const char *value, bool stored);
bool data_logging_value(const Setting &, std::string &value);
bool binary_log_value(const Setting &, std::string &value);

// clang-format off
inline constexpr auto kPathSettings = settings_of_mask(kMaskPaths, {
  // key                 kind            default                read  field          smallest largest  unit
  //   type            row col length   label                          help                in the file
  {"LogFileTxt",       Kind::path,     "/usr/ups/upslog.csv",    34, kLogFile,           0,      0, Unit::none,
     {kFieldPath,       3, 10, 30},  {2, 10, pathframe_label01}, help_log_file},
  {"DataLoggingName",  Kind::path,     "/usr/ups/upsdata.csv",   35, kDataLogFile,       0,      0, Unit::none,
     {kFieldPath,       6, 10, 30},  {5, 10, pathframe_label02}, help_data_log_file, {.rule = WriteRule::ignored}},
  {"LogFileBin",       Kind::follower, nullptr,                   0, kDataLogFile,       0,      0, Unit::none,
     {},                             {},                         nullptr,            {.value_of = binary_log_value}},
  {"LoggingData",      Kind::flag,     "1",                      14, kDataLogging,       0,      0, Unit::none,
     {kFieldReadOnly,   6, 53,  4},  {5, 53, pathframe_label03}, help_data_logging,  {take_data_logging, data_logging_value}},
  {"DataLoggingSize",  Kind::number,   "1000",                   36, kDataLogSize,       0, 204800, Unit::kilobytes,
     {kFieldNumber,     8, 53,  6},  {8, 29, pathframe_label04}, help_data_log_size},
});
// clang-format on

inline constexpr auto kPathFields = fields_of<kPathFieldCount>(kPathSettings);
static_assert(have_one_row_each(kPathSettings, kPathFieldCount));
static_assert(member_offset(kPathFields.data(), kDataLogSize) == offsetof(PathRecord, data_log_size));

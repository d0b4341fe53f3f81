// The settings of the UPS mask.
#pragma once

#include "setup/settings/setting.h"
#include "setup/settings/texts.h"

// Members follow the fields; texts may fill their member without a terminator. Filled by loading a configuration, by
// the mask and by choosing a model; read by the writers.
struct StdRecord {
  char location[17];
  char device[30];              // device path, ':', baud rate, parity letter, data bits, stop bits
  int32_t logging_rate;         // s
  int32_t log_limit;            // kB
  char caution_temperature[5];  // degrees C, as text
  char warning_temperature[5];
  char model[30];
  char cable[16];
  int32_t power;  // VA
  int32_t load;   // VA
  int32_t hold_minutes;
  int32_t recharge_hours;
  // without a field:
  int32_t logging_rate_copy;  // set for a new file only
  int32_t minimum_log;        // neither read nor written
  int32_t data_logging;       // 0 or 1
  int32_t ups_id;
};
enum StdField {
  kLocation,
  kDevice,
  kLoggingRate,
  kLogLimit,
  kCautionTemperature,
  kWarningTemperature,
  kModel,
  kCable,
  kPower,
  kLoad,
  kHoldMinutes,
  kRechargeHours,
  kStdFieldCount
};
extern StdRecord StdRec;
extern FieldDescriptor StdTabArr[kStdFieldCount + 1];  // built by init_tab, once a session

// Values that have no field on any mask. The second record is what the UPS mask brings back when it is left.
struct InvisibleRecord {
  char network_role[32];
  int32_t cable_code;
};
extern InvisibleRecord Invisible, TmpInvisible;

void take_ups_id(const Setting &, const char *value, bool stored);
bool ups_id_value(const Setting &, std::string &value);
void take_cable(const Setting &, const char *value, bool stored);
bool cable_value(const Setting &, std::string &value);

// clang-format off
inline constexpr auto kUpsSettings = settings_of_mask(kMaskUps, {
  // key                 kind           default                  read  field                 smallest    largest  unit
  //   type                  row col length     label                          help                   in the file
  {"UpsLocation",      Kind::text,    "Unknown",                  1, kLocation,                  0,         0, Unit::none,
     {kFieldText,             1, 24, 17},   {1,  2, stdframe_label01},  help_location},
  {"UpsDevice",        Kind::text,    "/dev/ttyS0:2400,n,8,1",    2, kDevice,                    0,         0, Unit::none,
     {kFieldText,             2, 24, 30},   {2,  2, stdframe_label02},  help_device},
  {"UpsID",            Kind::number,  "0",                        3, kNoField,                   0,         0, Unit::none,
     {},                                    {0,  0, stdframe_label13},  nullptr,               {take_ups_id, ups_id_value}},
  {"DataLoggingRate",  Kind::number,  "300",                      4, kLoggingRate,              30,      9999, Unit::seconds,
     {kFieldNumber,           3, 24,  5},   {3,  2, stdframe_label03},  help_logging_rate},
  {"LogMaxHours",      Kind::number,  "200",                      5, kLogLimit,                  0,    204800, Unit::kilobytes,
     {kFieldNumber,           4, 24,  6},   {4,  2, stdframe_label04},  help_log_limit},
  // the gap between the two ranges keeps caution below warning
  {"TempCaution",      Kind::decimal, "50.0",                     6, kCautionTemperature,       40,        60, Unit::celsius,
     {kFieldDecimalText,      5, 24,  5},   {5,  2, stdframe_label05},  help_caution},
  {"TempWarning",      Kind::decimal, "70.0",                     7, kWarningTemperature,       61,        85, Unit::celsius,
     {kFieldDecimalText,      6, 24,  5},   {6,  2, stdframe_label06},  help_warning},
  {"UpsModel",         Kind::model,   "Unknown",                  8, kModel,                     0,         0, Unit::none,
     {kFieldReadOnly,         7, 24, 30},   {7,  2, stdframe_label07},  help_model},
  {"UpsCable",         Kind::cable,   "0",                        9, kCable,                     0,         0, Unit::none,
     {kFieldReadOnly,         8, 24, 16},   {8,  2, stdframe_label08},  help_cable,            {take_cable, cable_value}},
  {"UpsPower",         Kind::number,  "1000",                    10, kPower,                     1, 100000000, Unit::volt_amperes,
     {kFieldReadOnlyNumber,   9, 24,  9},   {9,  2, stdframe_label09},  help_power},
  {"UpsLoad",          Kind::number,  "1000",                    11, kLoad,                      1, 100000000, Unit::volt_amperes,
     {kFieldReadOnlyNumber,  10, 24,  9},   {10, 2, stdframe_label10},  help_load},
  {"UpsHoldMins",      Kind::number,  "10",                      12, kHoldMinutes,               1,    100000, Unit::minutes,
     {kFieldNumber,          11, 24,  6},   {11, 2, stdframe_label11},  help_hold_minutes},
  {"UpsRechargeHours", Kind::number,  "10",                      13, kRechargeHours,             1,    100000, Unit::hours,
     {kFieldNumber,          12, 24,  6},   {12, 2, stdframe_label12},  help_recharge_hours},
});
// clang-format on

inline constexpr auto kStdFields = fields_of<kStdFieldCount>(kUpsSettings);
static_assert(have_one_row_each(kUpsSettings, kStdFieldCount));
static_assert(member_offset(kStdFields.data(), kLoggingRate) == offsetof(StdRecord, logging_rate));
static_assert(member_offset(kStdFields.data(), kCable) == offsetof(StdRecord, cable));
static_assert(member_offset(kStdFields.data(), kRechargeHours) == offsetof(StdRecord, recharge_hours));

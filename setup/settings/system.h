// The settings of the system mask.
#pragma once

#include "setup/settings/setting.h"
#include "setup/settings/texts.h"

// Members follow the fields; texts may fill their member without a terminator. Filled by loading a configuration and by
// the mask; read by the writers.
struct CustomRecord {
  char password[16];   // in clear
  int32_t check_rate;  // s
  char shutdown_allowed[4];
  int32_t shutdown_minutes;
  char ups_shutdown_enabled[4];
  int32_t ups_shutdown_delay;  // minutes; the file holds seconds
  char ups_restart_enabled[4];
  char up_time_support[4];
  int32_t fixed_down_time;  // minutes
};
enum CustomField {
  kPassword,
  kCheckRate,
  kShutdownAllowed,
  kShutdownMinutes,
  kUpsShutdown,
  kUpsShutdownDelay,
  kUpsRestart,
  kUpTimeSupport,
  kFixedDownTime,
  kCustomFieldCount
};
extern CustomRecord CustomRec;
extern FieldDescriptor CustomTabArr[kCustomFieldCount + 1];  // built by init_tab, once a session

// Whether the system may be shut down.
bool may_shut_down();
// True for a field that is "no" as long as the system may not be shut down.
constexpr bool follows_shutdown(int field) { return field == kUpsShutdown || field == kUpTimeSupport; }

void take_network_role(const Setting &, const char *value, bool stored);
bool network_role_value(const Setting &, std::string &value);
bool broadcast_rate_value(const Setting &, std::string &value);
std::string mirrored(const std::string &text);

// clang-format off
inline constexpr auto kSystemSettings = settings_of_mask(kMaskSystem, {
  // key                 kind            default  read  field              smallest largest  unit
  //   type               row col length    label                            help                     in the file
  {"NetTyp",           Kind::text,     "MASTER",  15, kNoField,                0,      0, Unit::none,
     {},                                 {},                           nullptr,
     {.take = take_network_role, .value_of = network_role_value, .rule = WriteRule::ignored}},
  {"PASSWORD",         Kind::secret,   "MIRT",    16, kPassword,               0,      0, Unit::none,
     {kFieldAlphanumeric,  1, 39, 16},   {1,  2, customframe_label01}, help_password,
     {.scramble = mirrored, .never_empty = true, .rule = WriteRule::ignored}},
  {"NetBroadcastRate", Kind::constant, nullptr,    0, kNoField,                0,      0, Unit::seconds,
     {},                                 {},                           nullptr,                  {.value_of = broadcast_rate_value}},
  {"CheckRate",        Kind::number,   "1",       17, kCheckRate,              1,    600, Unit::seconds,
     {kFieldNumber,        3, 39,  3},   {3,  2, customframe_label02}, help_check_rate},
  {"SysDownAllowed",   Kind::yes_no,   "yes",     18, kShutdownAllowed,        0,      0, Unit::none,
     {kFieldReadOnly,      4, 39,  4},   {4,  2, customframe_label03}, help_shutdown},
  {"SysDownMins",      Kind::number,   "7",       19, kShutdownMinutes,        0,   1000, Unit::minutes,
     {kFieldNumber,        5, 39,  4},   {5,  2, customframe_label04}, help_shutdown_minutes},
  {"UpsDownEnabled",   Kind::yes_no,   "yes",     20, kUpsShutdown,            0,      0, Unit::none,
     {kFieldReadOnly,      6, 39,  4},   {6,  2, customframe_label05}, help_ups_shutdown},
  {"UpsDownDelay",     Kind::number,   "180",     21, kUpsShutdownDelay,       0,     99, Unit::minutes_in_seconds,
     {kFieldNumber,        7, 39,  4},   {7,  2, customframe_label06}, help_ups_shutdown_delay},
  {"UpsRestEnabled",   Kind::yes_no,   "yes",     22, kUpsRestart,             0,      0, Unit::none,
     {kFieldReadOnly,      8, 39,  4},   {8,  2, customframe_label07}, help_ups_restart},
  {"UpTimeSupport",    Kind::yes_no,   "yes",     23, kUpTimeSupport,          0,      0, Unit::none,
     {kFieldReadOnly,      9, 39,  4},   {9,  2, customframe_label08}, help_fixed_shutdown},
  {"FixedDownTime",    Kind::number,   "1",       24, kFixedDownTime,          0,   1000, Unit::minutes,
     {kFieldNumber,       10, 39,  4},   {10, 2, customframe_label09}, help_fixed_down_time},
  {"GarUpTime",        Kind::follower, nullptr,    0, kFixedDownTime,          0,      0, Unit::minutes,
     {},                                 {},                           nullptr,                  {.rule = WriteRule::follows}},
});
// clang-format on

inline constexpr auto kCustomFields = fields_of<kCustomFieldCount>(kSystemSettings);
static_assert(have_one_row_each(kSystemSettings, kCustomFieldCount));
static_assert(member_offset(kCustomFields.data(), kUpsShutdownDelay) == offsetof(CustomRecord, ups_shutdown_delay));
static_assert(member_offset(kCustomFields.data(), kFixedDownTime) == offsetof(CustomRecord, fixed_down_time));

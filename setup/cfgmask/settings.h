// The settings in memory: the records that the masks edit, where each value comes from, and the tables of models and
// cables. One set of records for the whole run; each session fills them once.
#pragma once

#include <cstdint>

#include "screen/maskelib.h"
#include "setup/section.h"

// Mask numbers: keys of the range and help tables.
inline constexpr int kMaskUps = 1;
inline constexpr int kMaskSystem = 2;
inline constexpr int kMaskExtraJobs = 3;
inline constexpr int kMaskPaths = 4;
inline constexpr int kMaskMail = 6;

// --- records; members follow the field tables, texts may fill their member without a terminator

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

struct PathRecord {
  char log_file[30];
  char data_log_file[30];
  char data_logging[4];
  int32_t data_log_size;  // kB
};
enum PathField { kLogFile, kDataLogFile, kDataLogging, kDataLogSize, kPathFieldCount };

struct ExtraJob {
  char enabled[4];
  int32_t delay;  // minutes
  char path[40];
};
struct SpecialRecord {
  ExtraJob job[3];
};
inline constexpr int kFieldsPerExtraJob = 3;
inline constexpr int kSpecialFieldCount = 9;

// Values that have no field on any mask.
struct InvisibleRecord {
  char network_role[32];
  int32_t cable_code;
};

// Filled by init_config_vals or init_new_config_vals, edited by the masks, read by the writers.
extern StdRecord StdRec;
extern CustomRecord CustomRec;
extern PathRecord PathRec;
extern SpecialRecord SpecialRec;
extern InvisibleRecord Invisible, TmpInvisible;  // the second: what the UPS mask brings back when it is left

// Built by init_tab, once a session.
extern FieldDescriptor StdTabArr[kStdFieldCount + 1];
extern FieldDescriptor CustomTabArr[kCustomFieldCount + 1];
extern FieldDescriptor PathTabArr[kPathFieldCount + 1];
extern FieldDescriptor SpecialTabArr[kSpecialFieldCount + 1];
void init_tab();

// A field of a mask's record; {} for a mask that has none here.
RecordField field_of_mask(int mask, int field);
// --- models and cables

struct ModelEntry {
  char ups_name[32];
  int32_t cable;  // code of the cable table
  int32_t kind;   // 1: the cable code applies; 0x805C: the G series
  int32_t power;  // VA
  int32_t load;   // VA
  int32_t hold_minutes;
  int32_t recharge_hours;
};
inline constexpr int kMaxModels = 500;
inline constexpr char kTableEnd[] = "LAST";
extern ModelEntry UpsTypeArr[kMaxModels + 1];  // closed by the name "LAST"; filled by InitUpsTypeArray

struct CableEntry {
  const char *name;
  int32_t code;
};
extern const CableEntry UpsCableArr[12];  // closed by "LAST", -1

// Fills UpsTypeArr from the database `upstypname`: 1, or 0 when it can't be opened (the table stays as it was).
int InitUpsTypeArray();
// Entries before "LAST".
int get_max_ups_list(const ModelEntry *table);
// The index of the entry of that name, of "LAST" when there is none; the entry itself.
int get_ups_list_id(const ModelEntry *table, const char *name);
const ModelEntry *get_ups_by_name(const ModelEntry *table, const char *name);
// The name of the first cable with that code ("LAST" for an unknown one) into `name` (16 bytes).
void get_cable_name(char *name, int32_t code);
// The code of the cable of that name, -1 for an unknown one.
int32_t get_cable_type(const char *name);

// The selected model's name, terminated: a static buffer that the next call overwrites.
const char *get_act_ups();
// 1 when the selected model is of the G series.
int isZELKGSeries();

// --- loading

// How a key of the settings is loaded, and its default; null for another one.
const LoadRow *load_row_of_setting(const char *key);
const char *default_of_setting(const char *key);

// All records from the configuration `file`, missing keys from the defaults: 1, or 0 (records untouched) when it can't
// be opened.
int init_config_vals(const char *file);
// All records to the defaults of a new file; 1.
int init_new_config_vals();

// Filling the settings records: from a configuration file, or with the defaults of a new one.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <span>

#include "corbix/xconfig.h"
#include "setup/cfgmask/settings.h"
#include "setup/events_cfg/catalogue.h"
#include "setup/events_cfg/event_table.h"
#include "setup/mail/mail.h"
#include "setup/options.h"
#include "util/numbers.h"
#include "util/scramble.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr int kSecondsPerMinute = 60;

// Values that have no field, or that stand otherwise in the file than in the record. `stored` tells a value of the file
// from a default.
void take_ups_id(const char *value, bool) { StdRec.ups_id = to_int32(value); }

void take_cable(const char *value, bool) {
  Invisible.cable_code = to_int32(value);
  char name[sizeof StdRec.cable];
  get_cable_name(name, Invisible.cable_code);
  put_field(&StdRec, StdTabArr, kCable, name);
}

void take_data_logging(const char *value, bool) {
  StdRec.data_logging = to_int32(value) != 0;
  put_field(&PathRec, PathTabArr, kDataLogging, StdRec.data_logging ? "yes" : "no");
}

void take_network_role(const char *value, bool) { cpynstr(Invisible.network_role, value); }

// An empty password is stored as one blank, which the profile store trims away: it arrives empty.
void take_password(const char *value, bool stored) {
  char password[1024];
  cpynstr(password, value);
  if (stored) mirror_bytes(password);
  put_field(&CustomRec, CustomTabArr, kPassword, password);
}

void take_ups_shutdown_delay(const char *value, bool) {
  CustomRec.ups_shutdown_delay = to_int32(value) / kSecondsPerMinute;
}

constexpr LoadRow kUpsRows[] = {
    {"UpsLocation", "Unknown", {&StdRec, StdTabArr, kLocation}},
    {"UpsDevice", "/dev/ttyS0:2400,n,8,1", {&StdRec, StdTabArr, kDevice}},
    {"UpsID", "0", {}, take_ups_id},
    {"DataLoggingRate", "300", {&StdRec, StdTabArr, kLoggingRate}},
    {"LogMaxHours", "200", {&StdRec, StdTabArr, kLogLimit}},
    {"TempCaution", "50.0", {&StdRec, StdTabArr, kCautionTemperature}},
    {"TempWarning", "70.0", {&StdRec, StdTabArr, kWarningTemperature}},
    {"UpsModel", "Unknown", {&StdRec, StdTabArr, kModel}},
    {"UpsCable", "0", {}, take_cable},
    {"UpsPower", "1000", {&StdRec, StdTabArr, kPower}},
    {"UpsLoad", "1000", {&StdRec, StdTabArr, kLoad}},
    {"UpsHoldMins", "10", {&StdRec, StdTabArr, kHoldMinutes}},
    {"UpsRechargeHours", "10", {&StdRec, StdTabArr, kRechargeHours}},
    {"LoggingData", "1", {}, take_data_logging},
    {"NetTyp", "MASTER", {}, take_network_role},
};
constexpr LoadRow kSystemRows[] = {
    {"PASSWORD", "MIRT", {}, take_password},
    {"CheckRate", "1", {&CustomRec, CustomTabArr, kCheckRate}},
    {"SysDownAllowed", "yes", {&CustomRec, CustomTabArr, kShutdownAllowed}},
    {"SysDownMins", "7", {&CustomRec, CustomTabArr, kShutdownMinutes}},
    {"UpsDownEnabled", "yes", {&CustomRec, CustomTabArr, kUpsShutdown}},
    {"UpsDownDelay", "180", {}, take_ups_shutdown_delay},
    {"UpsRestEnabled", "yes", {&CustomRec, CustomTabArr, kUpsRestart}},
    {"UpTimeSupport", "yes", {&CustomRec, CustomTabArr, kUpTimeSupport}},
    {"FixedDownTime", "1", {&CustomRec, CustomTabArr, kFixedDownTime}},
};
constexpr LoadRow kExtraSwitchRows[] = {
    {"EnableExtra1", "no", {&SpecialRec, SpecialTabArr, 0}}, {"ExtraTime1", "0", {&SpecialRec, SpecialTabArr, 1}},
    {"EnableExtra2", "no", {&SpecialRec, SpecialTabArr, 3}}, {"ExtraTime2", "0", {&SpecialRec, SpecialTabArr, 4}},
    {"EnableExtra3", "no", {&SpecialRec, SpecialTabArr, 6}}, {"ExtraTime3", "0", {&SpecialRec, SpecialTabArr, 7}},
};

// Settings whose default is a file: in the working directory of a new configuration when its name is not too long for
// the field, else in the product's own directory.
struct PathRow {
  LoadRow setting;
  size_t longest_directory;  // characters; a path of a 30-character field, "/" and the name stay within it
  const char *name;
};
constexpr PathRow kExtraPathRows[] = {
    {{"ExtraJob1", "/usr/ups/ups_exe1", {&SpecialRec, SpecialTabArr, 2}}, 20, "ups_exe1"},
    {{"ExtraJob2", "/usr/ups/ups_exe2", {&SpecialRec, SpecialTabArr, 5}}, 20, "ups_exe2"},
    {{"ExtraJob3", "/usr/ups/ups_exe3", {&SpecialRec, SpecialTabArr, 8}}, 20, "ups_exe3"},
};
constexpr PathRow kLogPathRows[] = {
    {{"LogFileTxt", "/usr/ups/upslog.csv", {&PathRec, PathTabArr, kLogFile}}, 18, "upslog.csv"},
    {{"DataLoggingName", "/usr/ups/upsdata.csv", {&PathRec, PathTabArr, kDataLogFile}}, 17, "upsdata.csv"},
};
constexpr LoadRow kDataLogRows[] = {{"DataLoggingSize", "1000", {&PathRec, PathTabArr, kDataLogSize}}};

void load_paths(std::span<const PathRow> rows) {
  for (const PathRow &row : rows) load_section({&row.setting, 1});
}

void store_default_paths(std::span<const PathRow> rows, const char *directory) {
  for (const PathRow &row : rows) {
    char path[512];
    const size_t length = std::strlen(directory);
    const bool fits = length > 0 && length <= row.longest_directory;
    if (fits) std::snprintf(path, sizeof path, "%s/%s", directory, row.name);
    store_value(row.setting, fits ? path : row.setting.fallback, false);
  }
}

void trace_default(const char *name, const char *text) {
  if (debugLevel > kTraceDetails) myfprintf("cfgmask: init_new_config_vals: %s = |%s|\n", name, text);
}

void trace_ups_defaults() {
  char cable[256];
  trace_default("appl_name", default_of_setting("UpsLocation"));
  trace_default("device_str", default_of_setting("UpsDevice"));
  trace_default("ups_id", default_of_setting("UpsID"));
  trace_default("log_rate", default_of_setting("DataLoggingRate"));
  trace_default("log_min", "24");
  trace_default("log_max", default_of_setting("LogMaxHours"));
  trace_default("ups_name", default_of_setting("UpsModel"));
  trace_default("cable_type", text_in({&StdRec, StdTabArr, kCable}, cable));
  trace_default("ups_power", default_of_setting("UpsPower"));
  trace_default("ups_load", default_of_setting("UpsLoad"));
  trace_default("ups_maxholdtime", default_of_setting("UpsHoldMins"));
  trace_default("ups_rechargetime", default_of_setting("UpsRechargeHours"));
}

}  // namespace

const LoadRow *load_row_of_setting(const char *key) {
  for (const std::span<const LoadRow> rows : {std::span<const LoadRow>(kUpsRows), {kSystemRows}, {kExtraSwitchRows}}) {
    if (const LoadRow *row = load_row_in(rows, key)) return row;
  }
  for (const std::span<const PathRow> rows : {std::span<const PathRow>(kExtraPathRows), {kLogPathRows}}) {
    for (const PathRow &row : rows) {
      if (const LoadRow *setting = load_row_in({&row.setting, 1}, key)) return setting;
    }
  }
  return load_row_in(kDataLogRows, key);
}

const char *default_of_setting(const char *key) {
  const LoadRow *row = load_row_of_setting(key);
  return row == nullptr ? nullptr : row->fallback;
}

int init_config_vals(const char *file) {
  if (!XOpenProfile(file, 1)) return 0;
  load_section(kUpsRows);
  load_section(kSystemRows);
  load_section(kExtraSwitchRows);
  load_paths(kExtraPathRows);
  load_paths(kLogPathRows);
  load_section(kDataLogRows);
  read_mail_cfg(file);
  XCloseProfile();
  init_cstr_array();
  init_event_strings(file);
  return 1;
}

int init_new_config_vals() {
  char directory[256] = "";
  if (getcwd(directory, sizeof directory) == nullptr) directory[0] = '\0';

  store_defaults(kUpsRows);
  StdRec.logging_rate_copy = StdRec.logging_rate;
  StdRec.minimum_log = 24;
  trace_ups_defaults();
  store_defaults(kSystemRows);
  store_defaults(kExtraSwitchRows);
  if (create_new_cfg) store_default_paths(kExtraPathRows, directory);
  store_default_paths(kLogPathRows, directory);
  store_defaults(kDataLogRows);

  init_mail_cfg();
  XCloseProfile();
  init_cstr_array();
  DbEventListCnt = fill_event_strings("No UPS model defined");
  DbFuncListCnt = 0;
  return 1;
}

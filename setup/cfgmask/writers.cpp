#include "setup/cfgmask/writers.h"

#include <cstdio>
#include <cstring>

#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/settings.h"
#include "util/scramble.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr int kValueSize = 1024;

int number_text(int32_t number, char *value) {
  std::snprintf(value, kValueSize, "%d", static_cast<int>(number));
  return 1;
}

int field_text(int mask, int field, char *value) {
  const RecordField place = field_of_mask(mask, field);
  if (!is_number_field(place.table[field].type)) {
    text_in(place, value);
    return 1;
  }
  const int32_t number = number_in(place);
  return is_in_range(field, mask, number) && number_text(number, value);
}
int ups_text(int field, char *value) { return field_text(kMaskUps, field, value); }
int system_text(int field, char *value) { return field_text(kMaskSystem, field, value); }
int path_text(int field, char *value) { return field_text(kMaskPaths, field, value); }
int extra_job_text(int field, char *value) { return field_text(kMaskExtraJobs, field, value); }

int ups_id_text(int, char *value) { return number_text(StdRec.ups_id, value); }

int cable_code_text(int, char *value) {
  char name[256];
  return number_text(get_cable_type(text_in(field_of_mask(kMaskUps, kCable), name)), value);
}

int network_role_text(int, char *value) {
  cpynstr(value, Invisible.network_role, kValueSize);
  return 1;
}

// An empty password becomes one blank, so that the key is never empty.
int password_text(int field, char *value) {
  system_text(field, value);
  mirror_bytes(value);
  if (value[0] == '\0') cpynstr(value, " ", kValueSize);
  return 1;
}

// The trace holds the password in clear: it is meant for diagnosis, and its file is the owner's alone.
void trace_password() {
  char password[kValueSize];
  system_text(kPassword, password);
  if (debugLevel > kTraceDetails) myfprintf("CustomRec.password=%s!%d\n", password, lenstr(password));
}

int broadcast_rate_text(int, char *value) { return number_text(30, value); }  // the monitor expects it, s

int ups_shutdown_delay_text(int field, char *value) {
  const int32_t minutes = CustomRec.ups_shutdown_delay;
  return is_in_range(field, kMaskSystem, minutes) && number_text(minutes * 60, value);
}

// The binary log's name: that of the data log with its last four characters, the extension, replaced.
int binary_log_text(int field, char *value) {
  path_text(field, value);
  const size_t length = std::strlen(value);
  if (length > 4) cpynstr(value + length - 4, ".dat", kValueSize - static_cast<int>(length) + 4);
  return 1;
}

int data_logging_text(int field, char *value) {
  char word[256];
  const bool on = std::strncmp(text_in(field_of_mask(kMaskPaths, field), word), "yes", 3) == 0;
  return number_text(on ? 1 : 0, value);
}

constexpr WriteRow kUpsSection[] = {
    {"UpsLocation", ups_text, kLocation},
    {"UpsDevice", ups_text, kDevice},
    {"UpsID", ups_id_text},
    {"DataLoggingRate", ups_text, kLoggingRate},
    {"LogMaxHours", ups_text, kLogLimit},
    {"TempCaution", ups_text, kCautionTemperature},
    {"TempWarning", ups_text, kWarningTemperature},
    {"UpsModel", ups_text, kModel},
    {"UpsCable", cable_code_text},
    {"UpsPower", ups_text, kPower},
    {"UpsLoad", ups_text, kLoad},
    {"UpsHoldMins", ups_text, kHoldMinutes},
    {"UpsRechargeHours", ups_text, kRechargeHours},
};
constexpr WriteRow kSystemSection[] = {
    {"NetTyp", network_role_text, -1, WriteRule::ignored},
    {"PASSWORD", password_text, kPassword, WriteRule::ignored},
    {"NetBroadcastRate", broadcast_rate_text},
    {"CheckRate", system_text, kCheckRate},
    {"SysDownAllowed", system_text, kShutdownAllowed},
    {"SysDownMins", system_text, kShutdownMinutes},
    {"UpsDownEnabled", system_text, kUpsShutdown},
    {"UpsDownDelay", ups_shutdown_delay_text, kUpsShutdownDelay},
    {"UpsRestEnabled", system_text, kUpsRestart},
    {"UpTimeSupport", system_text, kUpTimeSupport},
    {"FixedDownTime", system_text, kFixedDownTime},
    {"GarUpTime", system_text, kFixedDownTime, WriteRule::follows},
};
constexpr WriteRow kPathSection[] = {
    {"LogFileTxt", path_text, kLogFile},           {"DataLoggingName", path_text, kDataLogFile, WriteRule::ignored},
    {"LogFileBin", binary_log_text, kDataLogFile}, {"LoggingData", data_logging_text, kDataLogging},
    {"DataLoggingSize", path_text, kDataLogSize},
};
constexpr WriteRow kExtraJobSection[] = {
    {"NetTyp", network_role_text, -1, WriteRule::ignored},
    {"EnableExtra1", extra_job_text, 0},
    {"ExtraTime1", extra_job_text, 1},
    {"ExtraJob1", extra_job_text, 2},
    {"EnableExtra2", extra_job_text, 3},
    {"ExtraTime2", extra_job_text, 4},
    {"ExtraJob2", extra_job_text, 5},
    {"EnableExtra3", extra_job_text, 6},
    {"ExtraTime3", extra_job_text, 7},
    {"ExtraJob3", extra_job_text, 8},
};

}  // namespace

std::span<const WriteRow> section_of_mask(int mask) {
  switch (mask) {
    case kMaskUps:
      return kUpsSection;
    case kMaskSystem:
      return kSystemSection;
    case kMaskPaths:
      return kPathSection;
    default:
      return kExtraJobSection;
  }
}

int save_std_cfg(const char *file) { return write_section(file, kUpsSection); }
int save_custom_cfg(const char *file) {
  trace_password();
  return write_section(file, kSystemSection);
}
int save_path_cfg(const char *file) { return write_section(file, kPathSection); }
int save_special_cfg(const char *file) { return write_section(file, kExtraJobSection); }

const char *settings_notice(const void *mask) {
  return section_notice(section_of_mask(*static_cast<const int *>(mask)), default_of_setting);
}

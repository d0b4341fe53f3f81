#include "setup/kavcfg/keys.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "corbix/xconfig.h"
#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/settings.h"
#include "setup/cfgmask/writers.h"
#include "setup/events_cfg/catalogue.h"
#include "setup/events_cfg/event_table.h"
#include "setup/mail/mail.h"
#include "util/text.h"

namespace {

constexpr int kReadMode = 1;
constexpr int kValueSize = 1024;  // GetMaxCfgBuf()

// NetTyp is in two sections.
void add_section(std::vector<Setting> &settings, int mask, std::span<const WriteRow> rows) {
  for (const WriteRow &row : rows) {
    const bool is_there = std::ranges::find(settings, row.key, &Setting::key) != settings.end();
    const LoadRow *load = mask == kMaskMail ? load_row_of_mail(row.key) : load_row_of_setting(row.key);
    if (!is_there) settings.push_back({row.key, load, &row, mask, -1});
  }
}

std::vector<Setting> make_settings() {
  std::vector<Setting> settings;
  for (const int mask : {kMaskUps, kMaskSystem, kMaskPaths, kMaskExtraJobs}) {
    add_section(settings, mask, section_of_mask(mask));
  }
  add_section(settings, kMaskMail, mail_section());
  for (int event = 0; event < kEventCount; event++) settings.push_back({event_key(event), nullptr, nullptr, 0, event});
  return settings;
}

// As a number when all of the text is one.
bool read_number(std::string_view text, double &number) {
  const std::string digits(text);
  char *end = nullptr;
  number = std::strtod(digits.c_str(), &end);
  return !digits.empty() && *end == '\0';
}

std::string default_value(const Setting &setting) {
  if (setting.load == nullptr) return "";
  std::string value = setting.load->fallback;
  if (is_secret(setting)) {
    store_value(*setting.load, setting.load->fallback, false);
    if (!value_in_records(setting, value)) return "";
  }
  return value;
}

}  // namespace

void init_settings() {
  init_tab();
  init_mail_tab();
  init_function_tab();
}

std::span<const Setting> all_settings() {
  static const std::vector<Setting> settings = make_settings();
  return settings;
}

const Setting *setting_of_key(std::string_view key) {
  for (const Setting &setting : all_settings()) {
    if (stricmp(setting.key, key) == 0) return &setting;
  }
  return nullptr;
}

bool is_job_list(const Setting &setting) { return setting.write == nullptr; }
bool is_follower(const Setting &setting) { return setting.load == nullptr && !is_job_list(setting); }

bool is_secret(const Setting &setting) {
  if (is_job_list(setting)) return false;
  const int field = setting.write->field;
  return (setting.mask == kMaskSystem && field == kPassword) || (setting.mask == kMaskMail && field == kSmtpPassword);
}

bool is_model(const Setting &setting) {
  return !is_job_list(setting) && setting.mask == kMaskUps && setting.write->field == kModel;
}

bool is_yes_no(const Setting &setting) {
  if (setting.load == nullptr) return false;
  const std::string_view fallback = setting.load->fallback;
  return fallback == "yes" || fallback == "no";
}

RecordField field_of(const Setting &setting) {
  if (is_job_list(setting) || setting.write->field < 0) return {};
  if (setting.mask == kMaskMail) return {&MailRec, MailTabArr, setting.write->field};
  return field_of_mask(setting.mask, setting.write->field);
}

bool range_of(const Setting &setting, std::string &smallest, std::string &largest) {
  const RecordField place = field_of(setting);
  if (place.record == nullptr) return false;
  const int32_t min = get_value_check_min(place.field, setting.mask);
  const int32_t max = get_value_check_max(place.field, setting.mask);
  smallest = std::to_string(min);
  largest = std::to_string(max);
  if (min == max) return false;
  if (!is_number_field(place.table[place.field].type)) return true;
  // in the file's units: what would be written of the bounds
  const std::string present = std::to_string(number_in(place));
  bool written = true;
  for (std::string *bound : {&smallest, &largest}) {
    put_field(place.record, place.table, place.field, bound->c_str());
    written = value_in_records(setting, *bound) && written;
  }
  put_field(place.record, place.table, place.field, present.c_str());
  return written;
}

int value_in_records(const Setting &setting, std::string &value) {
  if (is_job_list(setting)) {
    value = CStrArr_GetStr(&EventStrings, setting.event);
    return 1;
  }
  char text[kValueSize];
  if (!setting.write->text(setting.write->field, text)) return 0;
  value = text;
  return 1;
}

void take_value(const Setting &setting, const std::string &value) {
  if (!is_job_list(setting)) {
    store_value(*setting.load, value.c_str(), true);
  } else {
    std::ignore = store_event_jobs(setting.event, value.c_str());
  }
}

bool is_same_value(const Setting &setting, std::string_view a, std::string_view b) {
  double left = 0;
  double right = 0;
  const bool is_number = setting.load != nullptr && read_number(setting.load->fallback, left);
  if (is_number && read_number(a, left) && read_number(b, right)) return left == right;
  return (a == " " ? "" : a) == (b == " " ? "" : b);
}

int values_of_file(const char *file, std::vector<std::string> &values) {
  if (!XOpenProfile(file, kReadMode)) return 0;
  values.clear();
  for (const Setting &setting : all_settings()) {
    char value[kValueSize];
    const bool stored = XGetPrivateProfileString(kTmpTopic, setting.key.c_str(), value, kValueSize) != 0;
    values.push_back(stored ? value : default_value(setting));
  }
  XCloseProfile();
  return 1;
}

std::vector<std::string> default_values() {
  std::vector<std::string> values;
  for (const Setting &setting : all_settings()) {
    values.push_back(is_job_list(setting) ? eventlist[setting.event].jobs[language] : default_value(setting));
  }
  return values;
}

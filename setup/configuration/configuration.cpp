#include "setup/configuration/configuration.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "setup/configuration/changes.h"
#include "setup/configuration/texts.h"
#include "setup/jobs/catalogue.h"
#include "setup/jobs/event_table.h"
#include "setup/settings/models.h"
#include "util/files.h"
#include "util/text.h"
#include "util/trace.h"

const char *const kConfigurationFile = "ups.cfg";
int32_t create_new_cfg = 0;

namespace {

// The lines that a new configuration begins with.
constexpr char kHeader[] = "#\n#  KAVLON Pro Configuration\n#\n\n";
static_assert(sizeof kHeader - 1 == 33);

struct Section {
  const char *name;  // in the trace
  int (*write)();    // into the open profile
};
constexpr Section kSections[] = {
    // clang-format off
    {"save_std_cfg",       write_std},
    {"save_custom_cfg",    write_custom},
    {"save_path_cfg",      write_path},
    {"save_mail_cfg",      write_mail},
    {"save_new_event_cfg", write_event_lists},
    // clang-format on
};

constexpr size_t kSettingCount = kUpsSettings.size() + kSystemSettings.size() + kPathSettings.size() +
                                 kExtraJobSettings.size() + kMailSettings.size() + kEventCount;

std::array<const Setting *, kSettingCount> list_settings() {
  std::array<const Setting *, kSettingCount> list = {};
  size_t count = 0;
  const auto add = [&](const Setting &setting) { list[count++] = &setting; };
  for (const int mask : {kMaskUps, kMaskSystem, kMaskPaths, kMaskExtraJobs, kMaskMail}) {
    std::ranges::for_each(settings_of(mask), add);
  }
  std::ranges::for_each(job_list_settings(), add);
  return list;
}

// The extra jobs' paths of a session that had a configuration at its start stay as they are.
void store_new_defaults(const char *directory) {
  for (const Setting *setting : core_settings()) {
    const bool stays = setting->mask == kMaskExtraJobs && setting->kind == Kind::path && !create_new_cfg;
    if (!stays) store_default(*setting, directory);
  }
}

struct TracedDefault {
  const char *name;
  const char *key;
};
constexpr TracedDefault kTracedDefaults[] = {
    // clang-format off
    {"appl_name",        "UpsLocation"},
    {"device_str",       "UpsDevice"},
    {"ups_id",           "UpsID"},
    {"log_rate",         "DataLoggingRate"},
    {"log_min",          nullptr},
    {"log_max",          "LogMaxHours"},
    {"ups_name",         "UpsModel"},
    {"cable_type",       "UpsCable"},
    {"ups_power",        "UpsPower"},
    {"ups_load",         "UpsLoad"},
    {"ups_maxholdtime",  "UpsHoldMins"},
    {"ups_rechargetime", "UpsRechargeHours"},
    // clang-format on
};

void trace_defaults() {
  if (debugLevel <= kTraceDetails) return;
  for (const auto &[name, key] : kTracedDefaults) {
    const Setting *setting = key == nullptr ? nullptr : setting_of_key(key);
    const std::string text = setting == nullptr             ? std::to_string(StdRec.minimum_log)
                             : setting->kind == Kind::cable ? text_of_field(*setting)
                                                            : setting->fallback;
    myfprintf("cfgmask: init_new_config_vals: %s = |%s|\n", name, text.c_str());
  }
}

int section_written[std::size(kSections)];  // results of the last write_all_sections
std::vector<std::string> report;            // of the last save

int not_saved(const char *file, int error) {
  report = {filled(not_saved_label, {file, failure_reason(error)})};
  return 0;
}

void trace_section(const char *name, bool ok) {
  if (debugLevel > kTraceResults) myfprintf("%s() %s\n", name, ok ? "ok" : "failed");
}

}  // namespace

std::span<const Setting *const> all_settings() {
  static const auto settings = list_settings();
  return settings;
}

const Setting *setting_of_key(std::string_view key) {
  const auto has_key = [key](const Setting *setting) { return stricmp(setting->key, key) == 0; };
  const auto found = std::ranges::find_if(all_settings(), has_key);
  return found == all_settings().end() ? nullptr : *found;
}

void init_all_tabs() {
  init_tab();
  init_mail_tab();
  init_function_tab();
}

int load_configuration() {
  note_file();
  if (!load_event_strings()) return 0;
  load_settings(core_settings());
  load_mail();
  remember_lists_model();
  return 1;
}

int init_config_vals(const char *file) {
  if (!XOpenProfile(file, kReadText)) return 0;
  const int loaded = load_configuration();
  XCloseProfile();
  if (loaded) begin_changes();
  return loaded;
}

int init_new_config_vals() {
  char directory[256] = "";
  if (getcwd(directory, sizeof directory) == nullptr) directory[0] = '\0';
  forget_file();
  store_new_defaults(directory);
  StdRec.logging_rate_copy = StdRec.logging_rate;
  StdRec.minimum_log = 24;
  trace_defaults();
  init_mail_cfg();
  XCloseProfile();
  reset_job_lists("No UPS model defined");
  begin_changes();
  return 1;
}

int values_of_file(const char *file, std::vector<std::string> &values) {
  if (!XOpenProfile(file, kReadText)) return 0;
  values.clear();
  for (const Setting *setting : all_settings()) {
    values.push_back(text_in_profile(*setting).value_or(default_of(*setting)));
  }
  XCloseProfile();
  return 1;
}

std::vector<std::string> default_values() {
  std::vector<std::string> values;
  for (const Setting *setting : all_settings()) {
    values.push_back(setting->kind == Kind::job_list ? eventlist[setting->field].jobs[language] : default_of(*setting));
  }
  return values;
}

int create_profile(const char *file) { return XCreateProfile(file, kHeader); }

bool write_all_sections() {
  for (size_t i = 0; i < std::size(kSections); ++i) section_written[i] = kSections[i].write();
  return std::ranges::find(section_written, 0) == std::end(section_written);
}

int save_configuration(const char *file) {
  SaveLock lock;  // two programs that save at the same time must not mix
  if (!lock_for_saving(file, lock)) return not_saved(file, errno);
  const bool exists = does_file_exist(file, kAnyFile) != 0;
  if (!(exists ? XOpenProfile(file, kWriteText) : create_profile(file))) return not_saved(file, errno);
  const std::vector<std::string> others = leave_changes_of_others(file);
  const bool all_written = write_all_sections();
  const int closed = XCloseProfile();
  const int error = errno;
  for (size_t i = 0; i < std::size(kSections); ++i) trace_section(kSections[i].name, closed && section_written[i]);
  if (!closed) return not_saved(file, error);
  report = others;
  if (all_written) {
    unlink(unsaved_file(file).c_str());
  } else {
    report.push_back(filled(refused_label, {file, refused_key()}));
    take_over_written(file);
  }
  return all_written;
}

std::string failure_reason(int error) {
  return error == EWOULDBLOCK ? lock_held_label[language] : std::string(std::strerror(error));
}

const std::vector<std::string> &save_report() { return report; }

std::string obstacle_to_saving(const char *file) {
  const bool exists = does_file_exist(file, kAnyFile) != 0;
  const int error = access(exists ? file : ".", W_OK) != 0 ? errno : is_saved_now(file) ? EWOULDBLOCK : 0;
  return error == 0 ? "" : filled(unsavable_label, {file, failure_reason(error)});
}

void choose_model(const char *name) {
  const int model = get_ups_list_id(UpsTypeArr, name);
  take_line_settings(model);
  take_model(UpsTypeArr[model]);
  reset_job_lists(name);
  const bool needs_password = std::strncmp(name, "ZELK", 4) == 0 && CustomRec.password[0] == '\0';
  if (needs_password) put_field(&CustomRec, CustomTabArr, kPassword, setting_of_key("PASSWORD")->fallback);
}

void reset_job_lists(const char *name) {
  DbEventListCnt = fill_event_strings(name);
  DbFuncListCnt = 0;
}

#include "setup/check/warnings.h"

#include <memory>
#include <optional>

#include "setup/check/texts.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "util/files.h"
#include "util/numbers.h"
#include "util/text.h"

namespace {

constexpr const char *kMessageFile = "messages.dat";

struct Warnings {
  const FoundLines &found;
  std::vector<KeyFinding> &findings;
};

void warn(Warnings &warnings, const Setting &setting, const std::string &text) {
  const auto line = warnings.found.settings.find(&setting);
  const int number = line == warnings.found.settings.end() ? 0 : line->second;
  warnings.findings.push_back({number, setting.key, text, true});
}

const Setting &setting_at(const char *key) { return *setting_of_key(key); }
bool is_empty(const char *key) { return text_of_field(setting_at(key)).empty(); }

// --- single settings

void check_password(Warnings &warnings, const Setting &setting) {
  const bool has_default = setting.kind == Kind::secret && *setting.fallback != '\0';
  if (has_default && text_of_field(setting) == setting.fallback) {
    warn(warnings, setting, default_password_label[language]);
  }
}

void check_folder(Warnings &warnings, const Setting &setting) {
  if (setting.kind != Kind::path || setting.mask != kMaskPaths) return;
  const std::string folder = folder_of(text_of_field(setting));
  if (does_file_exist(folder.c_str(), kDirectoryOnly)) return;
  warn(warnings, setting, filled(folder_label, {folder}));
}

std::string minutes(double number) { return std::to_string(to_int32(number + 0.5)); }

// --- jobs

// The lines of the monitor's messages, beside the configuration or else in the working directory.
struct Messages {
  std::string file;
  std::optional<std::string> lines;
};

Messages read_messages(const char *configuration) {
  for (const std::string &file : {beside(configuration, kMessageFile), std::string(kMessageFile)}) {
    std::string lines;
    if (AFileExists(file.c_str()) && read_file(file.c_str(), lines)) return {file, "\n" + lines};
  }
  return {"", std::nullopt};
}

std::string email_warning(const std::string &number) {
  if (!keeps_smtp_user()) return filled(mail_disabled_label, {number});
  for (const char *key : {"SmtpHost", "MailFromAddr"}) {
    if (is_empty(key)) return filled(mail_missing_label, {number, key});
  }
  return "";
}

std::string message_warning(const std::string &number, const JobRec &job, const Messages &messages) {
  const std::string id = job.params[1].value;
  const bool is_there = !messages.lines.has_value() || messages.lines->find("\nm" + id + "=") != std::string::npos;
  return is_there ? "" : filled(no_message_label, {number, id, messages.file});
}

bool shuts_down(const JobRec &job) { return job.function == kShutdownFunction; }

// True when a job of the list shuts the system down.
bool check_jobs(Warnings &warnings, const Setting &list, const Messages &messages) {
  bool has_shutdown = false;
  const auto job = std::make_unique_for_overwrite<JobRec>();  // parse_job clears it
  int count = 0;
  for (const std::string &text : split_joblist(CStrArr_GetStr(&EventStrings, list.field))) {
    parse_job(text.c_str(), list.field, *job);
    const std::string number = std::to_string(++count);
    has_shutdown = has_shutdown || shuts_down(*job);
    const std::string warning = job->function == kEmailFunction       ? email_warning(number)
                                : job->function == kMessageIdFunction ? message_warning(number, *job, messages)
                                                                      : "";
    if (!warning.empty()) warn(warnings, list, warning);
  }
  return has_shutdown;
}

void check_lists(Warnings &warnings, const Messages &messages) {
  bool has_shutdown = false;
  for (const Setting &list : job_list_settings()) {
    if (check_jobs(warnings, list, messages)) has_shutdown = true;
  }
  if (may_shut_down() && !has_shutdown) warn(warnings, setting_at("SysDownAllowed"), no_shutdown_label[language]);
}

}  // namespace

std::string battery_warning(const ShutdownPlan &plan) {
  if (!plan.happens || plan.empty >= plan.over()) return "";
  return filled(battery_label, {minutes(plan.empty), minutes(plan.over())});
}

void add_warnings(const char *file, const FoundLines &found, std::vector<KeyFinding> &findings) {
  Warnings warnings = {found, findings};
  if (found.windows_end > 0) findings.push_back({found.windows_end, "", windows_end_label[language], true});
  for (const Setting *setting : all_settings()) {
    check_password(warnings, *setting);
    check_folder(warnings, *setting);
  }
  const std::string battery = battery_warning(shutdown_plan());
  if (!battery.empty()) warn(warnings, setting_at("UpsHoldMins"), battery);
  check_lists(warnings, read_messages(file));
}

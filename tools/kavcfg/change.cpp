#include "tools/kavcfg/change.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/faults.h"
#include "setup/check/texts.h"
#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/texts.h"
#include "util/files.h"

namespace {

bool is_given(std::span<const Change> changes, const Setting &setting) {
  return std::ranges::find(changes, &setting, &Change::setting) != changes.end();
}

// Followers of a given setting stand in the same field.
bool follows_given(std::span<const Change> changes, const Setting &setting) {
  return setting.kind == Kind::follower && std::ranges::any_of(changes, [&](const Change &change) {
           return change.setting->mask == setting.mask && change.setting->field == setting.field;
         });
}

// --- into the records

void take_model_change(const Change &change) {
  const bool is_known = get_ups_list_id(UpsTypeArr, change.value.c_str()) != get_max_ups_list(UpsTypeArr);
  if (is_known && change.value != get_act_ups()) choose_model(change.value.c_str());
}

// As in the mask: who forbids the system shutdown forbids what would follow it.
void follow_shutdown(std::span<const Change> changes) {
  const auto forbids = [](const Change &change) {
    return change.setting->mask == kMaskSystem && change.setting->field == kShutdownAllowed && change.value == "no";
  };
  if (std::ranges::none_of(changes, forbids)) return;
  for (const Setting &setting : kSystemSettings) {
    if (follows_shutdown(setting.field) && !is_given(changes, setting)) take_value(setting, "no", true);
  }
}

void take_changes(std::span<const Change> changes) {
  for (const Change &change : changes) {
    if (change.setting->kind == Kind::model) take_model_change(change);
  }
  // a secret is given in clear, as a default is
  for (const Change &change : changes) {
    const bool in_clear = change.setting->kind == Kind::secret && !change.is_stored;
    take_value(*change.setting, change.value.c_str(), !in_clear);
  }
  follow_shutdown(changes);
}

// A file without a model may stay so.
bool is_present_model(const Change &change) {
  const std::string *loaded = text_in_file(*change.setting);
  return change.setting->kind == Kind::model &&
         change.value == (loaded != nullptr ? *loaded : change.setting->fallback);
}

void add_faults(const Change &change, std::vector<KeyFinding> &faults) {
  if (is_present_model(change)) return;
  const Setting &setting = *change.setting;
  const bool is_secret = setting.kind == Kind::secret;
  const std::string value = is_secret ? stored_value(setting).value : change.value;
  const std::string typed = is_secret && change.is_stored ? text_of_field(setting) : change.value;
  for (const std::string &fault : faults_of(setting, typed, value)) faults.push_back({change.line, setting.key, fault});
}

// Takes the changes into the records, which hold the configuration. refused, the faults told, or done.
Outcome take_and_check(std::span<const Change> changes, std::vector<KeyFinding> &faults) {
  take_changes(changes);
  for (const Change &change : changes) add_faults(change, faults);
  return faults.empty() ? Outcome::done : Outcome::refused;
}

bool needs_models(std::span<const Change> changes) {
  return std::ranges::any_of(changes, [](const Change &change) { return change.setting->kind == Kind::model; });
}

// --- into the open profile

// A file that begins with a topic has no place for settings: those that are set go after its last topic.
bool has_place() {
  ProfileText line;
  while (XNextLine(line)) {
    if (is_topic(line.text)) return line.is_generated;
  }
  return true;
}

using Texts = std::vector<std::optional<std::string>>;

// What the file holds of all settings.
Texts texts_in_file() {
  Texts texts;
  for (const Setting *setting : all_settings()) texts.push_back(text_in_profile(*setting));
  return texts;
}

// A missing key has its default.
bool is_so_already(const Setting &setting, const std::string &value) {
  const std::optional<std::string> text = text_in_profile(setting);
  return !text.has_value() && can_be_set(setting) && is_same_value(setting, value, default_of(setting));
}

// True when the value is found again, also an empty one, which removes the key.
bool set_value(const Setting &setting, const std::string &value) {
  if (is_so_already(setting, value)) return true;
  const int set = XSetPrivateProfileStringNoTrim(kTmpTopic, setting.key, value.c_str(), "");
  return (set || value.empty()) && is_same_value(setting, text_in_profile(setting).value_or(""), value);
}

// All that was given, and all that changed with it.
void set_values(std::span<const Change> changes, std::span<const Stored> before, std::vector<KeyFinding> &faults) {
  if (!has_place()) return faults.push_back({0, "", no_place_label[language]});
  for (size_t i = 0; i < before.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const Stored stored = stored_value(setting);
    const bool wanted = is_given(changes, setting) || follows_given(changes, setting) || stored != before[i];
    if (wanted && stored.written && !set_value(setting, stored.value)) {
      faults.push_back({0, setting.key, fault_notice(ProfileFault::too_long)});
    }
  }
}

std::vector<Difference> differences_of(const Texts &before, const Texts &after) {
  std::vector<Difference> differences;
  for (size_t i = 0; i < after.size(); ++i) {
    if (before[i] != after[i]) differences.push_back({all_settings()[i], before[i], after[i]});
  }
  return differences;
}

// An empty file gets its first line as it is opened: who only tries works on one that has it.
int open_for(Deed deed, const char *file) {
  struct stat state = {};
  const bool is_empty = stat(file, &state) == 0 && state.st_size == 0;
  return deed == Deed::try_only && is_empty ? XCreateProfile(file, ";\n") : XOpenProfile(file, kWriteText);
}

// Ends the work on the open profile as the deed wants it.
ChangeResult finish(Deed deed, const Texts &before, std::vector<KeyFinding> faults) {
  ChangeResult result = {Outcome::done, 0, {}, std::move(faults)};
  if (!result.faults.empty()) result.outcome = Outcome::refused;
  if (result.faults.empty()) result.differences = differences_of(before, texts_in_file());
  if (!result.faults.empty() || deed == Deed::try_only) {
    XDiscardProfile();
  } else if (!XCloseProfile()) {
    result = {Outcome::file_unwritable, errno};
  }
  return result;
}

}  // namespace

ChangeResult change_configuration(const char *file, std::span<const Change> changes, Deed deed) {
  if (needs_models(changes) && !InitUpsTypeArray()) return {Outcome::database_unreadable, errno};
  SaveLock lock;  // nobody may save between this reading and the writing
  if (deed == Deed::write && !lock_for_saving(file, lock)) return {Outcome::file_unwritable, errno};
  if (!init_config_vals(file)) return {Outcome::file_unreadable, errno};
  const std::vector<Stored> stored = all_stored_values();
  std::vector<KeyFinding> faults;
  if (take_and_check(changes, faults) == Outcome::refused) return {.outcome = Outcome::refused, .faults = faults};
  if (!open_for(deed, file)) return {Outcome::file_unwritable, errno};
  const Texts before = texts_in_file();
  set_values(changes, stored, faults);
  return finish(deed, before, faults);
}

ChangeResult create_configuration(const char *file, std::span<const Change> changes, Deed deed) {
  if (needs_models(changes) && !InitUpsTypeArray()) return {Outcome::database_unreadable, errno};
  SaveLock lock;  // nobody may make it between this look and the writing
  if (deed == Deed::write && !lock_for_saving(file, lock)) return {Outcome::file_unwritable, errno};
  if (does_file_exist(file, kAnyFile)) return {Outcome::file_unwritable, EEXIST};
  create_new_cfg = 1;
  init_new_config_vals();
  std::vector<KeyFinding> faults;
  if (take_and_check(changes, faults) == Outcome::refused) return {.outcome = Outcome::refused, .faults = faults};
  if (!create_profile(file)) return {Outcome::file_unwritable, errno};
  const Texts before(all_settings().size());
  write_all_sections();
  return finish(deed, before, faults);
}

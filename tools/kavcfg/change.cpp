#include "tools/kavcfg/change.h"

#include <algorithm>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/faults.h"
#include "setup/check/texts.h"
#include "setup/configuration/configuration.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/texts.h"
#include "util/files.h"

namespace {

// What the records would write of a setting; not `written` for a number out of its range.
struct Stored {
  bool written;
  std::string value;
  bool operator==(const Stored &) const = default;
};

Stored stored_value(const Setting &setting) {
  Stored stored = {};
  stored.written = value_of(setting, stored.value);
  return stored;
}

std::vector<Stored> all_stored_values() {
  std::vector<Stored> values;
  for (const Setting *setting : all_settings()) values.push_back(stored_value(*setting));
  return values;
}

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
    take_value(*change.setting, change.value.c_str(), change.setting->kind != Kind::secret);
  }
  follow_shutdown(changes);
}

void add_faults(const Change &change, std::vector<KeyFinding> &reasons) {
  const Setting &setting = *change.setting;
  const std::string value = setting.kind == Kind::secret ? stored_value(setting).value : change.value;
  for (const std::string &fault : faults_of(setting, change.value, value)) reasons.push_back({0, setting.key, fault});
}

// --- into the file

// A file that begins with a topic has no place for settings: those that are set go after its last topic.
bool has_place(ProfileHandle profile) {
  ProfileText line;
  while (XNextLineEx(profile, line)) {
    if (is_topic(line.text)) return line.is_generated;
  }
  return true;
}

std::string value_in_file(ProfileHandle profile, const Setting &setting) {
  char value[kValueBufferSize] = "";
  XGetPrivateProfileStringEx(profile, kTmpTopic, setting.key, value, sizeof value);
  return value;
}

// 1 when the value is found again, also an empty one, which removes the key.
int set_value(ProfileHandle profile, const Setting &setting, const std::string &value) {
  const char *key = setting.key;
  const int set = XSetPrivateProfileStringNoTrimEx(profile, kTmpTopic, key, value.c_str(), "");
  return (set || value.empty()) && is_same_value(setting, value_in_file(profile, setting), value);
}

// All that was given, and all that changed with it.
void set_values(ProfileHandle profile, std::span<const Change> changes, std::span<const Stored> before,
                std::vector<KeyFinding> &reasons) {
  if (!has_place(profile)) return reasons.push_back({0, "", no_place_label[language]});
  for (size_t i = 0; i < before.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const Stored stored = stored_value(setting);
    const bool wanted = is_given(changes, setting) || follows_given(changes, setting) || stored != before[i];
    if (wanted && stored.written && !set_value(profile, setting, stored.value)) {
      reasons.push_back({0, setting.key, fault_notice(ProfileFault::too_long)});
    }
  }
}

Outcome write_changes(const char *file, std::span<const Change> changes, std::span<const Stored> before,
                      std::vector<KeyFinding> &reasons) {
  ProfileHandle profile = XOpenProfileEx(file, kWriteText);
  if (profile == nullptr) return Outcome::file_unwritable;
  set_values(profile, changes, before, reasons);
  if (!reasons.empty()) {
    XDiscardProfileEx(&profile);
    return Outcome::refused;
  }
  return XCloseProfileEx(&profile) ? Outcome::done : Outcome::file_unwritable;
}

}  // namespace

Outcome change_configuration(const char *file, std::span<const Change> changes, std::vector<KeyFinding> &reasons) {
  const bool has_model =
      std::ranges::any_of(changes, [](const Change &change) { return change.setting->kind == Kind::model; });
  if (has_model && !InitUpsTypeArray()) return Outcome::database_unreadable;
  SaveLock lock;  // nobody may save between this reading and the writing
  if (!lock_for_saving(file, lock)) return Outcome::file_unwritable;
  if (!init_config_vals(file)) return Outcome::file_unreadable;
  const std::vector<Stored> before = all_stored_values();
  take_changes(changes);
  for (const Change &change : changes) add_faults(change, reasons);
  return reasons.empty() ? write_changes(file, changes, before, reasons) : Outcome::refused;
}

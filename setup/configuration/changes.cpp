#include "setup/configuration/changes.h"

#include <sys/stat.h>

#include <algorithm>
#include <initializer_list>
#include <set>

#include "setup/configuration/configuration.h"
#include "setup/configuration/texts.h"
#include "util/files.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

std::vector<Stored> at_start;  // of all settings, when the session began; written by begin_changes and by a save

bool is_changed(size_t place) { return stored_value(*all_settings()[place]) != at_start[place]; }

// A missing key and its default are the same.
bool is_as_loaded(const Setting &setting, const std::optional<std::string> &now) {
  const std::string *loaded = text_in_file(setting);
  const std::string fallback = default_of(setting);
  return (loaded == nullptr ? fallback : *loaded) == now.value_or(fallback);
}

// A follower is written with the setting of its field.
bool follows(const Setting &setting, const Setting &other) {
  return setting.kind == Kind::follower && setting.mask == other.mask && setting.field == other.field;
}

std::string line_about(Label &label, const char *file, const Setting &setting, const std::optional<std::string> &now) {
  std::string what = setting.key;
  if (now.has_value() && setting.kind != Kind::secret) what += "=" + *now;
  return filled(label, {file, what});
}

}  // namespace

Stored stored_value(const Setting &setting) {
  Stored stored;
  stored.written = value_of(setting, stored.value);
  return stored;
}

std::vector<Stored> all_stored_values() {
  std::vector<Stored> values;
  for (const Setting *setting : all_settings()) values.push_back(stored_value(*setting));
  return values;
}

void begin_changes() { at_start = all_stored_values(); }

bool has_changes() { return !at_start.empty() && all_stored_values() != at_start; }

std::vector<std::string> leave_changes_of_others(const char *file) {
  std::vector<std::string> lines;
  std::vector<const Setting *> left;
  for (size_t i = 0; i < at_start.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const std::optional<std::string> now = text_in_profile(setting);
    if (!can_be_set(setting) || is_as_loaded(setting, now)) continue;
    if (!is_changed(i)) {
      left.push_back(&setting);
      lines.push_back(line_about(kept_label, file, setting, now));
    } else if (now != stored_value(setting).value) {
      lines.push_back(line_about(overwritten_label, file, setting, now));
    }
  }
  for (const Setting *setting : all_settings()) {
    if (std::ranges::any_of(left, [&](const Setting *other) { return follows(*setting, *other); })) {
      left.push_back(setting);
    }
  }
  leave_to_file(left);
  return lines;
}

void take_over_written(const char *file) {
  if (!XOpenProfile(file, kReadText)) return;
  note_file();
  for (size_t i = 0; i < at_start.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const Stored stored = stored_value(setting);
    const std::string *text = text_in_file(setting);
    if ((text == nullptr ? "" : *text) == stored.value) at_start[i] = stored;
  }
  XCloseProfile();
}

std::string unsaved_file(const char *file) { return std::string(file) + ".unsaved"; }

int keep_unsaved(const char *file) {
  if (!has_changes()) return 1;
  std::string lines = std::string(kStoredMark) + "\n";
  std::set<std::string, std::less<>> keys;
  for (size_t i = 0; i < at_start.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const Stored stored = stored_value(setting);
    if (!can_be_set(setting) || stored == at_start[i] || !stored.written) continue;
    lines += std::string(setting.key) + "=" + stored.value + "\n";
    keys.insert(setting.key);
  }
  const std::string path = unsaved_file(file);
  std::string earlier;
  if (AFileExists(path.c_str()) && !read_file(path.c_str(), earlier)) return 0;
  for (const std::string_view line : split_lines(earlier)) {
    const size_t equals = line.find('=');
    if (equals != std::string_view::npos && !keys.contains(line.substr(0, equals))) lines.append(line) += "\n";
  }
  chmod(path.c_str(), S_IRUSR | S_IWUSR);
  const mode_t mask = umask(S_IRWXG | S_IRWXO);
  const int written = replace_file(path.c_str(), lines);
  umask(mask);
  return written;
}

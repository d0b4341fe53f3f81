#include "setup/check/check.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/faults.h"
#include "setup/check/texts.h"
#include "setup/configuration/texts.h"
#include "setup/settings/models.h"
#include "util/files.h"

namespace {

// The part of the file that a line stands in.
enum class Part {
  start,     // neither a setting nor a topic so far
  settings,  // in front of the first topic
  topic,
  hidden,  // after a "[" that is no topic's
};

struct Walk {
  std::vector<KeyFinding> &findings;
  Part part = Part::start;
  int line = 0;
  int hidden_by = 0;
  std::map<const Setting *, int> lines = {};  // of the settings that were found
};

void report(Walk &walk, const Setting *setting, const std::string &text) {
  walk.findings.push_back({walk.line, setting == nullptr ? "" : setting->key, text});
}

const Setting *setting_of_line(std::string_view text) {
  std::string_view key;
  return has_key_entry(text) && find_entry(text, kReadText, key) ? setting_of_key(key) : nullptr;
}

// A topic as a person writes it, not just a "[" somewhere in the line.
bool is_topic_line(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t");
  return is_topic(text) && start != std::string_view::npos && text[start] == '[';
}

std::string_view without_blanks(std::string_view text) {
  const size_t start = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(start, text.find_last_not_of(' ') + 1 - start);
}

// The text of a setting as the masks show it.
std::string typed_text(const Setting &setting, const std::string &value) {
  return setting.kind == Kind::secret ? text_of_field(setting) : value;
}

void check_setting(Walk &walk, const Setting &setting, std::string_view text) {
  const auto [found, is_first] = walk.lines.emplace(&setting, walk.line);
  if (!is_first) return report(walk, &setting, filled(duplicate_label, {std::to_string(found->second)}));
  char value[kValueBufferSize], whole[kValueBufferSize];
  get_value(text, value, kReadText);
  get_value_notrim(text, whole, kReadText);
  if (std::string_view(whole).ends_with('\r')) return report(walk, &setting, carriage_return_label[language]);
  const ProfileFault fault = XSurvives(kTmpTopic, setting.key, without_blanks(whole));
  if (fault != ProfileFault::none && fault != ProfileFault::empty) return report(walk, &setting, fault_notice(fault));
  for (const std::string &reason : faults_of(setting, typed_text(setting, value), value)) {
    report(walk, &setting, reason);
  }
}

// What a "[" that no topic begins with does to the lines below it.
void hide_rest(Walk &walk, const Setting *setting) {
  if (setting == nullptr) report(walk, nullptr, fault_notice(ProfileFault::bracket));
  walk.part = Part::hidden;
  walk.hidden_by = walk.line;
}

void check_text(Walk &walk, std::string_view text) {
  const Setting *setting = setting_of_line(text);
  if (walk.part == Part::topic) return;
  if (walk.part == Part::hidden && setting != nullptr) {
    report(walk, setting, filled(covered_label, {std::to_string(walk.hidden_by)}));
  }
  if (is_topic_line(text)) {
    if (walk.part == Part::start) report(walk, nullptr, no_place_label[language]);
    walk.part = Part::topic;
  } else if (walk.part != Part::hidden) {
    if (setting != nullptr) check_setting(walk, *setting, text);
    // in front of the first setting the monitor looks for whole topics only
    if (walk.part == Part::start ? is_topic(text) : holds_topic(text)) hide_rest(walk, setting);
  }
}

void check_line(Walk &walk, const ProfileText &line) {
  if (line.is_generated) {
    walk.part = Part::settings;
    return;
  }
  const bool is_rest = line.number == walk.line;
  walk.line = line.number;
  if (line.continues && !is_rest) report(walk, nullptr, filled(pieces_label, {std::to_string(kTextPiece)}));
  if (line.has_nul) report(walk, nullptr, nul_label[language]);
  check_text(walk, line.text);
}

}  // namespace

Outcome check_file(const char *file, std::vector<KeyFinding> &findings) {
  if (!XOpenProfile(file, kReadText)) return Outcome::file_unreadable;
  const int loaded = load_configuration();
  Walk walk = {findings};
  ProfileText line;
  while (loaded && XNextLine(line)) check_line(walk, line);
  XCloseProfile();
  if (!loaded) return Outcome::file_unreadable;
  const Setting &model = *setting_of_key("UpsModel");
  if (!walk.lines.contains(&model)) findings.insert(findings.begin(), {0, model.key, no_model_label[language]});
  const std::string copy = interrupted_copy(file);
  if (!copy.empty()) findings.insert(findings.begin(), {0, "", filled(copy_label, {copy})});
  return Outcome::done;
}

Outcome check_configuration(const char *file, std::vector<KeyFinding> &findings) {
  return InitUpsTypeArray() ? check_file(file, findings) : Outcome::database_unreadable;
}

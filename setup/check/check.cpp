#include "setup/check/check.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/faults.h"
#include "setup/check/lines.h"
#include "setup/check/texts.h"
#include "setup/check/warnings.h"
#include "setup/configuration/texts.h"
#include "setup/settings/models.h"
#include "util/charset.h"
#include "util/files.h"

namespace {

struct Walk {
  std::vector<KeyFinding> &findings;
  Part part = Part::start;
  int line = 0;
  bool is_piece = false;  // of a line that is read in pieces
  int hidden_by = 0;
  int topic = 0;             // line of the last one
  int utf8 = 0, euc_jp = 0;  // first lines of that encoding
  FoundLines found = {};
};

void report(Walk &walk, const Setting *setting, const std::string &text) {
  walk.findings.push_back({walk.line, setting == nullptr ? "" : setting->key, text});
}

// The text of a setting as the masks show it.
std::string typed_text(const Setting &setting, const std::string &value) {
  return setting.kind == Kind::secret ? text_of_field(setting) : value;
}

void check_setting(Walk &walk, const Setting &setting, std::string_view text) {
  const auto [found, is_first] = walk.found.settings.emplace(&setting, walk.line);
  if (!is_first) return report(walk, &setting, filled(duplicate_label, {std::to_string(found->second)}));
  char value[kValueBufferSize], whole[kValueBufferSize];
  get_value(text, value, kReadText);
  get_value_notrim(text, whole, kReadText);
  const bool may_hold_any_byte = setting.kind == Kind::secret;
  if (std::string_view(whole).ends_with('\r') && !may_hold_any_byte)
    return report(walk, &setting, carriage_return_label[language]);
  const ProfileFault fault = XSurvives(kTmpTopic, setting.key, without_white_ends(whole));
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

// A line that is no setting of ours, in front of the topics.
void check_other_line(Walk &walk, std::string_view text) {
  if (!is_entry_line(text) || is_topic(text) || walk.is_piece) return;
  const std::string_view key = key_of_line(text);
  if (key.empty()) return report(walk, nullptr, junk_label[language]);
  const std::string meant = meant_key(key);
  if (!meant.empty()) walk.findings.push_back({walk.line, std::string(key), filled(misspelt_label, {meant})});
}

void check_text(Walk &walk, std::string_view text) {
  const Setting *setting = setting_of_line(text);
  if (walk.part == Part::topic && setting != nullptr) {
    report(walk, setting, filled(after_topic_label, {std::to_string(walk.topic)}));
  }
  if (walk.part == Part::hidden && setting != nullptr) {
    report(walk, setting, filled(covered_label, {std::to_string(walk.hidden_by)}));
  }
  if (is_topic_line(text)) {
    if (walk.part == Part::start) report(walk, nullptr, no_place_label[language]);
    walk.part = Part::topic;
    walk.topic = walk.line;
  } else if (walk.part == Part::start || walk.part == Part::settings) {
    if (setting != nullptr) check_setting(walk, *setting, text);
    if (setting == nullptr) check_other_line(walk, text);
    if (hides_rest(text, walk.part)) hide_rest(walk, setting);
  }
}

// One file has one encoding.
void check_encoding(Walk &walk, std::string_view text) {
  const Setting *setting = setting_of_line(text);
  if (walk.is_piece) return;
  const bool utf8 = is_utf8(text);
  const bool euc_jp = is_euc_jp(text);
  if (utf8 && euc_jp) return;
  if (!utf8 && !euc_jp) return report(walk, setting, no_encoding_label[language]);
  int &first = utf8 ? walk.utf8 : walk.euc_jp;
  const int other = utf8 ? walk.euc_jp : walk.utf8;
  if (first == 0 && other > 0) {
    const auto [here, there] = utf8 ? std::pair{"UTF-8", "EUC-JP"} : std::pair{"EUC-JP", "UTF-8"};
    report(walk, setting, filled(two_encodings_label, {here, std::to_string(other), there}));
  }
  if (first == 0) first = walk.line;
}

// Tests the line's bytes; false when they make another line of it than the person sees.
bool check_bytes(Walk &walk, const ProfileText &line) {
  const Setting *setting = setting_of_line(line.text);
  if (setting != nullptr && setting->kind == Kind::secret) return true;  // stored passwords are bytes of any kind
  if (walk.found.windows_end == 0 && line.text.ends_with("\r\n")) walk.found.windows_end = line.number;
  const bool is_marked = line.number == 1 && line.text.starts_with(kByteOrderMark);
  const bool is_many = has_inner_return(line.text);
  if (is_marked) report(walk, nullptr, byte_order_label[language]);
  if (is_many) report(walk, nullptr, inner_return_label[language]);
  if (is_marked || is_many) return false;
  check_encoding(walk, line.text);
  return true;
}

void check_line(Walk &walk, const ProfileText &line) {
  if (line.is_generated) {
    walk.part = Part::settings;
    return;
  }
  const bool is_rest = line.number == walk.line;
  walk.line = line.number;
  walk.is_piece = line.continues || is_rest;
  if (line.continues && !is_rest) report(walk, nullptr, filled(pieces_label, {std::to_string(kTextPiece)}));
  if (line.has_nul) report(walk, nullptr, nul_label[language]);
  if (check_bytes(walk, line)) check_text(walk, line.text);
}

// A temperature that is checked gets its decimal in the record, which is no change of the person's.
struct KeptRecord {
  StdRecord as_loaded = StdRec;
  ~KeptRecord() { StdRec = as_loaded; }
};

void walk_lines(Walk &walk) {
  const KeptRecord kept;
  for (const NotedLine &noted : lines_in_file()) {
    ProfileText line = noted.place;
    line.text = noted.text;
    check_line(walk, line);
  }
  const Setting &model = *setting_of_key("UpsModel");
  if (!walk.found.settings.contains(&model)) {
    walk.findings.insert(walk.findings.begin(), {0, model.key, no_model_label[language]});
  }
}

}  // namespace

void check_loaded(std::vector<KeyFinding> &findings) {
  Walk walk = {findings};
  walk_lines(walk);
}

Outcome check_configuration(const char *file, std::vector<KeyFinding> &findings) {
  if (!InitUpsTypeArray()) return Outcome::database_unreadable;
  if (!init_config_vals(file)) return Outcome::file_unreadable;
  Walk walk = {findings};
  walk_lines(walk);
  const std::string copy = interrupted_copy(file);
  if (!copy.empty()) findings.insert(findings.begin(), {0, "", filled(copy_label, {copy})});
  add_warnings(file, walk.found, findings);
  std::ranges::stable_sort(findings, {}, &KeyFinding::line);
  return Outcome::done;
}

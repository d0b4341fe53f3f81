#include "setup/check/repair.h"

#include <algorithm>
#include <map>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/lines.h"
#include "setup/check/texts.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

using Lines = std::vector<std::string>;  // without their line feeds

Lines split(std::string_view content) {
  const std::vector<std::string_view> lines = split_lines(content);
  return {lines.begin(), lines.end()};
}

std::string join(const Lines &lines) {
  std::string content;
  for (const std::string &line : lines) content += line + "\n";
  if (!content.empty()) content.pop_back();
  return content;
}

bool is_secret(std::string_view line) {
  const Setting *setting = setting_of_line(line);
  return setting != nullptr && setting->kind == Kind::secret;
}

// A stored password is bytes of any kind: only a line end that all lines have is none of it.
std::string without_returns(std::string line, bool is_windows) {
  if (is_secret(line)) {
    if (is_windows && line.ends_with('\r')) line.pop_back();
    return line;
  }
  line.erase(line.find_last_not_of('\r') + 1);
  std::ranges::replace(line, '\r', '\n');
  return line;
}

std::string without_marks(std::string_view content, std::vector<KeyFinding> &repairs) {
  if (content.starts_with(kByteOrderMark)) {
    content.remove_prefix(kByteOrderMark.size());
    repairs.push_back({1, "", mark_removed_label[language]});
  }
  Lines lines = split(content);
  const auto ends_in_return = [](const std::string &line) { return line.ends_with('\r') && !is_secret(line); };
  const bool is_windows = std::ranges::any_of(lines, ends_in_return);
  int first = 0;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string line = without_returns(lines[i], is_windows);
    if (line != lines[i] && first == 0) first = static_cast<int>(i) + 1;
    lines[i] = line;
  }
  if (first > 0) repairs.push_back({first, "", returns_removed_label[language]});
  return join(lines) + (content.ends_with('\r') ? "\n" : "");
}

struct Work {
  std::span<const std::string> misspelt;
  std::vector<KeyFinding> &repairs;
  Part part = Part::start;
  std::map<const Setting *, std::string> values = {};  // of the settings so far
};

void repair_comment(Work &work, std::string &line, int number) {
  const size_t start = line.find_first_not_of(" \t");
  if (start == std::string::npos || line[start] != '#' || !hides_rest(line, work.part)) return;
  line[start] = ';';
  work.repairs.push_back({number, "", comment_changed_label[language]});
}

bool has_setting(const Lines &lines, const Setting *setting) {
  return std::ranges::any_of(lines, [setting](const std::string &line) { return setting_of_line(line) == setting; });
}

void repair_key(Work &work, const Lines &lines, std::string &line, int number) {
  const std::string_view key = key_of_line(line);
  const auto is_named = [key](const std::string &name) { return xstricmp(name, key) == 0; };
  if (key.empty() || setting_of_line(line) != nullptr || std::ranges::none_of(work.misspelt, is_named)) return;
  const std::string meant = meant_key(key);
  if (meant.empty() || has_setting(lines, setting_of_line(meant + "="))) return;
  work.repairs.push_back({number, std::string(key), filled(key_changed_label, {meant})});
  line.replace(static_cast<size_t>(key.data() - line.data()), key.size(), meant);
}

void repair_tabs(Work &work, const Setting &setting, std::string &line, int number) {
  const size_t value = line.find('=') + 1;
  if (without_white_ends(std::string_view(line).substr(value)).find('\t') == std::string_view::npos) return;
  line.erase(std::remove(line.begin() + static_cast<std::ptrdiff_t>(value), line.end(), '\t'), line.end());
  work.repairs.push_back({number, setting.key, tabs_removed_label[language]});
}

// True for a line that says again what one before it said.
bool is_repeat(Work &work, const Setting &setting, std::string_view line, int number) {
  const std::string_view value = without_white_ends(line.substr(line.find('=') + 1));
  const auto [found, is_first] = work.values.emplace(&setting, value);
  if (is_first || found->second != value) return false;
  work.repairs.push_back({number, setting.key, repeat_removed_label[language]});
  return true;
}

// Repairs a line; false to drop it.
bool repair_line(Work &work, const Lines &lines, std::string &line, int number) {
  const bool is_plain = line.size() < kTextPiece && line.find('\0') == std::string::npos;
  if (work.part == Part::topic || work.part == Part::hidden) return true;
  if (is_topic_line(line)) {
    work.part = Part::topic;
    return true;
  }
  if (is_entry_line(line) && work.part == Part::start && !is_topic(line)) work.part = Part::settings;
  if (is_plain) repair_comment(work, line, number);
  if (is_plain) repair_key(work, lines, line, number);
  const Setting *setting = setting_of_line(line);
  if (setting != nullptr && is_plain && setting->kind != Kind::secret) repair_tabs(work, *setting, line, number);
  if (setting != nullptr && is_plain && is_repeat(work, *setting, line, number)) return false;
  if (hides_rest(line, work.part)) work.part = Part::hidden;
  return true;
}

}  // namespace

std::string repaired(std::string_view content, std::span<const std::string> misspelt,
                     std::vector<KeyFinding> &repairs) {
  const Lines lines = split(without_marks(content, repairs));
  Work work = {misspelt, repairs};
  Lines kept;
  for (size_t i = 0; i < lines.size(); ++i) {
    std::string line = lines[i];
    if (repair_line(work, lines, line, static_cast<int>(i) + 1)) kept.push_back(line);
  }
  return join(kept);
}

#include "upsdb/db_text.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "upsdb/records.h"
#include "util/files.h"
#include "util/text.h"

namespace {

constexpr size_t kLongestCodedText = kCodedPiece - 2;  // without the end of its line
constexpr std::string_view kControlsOfTexts = "\t\n\r\x1A";

const char *fault_of_line(std::string_view line) {
  if (line.size() > kLongestCodedText) return "line is longer than 1022 bytes";
  if (line.ends_with("\r\n")) return "line ends in a carriage return";
  if (line.find('\0') != std::string_view::npos) return "line holds a NUL";
  return nullptr;
}

bool is_text(std::string_view content) {
  const auto is_control = [](char c) {
    return static_cast<unsigned char>(c) < ' ' && kControlsOfTexts.find(c) == std::string_view::npos;
  };
  const std::vector<std::string_view> lines = lines_of(content);
  const auto first = std::ranges::find_if(lines, is_entry_line);
  if (first != lines.end() && first->starts_with('[')) return true;
  return std::ranges::none_of(content, is_control) && std::ranges::any_of(lines, is_topic);
}

// The line of each section's first title, by its name.
using FirstLines = std::map<std::string, int, CaseBlind>;

DbSection new_section(int number, std::string_view line, FirstLines &known, std::vector<Finding> &findings) {
  char name[kValueBufferSize];
  get_topic(line, name);
  if (!line.starts_with('[')) findings.push_back({number, name, "line", "is read as the title of a section"});
  const auto [first, is_new] = known.try_emplace(name, number);
  if (!is_new) {
    const std::string begin = std::to_string(first->second);
    findings.push_back({number, name, "line", "is never read: the section begins in line " + begin});
  }
  return {name, number, {}, {}};
}

void add_line(int number, std::string_view line, DbSection &section, std::vector<Finding> &findings) {
  if (line.find('\t') != std::string_view::npos) findings.push_back({number, section.name, "line", "tabs are dropped"});
  auto &lines = has_key_entry(line) ? section.settings : section.records;
  char text[kValueBufferSize];
  get_keyless_value(line, text, kReadCoded);
  lines.push_back({number, text});
}

}  // namespace

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return lines;
}

int check_lines(std::string_view text, std::vector<Finding> &findings) {
  const size_t before = findings.size();
  int number = 0;
  for (const std::string_view line : lines_of(text)) {
    ++number;
    const char *fault = fault_of_line(line);
    if (fault != nullptr) findings.push_back({number, "", "line", fault});
  }
  return findings.size() == before;
}

int code_text(std::string_view text, std::string &coded, std::vector<Finding> &findings) {
  if (!check_lines(text, findings)) return 0;
  coded.clear();
  for (const std::string_view line : lines_of(text)) append_coded(coded, line);
  return 1;
}

int decode_text(std::string_view coded, std::string &text) {
  std::string bytes(coded);
  const Stream stream(bytes.empty() ? nullptr : fmemopen(bytes.data(), bytes.size(), "rb"));
  std::vector<std::string> lines;
  char line[kCodedPiece + 1];
  while (stream != nullptr && freadln(stream.get(), line, kCodedPiece) != nullptr) lines.emplace_back(line);
  if (!lines.empty()) {
    if (!lines.back().empty()) return 0;
    lines.pop_back();  // the empty line after the last end
  }
  text.clear();
  for (const std::string &decoded : lines) {
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += decoded;
  }
  return 1;
}

DbForm text_of_file(std::string_view content, std::string &text) {
  if (content.empty()) return DbForm::empty;
  if (!is_text(content)) return decode_text(content, text) ? DbForm::coded : DbForm::damaged;
  text = content;
  return DbForm::text;
}

const char *name_of_form(DbForm form) {
  switch (form) {
    case DbForm::text:
      return "the text of a database";
    case DbForm::coded:
      return "a coded database";
    case DbForm::empty:
      return "empty";
    case DbForm::damaged:
      return "no database, or not all of one";
  }
  return "";
}

std::vector<DbSection> sections_of(std::string_view text, std::vector<Finding> &findings) {
  std::vector<DbSection> sections;
  FirstLines known;
  bool hidden = false;
  int number = 0;
  for (const std::string_view line : lines_of(text)) {
    ++number;
    if (is_topic(line)) {
      sections.push_back(new_section(number, line, known, findings));
      hidden = false;
    } else if (holds_topic(line)) {
      const std::string section = sections.empty() ? "" : sections.back().name;
      findings.push_back({number, section, "line", "\"[\" hides this line and the rest of the section"});
      hidden = true;
    } else if (is_entry_line(line) && sections.empty()) {
      findings.push_back({number, "", "line", "stands before the first section"});
    } else if (is_entry_line(line) && !hidden) {
      add_line(number, line, sections.back(), findings);
    }
  }
  return sections;
}

const DbSection *find_section(const std::vector<DbSection> &sections, std::string_view name) {
  const auto same = [name](const DbSection &section) { return xstricmp(section.name, name) == 0; };
  const auto found = std::find_if(sections.begin(), sections.end(), same);
  return found != sections.end() ? &*found : nullptr;
}

bool find_setting(const DbSection &section, std::string_view key, DbLine &setting) {
  for (const DbLine &line : section.settings) {
    char found[kValueBufferSize];
    char value[kValueBufferSize];
    if (!get_entry(line.text, found, kReadCoded) || xstricmp(found, key) != 0) continue;
    get_value(line.text, value, kReadCoded);
    setting = {line.number, value};
    return true;
  }
  return false;
}

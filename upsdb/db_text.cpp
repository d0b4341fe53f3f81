#include "upsdb/db_text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "upsdb/records.h"
#include "util/files.h"
#include "util/text.h"

namespace {

constexpr size_t kLongestCodedText = kCodedPiece - 2;  // without the end of its line

const char *fault_of_line(std::string_view line) {
  if (line.size() > kLongestCodedText) return "line is longer than 1022 bytes";
  if (line.ends_with("\r\n")) return "line ends in a carriage return";
  if (line.find('\0') != std::string_view::npos) return "line holds a NUL";
  return nullptr;
}

struct Freer {
  void operator()(char *memory) const { std::free(memory); }
};

void begin_section(int number, std::string_view line, std::vector<DbSection> &sections,
                   std::vector<Finding> &findings) {
  char name[kValueBufferSize];
  get_topic(line, name);
  if (!line.starts_with('[')) findings.push_back({number, name, "line", "is read as the title of a section"});
  const DbSection *same = find_section(sections, name);
  if (same != nullptr) {
    findings.push_back(
        {number, name, "line", "is never read: the section begins in line " + std::to_string(same->line)});
  }
  sections.push_back({name, number, {}, {}});
}

void add_line(int number, std::string_view line, DbSection &section, std::vector<Finding> &findings) {
  if (line.find('\t') != std::string_view::npos) findings.push_back({number, section.name, "line", "tabs are dropped"});
  auto &lines = has_key_entry(line) == 1 ? section.settings : section.records;
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

int code_text(std::string_view text, std::string &coded, std::vector<Finding> &findings) {
  char *memory = nullptr;
  size_t size = 0;
  Stream stream(open_memstream(&memory, &size));
  if (stream == nullptr) return 0;
  int good = 1;
  int number = 0;
  for (const std::string_view line : lines_of(text)) {
    ++number;
    const char *fault = fault_of_line(line);
    if (fault != nullptr) findings.push_back({number, "", "line", fault});
    good &= fault == nullptr ? fwriteln(stream.get(), line) : 0;
  }
  good &= std::fclose(stream.release()) == 0 ? 1 : 0;
  const std::unique_ptr<char, Freer> content(memory);
  if (good == 1) coded.assign(memory, size);
  return good;
}

int decode_text(std::string_view coded, std::string &text) {
  std::string bytes(coded);
  const Stream stream(bytes.empty() ? nullptr : fmemopen(bytes.data(), bytes.size(), "rb"));
  std::vector<std::string> lines;
  char line[kCodedPiece + 1];
  while (stream != nullptr && freadln(stream.get(), line, kCodedPiece) != nullptr) lines.emplace_back(line);
  if (!lines.empty()) {
    if (!lines.back().empty()) return 0;
    lines.pop_back();  // the empty line behind the last end
  }
  text.clear();
  for (const std::string &decoded : lines) {
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += decoded;
  }
  return 1;
}

std::vector<DbSection> sections_of(std::string_view text, std::vector<Finding> &findings) {
  std::vector<DbSection> sections;
  bool hidden = false;
  int number = 0;
  for (const std::string_view line : lines_of(text)) {
    ++number;
    char name[kValueBufferSize];
    if (is_topic(line) == 1) {
      begin_section(number, line, sections, findings);
      hidden = false;
    } else if (get_topic(line, name) == 1) {
      const std::string section = sections.empty() ? "" : sections.back().name;
      findings.push_back({number, section, "line", "\"[\" hides this line and the rest of the section"});
      hidden = true;
    } else if (is_entry_line(line) == 1 && sections.empty()) {
      findings.push_back({number, "", "line", "stands before the first section"});
    } else if (is_entry_line(line) == 1 && !hidden) {
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
    if (get_entry(line.text, found, kReadCoded) == 0 || xstricmp(found, key) != 0) continue;
    get_value(line.text, value, kReadCoded);
    setting = {line.number, value};
    return true;
  }
  return false;
}

#include "upsdb/db_check.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "upsdb/families.h"
#include "upsdb/position.h"
#include "upsdb/records.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

constexpr size_t kLongestModelName = 30;  // what the settings hold of it

// What is being checked, what was found, and which sections something leads to.
struct Check {
  std::vector<DbSection> sections;
  std::vector<Finding> findings;
  std::set<std::pair<const DbSection *, const RecordForm *>> used;  // with the form of the lines
};

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

std::string field_name(int position, const char *meaning) { return std::to_string(position) + " " + meaning; }

void report(Check &check, const DbSection &section, int line, const std::string &field, const std::string &text) {
  check.findings.push_back({line, section.name, field, text});
}

// ---- Fields ---------------------------------------------------------------------------------------------------------

// The cleaned text of a field, uncut. False when it is missing.
bool text_of_field(int position, const std::string &line, std::string &text) {
  char raw[kValueBufferSize];
  char clean[kValueBufferSize];
  UCTctoken(raw, sizeof raw, line.c_str(), kFieldSeparator, position + 1);
  if (delBlanksAndQuotationMarksFromString(raw, clean, sizeof clean) == 0) return false;
  text = clean;
  return true;
}

bool is_number(std::string_view text, int base, int64_t least, int64_t most) {
  int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size() && value >= least && value <= most;
}

template <class Number>
bool is_number_of(const std::string &text) {
  return is_number(text, 10, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

bool is_code(std::string_view text) {
  return (text.starts_with("0x") || text.starts_with("0X")) && is_number(text.substr(2), 16, 0, 0xFFFF);
}

bool is_real(const std::string &text) {
  char *end = nullptr;
  std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

// What is wrong with a field's text; "" when nothing is.
std::string fault_of_text(const FieldRow &field, const std::string &text) {
  const size_t most = std::min<size_t>(field.size, kFieldBufferSize) - 1;
  switch (field.conversion) {
    case Conversion::text:
      return text.size() <= most ? "" : "is cut behind " + std::to_string(most) + " characters";
    case Conversion::character:
      return text.size() == 1 ? "" : quoted(text) + " is not one character";
    case Conversion::number:
      return is_number_of<int32_t>(text) ? "" : quoted(text) + " is not a whole number";
    case Conversion::short_number:
      return is_number_of<int16_t>(text) ? "" : quoted(text) + " is not a whole number from -32768 to 32767";
    case Conversion::hex_number:
      return is_code(text) ? "" : quoted(text) + " is not a number from 0x0000 to 0xFFFF";
    case Conversion::real:
      return is_real(text) ? "" : quoted(text) + " is not a number";
    case Conversion::always:
      return "";
  }
  return "";
}

void check_field(Check &check, const DbSection &section, const DbLine &line, const FieldRow &field) {
  std::string text;
  const bool there = text_of_field(field.position, line.text, text);
  const std::string fault = there ? fault_of_text(field, text) : "missing";
  if (!fault.empty()) report(check, section, line.number, field_name(field.position, field.meaning), fault);
}

// ---- Lines and sections ---------------------------------------------------------------------------------------------

void check_record(Check &check, const DbSection &section, const DbLine &line, const RecordForm &form) {
  const int count = PCountPositions(line.text.c_str(), kFieldSeparator);
  const std::string fields = std::to_string(count) + (count == 1 ? " field" : " fields");
  if (count < form.least_fields) {
    report(check, section, line.number, form.record,
           fields + ", not " + std::to_string(form.least_fields) + " at least");
    return;
  }
  if (count > form.most_fields) {
    report(check, section, line.number, form.record, fields + ", not " + std::to_string(form.most_fields) + " at most");
  }
  for (const FieldRow &field : form.fields) check_field(check, section, line, field);
  if (&form == &kGetInfoForm && count == 2) check_field(check, section, line, kGetInfoRequest);
}

void check_records(Check &check, const DbSection &section, const RecordForm *form) {
  if (section.records.empty()) report(check, section, section.line, "section", "has no record");
  for (const DbLine &line : section.settings) report(check, section, line.number, "line", "key=value is no record");
  for (const DbLine &line : section.records) {
    if (form != nullptr) check_record(check, section, line, *form);
  }
}

// A field by which records are looked up: the second of two equal ones is never found.
void check_unique(Check &check, const DbSection &section, int position, const char *meaning) {
  std::vector<std::pair<std::string, int>> known;
  for (const DbLine &line : section.records) {
    std::string text;
    if (!text_of_field(position, line.text, text)) continue;
    const auto same = [&text](const auto &other) { return stricmp(other.first, text) == 0; };
    const auto found = std::find_if(known.begin(), known.end(), same);
    if (found == known.end()) {
      known.emplace_back(text, line.number);
    } else {
      const std::string first = std::to_string(found->second);
      report(check, section, line.number, field_name(position, meaning),
             quoted(text) + " is in line " + first + " already");
    }
  }
}

// What leads to a section: a field of a line.
struct Reference {
  const DbSection &section;
  int line;
  std::string field;
  std::string owner;  // of whom it is, as a person calls it
};

// Finds the section `name` and checks its lines the first time. Null when it is not there (then reported), and when it
// was checked before.
const DbSection *follow(Check &check, const Reference &from, const std::string &name, const RecordForm *form) {
  const DbSection *section = find_section(check.sections, name);
  if (section == nullptr) {
    report(check, from.section, from.line, from.field, "section " + quoted(name) + " of " + from.owner + " is missing");
    return nullptr;
  }
  if (!check.used.insert({section, form}).second) return nullptr;
  check_records(check, *section, form);
  return section;
}

bool has_record(const DbSection &section, const std::string &key) {
  const auto same = [&key](const DbLine &line) {
    std::string text;
    return text_of_field(0, line.text, text) && text == key;
  };
  return std::any_of(section.records.begin(), section.records.end(), same);
}

void check_numbers_of_variables(Check &check, const DbSection &section) {
  const DbSection *variables = find_section(check.sections, kVariableSection);
  for (const DbLine &line : section.records) {
    std::string id;
    if (variables == nullptr || !text_of_field(0, line.text, id) || has_record(*variables, id)) continue;
    report(check, section, line.number, field_name(0, "variable"), quoted(id) + " is not in VARIABLEN");
  }
}

void check_code_of_events(Check &check, const DbSection &section) {
  for (const DbLine &line : section.records) {
    UpsEvent event = {};
    if (fillEventFromUCString(event, line.text.c_str()) == 0) continue;
    if (event.execution != kExecByCode || event.code_name[0] == '\0') continue;
    const Reference from = {section, line.number, field_name(3, "name of its code"), quoted(event.name)};
    follow(check, from, std::string(event.code_name) + kMainSuffix, nullptr);
    follow(check, from, std::string(event.code_name) + kLibSuffix, nullptr);
  }
}

void check_parameters_of_functions(Check &check, const DbSection &section) {
  for (const DbLine &line : section.records) {
    UpsFunction function = {};
    if (fillFunctionFromUCString(function, line.text.c_str()) == 0 || function.parameter_section[0] == '\0') continue;
    const Reference from = {section, line.number, field_name(2, "parameter section"), quoted(function.name)};
    follow(check, from, function.parameter_section, &kFunctionParamForm);
  }
}

// ---- Models ---------------------------------------------------------------------------------------------------------

void check_section_of_model(Check &check, const Reference &from, const std::string &name, const SectionField &field) {
  const DbSection *section = follow(check, from, name, field.form);
  if (section == nullptr) return;
  if (field.position <= kGetInfoField) check_numbers_of_variables(check, *section);
  if (field.position == kEventField) check_code_of_events(check, *section);
  if (field.position == kFunctionField) check_parameters_of_functions(check, *section);
}

void check_name(Check &check, const DbSection &models, const DbLine &line, const std::string &name) {
  if (name.size() <= kLongestModelName) return;
  const std::string most = std::to_string(kLongestModelName);
  report(check, models, line.number, field_name(0, "name"), "is longer than " + most + " characters");
}

void check_model(Check &check, const DbSection &models, const DbLine &line) {
  std::string name;
  check_record(check, models, line, kModelForm);
  if (PCountPositions(line.text.c_str(), kFieldSeparator) < kModelForm.least_fields) return;
  if (text_of_field(0, line.text, name)) check_name(check, models, line, name);
  for (const SectionField &field : kSectionFields) {
    const Reference from = {models, line.number, field_name(field.position, field.meaning), quoted(name)};
    std::string section;
    if (text_of_field(field.position, line.text, section)) {
      check_section_of_model(check, from, section, field);
    } else {
      report(check, models, line.number, from.field, "missing for " + from.owner);
    }
  }
  std::string oem;
  if (text_of_field(kOemField, line.text, oem) && !is_number_of<int16_t>(oem)) {
    report(check, models, line.number, field_name(kOemField, "OEM number"), quoted(oem) + " is not a whole number");
  }
}

// ---- The database ---------------------------------------------------------------------------------------------------

bool is_version(const std::string &text) {
  UpsVersion version;
  char built[64];
  UpsParseVersionInfoStr(&version, text.c_str());
  UpsBuildVersionInfoStr(built, sizeof built, &version);
  return text == built;
}

void check_setting(Check &check, const char *section_name, const char *key, bool (*is_good)(const std::string &)) {
  const DbSection *section = find_section(check.sections, section_name);
  if (section == nullptr) {
    check.findings.push_back({0, section_name, "section", "missing"});
    return;
  }
  check.used.insert({section, nullptr});
  for (const DbLine &line : section->records) report(check, *section, line.number, "line", "has no key");
  DbLine setting;
  if (!find_setting(*section, key, setting)) {
    report(check, *section, section->line, key, "missing");
  } else if (!is_good(setting.text)) {
    report(check, *section, setting.number, key, quoted(setting.text) + " is not understood");
  }
}

// A section that every database has; null when it is missing.
const DbSection *check_shared(Check &check, const char *name, const RecordForm *form) {
  return follow(check, {DbSection{name, 0, {}, {}}, 0, "section", "the database"}, name, form);
}

void report_unused(Check &check) {
  for (const DbSection &section : check.sections) {
    const auto leads_here = [&section](const auto &used) { return used.first == &section; };
    const bool is_again = find_section(check.sections, section.name) != &section;
    if (is_again || std::any_of(check.used.begin(), check.used.end(), leads_here)) continue;
    report(check, section, section.line, "section", "nothing leads here");
  }
}

void check_sections(Check &check) {
  check_setting(check, kAboutSection, kVersionKey, is_version);
  check_setting(check, kAboutSection, kFileDateKey, [](const std::string &text) { return !text.empty(); });
  check_setting(check, kVendorSection, kOemKey, is_number_of<int16_t>);
  const DbSection *models = check_shared(check, kModelSection, nullptr);
  const DbSection *variables = check_shared(check, kVariableSection, &kVariableForm);
  const DbSection *functions = check_shared(check, kFunctionSection, &kFunctionForm);
  check_shared(check, kSharedMainSection, nullptr);
  check_shared(check, kSharedLibSection, nullptr);
  if (models != nullptr) check_unique(check, *models, 0, "name");
  if (variables != nullptr) check_unique(check, *variables, 0, "variable");
  if (variables != nullptr) check_unique(check, *variables, 1, "name");
  if (functions != nullptr) check_parameters_of_functions(check, *functions);
  for (size_t n = 0; models != nullptr && n < models->records.size(); ++n) {
    check_model(check, *models, models->records[n]);
  }
  report_unused(check);
}

}  // namespace

std::vector<Finding> check_database(std::string_view text) {
  Check check;
  std::string coded;
  if (code_text(text, coded, check.findings) == 0 && check.findings.empty()) return {{0, "", "file", "out of memory"}};
  check.sections = sections_of(text, check.findings);
  check_sections(check);
  auto &findings = check.findings;
  std::stable_sort(findings.begin(), findings.end(), [](const auto &a, const auto &b) { return a.line < b.line; });
  findings.erase(std::unique(findings.begin(), findings.end()), findings.end());
  return std::move(check.findings);
}

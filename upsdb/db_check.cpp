#include "upsdb/db_check.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "upsdb/families.h"
#include "upsdb/position.h"
#include "upsdb/records.h"
#include "util/text.h"

namespace {

constexpr size_t kLongestModelName = 30;  // what the settings hold of it
constexpr size_t kMostRecords = std::numeric_limits<int16_t>::max();

// What is being checked, what was found, and which sections something leads to. A name is never looked up one by one:
// databases have tens of thousands of models.
struct Check {
  std::vector<DbSection> sections;
  std::map<std::string_view, const DbSection *, CaseBlind> by_name;
  std::set<std::string> variables;  // their numbers
  std::vector<Finding> findings;
  std::set<std::pair<const DbSection *, const RecordForm *>> used;  // with the form of the lines
};

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

const DbSection *section_of(const Check &check, std::string_view name) {
  const auto found = check.by_name.find(name);
  return found != check.by_name.end() ? found->second : nullptr;
}

std::string field_name(int position, const char *meaning) { return std::to_string(position) + " " + meaning; }

void report(Check &check, const DbSection &section, int line, const std::string &field, const std::string &text) {
  check.findings.push_back({line, section.name, field, text});
}

// --- fields

// The fields of a line, cleaned and uncut; none for one that is missing.
using Fields = std::vector<std::optional<std::string>>;

Fields fields_of(std::string line) {
  Fields fields;
  char *next = line.data();
  for (char *field = next; field != nullptr; field = next) {
    next = std::strchr(field, kFieldSeparator[0]);
    if (next != nullptr) *next++ = '\0';
    char text[kValueBufferSize];
    const bool is_there = delBlanksAndQuotationMarksFromString(field, text, lenstr(field) + 1);
    fields.push_back(is_there ? std::optional<std::string>(text) : std::nullopt);
  }
  return fields;
}

// Null when it is missing.
const std::string *field_at(const Fields &fields, int position) {
  const auto index = static_cast<size_t>(position);
  return index < fields.size() && fields[index] ? &*fields[index] : nullptr;
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
      return text.size() <= most ? "" : "is cut after " + std::to_string(most) + " characters";
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

void check_field(Check &check, const DbSection &section, int line, const Fields &fields, const FieldRow &field) {
  const std::string *text = field_at(fields, field.position);
  const std::string fault = text != nullptr ? fault_of_text(field, *text) : "missing";
  if (!fault.empty()) report(check, section, line, field_name(field.position, field.meaning), fault);
}

// --- lines and sections

// False when the line has so few fields that none was looked at.
bool check_record(Check &check, const DbSection &section, int line, const Fields &fields, const RecordForm &form) {
  const int count = static_cast<int>(fields.size());
  const std::string present = std::to_string(count) + (count == 1 ? " field" : " fields");
  if (count < form.least_fields) {
    report(check, section, line, form.record, present + ", not " + std::to_string(form.least_fields) + " at least");
    return false;
  }
  if (count > form.most_fields) {
    report(check, section, line, form.record, present + ", not " + std::to_string(form.most_fields) + " at most");
  }
  for (const FieldRow &field : form.fields) check_field(check, section, line, fields, field);
  if (&form == &kGetInfoForm && count == 2) check_field(check, section, line, fields, kGetInfoRequest);
  return true;
}

void check_records(Check &check, const DbSection &section, const RecordForm *form) {
  if (section.records.empty()) report(check, section, section.line, "section", "has no record");
  for (const DbLine &line : section.settings) report(check, section, line.number, "line", "key=value is no record");
  for (const DbLine &line : section.records) {
    if (form != nullptr) check_record(check, section, line.number, fields_of(line.text), *form);
  }
}

// A field by which records are looked up: the second of two equal ones is never found.
void check_unique(Check &check, const DbSection &section, int position, const char *meaning) {
  std::map<std::string, int, CaseBlind> known;
  for (const DbLine &line : section.records) {
    const Fields fields = fields_of(line.text);
    const std::string *text = field_at(fields, position);
    if (text == nullptr) continue;
    const auto [first, is_new] = known.try_emplace(*text, line.number);
    if (is_new) continue;
    report(check, section, line.number, field_name(position, meaning),
           quoted(*text) + " is in line " + std::to_string(first->second) + " already");
  }
}

// What leads to a section: a field of a line.
struct Reference {
  const DbSection &section;
  int line;
  int position;
  const char *meaning;
  const std::string &owner;  // the name of the model, event or function that the line describes
};

// Checks the lines of a section the first time that something leads to it with that form. True when they were.
bool use_section(Check &check, const DbSection &section, const RecordForm *form) {
  if (!check.used.insert({&section, form}).second) return false;
  check_records(check, section, form);
  return true;
}

// Finds the section `name` and checks its lines the first time. Null when it is not there (then reported), and when it
// was checked before.
const DbSection *follow(Check &check, const Reference &from, const std::string &name, const RecordForm *form) {
  const DbSection *section = section_of(check, name);
  if (section == nullptr) {
    report(check, from.section, from.line, field_name(from.position, from.meaning),
           "section " + quoted(name) + " of " + quoted(from.owner) + " is missing");
    return nullptr;
  }
  return use_section(check, *section, form) ? section : nullptr;
}

void check_numbers_of_variables(Check &check, const DbSection &section) {
  if (section_of(check, kVariableSection) == nullptr) return;
  for (const DbLine &line : section.records) {
    const Fields fields = fields_of(line.text);
    const std::string *id = field_at(fields, 0);
    if (id == nullptr || check.variables.contains(*id)) continue;
    report(check, section, line.number, field_name(0, "variable"), quoted(*id) + " is not in VARIABLEN");
  }
}

void check_code_of_events(Check &check, const DbSection &section) {
  for (const DbLine &line : section.records) {
    UpsEvent event = {};
    if (!fillEventFromUCString(event, line.text.c_str())) continue;
    if (event.execution != kExecByCode || event.code_name[0] == '\0') continue;
    const std::string name = event.name;
    const Reference from = {section, line.number, 3, "name of its code", name};
    follow(check, from, std::string(event.code_name) + kMainSuffix, nullptr);
    follow(check, from, std::string(event.code_name) + kLibSuffix, nullptr);
  }
}

void check_parameters_of_functions(Check &check, const DbSection &section) {
  for (const DbLine &line : section.records) {
    UpsFunction function = {};
    if (!fillFunctionFromUCString(function, line.text.c_str()) || function.parameter_section[0] == '\0') continue;
    const std::string name = function.name;
    const Reference from = {section, line.number, 2, "parameter section", name};
    follow(check, from, function.parameter_section, &kFunctionParamForm);
  }
}

// --- models

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
  const Fields fields = fields_of(line.text);
  if (!check_record(check, models, line.number, fields, kModelForm)) return;
  const std::string *first = field_at(fields, 0);
  const std::string name = first != nullptr ? *first : "";
  check_name(check, models, line, name);
  for (const SectionField &field : kSectionFields) {
    const Reference from = {models, line.number, field.position, field.meaning, name};
    const std::string *section = field_at(fields, field.position);
    if (section != nullptr) {
      check_section_of_model(check, from, *section, field);
    } else {
      report(check, models, line.number, field_name(field.position, field.meaning), "missing for " + quoted(name));
    }
  }
  const std::string *oem = field_at(fields, kOemField);
  if (oem != nullptr && !is_number_of<int16_t>(*oem)) {
    report(check, models, line.number, field_name(kOemField, "OEM number"), quoted(*oem) + " is not a whole number");
  }
}

// --- the database

bool is_version(const std::string &text) {
  UpsVersion version;
  char built[64];
  UpsParseVersionInfoStr(&version, text.c_str());
  UpsBuildVersionInfoStr(built, sizeof built, &version);
  return text == built;
}

void check_setting(Check &check, const char *section_name, const char *key, bool (*is_good)(const std::string &)) {
  const DbSection *section = section_of(check, section_name);
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
  const DbSection *section = section_of(check, name);
  if (section == nullptr) {
    check.findings.push_back({0, name, "section", "section " + quoted(name) + " of the database is missing"});
  } else {
    use_section(check, *section, form);
  }
  return section;
}

// What no number or name leads to.
void check_reach(Check &check) {
  for (const DbSection &section : check.sections) {
    if (section.records.size() > kMostRecords) {
      report(check, section, section.records[kMostRecords].number, "line",
             "is never read: a section holds at most " + std::to_string(kMostRecords) + " records");
    }
    const bool is_again = section_of(check, section.name) != &section;
    const auto first_use = check.used.lower_bound({&section, nullptr});
    if (is_again || (first_use != check.used.end() && first_use->first == &section)) continue;
    report(check, section, section.line, "section", "nothing leads here");
  }
}

// The first of several sections of one name is the one that is read.
void build_indexes(Check &check) {
  for (const DbSection &section : check.sections) check.by_name.try_emplace(section.name, &section);
  const DbSection *variables = section_of(check, kVariableSection);
  for (size_t n = 0; variables != nullptr && n < variables->records.size(); ++n) {
    const Fields fields = fields_of(variables->records[n].text);
    if (fields[0]) check.variables.insert(*fields[0]);
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
  check_reach(check);
}

}  // namespace

std::vector<Finding> check_database(std::string_view text) {
  Check check;
  std::ignore = check_lines(text, check.findings);
  check.sections = sections_of(text, check.findings);
  build_indexes(check);
  check_sections(check);
  auto &findings = check.findings;
  std::stable_sort(findings.begin(), findings.end(), [](const auto &a, const auto &b) { return a.line < b.line; });
  findings.erase(std::unique(findings.begin(), findings.end()), findings.end());
  return std::move(check.findings);
}

// Record families: every getter against the sample's own text, and the oddities that readers rely on.
#include "upsdb/families.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <tuple>

#include "tests/database_file.h"
#include "upsdb/upsdb.h"

namespace {

// --- the sample as plain text, read without the database's own means

using Texts = std::vector<std::string>;

std::map<std::string, Texts> read_sections() {
  std::map<std::string, Texts> sections;
  std::istringstream text(sample_text());
  std::string section;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with('[')) section = line.substr(1, line.size() - 2);
    if (!line.empty() && line[0] != ';' && line[0] != '[') sections[section].push_back(line);
  }
  return sections;
}

Texts fields_of(const std::string &line) {
  Texts fields;
  std::istringstream text(line + "|");
  for (std::string field; std::getline(text, field, '|'); fields.push_back(field)) {
    field.erase(field.find_last_not_of(' ') + 1);
    if (field.starts_with('"') && field.ends_with('"')) field = field.substr(1, field.size() - 2);
  }
  return fields;
}

// --- records as the fields that they were made of

Texts as_fields(const UpsPollEntry &r) { return {std::to_string(r.variable_id), std::to_string(r.seconds)}; }
Texts as_fields(const UpsVitalData &r) { return {std::to_string(r.variable_id)}; }
Texts as_fields(const UpsGetInfo &r) { return {std::to_string(r.variable_id), r.request}; }
Texts as_fields(const UpsCustomValue &r) { return {r.name, r.value}; }
Texts as_fields(const UpsFunctionParam &r) { return {r.name, r.type, r.preset, r.help}; }
Texts as_fields(const UpsFunction &r) {
  EXPECT_TRUE(std::string(r.whole).starts_with(r.name));
  EXPECT_EQ(std::to_string(r.last), r.last_text);
  return {r.whole, r.meaning, r.parameter_section, r.last_text, "UPS"};
}
Texts as_fields(const UpsVariableInfo &r) {
  return {std::to_string(r.id), r.name, r.label, r.unit, std::to_string(r.decimals)};
}
Texts as_fields(const UpsEvent &r) {
  const char *when = r.always == 1 ? "ALWAYS" : "ONCE";
  const char *kind = r.execution == kExecByCode ? "QEXEC" : "EXEC";
  return {std::to_string(r.number), r.name, r.meaning, r.code_name, r.jobs, r.jobs_over, when,
          std::to_string(r.delay),  kind};
}

// The fields that a record keeps: the last one of a function is not read, that of an event has a default.
template <class Record>
Texts expected(const std::string &line) {
  Texts fields = fields_of(line);
  if (std::is_same_v<Record, UpsFunction>) fields[4] = "UPS";
  if (std::is_same_v<Record, UpsEvent> && fields.size() == 8) fields.emplace_back("QEXEC");
  return fields;
}

// Every record that `get(record, n)` gives, and none behind the last line.
template <class Record, class Get>
void compare(const Texts &lines, int count, Get get) {
  EXPECT_EQ(count, static_cast<int>(lines.size()));
  EXPECT_FALSE(lines.empty());
  Record record;
  for (size_t n = 0; n < lines.size(); ++n) {
    EXPECT_EQ(get(record, static_cast<int16_t>(n)), 1) << lines[n];
    EXPECT_EQ(as_fields(record), expected<Record>(lines[n]));
  }
  EXPECT_EQ(get(record, static_cast<int16_t>(lines.size())), 0);
}

template <class Record>
void compare_family(const char *model, const std::string &section, const Texts &lines, int16_t (*count)(const char *),
                    int (*at_model)(Record &, int16_t, const char *),
                    int (*in_section)(Record &, const char *, int16_t)) {
  compare<Record>(lines, count(model), [&](Record &r, int16_t n) { return at_model(r, n, model); });
  compare<Record>(lines, count(model), [&](Record &r, int16_t n) { return in_section(r, section.c_str(), n); });
}

int first_custom_value(UpsCustomValue &record, int16_t n, const char *model) {
  return n == 0 ? UpsGetAtDbCstmValue(record, model) : 0;
}

TEST(Sample, EveryGetterOfEveryModel) {
  const OpenDatabase db(sample_text());
  auto sections = read_sections();
  ASSERT_EQ(sections["UPS"].size(), 40U);
  for (const std::string &line : sections["UPS"]) {
    const Texts of = fields_of(line);
    const char *model = of[0].c_str();
    const auto lines = [&](size_t position) { return sections[of[position]]; };
    compare_family(model, of[14], lines(14), UpsGetCountDbPollEntry, UpsGetAtDbPollEntry, UpsDbGetPollEntryBySection);
    compare_family(model, of[15], lines(15), UpsGetCountDbVitalData, UpsGetAtDbVitalData, UpsDbGetVitalDataBySection);
    compare_family(model, of[16], lines(16), UpsGetCountDbGetInfo, UpsGetAtDbGetInfo, UpsDbGetInfoBySection);
    compare_family(model, of[18], lines(18), UpsGetCountDbEvents, UpsGetAtDbEvents, UpsDbGetEventsBySection);
    compare_family(model, of[19], lines(19), UpsGetCountDbCstmValue, first_custom_value, UpsDbGetCstmValueBySection);
    Texts functions = sections["FUNCTIONS"];
    const Texts own = lines(20);
    functions.insert(functions.end(), own.begin(), own.end());
    compare<UpsFunction>(functions, UpsGetCountDbFunction(of[20].c_str()),
                         [&](auto &r, int16_t n) { return UpsDbGetFunction(r, n, of[20].c_str()); });
    UpsData record;
    EXPECT_EQ(UpsFindDb(record, model), 1);
    EXPECT_TRUE(record.name == of[0] && record.baud_rate == std::stoi(of[1]) && record.parity == of[2][0]) << model;
    EXPECT_TRUE(record.load == std::stod(of[7]) && record.hold_minutes == std::stod(of[8])) << model;
    char section[512];
    constexpr int (*kSections[])(const char *, char *, int) = {
        UpsGetSectionDbEvents,  UpsGetSectionDbCstmValue, UpsGetSectionDbFunctionEntry, UpsGetSectionDbSavedEvents,
        UpsGetSectionDbPollcnt, UpsGetSectionDbSNMP,      UpsGetSectionDbConfigConfig};
    for (size_t i = 0; i < std::size(kSections); ++i) {
      EXPECT_EQ(kSections[i](model, section, sizeof section), 1);
      EXPECT_EQ(section, of[18 + i]);
    }
    EXPECT_EQ(UpsGetMonLayoutDb(model, section, sizeof section), section);
    EXPECT_EQ(section, of[17]);
    EXPECT_EQ(std::to_string(UpsGetSectionDbOemId(line.c_str())), of[25]);
  }
}

TEST(Sample, EveryVariableParameterAndCode) {
  const OpenDatabase db(sample_text());
  auto sections = read_sections();
  const Texts &variables = sections["VARIABLEN"];
  compare<UpsVariableInfo>(variables, UpsGetCountDbVarInfo(), UpsGetAtDbVarInfoFromIndex);
  UpsVariableInfo variable;
  for (const std::string &line : variables) {
    EXPECT_EQ(UpsGetAtDbVarInfoFromVarID(variable, std::stoi(fields_of(line)[0])), 1);
    EXPECT_EQ(as_fields(variable), fields_of(line));
    EXPECT_EQ(UpsGetAtDbVarInfoFromVarName(variable, fields_of(line)[1].c_str()), 1);
    EXPECT_EQ(as_fields(variable), fields_of(line));
  }
  EXPECT_EQ(UpsGetAtDbVarInfoFromVarID(variable, 99) + UpsGetAtDbVarInfoFromVarName(variable, "none"), 0);
  for (const auto &section : sections) {
    const char *name = section.first.c_str();
    if (!section.first.starts_with("PARAM_")) continue;
    compare<UpsFunctionParam>(section.second, UpsGetCountDbParam(name),
                              [name](auto &r, int16_t n) { return UpsDbGetFunctionParam(r, name, n); });
  }
  char code[2048] = "";
  EXPECT_EQ(UpsDbGetSharedMainQCode(code, sizeof code) + UpsDbGetSharedLibQCode(code, sizeof code), 2);
  EXPECT_EQ(UpsDbGetEventMainQCode(code, sizeof code, "POWERFAIL"), 1);
  EXPECT_EQ(UpsDbGetEventLibQCode(code, sizeof code, "BATTERY"), 1);
  std::string text;
  for (const char *section : {"SHARED_MAIN", "SHARED_LIB", "POWERFAIL_MAIN", "BATTERY_LIB"}) {
    for (const std::string &line : sections[section]) text += line + "\n";
  }
  EXPECT_EQ(code, text);
}

// --- oddities

TEST(Families, VariableWithFourFieldsIsFilledButFails) {
  UpsVariableInfo record = {};
  EXPECT_EQ(fillVarInfoFromUCString(record, "5|NAME|Label"), 0);
  EXPECT_EQ(record.id, 0) << "too few fields: nothing is read";
  EXPECT_EQ(fillVarInfoFromUCString(record, "5|NAME|Label|V"), 0);
  EXPECT_EQ(as_fields(record), (Texts{"5", "NAME", "Label", "V", "0"}));
  UpsGetInfo info = {};  // kept: a request is read only from two fields
  EXPECT_EQ(fillGetInfoFromUCString(info, "3") + fillGetInfoFromUCString(info, "3|%M|x"), 2);
  EXPECT_STREQ(info.request, "");
}

TEST(Families, EventWithoutKindIsExecutedByCode) {
  const std::tuple<const char *, int, bool> cases[] = {
      {"ALWAYS|7", 2, true},       {"ALWAYS|7|", 2, true},      {"ALWAYS|7|QEXEC", 2, true},
      {"Always|7|EXEC", 1, false}, {"ALWAYS|7|qexec", 1, true},
  };
  UpsEvent record = {};
  for (const auto &[fields, kind, always] : cases) {
    EXPECT_EQ(fillEventFromUCString(record, (std::string("1|a|b|c|d|e|") + fields).c_str()), 1);
    EXPECT_TRUE(record.execution == kind && record.always == always && record.delay == 7) << fields;
  }
  EXPECT_EQ(fillEventFromUCString(record, "1|a|b|d"), 0) << "enough fields to be read, too few to be whole";
  EXPECT_STREQ(record.code_name, "d");
}

TEST(Families, FunctionsParameterListEndsWithACommaBeforeATiming) {
  const char *const cases[][2] = {{"f(a,b)|m|s|0|x", "a,b,"}, {"f(a,b)|m|s|1|x", "a,b"}, {"f|m|s|0|x", ""},
                                  {"f()|m|s|0|x", ","},       {"f(a|m|s|0|x", "a"},      {"f(a)b)|m|s|text|x", "a,"}};
  for (const auto &[line, parameters] : cases) {
    UpsFunction record = {};
    EXPECT_EQ(fillFunctionFromUCString(record, line), 1);
    EXPECT_EQ((Texts{record.name, record.parameters}), (Texts{"f", parameters})) << line;
  }
}

TEST(Families, CodeIsCutAtTheBuffersEnd) {
  const OpenDatabase db("[A]\nabc\n  de\n");
  for (int size = 0; size <= 9; ++size) {
    char code[10] = "\0########";
    EXPECT_EQ(UpsDbGetQCodeBySection(code, size, "a"), size > 1 ? 1 : 0);
    EXPECT_STREQ(code, std::string("abc\nde\n").substr(0, static_cast<size_t>(std::max(size - 1, 0))).c_str());
    EXPECT_EQ(code[std::max(size, 1)], size < 9 ? '#' : '\0');
  }
}

}  // namespace

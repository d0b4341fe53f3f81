// Record families: every getter, and the oddities that readers rely on.
#include "upsdb/families.h"

#include <algorithm>

#include "tests/database_file.h"
#include "upsdb/upsdb.h"

namespace {

// --- a database with a section of each kind, and its records as the lines that they were made of

constexpr char kModel[] = "Model A";
constexpr char kModels[] =
    "[UPS]\nOther|1|n|8|1|0x1|2|3|4|5|6|7|8|9\n"
    "Model A|2400|n|8|1|0x805C|99|1400|7|12|1|1|1|1"
    "|POLL|VITAL|INFO|LAYOUT|EVENTS|CUSTOM|FUNC|SAVED|COUNTS|SNMP|CONFIG|7\n";
constexpr char kFamilies[] =
    "[POLL]\n1|5\n3|600\n"
    "[VITAL]\n3\n1\n"
    "[INFO]\n-2|%T\n1|%S\n3|%B\n"
    "[EVENTS]\n0|fail|Mains, failed|A|MESSAGE(\"a\")O;|LOGMSG()P60;|ALWAYS|0|QEXEC\n21|over|b|c|d|e|ONCE|30|EXEC\n"
    "[CUSTOM]\nvolt|100\n";
constexpr char kVariables[] = "1|STATUS|Status|-|0\n3|LOAD|Load of all|%|1\n-2|TEMP|Temperature|C|-1\n";
constexpr char kShared[] = "SHUTDOWN(mode)|Stops it|PARAM|0|UPS\nLOG(a,b)|Writes|none|1|UPS\n";
constexpr char kOwn[] = "BEEPER(state)|Beeps|PARAM|7|UPS\n";
constexpr char kCode[] = "[SHARED_MAIN]\npush A\npop\n[SHARED_LIB]\ncall A\n[A_MAIN]\nmain\n[A_LIB]\nlib\n";

std::string line_of(const UpsPollEntry &r) { return joined(r.variable_id, r.seconds); }
std::string line_of(const UpsVitalData &r) { return joined(r.variable_id); }
std::string line_of(const UpsGetInfo &r) { return joined(r.variable_id, r.request); }
std::string line_of(const UpsCustomValue &r) { return joined(r.name, r.value); }
std::string line_of(const UpsFunctionParam &r) { return joined(r.name, r.type, r.preset, r.help); }
std::string line_of(const UpsVariableInfo &r) { return joined(r.id, r.name, r.label, r.unit, r.decimals); }
std::string line_of(const UpsFunction &r) {
  return joined(r.whole, r.meaning, r.parameter_section, r.last_text, "UPS");
}
std::string line_of(const UpsEvent &r) {
  const char *kinds[] = {"?", "EXEC", "QEXEC"};
  return joined(r.number, r.name, r.meaning, r.code_name, r.jobs, r.jobs_over, r.always == 1 ? "ALWAYS" : "ONCE",
                r.delay, kinds[r.execution]);
}

// Every record that `get(record, n)` gives, of which there are `count`. What it can't give is cleared.
template <class Record>
std::string all_of(int count, auto get) {
  std::string lines;
  Record record = {};
  int16_t n = 0;
  for (; get(record, n) == 1; ++n) lines += line_of(record) + "\n";
  EXPECT_EQ(n, count);
  EXPECT_EQ(line_of(record), line_of(Record{}));
  return lines;
}
template <class Record>
std::string all_of(int count, int (*get)(Record &, int16_t, const char *), const char *name) {
  return all_of<Record>(count, [&](Record &record, int16_t n) { return get(record, n, name); });
}

std::string name_of(int (*get)(const char *, char *, int)) {
  char section[16] = "";
  EXPECT_EQ(get("none", section, sizeof section), 0);
  EXPECT_EQ(get(kModel, section, sizeof section), 1);
  return section;
}

// A section of the model: its title and its records, which are the same by the model's name and by the section's.
template <class Record>
std::string section_of(int count, int (*name)(const char *, char *, int),
                       int (*at_model)(Record &, int16_t, const char *),
                       int (*in_section)(Record &, const char *, int16_t)) {
  const std::string section = name_of(name);
  const std::string lines = all_of(count, at_model, kModel);
  const auto get = [&](Record &record, int16_t n) { return in_section(record, section.c_str(), n); };
  EXPECT_EQ(all_of<Record>(count, get), lines);
  return "[" + section + "]\n" + lines;
}

int first_custom_value(UpsCustomValue &record, int16_t n, const char *model) {
  return UpsGetAtDbCstmValue(record, n == 0 ? model : "none");
}

struct Families : testing::Test {
  const OpenDatabase db{std::string(kModels) + kFamilies + "[VARIABLEN]\n" + kVariables + "[FUNCTIONS]\n" + kShared +
                        "[FUNC]\n" + kOwn + "[PARAM]\nmode|list|default|How\nother|text|a|b\n" + kCode};
};

TEST_F(Families, GiveEveryRecord) {
  EXPECT_EQ(
      section_of(UpsGetCountDbPollEntry(kModel), UpsGetSectionDbPollEntry, UpsGetAtDbPollEntry,
                 UpsDbGetPollEntryBySection) +
          section_of(UpsGetCountDbVitalData(kModel), UpsGetSectionDbVitalData, UpsGetAtDbVitalData,
                     UpsDbGetVitalDataBySection) +
          section_of(UpsGetCountDbGetInfo(kModel), UpsGetSectionDbGetInfo, UpsGetAtDbGetInfo, UpsDbGetInfoBySection) +
          section_of(UpsGetCountDbEvents(kModel), UpsGetSectionDbEvents, UpsGetAtDbEvents, UpsDbGetEventsBySection) +
          section_of(UpsGetCountDbCstmValue(kModel), UpsGetSectionDbCstmValue, first_custom_value,
                     UpsDbGetCstmValueBySection),
      kFamilies);
  UpsFunctionParam parameter;
  EXPECT_EQ(UpsGetCountDbParam("PARAM") + UpsDbGetFunctionParam(parameter, "PARAM", 1), 3);
  EXPECT_EQ(line_of(parameter), "other|text|a|b");
  EXPECT_EQ(all_of(UpsGetCountDbFunction(nullptr), UpsDbGetFunction, nullptr), kShared);
  EXPECT_EQ(all_of(UpsGetCountDbFunction("FUNC"), UpsDbGetFunction, "FUNC"), std::string(kShared) + kOwn);
  std::string names;
  for (const auto get : {UpsGetSectionDbFunctionEntry, UpsGetSectionDbSavedEvents, UpsGetSectionDbPollcnt,
                         UpsGetSectionDbSNMP, UpsGetSectionDbConfigConfig}) {
    names += name_of(get) + "|";
  }
  char layout[16];
  EXPECT_EQ(UpsGetMonLayoutDb("Other", layout, sizeof layout), nullptr);
  EXPECT_EQ(UpsGetMonLayoutDb(kModel, layout, sizeof layout), layout);
  EXPECT_EQ(names + layout, "FUNC|SAVED|COUNTS|SNMP|CONFIG|LAYOUT");
  EXPECT_EQ(UpsGetSectionDbOemId("x|||||||||||||||||||||||||7") + UpsGetSectionDbOemId(kModel), 7);
}

TEST_F(Families, FindVariables) {
  EXPECT_EQ(all_of<UpsVariableInfo>(UpsGetCountDbVarInfo(), UpsGetAtDbVarInfoFromIndex), kVariables);
  EXPECT_EQ(all_of(2, UpsGetAtDbVDVarInfo, kModel), "3|LOAD|Load of all|%|1\n1|STATUS|Status|-|0\n");
  EXPECT_EQ(all_of(3, UpsGetAtDbGIVarInfo, kModel),
            "-2|TEMP|Temperature|C|-1\n1|STATUS|Status|-|0\n3|LOAD|Load of all|%|1\n");
  UpsVariableInfo variable;
  EXPECT_EQ(UpsGetAtDbVarInfoFromVarName(variable, "load"), 1);
  EXPECT_EQ(line_of(variable), "3|LOAD|Load of all|%|1");
  EXPECT_EQ(UpsGetAtDbVarInfoFromVarName(variable, "none"), 0);
  EXPECT_EQ(line_of(variable), "0||||0");
  UpsCloseDb();
  const OpenDatabase other("[VARIABLEN]\n4|NEW|New|-|0\n");
  EXPECT_EQ(UpsGetCountDbVarInfo() + UpsGetAtDbVarInfoFromVarID(variable, 4), 1 + 1);
  EXPECT_EQ(UpsGetAtDbVarInfoFromVarID(variable, 1), 0) << "of the other database";
  EXPECT_EQ(line_of(variable), "0||||0");
}

TEST_F(Families, AppendCode) {
  char code[64] = "";
  EXPECT_EQ(UpsDbGetSharedMainQCode(code, sizeof code), 1);
  EXPECT_EQ(UpsDbGetSharedLibQCode(code, sizeof code), 1);
  EXPECT_EQ(UpsDbGetEventMainQCode(code, sizeof code, "A"), 1);
  EXPECT_EQ(UpsDbGetEventLibQCode(code, sizeof code, "A"), 1);
  EXPECT_EQ(UpsDbGetEventLibQCode(code, sizeof code, "B"), 0);
  EXPECT_STREQ(code, "push A\npop\ncall A\nmain\nlib\n");
  for (int size = 0; size <= 12; ++size) {  // cut at the buffer's end
    char cut[13] = "\0###########";
    EXPECT_EQ(UpsDbGetQCodeBySection(cut, size, "shared_main"), size > 1 ? 1 : 0);
    EXPECT_STREQ(cut, std::string("push A\npop\n").substr(0, static_cast<size_t>(std::max(size - 1, 0))).c_str());
    EXPECT_EQ(cut[std::max(size, 1)], size < 12 ? '#' : '\0');
  }
}

// --- oddities

TEST(Family, LinesWithTooFewFields) {
  UpsVariableInfo variable = {};
  EXPECT_EQ(fillVarInfoFromUCString(variable, "5|NAME|Label"), 0);
  EXPECT_EQ(variable.id, 0) << "nothing is read";
  EXPECT_EQ(fillVarInfoFromUCString(variable, "5|NAME|Label|V"), 0);
  EXPECT_EQ(line_of(variable), "5|NAME|Label|V|0") << "kept: it is filled, but fails";
  UpsEvent event = {};
  EXPECT_EQ(fillEventFromUCString(event, "1|a|b"), 0);
  EXPECT_EQ(fillEventFromUCString(event, "1|a|b|d"), 0);
  EXPECT_STREQ(event.code_name, "d");
  UpsFunction function = {};
  EXPECT_EQ(fillFunctionFromUCString(function, "f(a)|m|s|0"), 0);
  EXPECT_STREQ(function.name, "");
  UpsGetInfo info = {};  // kept: a request is read only from two fields
  EXPECT_EQ(fillGetInfoFromUCString(info, "3") + fillGetInfoFromUCString(info, "3|%M|x"), 2);
  EXPECT_EQ(line_of(info), "3|");
}

TEST(Family, EventWithoutKindIsExecutedByCode) {
  const char *const cases[][2] = {{"ALWAYS|7", "ALWAYS|7|QEXEC"},
                                  {"ALWAYS|7|", "ALWAYS|7|QEXEC"},
                                  {"Always|7|EXEC", "ONCE|7|EXEC"},
                                  {"ALWAYS|7|qexec", "ALWAYS|7|EXEC"}};
  for (const auto &[fields, filled] : cases) {
    UpsEvent event = {};
    EXPECT_EQ(fillEventFromUCString(event, (std::string("1|a|b|c|d|e|") + fields).c_str()), 1);
    EXPECT_EQ(line_of(event), std::string("1|a|b|c|d|e|") + filled);
  }
}

TEST(Family, FunctionsParameterListEndsWithACommaBeforeATiming) {
  const char *const cases[][2] = {{"f(a,b)|m|s|0|x", "a,b,"}, {"f(a,b)|m|s|1|x", "a,b"}, {"f|m|s|0|x", ""},
                                  {"f()|m|s|0|x", ","},       {"f(a|m|s|0|x", "a"},      {"f(a)b)|m|s|text|x", "a,"}};
  for (const auto &[line, parameters] : cases) {
    UpsFunction record = {};
    EXPECT_EQ(fillFunctionFromUCString(record, line), 1);
    EXPECT_EQ(joined(record.name, record.parameters), std::string("f|") + parameters) << line;
  }
}

}  // namespace

#include "upsdb/families.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "upsdb/position.h"
#include "upsdb/records.h"
#include "util/text.h"

namespace {

constexpr int kMostLines = std::numeric_limits<int16_t>::max();

// --- the forms of the lines

using enum Conversion;

// clang-format off
// position, conversion, place in the record, bytes there, meaning
constexpr FieldRow kPollFields[] = {
  { 0, number,       offsetof(UpsPollEntry, variable_id), sizeof(int32_t), "variable" },
  { 1, short_number, offsetof(UpsPollEntry, seconds),     sizeof(int16_t), "seconds" },
};

constexpr FieldRow kVitalFields[] = {
  { 0, number, offsetof(UpsVitalData, variable_id), sizeof(int32_t), "variable" },
};

constexpr FieldRow kGetInfoFields[] = {
  { 0, number, offsetof(UpsGetInfo, variable_id), sizeof(int32_t), "variable" },
};

constexpr FieldRow kEventFields[] = {
  { 0, number, offsetof(UpsEvent, number),    sizeof(int32_t),             "event" },
  { 1, text,   offsetof(UpsEvent, name),      sizeof(UpsEvent::name),      "name" },
  { 2, text,   offsetof(UpsEvent, meaning),   sizeof(UpsEvent::meaning),   "meaning" },
  { 3, text,   offsetof(UpsEvent, code_name), sizeof(UpsEvent::code_name), "name of its code" },
  { 4, text,   offsetof(UpsEvent, jobs),      sizeof(UpsEvent::jobs),      "jobs" },
  { 5, text,   offsetof(UpsEvent, jobs_over), sizeof(UpsEvent::jobs_over), "jobs when over" },
  { 6, always, offsetof(UpsEvent, always),    sizeof(int32_t),             "ALWAYS or not" },
  { 7, number, offsetof(UpsEvent, delay),     sizeof(int32_t),             "delay" },
};

constexpr FieldRow kCustomFields[] = {
  { 0, text, offsetof(UpsCustomValue, name),  sizeof(UpsCustomValue::name),  "name" },
  { 1, text, offsetof(UpsCustomValue, value), sizeof(UpsCustomValue::value), "value" },
};

constexpr FieldRow kVariableFields[] = {
  { 0, number,       offsetof(UpsVariableInfo, id),       sizeof(int32_t),                "variable" },
  { 1, text,         offsetof(UpsVariableInfo, name),     sizeof(UpsVariableInfo::name),  "name" },
  { 2, text,         offsetof(UpsVariableInfo, label),    sizeof(UpsVariableInfo::label), "label" },
  { 3, text,         offsetof(UpsVariableInfo, unit),     sizeof(UpsVariableInfo::unit),  "unit" },
  { 4, short_number, offsetof(UpsVariableInfo, decimals), sizeof(int16_t),                "decimals" },
};

constexpr FieldRow kFunctionFields[] = {
  { 0, text,   offsetof(UpsFunction, whole),             sizeof(UpsFunction::whole),             "function" },
  { 1, text,   offsetof(UpsFunction, meaning),           sizeof(UpsFunction::meaning),           "meaning" },
  { 2, text,   offsetof(UpsFunction, parameter_section), sizeof(UpsFunction::parameter_section), "parameter section" },
  { 3, text,   offsetof(UpsFunction, last_text),         sizeof(UpsFunction::last_text),         "last" },
  { 3, number, offsetof(UpsFunction, last),              sizeof(int32_t),                        "last" },
};

constexpr FieldRow kParamFields[] = {
  { 0, text, offsetof(UpsFunctionParam, name),   sizeof(UpsFunctionParam::name),   "name" },
  { 1, text, offsetof(UpsFunctionParam, type),   sizeof(UpsFunctionParam::type),   "type" },
  { 2, text, offsetof(UpsFunctionParam, preset), sizeof(UpsFunctionParam::preset), "preset" },
  { 3, text, offsetof(UpsFunctionParam, help),   sizeof(UpsFunctionParam::help),   "help" },
};

constexpr RecordForm kPollForm = {"poll entry", 2, 2, kPollFields};
constexpr RecordForm kVitalForm = {"vital data", 1, 1, kVitalFields};
constexpr RecordForm kEventForm = {"event", 4, 9, kEventFields};
constexpr RecordForm kCustomForm = {"custom value", 2, 2, kCustomFields};

constexpr SectionField kSections[] = {
  // field             what it names             lines
  { kPollField,        "poll section",           &kPollForm },
  { kVitalField,       "vital section",          &kVitalForm },
  { kGetInfoField,     "get-info section",       &kGetInfoForm },
  { kLayoutField,      "layout section",         nullptr },
  { kEventField,       "event section",          &kEventForm },
  { kCustomField,      "custom section",         &kCustomForm },
  { kFunctionField,    "function section",       &kFunctionForm },
  { kSavedEventsField, "saved-events section",   nullptr },
  { kPollCountsField,  "poll-count section",     nullptr },
  { kSnmpField,        "SNMP section",           nullptr },
  { kConfigField,      "configuration section",  nullptr },
};  // clang-format on

// --- one mechanism for all families

// A family: the field of a model that names its section, and what makes a record of a line of it.
template <class Record>
struct Family {
  int position;
  int (*fill)(Record &, const char *);
};

constexpr int kNoField = -1;  // the section has a name of its own

constexpr Family<UpsPollEntry> kPollEntries = {kPollField, fillPollEntryFromUCString};
constexpr Family<UpsVitalData> kVitalData = {kVitalField, fillVitalDataFromUCString};
constexpr Family<UpsGetInfo> kGetInfo = {kGetInfoField, fillGetInfoFromUCString};
constexpr Family<UpsEvent> kEvents = {kEventField, fillEventFromUCString};
constexpr Family<UpsCustomValue> kCustomValues = {kCustomField, fillCstmValueFromUCString};
constexpr Family<UpsVariableInfo> kVariables = {kNoField, fillVarInfoFromUCString};
constexpr Family<UpsFunction> kFunctions = {kNoField, fillFunctionFromUCString};
constexpr Family<UpsFunctionParam> kFunctionParams = {kNoField, fillFunctionParamFromUCString};

using Line = char[kValueBufferSize];

// The name of the section that the field `position` of a model names.
int getSectionDbFromTyp(const char *model, int position, char *section, int size) {
  if (!UpsIsOpenDb()) return 0;
  const int16_t number = findEntryInDb(model);
  Line line;
  if (number < 0 || !getEntryFromDb(line, kModelSection, number)) return 0;
  return PGetStringFromPosition(position, line, section, size, kFieldSeparator);
}

int16_t getCountDbFromTyp(const char *model, int position) {
  char section[kFieldBufferSize];
  return getSectionDbFromTyp(model, position, section, sizeof section) ? countDBEntries(section) : int16_t{0};
}

// Line n of the section that the field `position` of a model names.
int getAtDbEntryFromTyp(Line &line, const char *model, int position, int n) {
  char section[kFieldBufferSize];
  if (!getSectionDbFromTyp(model, position, section, sizeof section)) return 0;
  return getEntryFromDb(line, section, n);
}

template <class Record>
int get_of_section(const Family<Record> &family, Record &record, const char *section, int n) {
  record = {};
  Line line;
  return getEntryFromDb(line, section, n) ? family.fill(record, line) : 0;
}

template <class Record>
int get_of_model(const Family<Record> &family, Record &record, const char *model, int n) {
  record = {};
  Line line;
  return getAtDbEntryFromTyp(line, model, family.position, n) ? family.fill(record, line) : 0;
}

bool has_id(const char *line, int32_t id) {
  int32_t found = 0;
  return PGetLongFromPosition(0, line, found) && found == id;
}

bool has_name(const char *line, const char *name) {
  char found[kFieldBufferSize];
  return get_text_field(1, line, found) && stricmp(found, name) == 0;
}

// Appends what fits of `text` to the `used` bytes of `buffer` (`size` bytes). Returns the bytes used then.
size_t append(char *buffer, size_t size, size_t used, std::string_view text) {
  const size_t fitting = std::min(text.size(), size - 1 - used);
  std::memcpy(buffer + used, text.data(), fitting);
  buffer[used + fitting] = '\0';
  return used + fitting;
}

}  // namespace

const std::span<const SectionField> kSectionFields = kSections;
const RecordForm kGetInfoForm = {"get-info entry", 1, 2, kGetInfoFields};
const FieldRow kGetInfoRequest = {1, text, offsetof(UpsGetInfo, request), sizeof(UpsGetInfo::request), "request"};
const RecordForm kVariableForm = {"variable", 4, 5, kVariableFields};
const RecordForm kFunctionForm = {"function", 5, 5, kFunctionFields};
const RecordForm kFunctionParamForm = {"function parameter", 4, 4, kParamFields};

// --- filling

int fillPollEntryFromUCString(UpsPollEntry &record, const char *line) { return fill_fields(kPollForm, line, &record); }

int fillVitalDataFromUCString(UpsVitalData &record, const char *line) { return fill_fields(kVitalForm, line, &record); }

int fillGetInfoFromUCString(UpsGetInfo &record, const char *line) {
  const int result = fill_fields(kGetInfoForm, line, &record);
  return PCountPositions(line, kFieldSeparator) == 2 ? result & fill_field(kGetInfoRequest, line, &record) : result;
}

int fillEventFromUCString(UpsEvent &record, const char *line) {
  if (PCountPositions(line, kFieldSeparator) < kEventForm.least_fields) return 0;
  char kind[kFieldBufferSize] = "";
  const bool by_code = !get_text_field(8, line, kind) || cmpstr(kind, "QEXEC") == 0;
  record.execution = by_code ? kExecByCode : kExecByStatus;
  return fill_fields(kEventForm, line, &record);
}

int fillCstmValueFromUCString(UpsCustomValue &record, const char *line) {
  return fill_fields(kCustomForm, line, &record);
}

int fillVarInfoFromUCString(UpsVariableInfo &record, const char *line) {
  return fill_fields(kVariableForm, line, &record);
}

int fillFunctionFromUCString(UpsFunction &record, const char *line) {
  if (PCountPositions(line, kFieldSeparator) < kFunctionForm.least_fields) return 0;
  const int result = fill_fields(kFunctionForm, line, &record);
  const std::string_view whole = record.whole;
  const size_t open = whole.find('(');
  cpynstr(record.name, whole.substr(0, open));
  if (open == std::string_view::npos) return result;
  const std::string_view list = whole.substr(open + 1);
  const size_t close = list.find(')');
  cpynstr(record.parameters, list.substr(0, close));
  if (close != std::string_view::npos && record.last == 0) cpynstr(record.parameters + close, ",", 2);
  return result;
}

int fillFunctionParamFromUCString(UpsFunctionParam &record, const char *line) {
  return fill_fields(kFunctionParamForm, line, &record);
}

// --- a model's families

int16_t UpsGetCountDbPollEntry(const char *model) { return getCountDbFromTyp(model, kPollField); }

int UpsGetAtDbPollEntry(UpsPollEntry &record, int16_t n, const char *model) {
  return get_of_model(kPollEntries, record, model, n);
}

int UpsGetSectionDbPollEntry(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kPollField, section, size);
}

int UpsDbGetPollEntryBySection(UpsPollEntry &record, const char *section, int16_t n) {
  return get_of_section(kPollEntries, record, section, n);
}

int16_t UpsGetCountDbVitalData(const char *model) { return getCountDbFromTyp(model, kVitalField); }

int UpsGetAtDbVitalData(UpsVitalData &record, int16_t n, const char *model) {
  return get_of_model(kVitalData, record, model, n);
}

int UpsGetSectionDbVitalData(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kVitalField, section, size);
}

int UpsDbGetVitalDataBySection(UpsVitalData &record, const char *section, int16_t n) {
  return get_of_section(kVitalData, record, section, n);
}

int16_t UpsGetCountDbGetInfo(const char *model) { return getCountDbFromTyp(model, kGetInfoField); }

int UpsGetAtDbGetInfo(UpsGetInfo &record, int16_t n, const char *model) {
  return get_of_model(kGetInfo, record, model, n);
}

int UpsGetSectionDbGetInfo(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kGetInfoField, section, size);
}

int UpsDbGetInfoBySection(UpsGetInfo &record, const char *section, int16_t n) {
  return get_of_section(kGetInfo, record, section, n);
}

int16_t UpsGetCountDbEvents(const char *model) { return getCountDbFromTyp(model, kEventField); }

int UpsGetAtDbEvents(UpsEvent &record, int16_t n, const char *model) { return get_of_model(kEvents, record, model, n); }

int UpsGetSectionDbEvents(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kEventField, section, size);
}

int UpsDbGetEventsBySection(UpsEvent &record, const char *section, int16_t n) {
  return get_of_section(kEvents, record, section, n);
}

int16_t UpsGetCountDbCstmValue(const char *model) { return getCountDbFromTyp(model, kCustomField); }

int UpsGetAtDbCstmValue(UpsCustomValue &record, const char *model) {
  return get_of_model(kCustomValues, record, model, 0);
}

int UpsGetSectionDbCstmValue(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kCustomField, section, size);
}

int UpsDbGetCstmValueBySection(UpsCustomValue &record, const char *section, int16_t n) {
  return get_of_section(kCustomValues, record, section, n);
}

char *UpsGetMonLayoutDb(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kLayoutField, section, size) ? section : nullptr;
}

int UpsGetSectionDbFunctionEntry(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kFunctionField, section, size);
}

int UpsGetSectionDbSavedEvents(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kSavedEventsField, section, size);
}

int UpsGetSectionDbPollcnt(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kPollCountsField, section, size);
}

int UpsGetSectionDbSNMP(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kSnmpField, section, size);
}

int UpsGetSectionDbConfigConfig(const char *model, char *section, int size) {
  return getSectionDbFromTyp(model, kConfigField, section, size);
}

int16_t UpsGetSectionDbOemId(const char *line) {
  int16_t number = 0;
  return UpsIsOpenDb() && PGetShortFromPosition(kOemField, line, number) ? number : int16_t{0};
}

// --- variables

int16_t UpsGetCountDbVarInfo() {
  if (VarCount == 0) VarCount = countDBEntries(kVariableSection);
  return VarCount;
}

void BuildTmpVarTab(int16_t count) {
  tmpVarTab.assign(static_cast<size_t>(std::max<int16_t>(count, 0)), "");
  Line line;
  for (size_t n = 0; n < tmpVarTab.size(); ++n) {
    if (getEntryFromDb(line, kVariableSection, static_cast<int>(n))) tmpVarTab[n] = line;
  }
}

int UpsGetAtDbVarInfoFromVarID(UpsVariableInfo &record, int32_t id) {
  record = {};
  if (!UpsIsOpenDb()) return 0;
  if (tmpVarTab.empty()) BuildTmpVarTab(UpsGetCountDbVarInfo());
  for (const std::string &line : tmpVarTab) {
    if (has_id(line.c_str(), id)) return fillVarInfoFromUCString(record, line.c_str());
  }
  return 0;
}

int UpsGetAtDbVarInfoFromVarName(UpsVariableInfo &record, const char *name) {
  record = {};
  Line line;
  for (int n = 0; n < kMostLines && getEntryFromDb(line, kVariableSection, n); ++n) {
    if (has_name(line, name)) return fillVarInfoFromUCString(record, line);
  }
  return 0;
}

int UpsGetAtDbVarInfoFromIndex(UpsVariableInfo &record, int16_t n) {
  return get_of_section(kVariables, record, kVariableSection, n);
}

int UpsGetAtDbVDVarInfo(UpsVariableInfo &record, int16_t n, const char *model) {
  record = {};
  UpsVitalData vital;
  return UpsGetAtDbVitalData(vital, n, model) ? UpsGetAtDbVarInfoFromVarID(record, vital.variable_id) : 0;
}

int UpsGetAtDbGIVarInfo(UpsVariableInfo &record, int16_t n, const char *model) {
  record = {};
  UpsGetInfo info;
  return UpsGetAtDbGetInfo(info, n, model) ? UpsGetAtDbVarInfoFromVarID(record, info.variable_id) : 0;
}

// --- functions and their parameters

int16_t UpsGetCountDbFunction(const char *section) {
  const int own = section != nullptr ? countDBEntries(section) : 0;
  return static_cast<int16_t>(std::min(countDBEntries(kFunctionSection) + own, kMostLines));
}

int UpsDbGetFunction(UpsFunction &record, int16_t n, const char *section) {
  record = {};
  const int16_t shared = countDBEntries(kFunctionSection);
  if (n < shared) return get_of_section(kFunctions, record, kFunctionSection, n);
  return section != nullptr ? get_of_section(kFunctions, record, section, n - shared) : 0;
}

int16_t UpsGetCountDbParam(const char *section) { return countDBEntries(section); }

int UpsDbGetFunctionParam(UpsFunctionParam &record, const char *section, int16_t n) {
  return get_of_section(kFunctionParams, record, section, n);
}

// --- code

int UpsDbGetQCodeBySection(char *buffer, int size, const char *section) {
  const size_t room = size > 0 ? static_cast<size_t>(size) : 0;
  const size_t before = strnlen(buffer, room);
  size_t used = before;
  Line line;
  for (int n = 0; used + 1 < room && getEntryFromDb(line, section, n); ++n) {
    used = append(buffer, room, used, line);
    used = append(buffer, room, used, "\n");
  }
  return used > before;
}

int UpsDbGetSharedMainQCode(char *buffer, int size) { return UpsDbGetQCodeBySection(buffer, size, kSharedMainSection); }

int UpsDbGetSharedLibQCode(char *buffer, int size) { return UpsDbGetQCodeBySection(buffer, size, kSharedLibSection); }

int UpsDbGetEventMainQCode(char *buffer, int size, const char *name) {
  return UpsDbGetQCodeBySection(buffer, size, (std::string(name) + kMainSuffix).c_str());
}

int UpsDbGetEventLibQCode(char *buffer, int size, const char *name) {
  return UpsDbGetQCodeBySection(buffer, size, (std::string(name) + kLibSuffix).c_str());
}

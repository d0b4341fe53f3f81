// The record families of the UPS type database: what a model's further sections hold (poll entries, vital data, events,
// ...), and the sections that all models share (variables, functions, code).
//
// Every getter gives 1; or 0 (or null) while the database is closed, for an unknown model, and when the section or its
// line n (from 0) is missing. Counts end at 32767. Records are cleared, then filled. A line that lacks a field gives 0
// too: its other fields are filled; a line with too few fields altogether fills nothing. Names of sections go into
// buffers of `size` bytes (kFieldBufferSize of upsdb/position.h always suffices).
#pragma once

#include <cstdint>
#include <span>

#include "upsdb/fields.h"

// --- records

// The members follow the fields of the line, in their order, where nothing else is said. Texts are cut and terminated.
struct UpsPollEntry {
  int32_t variable_id;
  int16_t seconds;
};

struct UpsVitalData {
  int32_t variable_id;
};

struct UpsGetInfo {
  int32_t variable_id;
  char request[256];  // read from a line of exactly two fields only
};

inline constexpr int16_t kExecByStatus = 1;
inline constexpr int16_t kExecByCode = 2;

struct UpsEvent {
  int32_t number;
  char name[512];
  char meaning[512];
  char code_name[512];   // its code is in the sections of this name and "_MAIN", "_LIB"
  char jobs[2048];       // at most 511 characters
  char jobs_over[2048];  // at most 511 characters
  int32_t always;        // 1 when field 6 is "ALWAYS"
  int32_t delay;
  int16_t execution;  // kExecByCode when field 8 is missing or "QEXEC", else kExecByStatus; its absence is no failure
};

struct UpsCustomValue {
  char name[512];
  char value[256];
};

// A line with exactly four fields fills these, but gives 0: kept, the decimals are read like any other field.
struct UpsVariableInfo {
  int32_t id;
  char name[512];
  char label[512];
  char unit[32];
  int16_t decimals;
};

struct UpsFunction {
  char name[512];               // field 0 before its "("
  char meaning[512];            // field 1
  char parameter_section[512];  // field 2
  char last_text[512];          // field 3 as it stands
  int32_t last;                 // field 3 as a number: 0 when a timing follows the parameters
  char parameters[513];         // what stands between "(" and ")" of field 0, and a "," after it when `last` is 0
  char whole[512];              // field 0
};

struct UpsFunctionParam {
  char name[512];
  char type[32];
  char preset[512];
  char help[512];
};

// --- filling one record from one line

// The record is not cleared first; results as above.
int fillPollEntryFromUCString(UpsPollEntry &record, const char *line);
int fillVitalDataFromUCString(UpsVitalData &record, const char *line);
int fillGetInfoFromUCString(UpsGetInfo &record, const char *line);
int fillEventFromUCString(UpsEvent &record, const char *line);
int fillCstmValueFromUCString(UpsCustomValue &record, const char *line);
int fillVarInfoFromUCString(UpsVariableInfo &record, const char *line);
int fillFunctionFromUCString(UpsFunction &record, const char *line);
int fillFunctionParamFromUCString(UpsFunctionParam &record, const char *line);

// The fields of a model's line that name its sections, and the one that holds its OEM number.
enum ModelField {
  kPollField = 14,
  kVitalField,
  kGetInfoField,
  kLayoutField,
  kEventField,
  kCustomField,
  kFunctionField,
  kSavedEventsField,
  kPollCountsField,
  kSnmpField,
  kConfigField,
  kOemField,
};

// What such a section is, and the form of its lines (null: of any form).
struct SectionField {
  ModelField position;
  const char *meaning;
  const RecordForm *form;
};
extern const std::span<const SectionField> kSectionFields;

extern const RecordForm kGetInfoForm;
extern const FieldRow kGetInfoRequest;  // read from a line of exactly two fields only
extern const RecordForm kVariableForm;
extern const RecordForm kFunctionForm;
extern const RecordForm kFunctionParamForm;

inline constexpr char kVariableSection[] = "VARIABLEN";
inline constexpr char kFunctionSection[] = "FUNCTIONS";
inline constexpr char kSharedMainSection[] = "SHARED_MAIN";
inline constexpr char kSharedLibSection[] = "SHARED_LIB";
inline constexpr char kMainSuffix[] = "_MAIN";
inline constexpr char kLibSuffix[] = "_LIB";

// --- a model's families: how many, record n, the section's name, record n of a section known by name

int16_t UpsGetCountDbPollEntry(const char *model);
int UpsGetAtDbPollEntry(UpsPollEntry &record, int16_t n, const char *model);
int UpsGetSectionDbPollEntry(const char *model, char *section, int size);
int UpsDbGetPollEntryBySection(UpsPollEntry &record, const char *section, int16_t n);

int16_t UpsGetCountDbVitalData(const char *model);
int UpsGetAtDbVitalData(UpsVitalData &record, int16_t n, const char *model);
int UpsGetSectionDbVitalData(const char *model, char *section, int size);
int UpsDbGetVitalDataBySection(UpsVitalData &record, const char *section, int16_t n);

int16_t UpsGetCountDbGetInfo(const char *model);
int UpsGetAtDbGetInfo(UpsGetInfo &record, int16_t n, const char *model);
int UpsGetSectionDbGetInfo(const char *model, char *section, int size);
int UpsDbGetInfoBySection(UpsGetInfo &record, const char *section, int16_t n);

int16_t UpsGetCountDbEvents(const char *model);
int UpsGetAtDbEvents(UpsEvent &record, int16_t n, const char *model);
int UpsGetSectionDbEvents(const char *model, char *section, int size);
int UpsDbGetEventsBySection(UpsEvent &record, const char *section, int16_t n);

int16_t UpsGetCountDbCstmValue(const char *model);
// Always the first line.
int UpsGetAtDbCstmValue(UpsCustomValue &record, const char *model);
int UpsGetSectionDbCstmValue(const char *model, char *section, int size);
int UpsDbGetCstmValueBySection(UpsCustomValue &record, const char *section, int16_t n);

// Families of which only the section's name is read here. The first returns `section`, or null.
char *UpsGetMonLayoutDb(const char *model, char *section, int size);
int UpsGetSectionDbFunctionEntry(const char *model, char *section, int size);
int UpsGetSectionDbSavedEvents(const char *model, char *section, int size);
int UpsGetSectionDbPollcnt(const char *model, char *section, int size);
int UpsGetSectionDbSNMP(const char *model, char *section, int size);
int UpsGetSectionDbConfigConfig(const char *model, char *section, int size);
// The OEM number of a model's line (not name); 0 when it has none.
int16_t UpsGetSectionDbOemId(const char *line);

// --- variables

// Counted once for each opened database.
int16_t UpsGetCountDbVarInfo();
// Keeps copies of the first `count` lines of VARIABLEN until the database is closed; for the getter by ID, which calls
// it on its first use.
void BuildTmpVarTab(int16_t count);
// The first variable with this ID, with this name (whatever the case of its letters), and the one of line n.
int UpsGetAtDbVarInfoFromVarID(UpsVariableInfo &record, int32_t id);
int UpsGetAtDbVarInfoFromVarName(UpsVariableInfo &record, const char *name);
int UpsGetAtDbVarInfoFromIndex(UpsVariableInfo &record, int16_t n);
// The variable of the model's vital-data record n, and of its get-info record n.
int UpsGetAtDbVDVarInfo(UpsVariableInfo &record, int16_t n, const char *model);
int UpsGetAtDbGIVarInfo(UpsVariableInfo &record, int16_t n, const char *model);

// --- functions and their parameters

// The lines of FUNCTIONS, then those of the model's own function section (null: none).
int16_t UpsGetCountDbFunction(const char *section);
int UpsDbGetFunction(UpsFunction &record, int16_t n, const char *section);
int16_t UpsGetCountDbParam(const char *section);
int UpsDbGetFunctionParam(UpsFunctionParam &record, const char *section, int16_t n);

// --- code

// Append every line of a section and a "\n" to the text in `buffer` (`size` bytes in all), which is not cleared. What
// does not fit is cut; the terminator is always there. 1 when something was appended.
int UpsDbGetQCodeBySection(char *buffer, int size, const char *section);
int UpsDbGetSharedMainQCode(char *buffer, int size);
int UpsDbGetSharedLibQCode(char *buffer, int size);
// The code of `name`: the section of that name and "_MAIN" or "_LIB".
int UpsDbGetEventMainQCode(char *buffer, int size, const char *name);
int UpsDbGetEventLibQCode(char *buffer, int size, const char *name);

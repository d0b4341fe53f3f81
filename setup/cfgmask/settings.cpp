#include "setup/cfgmask/settings.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "setup/options.h"
#include "upsdb/upsdb.h"
#include "util/numbers.h"
#include "util/text.h"

StdRecord StdRec;
CustomRecord CustomRec;
PathRecord PathRec;
SpecialRecord SpecialRec;
InvisibleRecord Invisible, TmpInvisible;

FieldDescriptor StdTabArr[kStdFieldCount + 1];
FieldDescriptor CustomTabArr[kCustomFieldCount + 1];
FieldDescriptor PathTabArr[kPathFieldCount + 1];
FieldDescriptor SpecialTabArr[kSpecialFieldCount + 1];

namespace {

constexpr FieldDescriptor kStdFields[] = {
    // type                row col length
    {kFieldText, 1, 24, 17},
    {kFieldText, 2, 24, 30},
    {kFieldNumber, 3, 24, 5},
    {kFieldNumber, 4, 24, 6},
    {kFieldDecimalText, 5, 24, 5},
    {kFieldDecimalText, 6, 24, 5},
    {kFieldReadOnly, 7, 24, 30},
    {kFieldReadOnly, 8, 24, 16},
    {kFieldReadOnlyNumber, 9, 24, 9},
    {kFieldReadOnlyNumber, 10, 24, 9},
    {kFieldNumber, 11, 24, 6},
    {kFieldNumber, 12, 24, 6},
    {kFieldEnd, 0, 0, 0},
};
constexpr FieldDescriptor kCustomFields[] = {
    {kFieldAlphanumeric, 1, 39, 16}, {kFieldNumber, 3, 39, 3}, {kFieldReadOnly, 4, 39, 4}, {kFieldNumber, 5, 39, 4},
    {kFieldReadOnly, 6, 39, 4},      {kFieldNumber, 7, 39, 4}, {kFieldReadOnly, 8, 39, 4}, {kFieldReadOnly, 9, 39, 4},
    {kFieldNumber, 10, 39, 4},       {kFieldEnd, 0, 0, 0},
};
constexpr FieldDescriptor kPathFields[] = {
    {kFieldPath, 3, 10, 30},  {kFieldPath, 6, 10, 30}, {kFieldReadOnly, 6, 53, 4},
    {kFieldNumber, 8, 53, 6}, {kFieldEnd, 0, 0, 0},
};
constexpr FieldDescriptor kSpecialFields[] = {
    {kFieldReadOnly, 2, 23, 4}, {kFieldNumber, 2, 60, 2}, {kFieldText, 3, 23, 40},    {kFieldReadOnly, 5, 23, 4},
    {kFieldNumber, 5, 60, 2},   {kFieldText, 6, 23, 40},  {kFieldReadOnly, 8, 23, 4}, {kFieldNumber, 8, 60, 2},
    {kFieldText, 9, 23, 40},    {kFieldEnd, 0, 0, 0},
};

static_assert(std::size(kStdFields) == kStdFieldCount + 1);
static_assert(member_offset(kStdFields, kLoggingRate) == offsetof(StdRecord, logging_rate));
static_assert(member_offset(kStdFields, kCable) == offsetof(StdRecord, cable));
static_assert(member_offset(kStdFields, kRechargeHours) == offsetof(StdRecord, recharge_hours));
static_assert(std::size(kCustomFields) == kCustomFieldCount + 1);
static_assert(member_offset(kCustomFields, kUpsShutdownDelay) == offsetof(CustomRecord, ups_shutdown_delay));
static_assert(member_offset(kCustomFields, kFixedDownTime) == offsetof(CustomRecord, fixed_down_time));
static_assert(std::size(kPathFields) == kPathFieldCount + 1);
static_assert(member_offset(kPathFields, kDataLogSize) == offsetof(PathRecord, data_log_size));
static_assert(std::size(kSpecialFields) == kSpecialFieldCount + 1);
static_assert(member_offset(kSpecialFields, 8) == offsetof(SpecialRecord, job[2].path));

constexpr int16_t kGSeries = static_cast<int16_t>(0x805C);

ModelEntry model_of(const UpsData &record) {
  ModelEntry entry = {};
  cpynstr(entry.ups_name, record.name);
  entry.cable = record.number;
  entry.kind = record.code;
  entry.power = to_int32(record.power);
  entry.load = to_int32(record.load);
  entry.hold_minutes = to_int32(record.hold_minutes);
  entry.recharge_hours = to_int32(record.recharge_hours);
  return entry;
}

}  // namespace

ModelEntry UpsTypeArr[kMaxModels + 1] = {{"LAST", 0, 0, 0, 0, 0, 0}};

const CableEntry UpsCableArr[12] = {
    {"serial", 0}, {"Typ 1", 1}, {"Typ 2", 2}, {"Typ 3", 3},  {"Typ 4", 4},   {"Typ 5", 5},
    {"Typ 6", 6},  {"Typ 7", 7}, {"Typ 8", 8}, {"Typ C", 99}, {"Typ O", 111}, {kTableEnd, -1},
};

void init_tab() {
  std::memcpy(StdTabArr, kStdFields, sizeof kStdFields);
  std::memcpy(CustomTabArr, kCustomFields, sizeof kCustomFields);
  std::memcpy(PathTabArr, kPathFields, sizeof kPathFields);
  std::memcpy(SpecialTabArr, kSpecialFields, sizeof kSpecialFields);
}

RecordField field_of_mask(int mask, int field) {
  switch (mask) {
    case kMaskUps:
      return {&StdRec, StdTabArr, field};
    case kMaskSystem:
      return {&CustomRec, CustomTabArr, field};
    case kMaskExtraJobs:
      return {&SpecialRec, SpecialTabArr, field};
    case kMaskPaths:
      return {&PathRec, PathTabArr, field};
    default:
      return {};
  }
}

int InitUpsTypeArray() {
  if (!UpsOpenDb(upstypname)) return 0;
  const int count = UpsGetCountDb();
  int index = 0;
  for (; index < count && index < kMaxModels; index++) {
    UpsData record;
    if (UpsGetAtDb(record, static_cast<int16_t>(index))) UpsTypeArr[index] = model_of(record);
  }
  UpsTypeArr[index] = {"LAST", 0, 0, 0, 0, 0, 0};
  UpsCloseDb();
  return 1;
}

int get_max_ups_list(const ModelEntry *table) { return get_ups_list_id(table, kTableEnd); }

int get_ups_list_id(const ModelEntry *table, const char *name) {
  int index = 0;
  while (std::strcmp(table[index].ups_name, name) != 0 && std::strcmp(table[index].ups_name, kTableEnd) != 0) index++;
  return index;
}

const ModelEntry *get_ups_by_name(const ModelEntry *table, const char *name) {
  return &table[get_ups_list_id(table, name)];
}

void get_cable_name(char *name, int32_t code) {
  const CableEntry *cable = UpsCableArr;
  while (cable->code != code && std::strcmp(cable->name, kTableEnd) != 0) cable++;
  cpynstr(name, cable->name, sizeof StdRec.cable);
}

int32_t get_cable_type(const char *name) {
  const CableEntry *cable = UpsCableArr;
  while (std::strcmp(cable->name, name) != 0 && std::strcmp(cable->name, kTableEnd) != 0) cable++;
  return cable->code;
}

const char *get_act_ups() {
  static char name[sizeof StdRec.model + 1];
  cpynstr(name, {StdRec.model, strnlen(StdRec.model, sizeof StdRec.model)});
  return name;
}

int isZELKGSeries() {
  const ModelEntry *entry = get_ups_by_name(UpsTypeArr, get_act_ups());
  return static_cast<int16_t>(entry->kind) == kGSeries;
}

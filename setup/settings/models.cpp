#include "setup/settings/models.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "setup/settings/settings.h"
#include "upsdb/upsdb.h"
#include "util/numbers.h"
#include "util/text.h"

namespace {

constexpr int16_t kGSeries = static_cast<int16_t>(0x805C);
constexpr ModelEntry kLastModel = {"LAST", 0, 0, 0, 0, 0, 0};

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

constexpr size_t kDeviceSize = 64;

void append_settings(char *device, size_t used, const PortSettings &settings) {
  if (used >= kDeviceSize) return;
  std::snprintf(device + used, kDeviceSize - used, ":%d,%c,%d,%d", static_cast<int>(settings.baud_rate),
                settings.parity, settings.data_bits, settings.stop_bits);
}

// 1 and the model's line settings, or 0 when the database or the record can't be read.
int read_line_settings(int model, PortSettings &settings) {
  if (!UpsOpenDb(upstypname)) return 0;
  UpsData record;
  const int found = UpsGetAtDb(record, static_cast<int16_t>(model));
  UpsCloseDb();
  if (found) settings = {record.baud_rate, record.parity, record.data_bits, record.stop_bits};
  return found;
}

void put_text(int field, const char *text) { put_field(&StdRec, StdTabArr, field, text); }
void put_number(int field, int32_t number) { put_text(field, std::to_string(number).c_str()); }

}  // namespace

char upstypname[256] = "upstyp.ups";
int16_t oemid = 0;
ModelEntry UpsTypeArr[kMaxModels + 1] = {kLastModel};

const CableEntry UpsCableArr[12] = {
    // clang-format off
    // name     code
    {"serial",    0},
    {"Typ 1",     1},
    {"Typ 2",     2},
    {"Typ 3",     3},
    {"Typ 4",     4},
    {"Typ 5",     5},
    {"Typ 6",     6},
    {"Typ 7",     7},
    {"Typ 8",     8},
    {"Typ C",    99},
    {"Typ O",   111},
    {kTableEnd,  -1},
    // clang-format on
};

int InitUpsTypeArray() {
  if (!UpsOpenDb(upstypname)) return 0;
  UpsOEMIdDb(oemid);
  const int count = UpsGetCountDb();
  int index = 0;
  for (; index < count && index < kMaxModels; ++index) {
    UpsData record;
    if (UpsGetAtDb(record, static_cast<int16_t>(index))) UpsTypeArr[index] = model_of(record);
  }
  UpsTypeArr[index] = kLastModel;
  UpsCloseDb();
  return 1;
}

int get_max_ups_list(const ModelEntry *table) { return get_ups_list_id(table, kTableEnd); }

int get_ups_list_id(const ModelEntry *table, const char *name) {
  int index = 0;
  while (std::strcmp(table[index].ups_name, name) != 0 && std::strcmp(table[index].ups_name, kTableEnd) != 0) ++index;
  return index;
}

const ModelEntry *get_ups_by_name(const ModelEntry *table, const char *name) {
  return &table[get_ups_list_id(table, name)];
}

void get_cable_name(char *name, int32_t code) {
  const CableEntry *cable = UpsCableArr;
  while (cable->code != code && std::strcmp(cable->name, kTableEnd) != 0) ++cable;
  cpynstr(name, cable->name, sizeof StdRec.cable);
}

int32_t get_cable_type(const char *name) {
  const CableEntry *cable = UpsCableArr;
  while (std::strcmp(cable->name, name) != 0 && std::strcmp(cable->name, kTableEnd) != 0) ++cable;
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

int patch_baudrate(char *device, const PortSettings &settings) {
  const char *colon = std::strchr(device, ':');
  if (colon == nullptr) return 0;
  append_settings(device, static_cast<size_t>(colon - device), settings);
  return 1;
}

int patch_port(char *device, const PortSettings &settings) {
  append_settings(device, std::strlen(device), settings);
  return 1;
}

void take_model(const ModelEntry &entry) {
  char cable[sizeof StdRec.cable];
  get_cable_name(cable, entry.kind == 1 ? entry.cable : 0);
  put_text(kModel, entry.ups_name);
  put_text(kCable, cable);
  put_number(kPower, entry.power);
  put_number(kLoad, entry.load);
  put_number(kHoldMinutes, entry.hold_minutes);
  put_number(kRechargeHours, entry.recharge_hours);
  Invisible.cable_code = entry.cable;
}

void take_line_settings(int model) {
  PortSettings settings;
  char device[256];
  if (!read_line_settings(model, settings)) return;
  text_in(field_of_mask(kMaskUps, kDevice), device);
  if (patch_baudrate(device, settings)) put_text(kDevice, device);
}

void fill_port(const char *port, int model) {
  PortSettings settings;
  char device[kDeviceSize];
  if (!read_line_settings(model, settings)) return;
  cpynstr(device, port);
  patch_port(device, settings);
  put_text(kDevice, device);
}

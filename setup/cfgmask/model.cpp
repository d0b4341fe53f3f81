// Choosing a model, and what its record in the database brings along.
#include <cstdio>
#include <cstring>
#include <string>

#include "screen/menu.h"
#include "setup/cfgmask/masks.h"
#include "setup/cfgmask/texts.h"
#include "setup/options.h"
#include "upsdb/upsdb.h"
#include "util/text.h"

namespace {

constexpr size_t kDeviceSize = 64;

void append_settings(char *device, size_t used, const LineSettings &settings) {
  if (used >= kDeviceSize) return;
  std::snprintf(device + used, kDeviceSize - used, ":%d,%c,%d,%d", static_cast<int>(settings.baud_rate),
                settings.parity, settings.data_bits, settings.stop_bits);
}

// 1 and the model's line settings, or 0 when the database or the record can't be read.
int read_line_settings(int model, LineSettings &settings) {
  if (!UpsOpenDb(upstypname)) return 0;
  UpsData record;
  const int found = UpsGetAtDb(record, static_cast<int16_t>(model));
  UpsCloseDb();
  if (found) settings = {record.baud_rate, record.parity, record.data_bits, record.stop_bits};
  return found;
}

void put_ups_text(WINDOW *win, int field, const char *text) {
  put_field(&StdRec, StdTabArr, field, text);
  if (win != nullptr) show_field(win, &StdRec, StdTabArr, field, attr_dkl);
}

void put_ups_number(WINDOW *win, int field, int32_t number) {
  put_ups_text(win, field, std::to_string(number).c_str());
}

}  // namespace

int show_ups_list(WINDOW *win, char *name) {
  std::string items;
  for (const ModelEntry *entry = UpsTypeArr; std::strcmp(entry->ups_name, kTableEnd) != 0; entry++) {
    items += entry->ups_name[0] == '\0' ? " " : entry->ups_name;
    items += '|';
  }
  char chosen[84] = "";
  const int result = DoScrollMenu(win, 10, 21, 36, 9, attr_dkl, kAttrHighlight, chosen, model_list_title[language],
                                  items.c_str(), "|", 1, 3);
  const bool is_model = result > 0 && std::strcmp(chosen, " ") != 0;
  if (is_model) cpynstr(name, chosen, sizeof(ModelEntry::ups_name));
  return is_model;
}

int get_upsname(WINDOW *win, char *name) { return show_ups_list(win, name); }

void fill_ups_rec(WINDOW *win, const ModelEntry *entry) {
  char cable[sizeof StdRec.cable];
  get_cable_name(cable, entry->kind == 1 ? entry->cable : 0);
  put_ups_text(win, kModel, entry->ups_name);
  put_ups_text(win, kCable, cable);
  put_ups_number(win, kPower, entry->power);
  put_ups_number(win, kLoad, entry->load);
  put_ups_number(win, kHoldMinutes, entry->hold_minutes);
  put_ups_number(win, kRechargeHours, entry->recharge_hours);
  Invisible.cable_code = entry->cable;
}

int patch_baudrate(char *device, const LineSettings &settings) {
  const char *colon = std::strchr(device, ':');
  if (colon == nullptr) return 0;
  append_settings(device, static_cast<size_t>(colon - device), settings);
  return 1;
}

int patch_port(char *device, const LineSettings &settings) {
  append_settings(device, std::strlen(device), settings);
  return 1;
}

void fill_baudrate(WINDOW *win, int model) {
  LineSettings settings;
  char device[256];
  if (!read_line_settings(model, settings)) return;
  text_in({&StdRec, StdTabArr, kDevice}, device);
  if (patch_baudrate(device, settings)) put_ups_text(win, kDevice, device);
}

void fill_port(const char *port, int model) {
  LineSettings settings;
  char device[kDeviceSize];
  if (!read_line_settings(model, settings)) return;
  cpynstr(device, port);
  patch_port(device, settings);
  put_ups_text(nullptr, kDevice, device);
}

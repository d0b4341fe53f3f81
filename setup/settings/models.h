// The UPS models of the database, the cables, and what choosing a model does to the settings of the UPS mask.
#pragma once

#include <cstdint>

extern char upstypname[256];  // file name of the database; written by the command line
extern int16_t oemid;         // of the database, 0 without one; nothing depends on it

struct ModelEntry {
  char ups_name[32];
  int32_t cable;  // code of the cable table
  int32_t kind;   // 1: the cable code applies; 0x805C: the G series
  int32_t power;  // VA
  int32_t load;   // VA
  int32_t hold_minutes;
  int32_t recharge_hours;
};
inline constexpr int kMaxModels = 500;
inline constexpr char kTableEnd[] = "LAST";
extern ModelEntry UpsTypeArr[kMaxModels + 1];  // closed by the name "LAST"; filled by InitUpsTypeArray

struct CableEntry {
  const char *name;
  int32_t code;
};
extern const CableEntry UpsCableArr[12];  // closed by "LAST", -1

// Fills UpsTypeArr and oemid from the database `upstypname`: 1, or 0 when it can't be opened (the table stays as it
// was).
int InitUpsTypeArray();
// Entries before "LAST".
int get_max_ups_list(const ModelEntry *table);
// The index of the entry of that name, of "LAST" when there is none; the entry itself.
int get_ups_list_id(const ModelEntry *table, const char *name);
const ModelEntry *get_ups_by_name(const ModelEntry *table, const char *name);
// The name of the first cable with that code ("LAST" for an unknown one) into `name` (16 bytes).
void get_cable_name(char *name, int32_t code);
// The code of the cable of that name, -1 for an unknown one.
int32_t get_cable_type(const char *name);

// The selected model's name, terminated: a static buffer that the next call overwrites.
const char *get_act_ups();
// 1 when the selected model is of the G series.
int isZELKGSeries();

// The line settings of a serial port.
struct PortSettings {
  int32_t baud_rate;
  char parity;
  int16_t data_bits;
  int16_t stop_bits;
};
// `device` holds 64 bytes; what does not fit is cut. patch_baudrate replaces everything after the first ':' (without
// one: 0, unchanged), patch_port appends to the path. 1.
int patch_baudrate(char *device, const PortSettings &settings);
int patch_port(char *device, const PortSettings &settings);

// Into the settings of the UPS mask: a model's values, never of the "LAST" entry; the line settings of model `model` of
// UpsTypeArr, in the place of those of the device; the device `port` ("/dev/ttyS1") with them. The device stays as it
// is when the database can't be read.
void take_model(const ModelEntry &entry);
void take_line_settings(int model);
void fill_port(const char *port, int model);

// The settings masks, and what the detection dialog and the event editor share with them.
#pragma once

#include <cstdint>

#include "screen/scrio.h"
#include "setup/cfgmask/settings.h"

// Edit the records in place until the mask is left; `file` is not used. Return 0.
int edit_std_cfg(WINDOW *parent, const char *file, int32_t attr);
int edit_custom_cfg(WINDOW *parent, const char *file, int32_t attr);
int edit_path_cfg(WINDOW *parent, const char *file, int32_t attr);
int edit_special_cfg(WINDOW *parent, const char *file, int32_t attr);  // no menu opens it

void draw_std_frame(WINDOW *win, int32_t attr);
void draw_custom_frame(WINDOW *win, int32_t attr);
void draw_path_frame(WINDOW *win, int32_t attr);
void draw_special_frame(WINDOW *win, int32_t attr);
void show_cfg_maske(WINDOW *win, const void *record, const FieldDescriptor *table, int32_t attr);
// Shows the help of a mask's field beside it for as long as no key is pressed; no mask calls it.
void draw_tmp_hlp_screen(WINDOW *parent, int mask, int field);

// 1 yes, 2 no, 0 when the list is left.
int yes_no_box(WINDOW *win, const char *title);
// Choice 1 puts "yes", choice 2 "no" into the field and shows it, 1; any other choice changes nothing, 0.
int fill_custom_rec(WINDOW *win, int choice, int field);
int fill_path_rec(WINDOW *win, int choice, int field);
int fill_special_rec(WINDOW *win, int choice, int field);
// 1 for a field of the system mask that is "no" as long as the system may not be shut down, else 0.
int follows_shutdown(int field);

// The model list: the chosen name into `name` (32 bytes), nonzero; 0, and `name` as it was, when none was chosen.
int show_ups_list(WINDOW *win, char *name);
int get_upsname(WINDOW *win, char *name);
// A model's values into the UPS settings; shown too when there is a window. Never for the "LAST" entry.
void fill_ups_rec(WINDOW *win, const ModelEntry *entry);
// Makes `name`, a model of UpsTypeArr, the chosen one, with everything that depends on it: line settings, ratings, the
// job lists of the events, and a password where the model needs one. Shown too when there is a window.
void choose_model(WINDOW *win, const char *name);

// The line settings of a serial port.
struct LineSettings {
  int32_t baud_rate;
  char parity;
  int16_t data_bits;
  int16_t stop_bits;
};
// `device` holds 64 bytes; what does not fit is cut. patch_baudrate replaces everything behind the first ':' (without
// one: 0, unchanged), patch_port appends behind the path. 1.
int patch_baudrate(char *device, const LineSettings &settings);
int patch_port(char *device, const LineSettings &settings);
// The model's line settings, from the database, into the device field; with a window it is shown. The field stays as it
// is when the database can't be read. `model` is an index of UpsTypeArr.
void fill_baudrate(WINDOW *win, int model);
// The device field from a probed port ("/dev/ttyS1") and the model's line settings; as above.
void fill_port(const char *port, int model);

// 1 for the event (20) whose jobs run before a scheduled shutdown, else 0.
int is_shutdown_with_sched(int code);

// The masks of the UPS, the system, the paths and the extra jobs.
#pragma once

#include <cstdint>

#include "screen/scrio.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"

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

// The model list: the chosen name into `name` (32 bytes), nonzero; 0, and `name` as it was, when none was chosen.
int show_ups_list(WINDOW *win, char *name);
int get_upsname(WINDOW *win, char *name);
// take_model, and take_line_settings for model `model` of UpsTypeArr; what they changed is shown when there is a
// window.
void fill_ups_rec(WINDOW *win, const ModelEntry *entry);
void fill_baudrate(WINDOW *win, int model);

// What all masks have in common on the screen: settings in a mask, its help, its errors and its yes/no lists.
#pragma once

#include <cstdint>
#include <span>

#include "screen/maskloop.h"
#include "setup/settings/settings.h"

// A mask of settings; labels, fields, checks and help are those of the settings' rows.
struct SettingsMask {
  int number;
  int rows, row;  // of the window, which is 76 columns wide and begins in column 2 of the screen
  unsigned rules;
  std::span<const FrameLabel> labels;                          // beside those of the fields
  bool (*has_list)(const void *mask, int field);               // as in Mask; the context is the SettingsMask
  void (*pick)(const void *mask, WINDOW *win, int field);      //
  bool (*may_leave)(const void *mask, WINDOW *win) = nullptr;  //
  void (*prepare)(const void *mask) = nullptr;                 //
};
// Edits the records in place until the mask is left.
void run_settings_mask(const SettingsMask &mask, int32_t attr);
// Frame, labels and key line.
void draw_settings_frame(const SettingsMask &mask, WINDOW *win, int32_t attr);

// What every mask says of the configuration as long as it has nothing to say of its own values: "" for nothing. Written
// by the session, asked as a mask opens.
extern std::string (*standing_notice)();
void ask_standing_notice();
// The text of a notice: `own`, or the standing one where that is null; null for nothing.
const char *notice_or_standing(const char *own);

// Choice 1 puts "yes", choice 2 "no" into the field and shows it, 1; any other choice changes nothing, 0.
int fill_yes_no(WINDOW *win, const RecordField &place, int choice);

// Tells the permitted range of a field and waits for a key.
void show_value_error(WINDOW *win, int field, int mask);
// Shows the help of a field until a key ends it.
void show_hlp_txt(WINDOW *win, int mask, int field);
// Shows the "|"-separated lines of `text` under `title` until a key ends it; fewer than two lines are filled up to two.
void draw_hlp_screen(WINDOW *win, const char *text, const char *title, int32_t attr);
void draw_hlp_screen_at(WINDOW *win, int row, const char *text, const char *title, int32_t attr);

// Ranges and helps of the fields, by mask number and field number.
#pragma once

#include <cstdint>
#include <span>

#include "screen/scrio.h"

struct ValueCheck {
  int32_t min;
  int32_t max;
  int32_t mask;
  int32_t field;
};
extern const std::span<const ValueCheck> ValueCheckArr;  // closed by a row whose field is -1

// The bounds of the first row for this mask and field, 0 when there is none.
int32_t get_value_check_min(int field, int mask);
int32_t get_value_check_max(int field, int mask);
// 1 when the field has no row or the number lies within it, both ends included.
int is_in_range(int field, int mask, int32_t number);

// 1 when the field's present value is acceptable (a field without a row always is), else 0. The temperature checks also
// rewrite their field with one decimal.
int value_check(int field, int mask);
int value_check_tempcaution();
int value_check_tempwarning();
// Tells the permitted range of a field and waits for a key.
void show_value_error(WINDOW *win, int field, int mask);

// The help text of a field in the current language into `text` (512 bytes).
void get_hlp_txt(char *text, int mask, int field);
void show_hlp_txt(WINDOW *win, int mask, int field);
// Shows the "|"-separated lines of `text` under `title` until a key ends it; fewer than two lines are filled up to two.
void draw_hlp_screen(WINDOW *win, const char *text, const char *title, int32_t attr);
void draw_hlp_screen_at(WINDOW *win, int row, const char *text, const char *title, int32_t attr);

// The check, its error and the help as procedures of a mask whose context is its number (a `const int`).
bool check_mask_field(const void *mask, int field);
void show_mask_error(const void *mask, WINDOW *win, int field);
void show_mask_help(const void *mask, WINDOW *win, int field);

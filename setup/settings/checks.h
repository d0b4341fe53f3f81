// Ranges and helps of the fields, by mask number and field number.
#pragma once

#include <cstdint>
#include <span>

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

// The help of one field of one mask; "|" starts a new line.
struct HelpText {
  int32_t mask;
  int32_t field;
  const char *const *text;
};
// Closed by the row for every field without one, whose mask and field are -1.
extern const std::span<const HelpText> HlpTxtArr;

// The help text of a field in the current language into `text` (512 bytes), and the title of a mask's help.
void get_hlp_txt(char *text, int mask, int field);
const char *help_title(int mask);

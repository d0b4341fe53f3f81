// Texts of the settings masks: labels, list titles, help, messages.
#pragma once

#include <cstdint>
#include <span>

#include "util/language.h"

// Labels of the UPS mask in field order; the last one, of the UPS identifier, is not drawn: it has no field.
extern Label stdframe_label01, stdframe_label02, stdframe_label03, stdframe_label04, stdframe_label05, stdframe_label06,
    stdframe_label07, stdframe_label08, stdframe_label09, stdframe_label10, stdframe_label11, stdframe_label12,
    stdframe_label13;
extern Label list_hint_label;      // beside fields that open a list; "%c" is its arrow
extern Label model_list_title;     // of the list of UPS models
extern Label model_missing_label;  // the mask can't be finished without a model

// Labels of the system mask in field order, and the titles of its lists.
extern Label customframe_label01, customframe_label02, customframe_label03, customframe_label04, customframe_label05,
    customframe_label06, customframe_label07, customframe_label08, customframe_label09;
extern Label shutdown_list_title, ups_shutdown_list_title, ups_restore_list_title, fixed_shutdown_list_title;

// Labels of the path mask in field order, and the title of its list.
extern Label pathframe_label01, pathframe_label02, pathframe_label03, pathframe_label04;
extern Label logging_list_title;

// Labels of the extra-job mask: the switches of the three jobs, delay and path of each, and the title of its list.
extern Label specialframe_label01, specialframe_label02, specialframe_label03, specialframe_label04,
    specialframe_label05;
extern Label extra_job_list_title;

extern Label value_error_title;
extern Label value_error_label;  // %ld minimum, %ld maximum

// The help of one field of one mask; "|" starts a new line.
struct HelpText {
  int32_t mask;
  int32_t field;
  const char *text[2];
};
// Closed by the row for every field without one, whose mask and field are -1.
extern const std::span<const HelpText> HlpTxtArr;

// The title of a mask's help, by mask number.
const char *help_title(int mask);

// Texts that all masks share.
#pragma once

#include "util/language.h"

extern Label list_hint_label;  // beside fields that open a list; "%c" is its arrow
extern Label value_error_title;
extern Label value_error_label;  // %ld minimum, %ld maximum

// Texts of the mail mask beside those of its fields.
#pragma once

#include "setup/forms/texts.h"

extern Label mailframe_label10;  // title of the list of the SMTP switch
extern Label mailframe_label11;  // title of the list of the signature switch
inline constexpr Label &mailframe_label12 = list_hint_label;

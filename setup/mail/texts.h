// Texts of the mail mask.
#pragma once

#include "util/language.h"

// Labels of the fields, in field order, and the heading above the last two.
extern Label mailframe_label01, mailframe_label02, mailframe_label03, mailframe_label04, mailframe_label05,
    mailframe_label06, mailframe_label07, mailframe_label08, mailframe_label09;
extern Label mailframe_label10;  // title of the list of the SMTP switch
extern Label mailframe_label11;  // title of the list of the signature switch

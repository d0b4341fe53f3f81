// Texts that every screen shares.
#pragma once

#include "util/language.h"

extern Label keyline_label;     // the keys of every mask, on its last row but one
extern Label background_label;  // the product's title above menus and masks
extern Label error_label;       // beside a message; at most 14 characters

// Texts of the start and of the session.
#pragma once

#include "util/language.h"

extern Label err_start;  // the terminal is too small
extern Label no_terminal;

extern Label first_menu_title, first_menu_create, first_menu_exit;
extern Label probe_menu_automatic, probe_menu_skip;

extern Label session_title;
extern Label session_entries[8];  // in menu order; the sixth is a spacer

extern Label database_error_label;  // %s database
extern Label no_models_label;       // %s database
extern Label file_missing_label;    // %s file
extern Label file_exists_label;     // %s file
extern Label file_open_label;       // %s file

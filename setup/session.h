// The configuration session: from loading the settings to saving them.
#pragma once

#include <cstdint>

#include "screen/scrio.h"

// The first menu, when there is no configuration yet: 1 create, 2 exit, other values when it was left.
int draw_main_menu(WINDOW *parent, int32_t attr);
inline constexpr int kChoiceCreate = 1;
inline constexpr int kChoiceExit = 2;

// The menu of the session; the choice from 1, -1 when it was left.
int do_menu(WINDOW *parent, int row, int col, int width, int32_t attr);

// A whole session above `parent` on the configuration `file`: in kSessionEdit on the existing one, in kSessionCreate on
// a new one; any other mode ends it after the preparations.
inline constexpr int kSessionEdit = 1;
inline constexpr int kSessionCreate = 2;
void do_config(WINDOW *parent, int32_t attr, const char *file, int mode);

// Offers to detect the UPS. The dialog's last result (upsprobe.h), or the menu's choice when it was not wanted.
int ask_for_probe(WINDOW *parent, const char *file);

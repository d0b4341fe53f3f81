// The mask of the mail settings.
#pragma once

#include <cstdint>

#include "screen/scrio.h"

// The mask above `parent` until it is left; 0.
int edit_mail_cfg(WINDOW *parent, int32_t attr);
void draw_mail_frame(WINDOW *win, int32_t attr);
// Choice 1 puts "yes", choice 2 "no" into the field and shows it, 1; any other choice changes nothing, 0.
int fill_mail_rec(WINDOW *win, int choice, int field);

// Message boxes and the background of the screens. A box opens a window of its own above the parent and gives the
// screen back as it was when it closes.
#pragma once

#include "screen/scrio.h"

// A message of several lines; waits for a key. With `error` a second small window says so.
void draw_box(WINDOW *parent, const char *text, const char *sep, int32_t attr, int32_t textattr, int error);
// The same for one second, without waiting for a key; `text` should be one line.
void draw_box_nowait(WINDOW *parent, const char *text, const char *sep, int32_t attr);
// '#' in every cell, and the product's title in a framed box on rows 2 to 4.
void draw_edit_background(WINDOW *win, int32_t attr);

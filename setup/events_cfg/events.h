// The event editor: the list of events, and the list of one event's jobs. Every change is in EventStrings at once.
#pragma once

#include <cstdint>

#include "screen/scrio.h"

// The editor above `screen` until it is left; `file` is not used. 1, or 0 when there are no events.
int edit_new_event_cfg(WINDOW *screen, const char *file, int32_t attr);
// The event menu for `count` events; the chosen item from 1, -1 when it was left.
int do_new_event_menu(WINDOW *screen, int count, int row, int col, int width);

// The job list of one of `count` events. 1.
int edit_event_functions(WINDOW *screen, int count, int32_t attr, int event);
// The menu of the `jobs` jobs of `event` in ActEvent, with the entries for adding and deleting or, in delete mode,
// without them. The chosen item from 1, -1 when it was left.
int do_event_function_menu(WINDOW *screen, int event, int jobs, int row, int col, int width, int delete_mode);
// Lets choose a function and fill in a job of it. 1 when it was added to the event's list, else 0.
int add_event_function(WINDOW *screen, int32_t attr, int event);

// The help of this editor's menus, see menu_help of screen/menu.h: 5 event menu, 7 function list, 8 job menu, 9 delete
// menu.
int get_menu_help(int menu, int item, char *title, char *text);

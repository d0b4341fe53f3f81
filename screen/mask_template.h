// Masks kept as files of kImageSize characters.
//
// A field is written ">", a type character (a digit, or "_" for type 0), fillers, "<". Its length counts from the type
// character to before the "<", and ends with its row. A field that is not closed is left as text. The shortest takes
// three characters, so a table of kTemplateTable descriptors holds the fields and the end of any template.
#pragma once

#include "record/fields.h"
#include "screen/image.h"

inline constexpr int kTemplateTable = kImageSize / 3 + 1;
// Blanks the fields in the screen's characters and writes their table. 1 when there is at least one, else 0.
int search_fields(char *screen, FieldDescriptor *tab);
// Read a template into Sysbuff (a short file is filled up with blanks), write its table and show all of it on the
// cleared window, or the block of it. 0, or -1 when it can't be read; nothing is changed then.
int show_mask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr);
int show_tmask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr, int row1, int col1, int row2,
               int col2);
// Show all rows of a screen image, or a block of it, take them over into Edit_screen, and set the window's
// attribute back to the normal one.
void show_msk(WINDOW *win, const char *screen, int32_t attr);
void show_tmsk(WINDOW *win, const char *screen, int row1, int col1, int row2, int col2, int32_t attr);

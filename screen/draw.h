// Everything that is drawn: texts, lines, frames and areas.
//
// A positioned write outside the window writes nothing. Texts are bytes, and one byte is one cell: a character of two
// bytes (EUC-JP) takes two cells. What the terminal speaks is converted to on the way out. Control bytes, and bytes
// that are no character, show as "?".
#pragma once

#include <string_view>

#include "screen/scrio.h"

// --- output

void putch_char(int ch, int32_t attr);
void wputch_char(WINDOW *win, int ch, int32_t attr);
void wputch(WINDOW *win, int ch);
void wputs(WINDOW *win, std::string_view str);
void putcharv(int ch, int32_t attr, int row, int col);
void wputcharv(WINDOW *win, int ch, int32_t attr, int row, int col);
void printv(std::string_view str, int32_t attr, int row, int col);
void wprintv(WINDOW *win, std::string_view str, int32_t attr, int row, int col);
void display_str(int row, int col, int32_t attr, std::string_view str);
void wdisplay_str(WINDOW *win, int row, int col, int32_t attr, std::string_view str);
// At most 259 characters; what does not fit is cut.
[[gnu::format(printf, 4, 5)]] void fdisp_printf(int row, int col, int32_t attr, const char *fmt, ...);
[[gnu::format(printf, 5, 6)]] void wfdisp_printf(WINDOW *win, int row, int col, int32_t attr, const char *fmt, ...);
// As wprintv, but at most `width` cells: what would reach over the window's frame is cut by its caller with this.
void wprintv_cut(WINDOW *win, std::string_view str, int32_t attr, int row, int col, int width);

// --- clearing

// Blanks in rows row1 to row2 - 1, columns col1 to col2 - 1.
void cls_on(int row1, int col1, int row2, int col2, int32_t attr);
// The screen but for its column 79, then home.
void cls();
void cls_attr(int32_t attr);
void wcls(WINDOW *win);

// --- lines, frames, areas

// Any other style is drawn as a single line, kDoubleLine too: it differs in menus only.
enum FrameStyle : int { kSingleLine = 1, kDoubleLine = 2, kInvisibleFrame = 4 };
// The eight pieces of a frame: top, right, bottom, left edge, upper left, upper right, lower right, lower left corner.
void get_frame_pieces(chtype pieces[8], int style);
// A line from (row1, col1): vertical when the columns are equal, else horizontal; the end coordinate itself is the
// number of cells.
void fdraw_line(int row1, int col1, int row2, int col2, chtype ch, int32_t attr);
void wfdraw_hline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr);
void wfdraw_vline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr);
void wfdraw_line(WINDOW *win, int row, int col, int vlength, int hlength, chtype ch, int32_t attr);
void fdraw_rect(int row1, int col1, int row2, int col2, int32_t attr, const chtype pieces[8]);
void wfdraw_rect(WINDOW *win, int row, int col, int height, int width, int32_t attr, const chtype pieces[8]);
void wfdraw_frame_size(WINDOW *win, int row, int col, int height, int width, int32_t attr, int style);
// Round the whole window.
void wfdraw_frame(WINDOW *win, int32_t attr, int style);
// A line across the window, joined to its frame by tee pieces.
void wfdraw_separator(WINDOW *win, int row, int32_t attr);
// The closed rectangle; `height` lines of `width` cells; the inside of the window's frame.
void ffill_area(int row1, int col1, int row2, int col2, int ch, int32_t attr);
void wffill_area(WINDOW *win, int row, int col, int height, int width, int ch, int32_t attr);
void wffill_full_area(WINDOW *win, int ch, int32_t attr);
void fdraw_box(int row1, int col1, int row2, int col2, int32_t frameattr, int style, int32_t fillattr, int fillch);
void wfdraw_box(WINDOW *win, int row, int col, int height, int width, int32_t frameattr, int style, int32_t fillattr,
                int fillch);
void swap(int *a, int *b);

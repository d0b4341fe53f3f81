// The image of a mask, and blocks and values on it and on the window.
//
// The text of every shown field also lies in `Edit_screen`, one byte a cell, from where an edited text is taken back.
// Cells beyond the image do not exist: a text that would reach over its edge ends there. Cells of the image that lie
// beyond the window are not shown.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "screen/scrio.h"

inline constexpr int kImageRows = 25;
inline constexpr int kImageColumns = 80;
inline constexpr int kImageSize = kImageRows * kImageColumns;

// Image of the mask on the screen, one byte a cell; written by everything here that draws. The next two are spare, the
// last one holds a template's characters. All null before init_masklib.
extern char *Edit_screen, *User1_screen, *User2_screen, *Sysbuff;

// Makes the four buffers (once a run) and blanks Edit_screen. 0, or 1 when memory runs out.
int init_masklib();
// All three take whole images, kImageSize bytes. mcls blanks Edit_screen.
void clear_buffer(char *buf, char ch);
void mcls();
void copy_screen(char *dst, const char *src);
// The attribute of the standard screen.
void set_sysattr(int32_t attr);

// --- cells

// Where the image has the cell (row, col), which lies in it.
constexpr size_t cell_index(int row, int col) {
  return static_cast<size_t>(row) * kImageColumns + static_cast<size_t>(col);
}
// The cells of `image` (kImageSize bytes; null: none) from (row, col) on: at most `length`, up to the end of the row.
std::span<char> image_cells(char *image, int row, int col, int length);
// `text` into the cells, and blanks after it; what does not fit is cut.
void fill_cells(std::span<char> cells, std::string_view text);
// Writes the text at (row, col) of the window, as much as fits into it; a NUL shows as a blank.
void draw_cells(WINDOW *win, std::string_view text, int32_t attr, int row, int col);

// --- blocks on the window and in the image; rows and columns inclusive

// With `fill` not 0 `ch` in every cell, else the cells of the image, each row up to its first NUL. Current attribute.
void draw_blk(WINDOW *win, char *image, int row1, int col1, int row2, int col2, char ch, int fill);
// Redraws cells from the image in `attr`, which stays set; attribute 0 shows blanks instead.
void wattrib(WINDOW *win, int row, int col, int length, int32_t attr);
// Fill a block (drawln with `ch`, clsln with blanks) and set the window's attribute back to the normal one.
void drawln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr, char ch);
void clsln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr);
// Shift the cells from column `pos` on within columns `pos` to `end`: right, `ch` goes to `pos`; left, `fill` goes to
// `end`. Current attribute; a NUL shows as a blank.
void insert_char(WINDOW *win, int row, int pos, int end, char ch);
void delete_char(WINDOW *win, int row, int pos, int end, char fill);

// --- values and texts

// Writes `length` cells: an integer `value` (32 bits) right-aligned, or the text that it points to left-aligned. The
// attribute goes to the standard screen only: the window draws in its current one and then has the normal one. Other
// modes write nothing.
enum ValueMode : int { kDecimal = 1, kHexadecimal = 2, kTextValue = 3 };
void disp_value(WINDOW *win, int row, int col, int32_t attr, intptr_t value, int length, int mode);
void dispdez(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length);
void disphex(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length);
void display(WINDOW *win, int row, int col, int32_t attr, const char *value, int length);

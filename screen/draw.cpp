#include "screen/draw.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>

#include "util/charset.h"

namespace {

constexpr int kFormattedText = 260;
constexpr int kClearedColumns = 79;  // kept: cls leaves the last column alone
constexpr int32_t kClearedAttr = 7;

// What a character, a key code or a frame's piece shows as in one cell.
chtype shown_piece(chtype piece) {
  if ((piece & A_ALTCHARSET) != 0) return piece;
  const char byte = static_cast<char>(piece & A_CHARTEXT);
  if (is_printable_ascii(byte)) return piece & A_CHARTEXT;
  return static_cast<chtype>(text_to_cells({&byte, 1}, present_charset()).front());
}

// The first `columns` columns of a text at the cursor, in the window's attribute.
void write_text(WINDOW *win, std::string_view text, int columns) {
  if (columns <= 0) return;
  if (std::ranges::all_of(text, is_printable_ascii)) {
    waddnstr(win, text.data(), std::min(columns, static_cast<int>(text.size())));
    return;
  }
  const std::wstring cells = text_to_cells(text, present_charset(), static_cast<size_t>(columns));
  waddnwstr(win, cells.data(), static_cast<int>(cells.size()));
}

// At a position, in the window's attribute: never beyond the window's edge.
void write_text_at(WINDOW *win, std::string_view text, int row, int col, int columns = INT_MAX) {
  if (wmove(win, row, col) == OK) write_text(win, text, std::min(columns, getmaxx(win) - col));
}

void write_piece_at(WINDOW *win, int ch, int row, int col) {
  if (wmove(win, row, col) == OK) wputch(win, ch);
}

}  // namespace

// --- output

void wputch(WINDOW *win, int ch) {
  const chtype piece = shown_piece(static_cast<chtype>(ch));
  const auto cell = static_cast<wchar_t>(piece);
  if (piece > 0x7F && piece <= 0xFF) {
    waddnwstr(win, &cell, 1);  // curses takes a byte that stands for itself only this way
  } else {
    waddch(win, piece);
  }
}
void wputs(WINDOW *win, std::string_view str) { write_text(win, str, INT_MAX); }

void putch_char(int ch, int32_t attr) {
  setattr(attr);
  wputch(stdscr, ch);
}

void wputch_char(WINDOW *win, int ch, int32_t attr) {
  wsetattr(win, attr);
  wputch(win, ch);
}

void putcharv(int ch, int32_t attr, int row, int col) {
  setattr(attr);
  write_piece_at(stdscr, ch, row, col);
}

void wputcharv(WINDOW *win, int ch, int32_t attr, int row, int col) {
  wsetattr(win, attr);
  write_piece_at(win, ch, row, col);
}

void printv(std::string_view str, int32_t attr, int row, int col) {
  setattr(attr);
  write_text_at(stdscr, str, row, col);
}

void wprintv(WINDOW *win, std::string_view str, int32_t attr, int row, int col) {
  wsetattr(win, attr);
  write_text_at(win, str, row, col);
}

void display_str(int row, int col, int32_t attr, std::string_view str) { printv(str, attr, row, col); }
void wdisplay_str(WINDOW *win, int row, int col, int32_t attr, std::string_view str) {
  wprintv(win, str, attr, row, col);
}

void fdisp_printf(int row, int col, int32_t attr, const char *fmt, ...) {
  char text[kFormattedText];
  va_list arguments;
  va_start(arguments, fmt);
  std::vsnprintf(text, sizeof text, fmt, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): it is, above
  va_end(arguments);
  printv(text, attr, row, col);
}

void wfdisp_printf(WINDOW *win, int row, int col, int32_t attr, const char *fmt, ...) {
  char text[kFormattedText];
  va_list arguments;
  va_start(arguments, fmt);
  std::vsnprintf(text, sizeof text, fmt, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): it is, above
  va_end(arguments);
  wprintv(win, text, attr, row, col);
}

void wprintv_cut(WINDOW *win, std::string_view str, int32_t attr, int row, int col, int width) {
  wsetattr(win, attr);
  write_text_at(win, str, row, col, width);
}

// --- clearing

void cls_on(int row1, int col1, int row2, int col2, int32_t attr) {
  ffill_area(row1, col1, row2 - 1, col2 - 1, ' ', attr);
}

void cls() { cls_attr(kClearedAttr); }

void cls_attr(int32_t attr) {
  cls_on(0, 0, kScreenRows, kClearedColumns, attr);
  c_home();
}

void wcls(WINDOW *win) { wclear(win); }  // goes home, too

// --- lines, frames, areas

void get_frame_pieces(chtype pieces[8], int style) {
  const chtype line[8] = {ACS_HLINE,    ACS_VLINE,    ACS_HLINE,    ACS_VLINE,
                          ACS_ULCORNER, ACS_URCORNER, ACS_LRCORNER, ACS_LLCORNER};
  for (size_t i = 0; i < std::size(line); ++i) pieces[i] = style == kInvisibleFrame ? ' ' : line[i];
}

// kept: the length is the end coordinate, callers count on the screen's edge to cut the line
void fdraw_line(int row1, int col1, int row2, int col2, chtype ch, int32_t attr) {
  setattr(attr);
  if (col1 == col2) {
    if (row1 > row2) swap(&row1, &row2);
    if (wmove(stdscr, row1, col1) == OK) wvline(stdscr, shown_piece(ch), row2);
  } else {
    if (col1 > col2) swap(&col1, &col2);
    if (wmove(stdscr, row1, col1) == OK) whline(stdscr, shown_piece(ch), col2);
  }
}

void wfdraw_hline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr) {
  wsetattr(win, attr);
  if (wmove(win, row, col) == OK) whline(win, shown_piece(ch), length);
}

void wfdraw_vline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr) {
  wsetattr(win, attr);
  if (wmove(win, row, col) == OK) wvline(win, shown_piece(ch), length);
}

void wfdraw_line(WINDOW *win, int row, int col, int vlength, int hlength, chtype ch, int32_t attr) {
  wfdraw_hline(win, row, col, hlength, ch, attr);
  wfdraw_vline(win, row, col, vlength, ch, attr);
}

void fdraw_rect(int row1, int col1, int row2, int col2, int32_t attr, const chtype pieces[8]) {
  fdraw_line(row1, col1, row1, col2, pieces[0], attr);
  fdraw_line(row1, col2, row2, col2, pieces[1], attr);
  fdraw_line(row2, col2, row2, col1, pieces[2], attr);
  fdraw_line(row2, col1, row1, col1, pieces[3], attr);
  const int corners[4][2] = {{row1, col1}, {row1, col2}, {row2, col2}, {row2, col1}};
  for (int i = 0; i < 4; ++i) putcharv(static_cast<int>(pieces[4 + i]), attr, corners[i][0], corners[i][1]);
}

void wfdraw_rect(WINDOW *win, int row, int col, int height, int width, int32_t attr, const chtype pieces[8]) {
  const int bottom = row + height - 1;
  const int right = col + width - 1;
  wfdraw_hline(win, row, col, width, pieces[0], attr);
  wfdraw_vline(win, row, right, height, pieces[1], attr);
  wfdraw_hline(win, bottom, col, width, pieces[2], attr);
  wfdraw_vline(win, row, col, height, pieces[3], attr);
  const int corners[4][2] = {{row, col}, {row, right}, {bottom, right}, {bottom, col}};
  for (int i = 0; i < 4; ++i) wputcharv(win, static_cast<int>(pieces[4 + i]), attr, corners[i][0], corners[i][1]);
}

void wfdraw_frame_size(WINDOW *win, int row, int col, int height, int width, int32_t attr, int style) {
  chtype pieces[8];
  get_frame_pieces(pieces, style);
  wfdraw_rect(win, row, col, height, width, attr, pieces);
}

void wfdraw_frame(WINDOW *win, int32_t attr, int style) {
  chtype pieces[8];
  get_frame_pieces(pieces, style);
  wsetattr(win, attr);
  wborder(win, pieces[3], pieces[1], pieces[0], pieces[2], pieces[4], pieces[5], pieces[7], pieces[6]);
}

void wfdraw_separator(WINDOW *win, int row, int32_t attr) {
  const int last = getmaxx(win) - 1;
  wputcharv(win, static_cast<int>(ACS_LTEE), attr, row, 0);
  wfdraw_hline(win, row, 1, last - 1, ACS_HLINE, attr);
  wputcharv(win, static_cast<int>(ACS_RTEE), attr, row, last);
}

void ffill_area(int row1, int col1, int row2, int col2, int ch, int32_t attr) {
  for (int row = row1; row <= row2; ++row) {
    for (int col = col1; col <= col2; ++col) putcharv(ch, attr, row, col);
  }
}

void wffill_area(WINDOW *win, int row, int col, int height, int width, int ch, int32_t attr) {
  for (int i = 0; i < height; ++i) wfdraw_hline(win, row + i, col, width, static_cast<chtype>(ch), attr);
}

void wffill_full_area(WINDOW *win, int ch, int32_t attr) {
  wffill_area(win, 1, 1, getmaxy(win) - 2, getmaxx(win) - 2, ch, attr);
}

void fdraw_box(int row1, int col1, int row2, int col2, int32_t frameattr, int style, int32_t fillattr, int fillch) {
  chtype pieces[8];
  get_frame_pieces(pieces, style);
  ffill_area(row1, col1, row2, col2, fillch, fillattr);
  fdraw_rect(row1, col1, row2, col2, frameattr, pieces);
}

void wfdraw_box(WINDOW *win, int row, int col, int height, int width, int32_t frameattr, int style, int32_t fillattr,
                int fillch) {
  wffill_area(win, row, col, height, width, fillch, fillattr);
  wfdraw_frame_size(win, row, col, height, width, frameattr, style);
}

void swap(int *a, int *b) { std::swap(*a, *b); }

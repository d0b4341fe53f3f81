// Blocks of the image and the window, values, and small text functions of the forms.
#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>

#include "screen/field_cells.h"
#include "screen/maskelib.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/times.h"

namespace {

constexpr int kDecimal = 1;
constexpr int kHexadecimal = 2;
constexpr int kTextValue = 3;

std::string_view text_of(std::span<const char> cells) { return {cells.data(), cells.size()}; }

// The window's current attribute, to write without changing it.
int32_t current_attr(WINDOW *win) { return getattrs(win); }

void fill_block(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr, char ch) {
  wsetattr(win, attr);
  draw_blk(win, Edit_screen, row1, col1, row2, col2, ch, 1);
  wsetattr(win, kAttrNormal);
}

// A value's text into its cells of the image and the window.
void show_value(WINDOW *win, int row, int col, int32_t attr, const char *value, int length, int mode) {
  const std::span<char> cells = image_cells(Edit_screen, row, col, length);
  const bool number = mode != kTextValue;
  char text[kImageColumns + 1];
  const int width = static_cast<int>(cells.size());
  cpynstr(text, value, width + 1);
  maskelib::strpad(text, width, number && null_unt == 0 ? '0' : ' ', number ? 2 : 1, 1);

  set_sysattr(attr);  // kept: the window draws in the attribute that its mask has set
  fill_cells(cells, text);
  draw_cells(win, text, current_attr(win), row, col);
  wsetattr(win, kAttrNormal);
}

}  // namespace

void draw_blk(WINDOW *win, char *image, int row1, int col1, int row2, int col2, char ch, int fill) {
  for (int row = std::max(row1, 0); row <= std::min(row2, kImageRows - 1); ++row) {
    const std::span<char> cells = image_cells(image, row, col1, col2 - col1 + 1);
    if (fill != 0) std::ranges::fill(cells, ch);
    const std::string_view text = text_of(cells);
    draw_cells(win, fill != 0 ? text : text.substr(0, text.find('\0')), current_attr(win), row, col1);
  }
}

void wattrib(WINDOW *win, int row, int col, int length, int32_t attr) {
  std::string text(text_of(image_cells(Edit_screen, row, col, length)));
  if (attr == 0) std::ranges::fill(text, ' ');
  wsetattr(win, attr);
  draw_cells(win, text, attr, row, col);
}

void drawln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr, char ch) {
  fill_block(win, row1, col1, row2, col2, attr, ch);
}

void clsln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr) {
  fill_block(win, row1, col1, row2, col2, attr, ' ');
}

void insert_char(WINDOW *win, int row, int pos, int end, char ch) {
  const std::span<char> cells = image_cells(Edit_screen, row, pos, end - pos + 1);
  if (cells.empty()) return;
  std::shift_right(cells.begin(), cells.end(), 1);
  cells.front() = ch;
  draw_cells(win, text_of(cells), current_attr(win), row, pos);
}

void delete_char(WINDOW *win, int row, int pos, int end, char fill) {
  const std::span<char> cells = image_cells(Edit_screen, row, pos, end - pos + 1);
  if (cells.empty()) return;
  std::shift_left(cells.begin(), cells.end(), 1);
  cells.back() = fill;
  draw_cells(win, text_of(cells), current_attr(win), row, pos);
}

void disp_value(WINDOW *win, int row, int col, int32_t attr, intptr_t value, int length, int mode) {
  char digits[34];
  const auto number = static_cast<int32_t>(value);
  if (mode == kDecimal) show_value(win, row, col, attr, qltoa(number, digits, 10), length, mode);
  if (mode == kHexadecimal) show_value(win, row, col, attr, qltoa(number, digits, 16), length, mode);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): one parameter carries numbers and texts
  if (mode == kTextValue) show_value(win, row, col, attr, reinterpret_cast<const char *>(value), length, mode);
}

void dispdez(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length) {
  disp_value(win, row, col, attr, value, length, kDecimal);
}

void disphex(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length) {
  disp_value(win, row, col, attr, value, length, kHexadecimal);
}

void display(WINDOW *win, int row, int col, int32_t attr, const char *value, int length) {
  disp_value(win, row, col, attr, reinterpret_cast<intptr_t>(value), length, kTextValue);
}

char *maskelib::strpad(char *str, int length, char pad, int mode, int terminate) {
  const auto width = static_cast<size_t>(std::max(length, 0));
  const size_t kept = strnlen(str, width);
  const size_t missing = width - kept;
  const size_t in_front = mode == 2 ? missing : mode == 3 ? missing / 2 : 0;

  std::memmove(str + in_front, str, kept);
  std::memset(str, pad, in_front);
  std::memset(str + in_front + kept, pad, missing - in_front);
  if (terminate != 0) str[width] = '\0';
  return str;
}

char *stripstr(char *str) { return UCTstrip_trailing_char(str, ' '); }

char *drop_leading_zeros(char *str) { return qitoa(to_int32(str), str, 10); }

int timem(char *buf) {
  UCTtime_to_hoursec(buf);
  return 1;
}

int datem(char *buf) {
  const time_t now = std::time(nullptr);
  if (ctime_r(&now, buf) == nullptr) buf[0] = '\0';
  return 1;
}

void dobeep(int n) {
  if (n < 6) beep();
}

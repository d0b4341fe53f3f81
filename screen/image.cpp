#include "screen/image.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>

#include "record/fields.h"
#include "screen/draw.h"
#include "util/numbers.h"
#include "util/text.h"

char *Edit_screen, *User1_screen, *User2_screen, *Sysbuff;

namespace {

std::string_view text_of(std::span<const char> cells) { return {cells.data(), cells.size()}; }

// The window's current attribute, to write without changing it.
int32_t current_attr(WINDOW *win) { return getattrs(win); }

// A value's text into its cells of the image and the window.
void show_value(WINDOW *win, int row, int col, int32_t attr, const char *value, int length, Alignment align) {
  const std::span<char> cells = image_cells(Edit_screen, row, col, length);
  char text[kImageColumns + 1];
  const int width = static_cast<int>(cells.size());
  cpynstr(text, value, width + 1);
  strpad(text, width, align == kRight && null_unt == 0 ? '0' : ' ', align, 1);

  set_sysattr(attr);  // kept: the window draws in the attribute that its mask has set
  fill_cells(cells, text);
  draw_cells(win, text, current_attr(win), row, col);
  wsetattr(win, kAttrNormal);
}

}  // namespace

int init_masklib() {
  static std::unique_ptr<char[]> buffers[4];
  char **const names[] = {&Edit_screen, &User1_screen, &User2_screen, &Sysbuff};
  for (size_t i = 0; i < std::size(buffers); ++i) {
    if (buffers[i] == nullptr) buffers[i].reset(new (std::nothrow) char[kImageSize]());
    if (buffers[i] == nullptr) return 1;
    *names[i] = buffers[i].get();
  }
  mcls();
  return 0;
}

void clear_buffer(char *buf, char ch) { std::memset(buf, ch, kImageSize); }

void mcls() { clear_buffer(Edit_screen, ' '); }

void copy_screen(char *dst, const char *src) { std::memmove(dst, src, kImageSize); }

void set_sysattr(int32_t attr) { setattr(attr); }

// --- cells

std::span<char> image_cells(char *image, int row, int col, int length) {
  if (image == nullptr || row < 0 || row >= kImageRows || col < 0 || col >= kImageColumns) return {};
  const int count = std::clamp(length, 0, kImageColumns - col);
  return std::span(image, kImageSize).subspan(cell_index(row, col), static_cast<size_t>(count));
}

void fill_cells(std::span<char> cells, std::string_view text) {
  const std::string_view taken = text.substr(0, cells.size());
  std::copy(taken.begin(), taken.end(), cells.begin());
  std::fill(cells.begin() + static_cast<std::ptrdiff_t>(taken.size()), cells.end(), ' ');
}

void draw_cells(WINDOW *win, std::string_view text, int32_t attr, int row, int col) {
  std::string shown(text);
  std::ranges::replace(shown, '\0', ' ');
  wprintv(win, shown, attr, row, col);
}

// --- blocks

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
  draw_cells(win, text, attr, row, col);
}

void drawln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr, char ch) {
  wsetattr(win, attr);
  draw_blk(win, Edit_screen, row1, col1, row2, col2, ch, 1);
  wsetattr(win, kAttrNormal);
}

void clsln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr) {
  drawln(win, row1, col1, row2, col2, attr, ' ');
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
  const auto number = static_cast<int32_t>(value);
  if (mode == kDecimal) dispdez(win, row, col, attr, number, length);
  if (mode == kHexadecimal) disphex(win, row, col, attr, number, length);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): one parameter carries numbers and texts
  if (mode == kTextValue) display(win, row, col, attr, reinterpret_cast<const char *>(value), length);
}

void dispdez(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length) {
  char digits[34];
  show_value(win, row, col, attr, qltoa(value, digits, 10), length, kRight);
}

void disphex(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length) {
  char digits[34];
  show_value(win, row, col, attr, qltoa(value, digits, 16), length, kRight);
}

void display(WINDOW *win, int row, int col, int32_t attr, const char *value, int length) {
  show_value(win, row, col, attr, value, length, kLeft);
}

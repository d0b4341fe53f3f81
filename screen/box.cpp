#include "screen/box.h"

#include <algorithm>
#include <string>

#include "screen/draw.h"
#include "screen/keys.h"
#include "screen/menu.h"
#include "screen/texts.h"
#include "util/text.h"
#include "util/times.h"
#include "util/tokens.h"

namespace {

constexpr int kBoxRow = 9;
constexpr int kBoxColumn = 4;
constexpr int kBoxWidth = 71;

Window open_box(int lines, int32_t attr) {
  Window box = open_window(lines + 2, kBoxWidth, kBoxRow, kBoxColumn);
  if (box == nullptr) return box;
  wfdraw_frame(box.get(), attr, kSingleLine);
  wffill_full_area(box.get(), ' ', attr);
  return box;
}

// `text` where a line as long as `centred` is centred.
void draw_line(WINDOW *box, int row, const std::string &text, const std::string &centred, int32_t attr) {
  const int length = std::min(static_cast<int>(centred.size()), kBoxWidth - 2);
  const int col = kBoxWidth / 2 - length / 2;
  wprintv_cut(box, text, attr, row, col, kBoxWidth - 1 - col);
}

Window open_error_sign(const WINDOW *parent, int lines, int32_t attr) {
  Window sign = open_window(3, 16, lines + 16, getmaxx(parent) / 2 - 6);
  if (sign == nullptr) return sign;
  wfdraw_frame(sign.get(), kAttrHighlight, kSingleLine);
  wffill_full_area(sign.get(), ' ', attr);
  wprintv(sign.get(), error_label[language], kAttrHighlight, 1, 1);
  wshow(sign.get());
  return sign;
}

}  // namespace

void draw_box(WINDOW *parent, const char *text, const char *sep, int32_t attr, int32_t textattr, int error) {
  const int lines = numtoken(text, sep);
  const Window box = open_box(lines, attr);
  if (box == nullptr) return;
  for (int i = 1; i <= lines; ++i) {
    const std::string line = text_piece(text, sep, i);
    draw_line(box.get(), i, line, line, textattr);
  }
  const Window sign = error != 0 ? open_error_sign(parent, lines, attr) : nullptr;
  move_to_text(box.get());
  wait_for_key(box.get());
}

void draw_box_nowait(WINDOW *, const char *text, const char *sep, int32_t attr) {
  const int lines = numtoken(text, sep);
  const Window box = open_box(lines, attr);
  if (box == nullptr) return;
  // kept: the whole text on every line, callers show one line only
  for (int i = 1; i <= lines; ++i) draw_line(box.get(), i, text, text_piece(text, sep, i), attr);
  move_to_text(box.get());
  wshow(box.get());
  update_terminal(box.get());
  Xsleep(1);
}

void draw_edit_background(WINDOW *win, int32_t attr) {
  const int width = getmaxx(win);
  const std::string title = background_label[language];
  wffill_area(win, 0, 0, getmaxy(win), width, '#', attr);
  wfdraw_frame_size(win, 2, 3, 3, width - 6, attr, kSingleLine);
  wffill_area(win, 3, 4, 1, width - 8, ' ', attr);
  wprintv(win, title, attr, 3, 3 + (width - 6 - static_cast<int>(title.size())) / 2);
  wshow(win);
}

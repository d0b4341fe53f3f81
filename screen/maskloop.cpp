#include "screen/maskloop.h"

#include <algorithm>
#include <string>

#include "screen/draw.h"
#include "screen/keys.h"
#include "screen/texts.h"

namespace {

std::string frame_text(const char *label) {
  const std::string text = label;
  const size_t place = text.find("%c");
  return place == std::string::npos ? text : text.substr(0, place) + '<' + text.substr(place + 2);
}

// True when the field's value is acceptable; else the person was told.
bool check_field(const Mask &mask, WINDOW *win, int field) {
  const bool accepted = mask.check(mask.context, field);
  show_field(win, mask.record, mask.fields, field, attr_dkl);
  if (!accepted) mask.show_error(mask.context, win, field);
  return accepted;
}

struct ShownMask {
  const Mask &mask;
  int32_t attr;
};

// Says at once, without taking a key, what is wrong with a value that the range check does not know of.
void show_notice(const void *shown, WINDOW *win) {
  const auto &[mask, attr] = *static_cast<const ShownMask *>(shown);
  const int row = getmaxy(win) - 3;
  wfdraw_separator(win, row, attr);
  const char *text = mask.notice(mask.context);
  if (text != nullptr) wprintv_cut(win, text, kAttrHighlight, row, 2, getmaxx(win) - 4);
}

enum class Verdict { go_on, left, refused };

// One key that ended the edit of `field`, which becomes the next field to edit.
Verdict take_key(const Mask &mask, WINDOW *win, int &field, int key) {
  if (key == kKeyHelp) {
    mask.show_help(mask.context, win, field);
    return Verdict::go_on;
  }
  const bool opens_list = is_enter(key) && mask.has_list(mask.context, field);
  if (opens_list && (mask.rules & kPickStays)) {
    mask.pick(mask.context, win, field);
    return Verdict::go_on;
  }
  const MaskStep step = mask_step(field, key, mask.count, mask.rules);
  if (step.check && !check_field(mask, win, field)) {
    if (step.leaving && (mask.rules & kRefuseAtEnd)) return Verdict::refused;
    // a value that can't be mended here must not keep the person in the mask
    if (!is_read_only_field(mask.fields[field].type)) return Verdict::go_on;
  }
  if (opens_list) mask.pick(mask.context, win, field);
  if (step.finish && mask.may_leave != nullptr && !mask.may_leave(mask.context, win)) return Verdict::go_on;
  if (step.leaving) return Verdict::left;
  field = step.next;
  return Verdict::go_on;
}

}  // namespace

void draw_frame_label(WINDOW *win, int32_t attr, const FrameLabel &label) {
  const std::string text = frame_text(label.label[language]);
  const int width = getmaxx(win);
  const int col = label.col == kInTheMiddle ? std::max(1, (width - static_cast<int>(text.size())) / 2) : label.col;
  wprintv_cut(win, text, attr, label.row, col, width - 1 - col);
}

void draw_mask_frame(WINDOW *win, int32_t attr, std::span<const FrameLabel> labels) {
  const int rows = getmaxy(win);
  wfdraw_frame(win, attr, kSingleLine);
  wffill_full_area(win, ' ', attr);
  for (const FrameLabel &label : labels) draw_frame_label(win, attr, label);
  wfdraw_separator(win, rows - 3, attr);
  draw_frame_label(win, attr, {rows - 2, kInTheMiddle, keyline_label});
}

MaskStep mask_step(int field, int key, int count, unsigned rules) {
  MaskStep step = {};
  step.next = field;
  const bool ends = steuerung(&step.next, key, count) == 0;
  const bool finishing_key = key == kKeyF10 || (is_enter(key) && field == count - 1);
  step.finish = finishing_key && (rules & kFinishKeys);
  step.leaving = ends || step.finish;
  const bool moves = step.leaving || step.next != field;
  step.check = (rules & kCheckEveryKey) || (moves && key != kKeyF10);
  return step;
}

bool run_mask(const Mask &mask, int32_t attr) {
  const Window win = open_window(mask.rows, mask.columns, mask.row, mask.column);
  if (win == nullptr) return false;
  draw_mask_frame(win.get(), attr, mask.labels);
  if (mask.draw_more != nullptr) mask.draw_more(mask.context, win.get(), attr);
  show_rec(win.get(), mask.record, mask.fields, attr);
  const ShownMask shown = {mask, attr};
  Verdict verdict = Verdict::go_on;
  for (int field = 0; verdict == Verdict::go_on;) {
    if (mask.prepare != nullptr) mask.prepare(mask.context);
    show_notice(&shown, win.get());
    const int key = edit_field(win.get(), mask.record, mask.fields, field, {show_notice, &shown});
    verdict = take_key(mask, win.get(), field, key);
  }
  return verdict == Verdict::left;
}

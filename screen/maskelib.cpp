#include "screen/maskelib.h"

#include <algorithm>
#include <span>
#include <string>

#include "screen/draw.h"
#include "screen/image.h"
#include "screen/keys.h"
#include "util/charset.h"
#include "util/text.h"
#include "util/trace.h"

constexpr int32_t kFirstAttribute = 0x100000;
constexpr int32_t kNoField = -1;

int32_t attr_dkl = kFirstAttribute;
int32_t attr_hell = kAttrHighlight;
int32_t old = kNoField;
int32_t case_up, anz_block, normal_cu, num_lock, key_wait, ins_flag, swirch_cu;

namespace {

constexpr int kFieldTextSize = 256;  // longest field and terminator

// A cell whose character lost its other cells. A control byte: it shows as "?".
constexpr char kHalfCharacter = 0x1A;

size_t character_cells(std::span<const char> cells, size_t at, Charset charset) {
  return character_length(std::string_view(cells.data(), cells.size()).substr(at), charset);
}

// Before a change at `boundary`: the character that has cells on both sides of it becomes halves.
void part_characters(std::span<char> cells, int boundary, Charset charset) {
  const auto limit = std::min(static_cast<size_t>(boundary), cells.size());
  for (size_t at = 0; at < limit;) {
    const size_t count = character_cells(cells, at, charset);
    if (at + count > limit) std::ranges::fill(cells.subspan(at, count), kHalfCharacter);
    at += count;
  }
}

// Halves, and in Japanese all bytes that are no character, become blanks.
void blank_halves(std::span<char> cells, Charset charset) {
  const bool japanese = charset == Charset::euc_jp || charset == Charset::raw_euc_jp;
  for (size_t at = 0; at < cells.size();) {
    const size_t count = character_cells(cells, at, charset);
    const bool broken = japanese && count == 1 && static_cast<unsigned char>(cells[at]) >= 0x80;
    if (cells[at] == kHalfCharacter || broken) cells[at] = ' ';
    at += count;
  }
}

// Keys that end an edit from any cell, besides Enter.
constexpr int kEndingKeys[] = {kKeyTab, kKeyHelp, kKeyEscape, kKeyUp, kKeyDown, kKeyHome, kKeyEnd, kKeyF10};
// Keys that go on to the next field.
constexpr int kControlA = 1;
constexpr int kForwardKeys[] = {kKeyTab, kKeyDown, kKeyRight, kKeyReturn, kControlA};

constexpr int kLastControl = 31;

// A key that was typed; for a character all of its bytes, each of which takes a cell.
struct Typed {
  int key;
  std::string bytes;
};

struct FieldEdit {
  WINDOW *win;
  void *rec;
  const FieldDescriptor *tab;
  int i;
  const FieldDescriptor &field;
  std::span<char> cells;
  Charset charset = present_charset();
  int position = 0;      // the cell of the cursor
  bool changed = false;  // something was typed into the cells
  bool is_news = false;  // and who watches was not told yet
};

Typed take_typed(WINDOW *win) {
  const int key = editkey(win);
  return {key, static_cast<char>(key) + take_rest_of_character()};
}

// Before a change of `count` cells: the characters that it cuts through become halves.
void part_at_edges(FieldEdit &edit, int count) {
  edit.changed = edit.is_news = true;
  if (edit.charset == Charset::bytes) return;
  part_characters(edit.cells, edit.position, edit.charset);
  part_characters(edit.cells, edit.position + count, edit.charset);
}

// The whole field is redrawn after a change: what a byte shows as depends on the bytes beside it.
void draw_edited(const FieldEdit &edit) {
  wattrib(edit.win, edit.field.row, edit.field.col, edit.field.length, attr_hell);
}

void enter_character(FieldEdit &edit, const std::string &bytes) {
  const int count = static_cast<int>(bytes.size());
  part_at_edges(edit, count);
  std::ranges::copy(bytes, edit.cells.begin() + edit.position);
  edit.position += count;
  draw_edited(edit);
}

void erase_before(FieldEdit &edit) {
  const int last_column = edit.field.col + static_cast<int>(edit.cells.size()) - 1;
  --edit.position;
  part_at_edges(edit, 1);
  delete_char(edit.win, edit.field.row, edit.field.col + edit.position, last_column, ' ');
  draw_edited(edit);
}

// Does what was typed; the key that ends the edit, 0 to go on.
int apply_typed(FieldEdit &edit, const Typed &typed) {
  const int length = static_cast<int>(edit.cells.size());
  const int cells = static_cast<int>(typed.bytes.size());
  const FieldStep step = field_step(edit.field.type, length, edit.position, typed.key, cells);
  if (step.action == FieldAction::beep) refuse_typed();
  if (step.action == FieldAction::move_left) --edit.position;
  if (step.action == FieldAction::move_right) ++edit.position;
  if (step.action == FieldAction::erase) erase_before(edit);
  if (step.action == FieldAction::enter) enter_character(edit, typed.bytes);
  return step.key;
}

// The field's text as it is when the field is left now.
std::string finished_text(const FieldEdit &edit) {
  std::string cells(edit.cells.begin(), edit.cells.end());
  if (edit.changed && edit.charset != Charset::bytes) blank_halves(cells, edit.charset);
  char text[kImageColumns + 1];
  cpynstr(text, cells);
  finish_text(text, edit.field.type);
  return text;
}

// The cells may not show all of a number: it is taken only when it was typed.
void store(const FieldEdit &edit, const std::string &text) {
  if (edit.changed || !is_number_field(edit.field.type)) put_field(edit.rec, edit.tab, edit.i, text.c_str());
}

void tell(FieldEdit &edit, const FieldWatch &watch) {
  if (!edit.is_news || watch.changed == nullptr) return;
  edit.is_news = false;
  store(edit, finished_text(edit));
  watch.changed(watch.context, edit.win);
}

int edit_cells(FieldEdit &edit, const FieldWatch &watch) {
  draw_edited(edit);
  show_cursor(edit.win, true);
  int ended = 0;
  while (ended == 0) {
    wcursor(edit.win, edit.field.row, edit.field.col + edit.position);
    ended = apply_typed(edit, take_typed(edit.win));
    tell(edit, watch);
  }
  show_cursor(edit.win, false);
  return ended;
}

// Takes the text of the field's cells back into the record.
void store_cells(const FieldEdit &edit) {
  const std::string text = finished_text(edit);
  // kept: diagnosis scripts know the line by this name
  if (debugLevel > kTraceDetails) {
    myfprintf("maskelib.c:edit_field:field_index=%d|buffer=%s|\n", edit.i, text.c_str());
  }
  store(edit, text);
}

}  // namespace

int show_field(WINDOW *win, const void *rec, const FieldDescriptor *tab, int i, int32_t attr) {
  char text[kFieldTextSize] = "";
  if (get_field(rec, tab, i, text) != 0) return -1;
  const FieldDescriptor &field = tab[i];
  if (is_skip_field(field.type)) return 0;

  const std::span<char> cells = image_cells(Edit_screen, field.row, field.col, field.length);
  fill_cells(cells, text);
  draw_cells(win, {cells.data(), cells.size()}, attr, field.row, field.col);
  wshow(win);
  wsetattr(win, kAttrNormal);
  return 0;
}

void show_rec(WINDOW *win, const void *rec, const FieldDescriptor *tab, int32_t attr) {
  for (int i = 0; show_field(win, rec, tab, i, attr) == 0;) ++i;
}

void reset_masklib() {
  attr_dkl = kFirstAttribute;
  attr_hell = kAttrHighlight;
  old = kNoField;
  null_unt = 1;
  mcls();
}

FieldStep field_step(int type, int length, int position, int key, int cells) {
  if (is_enter(key)) return {FieldAction::end, kKeyReturn};
  if (std::ranges::count(kEndingKeys, key) != 0) return {FieldAction::end, key};
  if (key == kKeyRight) {
    return position < length - 1 ? FieldStep{FieldAction::move_right, 0} : FieldStep{FieldAction::end, key};
  }
  if (key == kKeyLeft) return position > 0 ? FieldStep{FieldAction::move_left, 0} : FieldStep{FieldAction::end, key};
  if (key == kKeyControlH || key == kKeyBackspace) {
    if (position == 0) return {FieldAction::ignore, 0};
    return {is_read_only_field(type) ? FieldAction::beep : FieldAction::erase, 0};
  }
  if (key <= kLastControl) return {FieldAction::ignore, 0};
  const bool fits = position + cells <= length && accepts_character(type, position, key);
  return {fits ? FieldAction::enter : FieldAction::beep, 0};
}

int edit_field(WINDOW *win, void *rec, const FieldDescriptor *tab, int i, const FieldWatch &watch) {
  if (recptr(rec, tab, i) == nullptr) return kKeyEscape;
  const FieldDescriptor &field = tab[i];
  // A skip field is passed over in the direction in which the person moves: away from the field edited last. From field
  // 0 there is one direction only.
  const int last_edited = i == 0 ? kNoField : old;
  old = i == 0 ? kNoField : i;
  if (is_skip_field(field.type)) return last_edited >= i ? kKeyUp : kKeyDown;

  const std::span<char> cells = image_cells(Edit_screen, field.row, field.col, field.length);
  FieldEdit edit{win, rec, tab, i, field, cells};
  const int key = edit_cells(edit, watch);
  if (!cells.empty()) store_cells(edit);
  show_field(win, rec, tab, i, attr_dkl);
  return key;
}

int steuerung(int *i, int key, int count) {
  const int last = count - 1;
  if (key == kKeyEscape) return 0;
  if (key == kKeyTab && *i >= last) {
    *i = count;
    return 0;
  }
  int next = *i;
  if (std::ranges::count(kForwardKeys, key) != 0) ++next;
  if (key == kKeyUp || key == kKeyLeft) --next;
  if (key == kKeyHome) next = 0;
  if (key == kKeyEnd) next = last;
  *i = std::max(0, std::min(next, last));
  return -1;
}

void dobeep(int n) {
  if (n < 6) beep();
}

// Editing one field of a form, and moving between fields.
#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "screen/field_cells.h"
#include "screen/maskelib.h"
#include "util/language.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

enum class Takes { kOnly, kAllBut };

// Which characters may be typed into a field.
struct FieldFilter {
  int type;
  Takes takes;
  std::string_view characters;
  std::string_view not_first;  // refused in the first cell
};

constexpr std::string_view kDigits = "0123456789";

constexpr FieldFilter kFilters[] = {
    // clang-format off
  // type  takes           characters              not in the first cell
    {   0, Takes::kAllBut, "|\\",                  ""      },
    {   1, Takes::kOnly,   "0123456789. ",         ""      },
    {   2, Takes::kOnly,   "0123456789. ",         ""      },
    {   3, Takes::kAllBut, "|\\",                  kDigits },
    {   4, Takes::kOnly,   "0123456789. ",         ""      },
    {   5, Takes::kAllBut, "|",                    ""      },
    {   6, Takes::kOnly,   "0123456789/.: ",       ""      },
    {   7, Takes::kOnly,   "0123456789/.: ",       ""      },
    {   8, Takes::kAllBut, "|",                    ""      },
    {   9, Takes::kAllBut, "|",                    ""      },
    {  10, Takes::kAllBut, "|\\:;?<&>*^!,",        kDigits },
    {  11, Takes::kAllBut, "|\\();\",",            kDigits },
    {  12, Takes::kOnly,   "0123456789 ",          ""      },
    {  13, Takes::kOnly,   "",                     ""      },
    {  14, Takes::kOnly,   "0123456789 default",   ""      },
    {  15, Takes::kAllBut, "|\\)(;\",",            "."     },
    {  16, Takes::kOnly,   "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", "" },
    {  17, Takes::kAllBut, "|\\();\"",             ""      },
    {  18, Takes::kOnly,   "",                     ""      },
    {  19, Takes::kOnly,   "",                     ""      },
    {  20, Takes::kOnly,   "",                     ""      },
    // clang-format on
};
constexpr FieldFilter kOtherTypes = {kFieldEnd, Takes::kAllBut, "|", ""};

constexpr bool rows_stand_at_their_type() {
  for (size_t i = 0; i < std::size(kFilters); ++i) {
    if (kFilters[i].type != static_cast<int>(i)) return false;
  }
  return std::size(kFilters) == kFieldReadOnlyNumber + 1;
}
static_assert(rows_stand_at_their_type());

const FieldFilter &filter_of(int type) {
  return type >= 0 && type <= kFieldReadOnlyNumber ? kFilters[type] : kOtherTypes;
}

// Keys that end an edit from any cell, and what they are told as.
struct EndingKey {
  int key;
  int result;
};
constexpr EndingKey kEndingKeys[] = {
    {kKeyTab, kKeyTab},   {kKeyLineFeed, kKeyReturn}, {kKeyReturn, kKeyReturn}, {kKeyEnter, kKeyReturn},
    {kKeyHelp, kKeyHelp}, {kKeyEscape, kKeyEscape},   {kKeyUp, kKeyUp},         {kKeyDown, kKeyDown},
    {kKeyHome, kKeyHome}, {kKeyEnd, kKeyEnd},         {kKeyF10, kKeyF10},
};

constexpr int kControlH = 8;
constexpr int kLastControl = 31;
constexpr int kDelete = 127;

// A key that was typed; a two-byte character is one.
struct Typed {
  int key;  // the character's first byte
  char second;
  int cells;
};

struct FieldEdit {
  WINDOW *win;
  const FieldDescriptor &field;
  std::span<char> cells;
  int position = 0;  // the cell of the cursor
  int unread = 0;    // a key that was read as the rest of a character, but is none
};

int take_key(FieldEdit &edit) { return edit.unread != 0 ? std::exchange(edit.unread, 0) : winkey(edit.win); }

Typed take_typed(FieldEdit &edit) {
  const int key = take_key(edit);
  if (language == 0 || key < 0x80 || key > 0xFF) return {key, 0, 1};
  if (!is_two_byte_part(key)) return {kKeyUnfit, 0, 1};
  const int second = take_key(edit);
  if (is_two_byte_part(second)) return {key, static_cast<char>(second), 2};
  edit.unread = second;
  return {kKeyUnfit, 0, 1};
}

// Breaks the two-byte characters that a change of `count` cells cuts through.
void part_at_edges(FieldEdit &edit, int count) {
  if (language == 0) return;
  part_characters(edit.cells, edit.position);
  part_characters(edit.cells, edit.position + count);
}

void enter_character(FieldEdit &edit, const Typed &typed) {
  part_at_edges(edit, typed.cells);
  const char bytes[2] = {static_cast<char>(typed.key), typed.second};
  std::copy_n(bytes, typed.cells, edit.cells.begin() + edit.position);
  edit.position += typed.cells;
}

void erase_before(FieldEdit &edit) {
  const int last_column = edit.field.col + static_cast<int>(edit.cells.size()) - 1;
  --edit.position;
  part_at_edges(edit, 1);
  delete_char(edit.win, edit.field.row, edit.field.col + edit.position, last_column, ' ');
}

// The whole field is redrawn after a change: what a byte shows as depends on the bytes beside it.
void draw_edited(const FieldEdit &edit) {
  wattrib(edit.win, edit.field.row, edit.field.col, edit.field.length, attr_hell);
}

// Does what was typed; the key that ends the edit, 0 to go on.
int apply_typed(FieldEdit &edit, const Typed &typed) {
  const int length = static_cast<int>(edit.cells.size());
  const FieldStep step = field_step(edit.field.type, length, edit.position, typed.key, typed.cells);
  switch (step.action) {
    case FieldAction::kIgnore:
    case FieldAction::kEnd:
      break;
    case FieldAction::kBeep:
      dobeep(1);
      break;
    case FieldAction::kMoveLeft:
      --edit.position;
      break;
    case FieldAction::kMoveRight:
      ++edit.position;
      break;
    case FieldAction::kErase:
      erase_before(edit);
      draw_edited(edit);
      break;
    case FieldAction::kEnter:
      enter_character(edit, typed);
      draw_edited(edit);
      break;
  }
  return step.key;
}

int edit_cells(FieldEdit &edit) {
  draw_edited(edit);
  show_cursor(edit.win, true);
  int ended = 0;
  while (ended == 0) {
    wcursor(edit.win, edit.field.row, edit.field.col + edit.position);
    wshow(edit.win);
    ended = apply_typed(edit, take_typed(edit));
  }
  show_cursor(edit.win, false);
  return ended;
}

// Takes the text of the field's cells back into the record.
void store_cells(void *rec, const FieldDescriptor *tab, int i, std::span<char> cells, bool changed) {
  if (changed && language != 0) blank_halves(cells);
  char text[kImageColumns + 1];
  cpynstr(text, {cells.data(), cells.size()});
  finish_text(text, tab[i].type);
  if (debugLevel > kTraceDetails) myfprintf("maskelib.c:edit_field:field_index=%d|buffer=%s|\n", i, text);
  // The cells may not show all of a number: it is taken only when it was typed.
  if (changed || !is_number_field(tab[i].type)) put_field(rec, tab, i, text);
}

}  // namespace

int accepts_character(int type, int position, int ch) {
  if (ch <= kLastControl || ch == kDelete || ch > 0xFF) return 0;
  const FieldFilter &filter = filter_of(type);
  const auto c = static_cast<char>(ch);
  if (position == 0 && filter.not_first.find(c) != std::string_view::npos) return 0;
  const bool listed = filter.characters.find(c) != std::string_view::npos;
  return listed == (filter.takes == Takes::kOnly) ? 1 : 0;
}

FieldStep field_step(int type, int length, int position, int key, int cells) {
  const auto *ending = std::ranges::find(kEndingKeys, key, &EndingKey::key);
  if (ending != std::end(kEndingKeys)) return {FieldAction::kEnd, ending->result};
  if (key == kKeyRight) {
    return position < length - 1 ? FieldStep{FieldAction::kMoveRight, 0} : FieldStep{FieldAction::kEnd, key};
  }
  if (key == kKeyLeft) return position > 0 ? FieldStep{FieldAction::kMoveLeft, 0} : FieldStep{FieldAction::kEnd, key};
  if (key == kControlH || key == kKeyBackspace) {
    if (position == 0) return {FieldAction::kIgnore, 0};
    return {is_read_only_field(type) ? FieldAction::kBeep : FieldAction::kErase, 0};
  }
  if (key <= kLastControl) return {FieldAction::kIgnore, 0};
  const bool fits = position + cells <= length && accepts_character(type, position, key) != 0;
  return {fits ? FieldAction::kEnter : FieldAction::kBeep, 0};
}

void finish_text(char *text, int type) {
  stripstr(text);
  if (text[0] == '\0') return;
  if (type == kFieldDigits || (type == kFieldDefaultOrDigits && std::strcmp(text, "default") != 0)) {
    drop_leading_zeros(text);
  }
}

int edit_field(WINDOW *win, void *rec, const FieldDescriptor *tab, int i) {
  if (recptr(rec, tab, i) == nullptr) return kKeyEscape;
  const FieldDescriptor &field = tab[i];
  const int last_edited = i == 0 ? -1 : old;
  old = i == 0 ? -1 : i;
  if (is_skip_field(field.type)) return last_edited >= i ? kKeyUp : kKeyDown;

  const std::span<char> cells = image_cells(Edit_screen, field.row, field.col, field.length);
  const std::string before(cells.begin(), cells.end());
  FieldEdit edit{win, field, cells};
  const int key = edit_cells(edit);
  if (!cells.empty()) store_cells(rec, tab, i, cells, !std::ranges::equal(cells, before));
  show_field(win, rec, tab, i, attr_dkl);
  return key;
}

int steuerung(int *i, int key, int count) {
  int next = *i;
  switch (key) {
    case kKeyEscape:
      return 0;
    case kKeyTab:
      if (next >= count - 1) {
        *i = count;
        return 0;
      }
      ++next;
      break;
    case kKeyDown:
    case kKeyRight:
    case kKeyReturn:
    case 1:  // Control-A
      ++next;
      break;
    case kKeyUp:
    case kKeyLeft:
      --next;
      break;
    case kKeyHome:
      next = 0;
      break;
    case kKeyEnd:
      next = count - 1;
      break;
    default:
      break;
  }
  *i = std::max(0, std::min(next, count - 1));
  return -1;
}

#include "screen/list.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "screen/draw.h"
#include "screen/keys.h"
#include "util/text.h"

namespace {

// Where an entry begins, or the text of one that looks no different when it is selected: such a list is read only.
struct Place {
  int row;
  int col;
};

Place draw_entry(WINDOW *win, const StringNode &node, bool selected, int align) {
  // The longest text that leaves the frame its columns: the last one where a text begins at `col`, else column 0, which
  // `width` less the text, or their halves, must not reach.
  const int room = align == kLeft    ? getmaxx(win) - 1 - node.col
                   : align == kRight ? node.width - 1
                                     : node.width / 2 * 2 - 1;
  const int length = std::max(std::min(lenstr(node.text), room), 0);
  const int col = align == kLeft ? node.col : align == kRight ? node.width - length : node.width / 2 - length / 2;
  wprintv_cut(win, node.text, selected ? node.attr_sel : node.attr, node.row, col, length);
  return {node.row, col};
}

Place draw_list_entry(WINDOW *win, const StringNode &node, bool selected, int row, int col, int width, int align) {
  const int32_t attr = selected ? node.attr_sel : node.attr;
  const int length = std::min(lenstr(node.text), width);
  const int indent = align == kLeft ? 0 : align == kRight ? width - length : width / 2 - length / 2;
  wfdraw_hline(win, row, col, width, ' ', attr);
  wprintv_cut(win, node.text, attr, row, col + indent, length);
  return {row, node.attr == node.attr_sel ? col + indent : col};
}

// The node at position `num`; null for a position that only a longer list has.
StringNode *entry_at(StringNode *list, int32_t num) {
  return num >= 1 && num <= get_last_entry_num(list) ? get_element_by_num(list, num, nullptr) : nullptr;
}

}  // namespace

StringNode *Insert_String(StringNode *list, const char *text, int32_t strid, int32_t attr, int32_t attr_sel,
                          int32_t row, int32_t col, int32_t width) {
  StringNode *const last = get_last_one(list, kOnlyWalk);
  auto *const node = new (std::nothrow) StringNode;
  if (node == nullptr) return nullptr;
  *node = {row, col, width, attr, attr_sel, "", strid, last == nullptr ? 1 : last->num + 1, last, nullptr};
  cpynstr(node->text, text);
  if (last != nullptr) last->next = node;
  return node;
}

int Remove_String(StringNode *list, int32_t num) {
  if (list == nullptr) return 0;
  const StringNode *const node = get_element_by_num(list, num, nullptr);
  if (node->prev != nullptr) node->prev->next = node->next;
  if (node->next != nullptr) node->next->prev = node->prev;
  delete node;
  return 1;
}

int RemoveFullList(StringNode *list) {
  if (list == nullptr) return 0;
  for (StringNode *node = get_last_one(list, kOnlyWalk); node != nullptr;) {
    const StringNode *const removed = node;
    node = node->prev;
    delete removed;
  }
  return 1;
}

StringNode *get_last_one(StringNode *list, int mode) {
  StringNode *last = nullptr;
  for (StringNode *node = list; node != nullptr; node = node->next) {
    if (mode == kRenumber && last != nullptr) node->num = last->num + 1;
    if (mode == kWaitForKeys) inkey();
    last = node;
  }
  return last;
}

StringNode *get_next(StringNode *node) { return node->next; }

int32_t get_last_entry_num(StringNode *list) {
  const StringNode *const last = get_last_one(list, kOnlyWalk);
  return last == nullptr ? 0 : last->num;
}

StringNode *get_element_by_num(StringNode *list, int32_t num, char *dst) {
  if (list == nullptr || list->next == nullptr || num > get_last_entry_num(list)) return list;
  StringNode *node = list;
  while (node->num < num) node = node->next;
  if (dst != nullptr) cpynstr(dst, node->text, sizeof node->text);
  return node;
}

int32_t get_strid_by_num(StringNode *list, int32_t num) {
  if (list == nullptr || list->next == nullptr || num > get_last_entry_num(list)) return -1;
  return get_element_by_num(list, num, nullptr)->strid;
}

StringNode *get_element_by_strid(StringNode *list, int32_t strid, char *dst) {
  StringNode *node = list;
  while (node != nullptr && node->strid != strid && node->next != nullptr) node = node->next;
  if (node != nullptr && node->strid == strid && dst != nullptr) cpynstr(dst, node->text, sizeof node->text);
  return node;
}

void DumpList(StringNode *list) { get_last_one(list, kWaitForKeys); }

int32_t DrawStringFromList(WINDOW *win, StringNode *list, int32_t num, int selected, int align) {
  const StringNode *const node = entry_at(list, num);
  if (node == nullptr) return 0;
  draw_entry(win, *node, selected != 0, align);
  return node->strid;
}

int32_t DrawStringFromListInList(WINDOW *win, StringNode *list, int32_t num, int selected, int row, int col, int width,
                                 int align) {
  const StringNode *const node = entry_at(list, num);
  if (node == nullptr) return 0;
  draw_list_entry(win, *node, selected != 0, row, col, width, align);
  return node->strid;
}

int32_t DrawFullStringBox(WINDOW *win, StringNode *list, int32_t sel, int align) {
  int32_t chosen = 0;
  Place place = {};
  for (const StringNode *node = list; node != nullptr; node = node->next) {
    const Place drawn = draw_entry(win, *node, node->num == sel, align);
    if (node->num != sel) continue;
    chosen = node->strid;
    place = drawn;
  }
  wc_set_pos(win, place.row, place.col);
  wshow(win);
  return chosen;
}

int32_t DrawFullStringListBox(WINDOW *win, StringNode *list, int32_t first, int32_t cursor, int row, int col, int width,
                              int count, int align) {
  if (list == nullptr) return 0;
  int32_t chosen = 0;
  Place place = {row + cursor - 1, col};
  for (const StringNode *node = list; node != nullptr && node->num < first + count; node = node->next) {
    if (node->num < first) continue;
    const bool selected = node->num == first + cursor - 1;
    const Place drawn = draw_list_entry(win, *node, selected, row + node->num - first, col, width, align);
    if (!selected) continue;
    chosen = node->strid;
    place = drawn;
  }
  wc_set_pos(win, place.row, place.col);
  wshow(win);
  return chosen;
}

int ProcessListKeyboard(int key, int32_t *first, int32_t *cursor, int32_t total, int32_t visible) {
  if (first == nullptr || cursor == nullptr) return 0;
  const int32_t last_first = std::max(total - visible + 1, 1);
  const int32_t last_cursor = std::max(std::min(visible, total), 1);
  if (key == kKeyHome) {
    *first = *cursor = 1;
  } else if (key == kKeyNextPage) {  // kept: this key moves towards the start and the other one towards the end
    if (*first <= visible) *cursor = 1;
    *first = std::max(*first - visible, 1);
  } else if (key == kKeyPreviousPage && *first + 2 * visible - 1 <= total) {
    *first += visible;
  } else if (key == kKeyPreviousPage || key == kKeyEnd) {
    *first = last_first;
    *cursor = last_cursor;
  } else if (key == kKeyUp && *cursor > 1) {
    --*cursor;
  } else if (key == kKeyUp && *first > 1) {
    --*first;
  } else if (key == kKeyDown && *cursor < visible) {  // kept: not compared with `total`
    ++*cursor;
  } else if (key == kKeyDown && *first < last_first) {
    ++*first;
  }
  return *first + *cursor - 1;
}

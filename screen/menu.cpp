#include "screen/menu.h"

#include <algorithm>
#include <memory>
#include <string>

#include "screen/keys.h"
#include "screen/list.h"
#include "screen/maskelib.h"
#include "screen/texts.h"
#include "util/tokens.h"

int (*menu_help)(int help, int strid, char *title, char *text) = nullptr;

namespace {

constexpr const char *kSeparator = "|";
constexpr int kHelpRows = 3;

// Bytes of code page 437, for consoles that have it.
constexpr int kDoubleLeftTee = 0xCC;
constexpr int kDoubleRightTee = 0xB9;
constexpr int kDoubleBar = 0xBA;
constexpr int kSingleBar = 0xB3;

struct ListCloser {
  void operator()(StringNode *list) const { RemoveFullList(list); }
};
using List = std::unique_ptr<StringNode, ListCloser>;

// What the entries of a menu have in common.
struct EntryLook {
  int32_t attr;
  int32_t attr_sel;
  int first_row;  // -1: the entries have no place of their own
  int col;
  int width;  // 0: the entry's length
};

// Null when memory runs out.
List make_list(const char *items, const char *sep, int count, const EntryLook &look) {
  List list;
  for (int i = 1; i <= count; ++i) {
    const std::string text = text_piece(items, sep, i);
    const int row = look.first_row < 0 ? -1 : look.first_row + i - 1;
    const int width = look.width == 0 ? static_cast<int>(text.size()) : look.width;
    StringNode *const node = Insert_String(list.get(), text.c_str(), i, look.attr, look.attr_sel, row, look.col, width);
    if (node == nullptr) return nullptr;
    if (list == nullptr) list.reset(node);
  }
  return list;
}

int header_height(const char *title) { return title[0] == '\0' ? 1 : 3; }

void draw_double_separator(WINDOW *win, int row, int32_t attr) {
  const int width = getmaxx(win);
  wputcharv(win, kDoubleLeftTee, attr, row, 0);
  wputcharv(win, kDoubleRightTee, attr, row, width);  // kept: beyond the window, which does not show it
  wfdraw_hline(win, 2, 1, width - 2, '=', attr);      // kept: on row 2 also below a longer title
}

// Where a menu's help stands.
struct HelpPlace {
  WINDOW *menu;
  int row;
  int col;
  int width;
};

void show_menu_help(const HelpPlace &place, int help, int strid) {
  if (help == 0 || menu_help == nullptr) return;
  char title[71] = "";
  char text[256] = "";
  if (menu_help(help, strid, title, text) == 0 || (title[0] == '\0' && text[0] == '\0')) return;
  char chosen[sizeof StringNode::text];
  DoScrollMenu(place.menu, place.row, place.col, place.width, kHelpRows, kAttrHelp, kAttrHelp, chosen, title,
               at_least_two_lines(text).c_str(), kSeparator, kSingleLine, kCentred);
}

int next_entry(int current, int key, int count) {
  if (key == kKeyUp) return current > 1 ? current - 1 : count;
  if (key == kKeyDown) return current < count ? current + 1 : 1;
  return current;
}

// A menu that scrolls: its rows in the window and its place in the list.
struct Scroll {
  int header;
  int visible;
  int total;
  int32_t first = 1;
  int32_t cursor = 1;
};

// Whether there is more above and below. kept: one column beyond the window, which does not show it.
void draw_marks(WINDOW *win, const Scroll &scroll, int style, int32_t attr) {
  const int none = style == kDoubleLine ? kDoubleBar : kSingleBar;
  const int col = getmaxx(win);
  wputcharv(win, scroll.first > 1 ? 'U' : none, attr, scroll.header + 1, col);
  wputcharv(win, scroll.total - scroll.first < scroll.visible ? none : 'D', attr, getmaxy(win) - 2, col);
}

int32_t draw_scrolled(WINDOW *win, StringNode *list, const Scroll &scroll, int align) {
  return DrawFullStringListBox(win, list, scroll.first, scroll.cursor, scroll.header + 1, 1, getmaxx(win) - 2,
                               scroll.visible, align);
}

}  // namespace

int DrawMenuFrame(WINDOW *win, int32_t attr, const char *title, int style) {
  wfdraw_frame(win, attr, style);
  wffill_full_area(win, ' ', attr);
  const int lines = numtoken(title, kSeparator);
  if (lines == 0) return 1;
  const int width = getmaxx(win);
  for (int i = 1; i <= lines; ++i) {
    const std::string line = text_piece(title, kSeparator, i);
    const int length = std::min(static_cast<int>(line.size()), width - 2);
    wprintv_cut(win, line, attr, i, width / 2 - length / 2, length);
  }
  if (style == kSingleLine) wfdraw_separator(win, lines + 1, attr);
  if (style == kDoubleLine) draw_double_separator(win, lines + 1, attr);
  return 1;
}

int DoMenu(WINDOW *parent, int row, int col, int width, int32_t attr, int32_t attr_sel, const char *title,
           const char *items, const char *sep, int style) {
  return DoMenuExt(parent, row, col, width, attr, attr_sel, title, items, sep, style, 0);
}

int DoMenuExt(WINDOW *, int row, int col, int width, int32_t attr, int32_t attr_sel, const char *title,
              const char *items, const char *sep, int style, int help) {
  const int count = numtoken(items, sep);
  if (count < 2) return kMenuNotShown;
  const int first_row = header_height(title) + std::max(numtoken(title, kSeparator) - 1, 0);
  const List list = make_list(items, sep, count, {attr, attr_sel, first_row, 1, width - 1});
  const Window win = open_window(count + first_row + 1, width + 1, row, col);
  if (list == nullptr || win == nullptr) return kMenuNotShown;
  DrawMenuFrame(win.get(), attr, title, style);
  int32_t chosen = 0;
  for (int current = 1, drawn = 0;;) {
    if (current != drawn) chosen = DrawFullStringBox(win.get(), list.get(), current, kCentred);
    drawn = current;
    const int key = winkey(win.get());
    if (key == kKeyEscape) return kMenuEscaped;
    if (is_enter(key)) return chosen;
    if (key == kKeyHelp) show_menu_help({win.get(), row, col, width + 1}, help, chosen);
    current = next_entry(current, key, count);
  }
}

int DoScrollMenu(WINDOW *parent, int row, int col, int width, int height, int32_t attr, int32_t attr_sel, char *out,
                 const char *title, const char *items, const char *sep, int style, int align) {
  return DoScrollMenuExt(parent, row, col, width, height, attr, attr_sel, out, title, items, sep, style, align, 0);
}

int DoScrollMenuExt(WINDOW *, int row, int col, int width, int height, int32_t attr, int32_t attr_sel, char *out,
                    const char *title, const char *items, const char *sep, int style, int align, int help) {
  const int count = numtoken(items, sep);
  if (count < 2) return kMenuNotShown;
  const int header = header_height(title);
  Scroll scroll = {header, std::clamp(height, 1, std::min(count, kScreenRows - header - 2)), count};
  const List list = make_list(items, sep, count, {attr, attr_sel, -1, -1, 0});
  const Window win = open_window(scroll.visible + header + 2, width, row, col);
  if (list == nullptr || win == nullptr) return kMenuNotShown;
  DrawMenuFrame(win.get(), attr, title, style);
  int32_t chosen = 0;
  for (int drawn_first = 0, drawn_cursor = 0;;) {
    if (scroll.first != drawn_first || scroll.cursor != drawn_cursor) {
      draw_marks(win.get(), scroll, style, attr);
      chosen = draw_scrolled(win.get(), list.get(), scroll, align);
      drawn_first = scroll.first;
      drawn_cursor = scroll.cursor;
    }
    const int key = winkey(win.get());
    if (key == kKeyEscape) return kMenuEscaped;
    const int selected = ProcessListKeyboard(key, &scroll.first, &scroll.cursor, count, scroll.visible);
    if (is_enter(key)) {
      get_element_by_num(list.get(), selected, out);
      return chosen;
    }
    if (key == kKeyHelp) show_menu_help({win.get(), row, col, width}, help, chosen);
  }
}

std::string text_piece(const char *text, const char *sep, int n) {
  char buffer[1024];
  return ctoken(buffer, sizeof buffer, text, sep, n);
}

std::string at_least_two_lines(const char *text) {
  std::string lines = text[0] == '\0' ? " " : text;
  if (numtoken(lines.c_str(), kSeparator) < 2) lines += "| ";
  return lines;
}

void add_entry(std::string &entries, std::string_view entry) {
  if (!entries.empty()) entries += kSeparator;
  entries += entry;
}

std::string join(std::span<const Label> labels) {
  std::string entries;
  for (const Label &label : labels) add_entry(entries, label[language]);
  return entries;
}

int yes_no_menu(WINDOW *parent, int row, int col, const char *question) {
  const int answer = DoMenu(parent, row, col, lenstr(question) + 2, attr_dkl, kAttrHighlight, question, kYesNoEntries,
                            kSeparator, kSingleLine);
  return std::max<int>(answer, kNoAnswer);
}

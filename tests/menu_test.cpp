#include "screen/menu.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>

#include "screen/box.h"
#include "screen/keys.h"
#include "screen/list.h"
#include "tests/curses_screen.h"
#include "util/files.h"
#include "util/text.h"

namespace {

using TestList = std::unique_ptr<StringNode, int (*)(StringNode *)>;

TestList list_of(int count) {
  TestList list(nullptr, RemoveFullList);
  for (int i = 1; i <= count; ++i) {
    StringNode *const node =
        Insert_String(list.get(), ("e" + std::to_string(i)).c_str(), 100 + i, kAttrNormal, kAttrHighlight, i, 2, 12);
    if (list == nullptr) list.reset(node);
  }
  return list;
}

// --- lists

TEST(List, PositionsStayWhenAnEntryIsRemoved) {
  const TestList list = list_of(3);
  EXPECT_EQ(Remove_String(list.get(), 2), 1);
  EXPECT_EQ(Remove_String(nullptr, 2) + RemoveFullList(nullptr), 0);
  EXPECT_EQ(get_next(list.get())->num, 3);
  EXPECT_EQ(get_next(list.get())->prev, list.get());
  EXPECT_EQ(get_last_entry_num(list.get()), 3);
  EXPECT_EQ(get_last_one(list.get(), 1)->num, 2);
  Insert_String(list.get(), std::string(200, 'x').c_str(), 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(get_last_entry_num(list.get()), 3);
  EXPECT_EQ(std::strlen(get_last_one(list.get(), 0)->text), 83u);
  char text[84] = "-";
  EXPECT_TRUE(get_element_by_num(list.get(), 4, text) == list.get() && !get_element_by_num(nullptr, 1, text));
  EXPECT_STREQ(text, "-");
  EXPECT_EQ(get_element_by_strid(list.get(), 103, text)->num, 2);
  EXPECT_EQ(get_strid_by_num(list.get(), 0), 101);
  EXPECT_EQ(get_strid_by_num(list.get(), 4), -1);
}

TEST(List, EntriesStandInTheirPlaces) {
  const CursesScreen screen;
  const TestList list = list_of(3);
  const Window win = open_window(4, 14, 0, 0);
  for (const int align : {kLeft, kRight, kCentred}) DrawStringFromList(win.get(), list.get(), align, 0, align);
  EXPECT_EQ(DrawStringFromListInList(win.get(), list.get(), 2, 0, 0, 4, 5, kCentred), 102);
  EXPECT_EQ(rows_of(win.get()), "     e2|  e1|          e2|     e3|");
  EXPECT_EQ(DrawStringFromList(win.get(), list.get(), 4, 0, kLeft), 0);
  EXPECT_EQ(DrawFullStringBox(win.get(), list.get(), 2, kCentred), 102);
  EXPECT_EQ(rows_of(newscr, 0, 4), "     e2|  e1 e1|     e2   e2|     e3|");
  EXPECT_EQ(DrawFullStringListBox(win.get(), list.get(), 2, 1, 2, 2, 6, 2, kRight), 102);
  EXPECT_EQ(rows_of(newscr, 0, 4), "     e2|  e1 e1|      e2  e2|      e3|");
  EXPECT_EQ(DrawFullStringBox(win.get(), list.get(), 9, kLeft), 0);
  EXPECT_EQ(DrawFullStringListBox(win.get(), list.get(), 1, 9, 2, 2, 6, 2, kLeft), 0);
  EXPECT_EQ(DrawFullStringListBox(win.get(), nullptr, 1, 1, 2, 2, 6, 2, kLeft), 0);
  type_ahead({'a', 'b', 'c', 'd'});
  DumpList(list.get());
  EXPECT_EQ(inkey(), 'd');
}

// --- moving through a list

TEST(Scrolling, Keys) {
  const std::tuple<int, int, int, int, int, int, int> cases[] = {
      // the page keys are bound the other way round from their names
      {kKeyPreviousPage, 20, 5, 11, 2, 16, 2},
      {kKeyPreviousPage, 20, 5, 12, 2, 16, 5},
      {kKeyNextPage, 20, 5, 6, 2, 1, 2},
      {kKeyNextPage, 20, 5, 5, 2, 1, 1},
      {kKeyEnd, 20, 5, 3, 2, 16, 5},
      {kKeyHome, 20, 5, 3, 2, 1, 1},
      {kKeyUp, 20, 5, 2, 1, 1, 1},
      {kKeyUp, 20, 5, 3, 2, 3, 1},
      {kKeyUp, 20, 5, 1, 1, 1, 1},
      {kKeyDown, 20, 5, 3, 4, 3, 5},
      {kKeyDown, 20, 5, 3, 5, 4, 5},
      {kKeyDown, 20, 5, 16, 5, 16, 5},
      // a list shorter than its rows
      {kKeyEnd, 3, 5, 1, 1, 1, 3},
      {kKeyEnd, 1, 5, 1, 1, 1, 1},
      {kKeyPreviousPage, 3, 5, 1, 1, 1, 3},
      {kKeyNextPage, 3, 5, 1, 3, 1, 1},
      {kKeyDown, 3, 5, 1, 3, 1, 4},  // kept: passes the end
  };
  for (const auto &[key, total, visible, from, at, new_first, new_cursor] : cases) {
    int32_t first = from, cursor = at;
    EXPECT_EQ(ProcessListKeyboard(key, nullptr, &cursor, total, visible), 0);
    EXPECT_EQ(ProcessListKeyboard(key, &first, &cursor, total, visible), new_first + new_cursor - 1);
    EXPECT_EQ(first, new_first) << key << " of " << total;
    EXPECT_EQ(cursor, new_cursor) << key << " of " << total;
  }
}

// --- menus

int menu_of(const char *items, const std::u16string &keys) {
  type_ahead(keys);
  return DoMenu(stdscr, 5, 5, 30, kAttrNormal, kAttrHighlight, "Title", items, "|", 1);
}

TEST(Menu, Results) {
  const CursesScreen screen;
  EXPECT_EQ(menu_of("only", {}), 0);
  EXPECT_EQ(menu_of("a|b|c", {kKeyUp, kKeyReturn}), 3);
  EXPECT_EQ(menu_of("a|b|c", {kKeyDown, kKeyDown, kKeyDown, kKeyDown, kKeyEnter}), 2);
  EXPECT_EQ(menu_of("a|b|c", {'x', '?', kKeyTab, kKeyHome, kKeyLineFeed}), 1);
  EXPECT_EQ(menu_of("a|b|c", {kKeyDown, kKeyEscape}), -1);
  type_ahead({kKeyDown, kKeyReturn, kKeyReturn, kKeyEscape});
  for (const int answer : {2, 1, 0}) EXPECT_EQ(yes_no_menu(stdscr, 10, 45, "Sure ?"), answer);
  char text[84] = "-";
  type_ahead({kKeyDown, kKeyEscape, kKeyEnd, kKeyDown, kKeyDown, kKeyEnter, kKeyEnter});
  for (const auto &[answer, chosen] : {std::pair(-1, "-"), {5, "e"}, {1, "a"}}) {
    EXPECT_EQ(DoScrollMenu(stdscr, 20, 1, 20, 2, 0, 0, text, "T", "a|b|c|d|e", "|", 1, 3), answer);
    EXPECT_STREQ(text, chosen);
  }
}

std::string shown;  // the screen when help was asked for
// Nobody has a help for 5, and only that for 6 has a text, of one letter; a help that is shown takes a key.
int look_at_screen(int help, int chosen, char *title, char *text) {
  shown = rows_of(newscr, 0, 9) + std::to_string(help) + ":" + std::to_string(chosen);
  title[0] = help == 7 ? 'T' : '\0';
  text[0] = help < 7 ? 'x' : '\0';
  return help != 5;
}

TEST(Menu, IsDrawnBelowItsTitle) {
  const CursesScreen screen;
  menu_help = look_at_screen;
  type_ahead({kKeyDown, '?', kKeyEnter, kKeyPreviousPage, kKeyDown, '?', kKeyDown, kKeyEnter, kKeyEnter, '?', kKeyEnter,
              '?', kKeyEnter, kKeyEnter, 'x'});
  DoMenuExt(stdscr, 1, 0, 8, 0, 0, "Two|lines, cut", "a|bc", "|", kSingleLine, 5);
  EXPECT_EQ(shown, "|lqqqqqqqk|x  Two  x|xlines, x|tqqqqqqqu|x  a    x|x bc    x|mqqqqqqqj||5:2");
  char text[84];
  EXPECT_EQ(DoScrollMenuExt(stdscr, 0, 0, 9, 2, 0, 0, text, "T", "a|b|c|d|e", "|", kSingleLine, kRight, 6), 4);
  EXPECT_EQ(shown, "lqqqqqqqk|x   T   x|tqqqqqqqu|x       x|x      cx|x      dx|mqqqqqqqj|||6:4");
  for (const int help : {8, 7}) DoMenuExt(stdscr, 1, 0, 8, 0, 0, "", "a|bc", "|", kSingleLine, help);
  EXPECT_EQ(shown, "|lqqqqqqqk|x  a    x|x bc    x|mqqqqqqqj|||||7:1");
  EXPECT_EQ(inkey(), 'x');
  menu_help = nullptr;
}

// A box that a whole character closes, and one that no key closes: the program leaves when the input is at its end.
void leave_at_box() {
  const CursesScreen screen;
  std::setlocale(LC_ALL, "C.UTF-8");
  type_ahead({0xC3, 0xBC});
  draw_box(stdscr, "b", "|", 0, 0, 0);
  keep_work = [] { std::fputs(rows_of(curscr, 9, 13).c_str(), stderr); };
  const std::string text = "a|text|" + std::string(99, 'l');
  if (dup2(fileno(screen.device), STDIN_FILENO) == 0) draw_box(stdscr, text.c_str(), "|", 0, 0, 1);
}

TEST(Menu, ABoxStandsInTheMiddleAndTellsOfAnError) {
  EXPECT_EXIT(leave_at_box(), testing::ExitedWithCode(EXIT_FAILURE),
              "    lq{69}k\\|    x {34}a {34}x\\|    x {32}text {33}x\\|    xl{69}x\\|    mq{69}j\\|\\|{5}"
              " {34}lq{14}k\\| {34}x *E R R O R !! *x\\| {34}mq{14}j\\|");
}

TEST(File, ExistsUnlessItIsKnownToBeMissing) {
  for (const char *file : {"/etc/passwd", "/etc/passwd/below"}) EXPECT_EQ(does_file_exist(file, 1), 1);
  EXPECT_EQ(does_file_exist("/etc/no such file", 1) + does_file_exist("/etc/passwd", 2), 0);
  EXPECT_EQ(does_file_exist("/etc", 2), 1);
}

}  // namespace

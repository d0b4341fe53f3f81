#include "screen/menu.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

#include "tests/curses_screen.h"
#include "util/text.h"

namespace {

struct TestList {
  StringNode *first = nullptr;
  explicit TestList(int count) {
    for (int i = 1; i <= count; ++i) {
      StringNode *const node =
          Insert_String(first, ("e" + std::to_string(i)).c_str(), 100 + i, kAttrNormal, kAttrHighlight, i, 2, 12);
      if (first == nullptr) first = node;
    }
  }
  TestList(const TestList &) = delete;
  TestList &operator=(const TestList &) = delete;
  ~TestList() { RemoveFullList(first); }
};

// --- lists

TEST(List, PositionsStayWhenAnEntryIsRemoved) {
  TestList list(3);
  EXPECT_EQ(Remove_String(list.first, 2), 1);
  EXPECT_EQ(get_next(list.first)->num, 3);
  EXPECT_EQ(get_next(list.first)->prev, list.first);
  EXPECT_EQ(get_last_entry_num(list.first), 3);
  EXPECT_EQ(get_last_one(list.first, 1)->num, 2);
  Insert_String(list.first, std::string(200, 'x').c_str(), 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(get_last_entry_num(list.first), 3);
  EXPECT_EQ(std::strlen(get_last_one(list.first, 0)->text), 83u);
}

TEST(List, LooksUpByPositionAndByIdentifier) {
  TestList list(3);
  char text[84] = "-";
  EXPECT_EQ(get_element_by_num(list.first, 4, text), list.first);
  EXPECT_EQ(get_element_by_strid(list.first, 99, text), get_last_one(list.first, 0));
  EXPECT_STREQ(text, "-");
  EXPECT_EQ(get_element_by_num(list.first, 2, text)->strid, 102);
  EXPECT_STREQ(text, "e2");
  EXPECT_EQ(get_element_by_strid(list.first, 103, text)->num, 3);
  EXPECT_EQ(get_strid_by_num(list.first, 0), 101);
  EXPECT_EQ(get_strid_by_num(list.first, 4), -1);
  EXPECT_EQ(get_strid_by_num(nullptr, 1), -1);
  EXPECT_EQ(get_element_by_strid(nullptr, 1, nullptr), nullptr);
}

TEST(List, DrawnByAlignment) {
  const CursesScreen screen;
  const Window win = open_window(9, 16, 0, 0);
  TestList list(4);
  cpynstr(get_next(list.first)->text, std::string(40, 'x'));
  EXPECT_EQ(DrawStringFromList(win.get(), list.first, 1, 1, 1), 101);
  EXPECT_EQ(DrawStringFromList(win.get(), list.first, 2, 0, 3), 102);
  EXPECT_EQ(DrawStringFromList(win.get(), list.first, 3, 0, 2), 103);
  EXPECT_EQ(row_of(win.get(), 1), "  e1            ");
  EXPECT_EQ(mvwinch(win.get(), 1, 2), kAttrHighlight | 'e');
  EXPECT_EQ(row_of(win.get(), 2), " xxxxxxxxxxx    ");
  EXPECT_EQ(row_of(win.get(), 3), "          e3    ");

  EXPECT_EQ(DrawFullStringListBox(win.get(), list.first, 2, 2, 5, 1, 6, 3, 3), 103);
  EXPECT_EQ(row_of(win.get(), 5), " xxxxxx         ");
  EXPECT_EQ(row_of(win.get(), 6), "   e3           ");
  EXPECT_EQ(mvwinch(win.get(), 6, 1), kAttrHighlight | ' ');
  EXPECT_EQ(DrawFullStringListBox(win.get(), list.first, 5, 1, 5, 1, 6, 3, 3), 0);
  EXPECT_EQ(DrawFullStringListBox(win.get(), list.first, 1, 1, 5, 1, 6, 0, 3), 0);
}

// --- moving through a list

TEST(Scrolling, Keys) {
  const struct {
    int key, total, visible, first, cursor;
    int new_first, new_cursor;
  } cases[] = {
      // the page keys are bound the other way round from their names
      {kKeyPreviousPage, 20, 5, 11, 2, 16, 2},
      {kKeyPreviousPage, 20, 5, 12, 2, 16, 5},
      {kKeyNextPage, 20, 5, 6, 2, 1, 2},
      {kKeyNextPage, 20, 5, 5, 2, 1, 1},
      {kKeyEnd, 20, 5, 3, 2, 16, 5},
      {kKeyHome, 20, 5, 3, 2, 1, 1},
      {kKeyUp, 20, 5, 3, 1, 2, 1},
      {kKeyUp, 20, 5, 3, 2, 3, 1},
      {kKeyUp, 20, 5, 1, 1, 1, 1},
      {kKeyDown, 20, 5, 3, 4, 3, 5},
      {kKeyDown, 20, 5, 3, 5, 4, 5},
      {kKeyDown, 20, 5, 16, 5, 16, 5},
      // a list shorter than its rows
      {kKeyEnd, 3, 5, 1, 1, 1, 3},
      {kKeyPreviousPage, 3, 5, 1, 1, 1, 3},
      {kKeyNextPage, 3, 5, 1, 3, 1, 1},
  };
  for (const auto &c : cases) {
    int32_t first = c.first, cursor = c.cursor;
    EXPECT_EQ(ProcessListKeyboard(c.key, &first, &cursor, c.total, c.visible), c.new_first + c.new_cursor - 1);
    EXPECT_EQ(first, c.new_first) << c.key << " of " << c.total;
    EXPECT_EQ(cursor, c.new_cursor) << c.key << " of " << c.total;
  }
}

TEST(Scrolling, DownPassesTheEndOfAListShorterThanItsRows) {
  int32_t first = 1, cursor = 3;
  EXPECT_EQ(ProcessListKeyboard(kKeyDown, &first, &cursor, 3, 5), 4);
}

TEST(Scrolling, StaysOnAnEntry) {
  constexpr int kKeys[] = {kKeyHome, kKeyEnd, kKeyNextPage, kKeyPreviousPage, kKeyUp, kKeyDown, 'x'};
  unsigned random = 1;
  for (int total = 2; total < 30; ++total) {
    for (int visible = 1; visible <= total; ++visible) {
      int32_t first = 1, cursor = 1;
      for (int step = 0; step < 200; ++step) {
        random = random * 1103515245 + 12345;
        const int selected = ProcessListKeyboard(kKeys[random / 65536 % 7], &first, &cursor, total, visible);
        ASSERT_TRUE(first >= 1 && first + visible - 1 <= total && cursor >= 1 && cursor <= visible &&
                    selected == first + cursor - 1);
      }
    }
  }
}

// --- menus

int menu_of(const char *items, std::initializer_list<int> keys) {
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
}

TEST(Menu, ScrollingOneCopiesTheChosenText) {
  const CursesScreen screen;
  const struct {
    std::initializer_list<int> keys;
    int result;
    const char *text;
  } cases[] = {{{kKeyEnd, kKeyDown, kKeyDown, kKeyEnter}, 5, "e"}, {{kKeyDown, kKeyEscape}, -1, "-"}};
  for (const auto &c : cases) {
    char text[84] = "-";
    type_ahead(c.keys);
    EXPECT_EQ(DoScrollMenu(stdscr, 20, 1, 20, 2, 0, 0, text, "T", "a|b|c|d|e", "|", 1, 3), c.result);
    EXPECT_STREQ(text, c.text);
  }
}

std::string asked;
int remember_help(int help, int strid, char *title, char *text) {
  asked += std::to_string(help) + ":" + std::to_string(strid) + " ";
  cpynstr(title, "Help", 71);
  cpynstr(text, strid == 1 ? "" : "one line", 256);
  return strid < 3;
}

TEST(Menu, HelpForTheSelectedEntry) {
  const CursesScreen screen;
  menu_help = remember_help;
  type_ahead({'?', kKeyEscape, kKeyDown, '?', kKeyReturn, kKeyDown, '?', kKeyReturn});
  EXPECT_EQ(DoMenuExt(stdscr, 0, 0, 30, 0, 0, "T", "a|b|c", "|", 1, 7), 3);
  EXPECT_EQ(asked, "7:1 7:2 7:3 ");
  menu_help = nullptr;
  EXPECT_EQ(at_least_two_lines(""), " | ");
  EXPECT_EQ(at_least_two_lines("x"), "x| ");
  EXPECT_EQ(at_least_two_lines(" |x"), " |x");
}

// --- boxes and files

TEST(Box, WaitsForOneKey) {
  const CursesScreen screen;
  const Window main = open_window(24, 80, 0, 0);
  type_ahead({'a', 'b'});
  draw_box(main.get(), std::string(2000, 'x').c_str(), "|", kAttrHighlight, kAttrHighlight, 1);
  EXPECT_EQ(winkey(main.get()), 'b');
}

TEST(File, ExistsUnlessItIsKnownToBeMissing) {
  EXPECT_EQ(does_file_exist("/etc/passwd", 1), 1);
  EXPECT_EQ(does_file_exist("/etc/no such file", 1), 0);
  EXPECT_EQ(does_file_exist("/etc/passwd/below", 1), 1);
  EXPECT_EQ(does_file_exist("/etc/passwd", 2), 0);
  EXPECT_EQ(does_file_exist("/etc", 2), 1);
}

}  // namespace

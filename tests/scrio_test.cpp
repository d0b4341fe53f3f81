#include "screen/scrio.h"

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <clocale>
#include <cstring>
#include <string>

#include "screen/draw.h"
#include "screen/keys.h"
#include "screen/menu.h"
#include "screen/terminal.h"
#include "tests/curses_screen.h"
#include "tests/keyboards.h"
#include "util/charset.h"
#include "util/text.h"

namespace {

// --- charsets

TEST(Charset, EveryByteFillsOneColumn) {
  std::setlocale(LC_ALL, "C.UTF-8");
  constexpr size_t kAll = std::string_view::npos;
  const struct {
    Charset charset;
    const char *text;
    size_t columns;
    const wchar_t *cells;
  } cases[] = {
      {Charset::euc_jp, "a\xC0\xDF\xC4\xEA z", kAll, L"a設定 z"},
      {Charset::euc_jp, "\x8E\xB1\x8F\xB0\xA1!", kAll, L"ｱ 丂 !"},  // half-width kana, three bytes
      {Charset::euc_jp, "\xA1\xFBx", kAll, L"○ x"},                 // one column on this terminal
      {Charset::euc_jp, "\xC0 \xDF", kAll, L"? ?"},                 // halves
      {Charset::euc_jp, "\xA9\xA1\xA4\xA2", kAll, L"??あ"},         // not assigned
      {Charset::euc_jp, "\x1B[m\x7F\t\n\x9B", kAll, L"?[m????"},
      {Charset::euc_jp, "a\xC0\xDF\xC4\xEA", 4, L"a設 "},
      {Charset::locale, "\xC3\xA4|\xE6\xBC\xA2|\xF0\x9F\x98\x80", kAll, L"ä |漢 |😀  "},
      {Charset::locale, "\xC3|\xC0\xDF|\xC2\x9B", kAll, L"?|??|??"},  // a control character of two bytes
      {Charset::locale, "e\xCC\x81|\xE2\x80\x8B", kAll, L"e??|???"},  // no column of their own
      {Charset::bytes, "a\xA4\xFF\x80\x9F\x1F", kAll, L"a\u00A4\u00FF???"},
  };
  for (const auto &c : cases) EXPECT_EQ(text_to_cells(c.text, c.charset, c.columns), c.cells) << c.text;
  EXPECT_EQ(text_to_cells({"a\0b", 3}, Charset::euc_jp), L"a?b");
  std::setlocale(LC_ALL, "C");
}

TEST(Charset, WhatOtherSystemsSendIsTheCharacterOfTheSet) {
  std::setlocale(LC_ALL, "C.UTF-8");
  const std::string typed = "～〜－∥￠￡￢—①髙";  // three bytes each
  const std::string own = "\xA1\xC1\xA1\xC1\xA1\xDD\xA1\xC2\xA1\xF1\xA1\xF2\xA2\xCC\xA1\xBD";
  for (size_t i = 0; 3 * i < typed.size(); ++i) {
    const std::string expected = 2 * i < own.size() ? own.substr(2 * i, 2) : "";
    EXPECT_EQ(typed_character(typed.substr(3 * i, 3), Charset::euc_jp).text, expected) << i;
  }
  std::setlocale(LC_ALL, "C");
}

// --- drawing

TEST(Drawing, NothingOutsideTheWindowAndNothingWraps) {
  const CursesScreen screen;
  const Window win = open_window(3, 8, 0, 0);
  wdisplay_str(win.get(), 0, 4, kAttrNormal, "12345678");
  wprintv_cut(win.get(), "12345678", kAttrNormal, 1, 1, 3);
  for (const auto &[row, col] : {std::pair(3, 0), std::pair(0, 8), std::pair(-1, 0)}) {
    wprintv(win.get(), "x", kAttrNormal, row, col);
    wputcharv(win.get(), 'x', kAttrNormal, row, col);
  }
  wfdisp_printf(win.get(), 2, 0, kAttrNormal, "%s\n%d", "\033", 7);
  for (const auto &[byte, col] : {std::pair(7, 4), {0xFF, 5}}) wputcharv(win.get(), byte, kAttrNormal, 2, col);
  EXPECT_EQ(rows_of(win.get()), "    1234| 123|??7 ?|");
  const Window corner = open_window(0, 0, 30, 90);  // it fits on the screen, too
  EXPECT_EQ(getmaxy(corner.get()) + getbegy(corner.get()), kScreenRows);
  EXPECT_EQ(getmaxx(corner.get()) + getbegx(corner.get()), kScreenColumns);
  EXPECT_EQ(getmaxx(corner.get()), 1);
}

TEST(Drawing, OfTheWholeScreenAndOfAWindow) {
  const CursesScreen screen;
  const Window win = open_window(6, 9, 0, 0);
  fdraw_box(0, 0, 5, 8, 0x100, kSingleLine, 0x200, '.');
  display_str(2, 2, 0x300, "a");
  putch_char('b', 0x400);
  fdisp_printf(2, 4, 0x500, "%d", 5);
  fdraw_line(3, 2, 3, 1, '-', 0x600);
  EXPECT_EQ(rows_of(stdscr, 0, 6), "lqqqqqqqk|x.......x|x.ab5...x|x--.....x|x.......x|mqqqqqqqj|");
  EXPECT_EQ(colours_of(stdscr, 6, 9), "|111111111|122222221|123452221|166222221|122222221|111111111");
  wfdraw_box(win.get(), 0, 0, 6, 9, 0x100, kSingleLine, 0x200, '.');
  wfdraw_separator(win.get(), 2, 0x300);
  wfdraw_line(win.get(), 3, 1, 2, 3, '-', 0x400);
  wfdraw_vline(win.get(), 3, 5, 2, '-', 0x500);
  wc_set_pos(win.get(), 1, 1);
  wputch_char(win.get(), 'x', 0x600);
  EXPECT_EQ(rows_of(win.get()), "lqqqqqqqk|xx......x|tqqqqqqqu|x---.-..x|x-...-..x|mqqqqqqqj|");
  EXPECT_EQ(colours_of(win.get(), 6, 9), "|111111111|162222221|333333333|144425221|142225221|111111111");
  std::setlocale(LC_ALL, "C.UTF-8");
  DrawMenuFrame(win.get(), kAttrNormal, "a|bc", kDoubleLine);
  EXPECT_EQ(rows_of(win.get()), "lqqqqqqqk|x   a   x|x=======x|?       x|x       x|mqqqqqqqj|");
  std::setlocale(LC_ALL, "C");
  wcls(win.get());
  EXPECT_EQ(rows_of(win.get()), "||||||");
  wfdraw_frame(win.get(), kAttrNormal, kSingleLine);
  wprintv(win.get(), "x", kAttrNormal, 4, 7);
  wc_home(win.get());
  move_to_text(win.get());
  EXPECT_EQ(getcury(win.get()) * 10 + getcurx(win.get()), 47);
}

TEST(Drawing, OnTheScreenLeavesColumn79AndTakesEndsOfLinesAsLengths) {
  const CursesScreen screen;
  ffill_area(0, 0, 23, 79, 'x', kAttrNormal);
  cls_on(21, 2, 23, 80, kAttrNormal);
  EXPECT_EQ(rows_of(stdscr, 21, 3), "xx|xx|" + std::string(80, 'x') + "|");
  cls();
  for (const int row : {0, 23}) EXPECT_EQ(row_of(stdscr, row), std::string(79, ' ') + "x");
  werase(stdscr);
  fdraw_line(1, 20, 1, 10, '-', 0);
  fdraw_line(5, 2, 3, 2, '!', 0);
  EXPECT_EQ(rows_of(stdscr, 0, 10), "|          " + std::string(20, '-') + "||  !|  !|  !|  !|  !|||");
}

TEST(Cursor, MovesAndAttributesReverse) {
  const CursesScreen screen;
  c_set_pos(2, 3);
  for (void (*const move)() : {c_up, c_left, c_down, c_down, c_right, c_right}) move();
  int row = 0, column = 0;
  c_get_pos(&row, &column);
  EXPECT_EQ(std::pair(row, column), std::pair(3, 4));
  EXPECT_EQ(colour_word(kAttrBackground), 0x1400);
  EXPECT_EQ(colour_word(kAttrHighlight), kAttrHighlight);
}

// --- keys and lines

TEST(Keys, AsTheyAreHandedOut) {
  const CursesScreen screen;
  initscrio();
  adopt_terminal_size(10, 40);  // windows keep their places whatever the size
  type_ahead({127, 'a', KEY_UP, 0x103, 'k', 'x'});
  for (const int key : {kKeyBackspace, int{'a'}, kKeyUp}) EXPECT_EQ(inkey(), key);
  c_set_pos(2, 5);
  int scan = -1;
  EXPECT_EQ(inkeysys(&scan), 3);
  EXPECT_TRUE(scan == 1 && kbhit() == 1 && is_nodelay(stdscr) && inkeye(0) == 'k' && inkeyx() == 'x');
  EXPECT_EQ(row_of(stdscr, 2, 5, 1), "k");
  type_ahead({'a', 'b'});
  drop_typed_keys();
  define_key("\033[9", kKeyInsert);  // as a terminal may describe it: whole though more could follow
  type_ahead(u"\033]0;" + std::u16string(99, u'x') + u"\a\033[1\033[9c");
  EXPECT_TRUE(winkey(stdscr) == kKeyInsert && inkey() == 'c' && winkey(nullptr) == 0);
  EXPECT_TRUE(time_wait(1) == 0 && std::clock() >= CLOCKS_PER_SEC) << "of the processor's time";
}

TEST(Keys, OfEveryKeyboardAreKnownAndNothingElseIsAKey) {
  std::setlocale(LC_ALL, "C.UTF-8");
  for (const std::string type : kTerminalTypes) {
    const CursesScreen screen(type.c_str());
    initscrio();
    const auto read = [](const std::string &sequence) {
      std::u16string keys = u"\033";
      for (const unsigned char byte : sequence) keys += byte;
      type_ahead(keys + u'.');
      return inkey();
    };
    for (const auto &[key, sequences] : kSentByKeyboards) {
      for (const std::string sequence : sequences) {
        EXPECT_EQ(read(sequence), key == kNoKey ? '.' : key) << type << " " << sequence;
        EXPECT_EQ(key == kNoKey ? '.' : inkey(), '.') << type << " " << sequence;
      }
    }
    const bool has_four = type == "vt100" || type == "vt102";  // keys above the keypad
    EXPECT_EQ(read("Ox"), has_four ? kKeyF10 : kKeyUp) << type;
    drop_typed_keys();
  }
  std::setlocale(LC_ALL, "C");
}

TEST(Sequences, EndWhereTheirGrammarSaysHoweverTheyAreCut) {
  // a sequence is whole with its last byte and not before, whatever comes after it
  for (const std::string_view whole :
       {"\033[A", "\033[1;5D", "\033O5A", "\033\033[A", "\033[7$", "\033[?1;2$y", "\033[[A", "\033[M!!!",
        "\033[<0;1;1M", "\033]0;[A\a", "\033P1$r\033\\", "\033x", "\033\r"}) {
    for (size_t cut = 1; cut < whole.size(); ++cut) {
      EXPECT_EQ(sequence_length(whole.substr(0, cut)).bytes, 0u) << whole.substr(1, cut);
    }
    EXPECT_EQ(sequence_length(whole).bytes, whole.size()) << whole.substr(1);
  }
  // what can't belong to it ends it before, where "|" stands here
  for (std::string typed : {"\033|\033x", "\033[1|\033", "\033[|\r", "\033O|\t", "\033]0;a|\r", "\033]0;a|\033[",
                            "\033[M!|\033", "\033[1|\303"}) {
    const size_t length = typed.find('|');
    EXPECT_EQ(sequence_length(typed.erase(length, 1)).bytes, length) << typed.substr(1);
  }
}

TEST(Sequences, EscapeAloneWaitsLongerOnASerialLine) {
  for (const dev_t device : {makedev(136, 0), makedev(143, 9), makedev(3, 1), makedev(4, 1), makedev(4, 63)})
    EXPECT_EQ(escape_wait(device), 20) << major(device);
  for (const dev_t device : {makedev(4, 64), makedev(144, 0), makedev(166, 1), makedev(135, 64), makedev(229, 0)})
    EXPECT_EQ(escape_wait(device), 200) << major(device);
}

TEST(LineInput, EditsAndEndsByItsForm) {
  const CursesScreen screen;
  const struct {
    bool in_window;
    const char *before;
    std::u16string keys;
    int key;
    const char *after, *shown;
  } cases[] = {
      // in a window every key that does not edit ends it
      {true, "ab", {'c', kKeyUp}, kKeyUp, "abc", "abc  #"},
      {true, "ab", {8, 8, 8, 'x', 10}, 10, "x", "x    #"},
      {true, "too long", {'x', kKeyEscape}, kKeyEscape, "too long", "too long#"},
      {true, "too long", {8, 'x', 'y', kKeyEnter}, kKeyEnter, "too x", "too x"},
      {true, "", {127, '?', ' ', '~', kKeyTab}, kKeyTab, "? ~", "? ~  #"},
      // on the screen Return and Escape only, and one cell more is blanked
      {false, "ab", {kKeyUp, 'c', 10, kKeyReturn}, kKeyReturn, "abc", "abc   #"},
      {false, "ab", {kKeyReturn}, kKeyReturn, "ab", "ab    #"},
      {false, "too long", {'x', 8, kKeyEscape}, kKeyEscape, "too ", "too   #"},
  };
  for (const auto &c : cases) {
    const Window win = open_window(3, 20, 0, 0);
    WINDOW *const shown = c.in_window ? win.get() : stdscr;
    ffill_area(1, 0, 1, 20, '#', kAttrNormal);
    wprintv(win.get(), "####################", kAttrNormal, 1, 0);
    char text[280] = "";
    cpynstr(text, c.before);
    type_ahead(c.keys);
    const int key = c.in_window ? wfinputs(shown, 1, 2, 5, kAttrNormal, text) : finputs(1, 2, 5, kAttrNormal, text);
    EXPECT_EQ(getcurx(shown), 2 + std::min(static_cast<int>(std::strlen(c.after)), 5)) << c.before;
    EXPECT_EQ(key, c.key) << c.before;
    EXPECT_STREQ(text, c.after);
    EXPECT_EQ(row_of(shown, 1, 2, static_cast<int>(std::strlen(c.shown))), c.shown);
    EXPECT_TRUE(!c.in_window || is_nodelay(shown));
  }
}

}  // namespace

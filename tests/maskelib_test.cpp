#include "screen/maskelib.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <string>

#include "screen/image.h"
#include "screen/mask_template.h"
#include "tests/curses_screen.h"
#include "tests/folder.h"
#include "util/charset.h"
#include "util/language.h"
#include "util/text.h"

namespace {

std::string text_of(const void *member, int type, int length) {
  char buf[256];
  get_data(buf, member, type, length);
  return buf;
}

// --- the record

TEST(Record, MembersFollowTheTable) {
  struct {
    char name[5];
    int32_t number;
    char skipped[3];
    int32_t skipped_number;
    char last[2];
  } rec = {};
  const FieldDescriptor tab[] = {{13, 0, 0, 5}, {2, 0, 0, 4},  {8, 0, 0, 9}, {99, 0, 0, 9},
                                 {19, 0, 0, 3}, {18, 0, 0, 4}, {0, 0, 0, 2}, {255, 0, 0, 0}};
  const void *const members[] = {rec.name, &rec.number, rec.skipped, rec.skipped, rec.skipped, &rec.skipped_number,
                                 rec.last, nullptr,     nullptr};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(recptr(&rec, tab, i), members[i]) << i;
  EXPECT_EQ(recptr(&rec, tab, -1), nullptr);
  char text[8];
  EXPECT_EQ(put_field(&rec, tab, 7, "x") + get_field(&rec, tab, 7, text), -2);

  EXPECT_EQ(put_field(&rec, tab, 6, "full"), 0);  // a full text is not terminated and touches nothing behind it
  EXPECT_EQ(std::string(rec.last, 2), "fu");
  EXPECT_EQ(put_field(&rec, tab, 4, "no"), 0);  // a skip field is never converted
  EXPECT_EQ(rec.skipped[0], '\0');
}

TEST(Record, NumbersAsText) {
  const int32_t five = 5, minus = -17, many = 123456;
  EXPECT_EQ(text_of(&five, 2, 4), "   5");
  EXPECT_EQ(text_of(&many, 20, 4), "1234");
  EXPECT_EQ(text_of(&minus, 2, 10), "4294967279");
  EXPECT_EQ(text_of(&minus, 4, 5), "  -17");
  null_unt = 0;
  EXPECT_EQ(text_of(&five, 2, 4), "0005");
  null_unt = 1;
  int32_t number = 77;
  put_data(&number, "99999999999", 2, 11);
  EXPECT_EQ(number, INT32_MAX);
  put_data(&number, "x", 2, 11);
  EXPECT_EQ(number, 0);
}

// --- decisions

TEST(Filter, EveryTypeOnBothSidesOfItsRule) {
  const std::string kAny = "aZ09 .-/\xA4\xFF~", kNumber = "09. ";
  // clang-format off
  const struct { int type, position; std::string takes, refuses; } cases[] = {
      {0, 0, kAny + "?:", "|\\\x1f\x7f"},          {1, 0, kNumber, "a-,:"},         {2, 0, kNumber, "a-,:\xA4"},
      {3, 0, "a. ", "09|\\"},                      {3, 1, kAny, "|\\"},            {4, 0, kNumber, "-"},
      {5, 0, kAny + "\\", "|"},                    {6, 0, "09/.: ", "a-"},         {7, 1, "09/.: ", "a-"},
      {8, 0, "\\", "|"},                           {9, 0, "\\", "|"},              {12, 0, "09 ", ".a-"},
      {10, 0, "a/.-\xA4", "09|\\:;?<&>*^!,"},     {10, 1, "a09/()\"", "|\\:;?<&>*^!,"},
      {11, 0, "a:?<", "09|\\();\","},             {11, 1, "a09:", "|\\();\","},   {13, 0, "", kAny},
      {14, 0, "09 default", "bgx.-"},              {15, 0, "a9:-", ".|\\)(;\","},  {15, 1, "a9.", "|\\)(;\","},
      {16, 0, "azAZ09", " .@[`{/:\xA4\xE9"},       {17, 0, "a.,:\xA4", "|\\();\""}, {18, 0, "", kAny},
      {19, 0, "", kAny},                           {20, 0, "", "09"},               {21, 0, kAny + "\\", "|"},
  };  // clang-format on
  for (const auto &c : cases) {
    for (const unsigned char ch : c.takes) EXPECT_TRUE(accepts_character(c.type, c.position, ch)) << c.type << ch;
    for (const unsigned char ch : c.refuses) EXPECT_FALSE(accepts_character(c.type, c.position, ch)) << c.type << ch;
  }
  EXPECT_FALSE(accepts_character(0, 0, 'a' + 256));
}

TEST(Mask, MovesBetweenThreeFields) {
  const struct {
    int from, key, to, result;
  } cases[] = {
      {0, 258, 1, -1}, {1, 13, 2, -1},  {1, 1, 2, -1},   {2, 258, 2, -1}, {1, 9, 2, -1}, {2, 9, 3, 0},
      {0, 259, 0, -1}, {2, 260, 1, -1}, {2, 262, 0, -1}, {0, 360, 2, -1}, {1, 27, 1, 0}, {1, 274, 1, -1},
  };
  for (const auto &c : cases) {
    int i = c.from;
    EXPECT_EQ(steuerung(&i, c.key, 3), c.result) << c.key;
    EXPECT_EQ(i, c.to) << c.key;
  }
}

// --- templates

TEST(Template, FieldsAreFoundInsideTheirRowsOnly) {
  std::string found(kImageSize, '.');
  found.replace(78, 7, ">>2...<");          // what is no type character; the type character stands in the next row
  found.replace(235, 10, ">3......9<");     // reaches into the next row
  found.replace(kImageSize - 3, 3, "<>7");  // never closed
  FieldDescriptor two[kTemplateTable];
  EXPECT_EQ(search_fields(found.data(), two), 1);
  EXPECT_EQ(std::memcmp(two, "\2\1\0\4\3\2\x4c\4\xff", 9), 0);
  EXPECT_EQ(search_fields(found.data(), two), 0);
  EXPECT_EQ(found.substr(77, 9) + found.substr(kImageSize - 3), ".>      .<>7");
}

// --- on the screen

struct FormScreen : CursesScreen {
  Window win = open_window(10, 40, 5, 5);
  FormScreen() {
    init_masklib();
    attr_dkl = attr_hell = old = null_unt = 0;
    reset_masklib();
  }
};

// What a field showed after the last change while it was edited.
std::string shown;
void look_at_field(const void *, WINDOW *win) {
  shown = rows_of(win, 2, 1);
  EXPECT_NE(mvwinch(win, 2, 0) & A_BOLD, 0U) << shown;
}

TEST(Edit, TypedTextsReachTheRecord) {
  using enum Charset;
  const struct {
    Charset charset;
    uint8_t type, length;
    const char *text;
    std::u16string keys;  // in their numbers: 0x103 is Up, 0x102 Down, 0x104 Left, 0x105 Right
    int key;              // that ended it
    const char *stored, *shown;
    int beeps;
  } cases[] = {
      // clang-format off
      {bytes, 0, 4, "wxyz", u"a\u0105\u0105bc\n", 13, "axyb", "axyb", 1},  // overwrites, up to the last cell
      {bytes, 0, 4, "wxyz", u"\u0105\u0105\b\t", 9, "wyz", "wyz", 0},      // the cells after it move up
      {bytes, 0, 4, "ab", u"\b|\\\u0104", 260, "ab", "", 2},
      {bytes, 13, 4, "yes", u"x\u0105\b9\u0112", 274, "yes", "", 3},       // read-only: nothing erases either
      {bytes, 14, 7, "", u"\u001Fdefault\u0103", 259, "default", "default", 0},
      {bytes, 14, 7, "default", u"007    \u0102", 258, "7", "007", 0},
      {bytes, 12, 4, "0042", u"?", '?', "42", "", 0},                      // also when nothing was typed
      {bytes, 12, 4, "", u"\u0168", 360, "", "", 0},
      {bytes, 16, 4, "", u"a.b_\u0106", 262, "ab", "ab", 2},
      {bytes, 0, 6, "", u"\u00E9\u00A4\u014A\r", 13, "\xE9\xA4", "", 1},
      {raw_euc_jp, 0, 5, "", u"\u00A4\u00A2\u00A4\u00A4\u00A4\u00A6z\r", 13, "\xA4\xA2\xA4\xA4z", "z", 1},
      {raw_euc_jp, 16, 4, "", u"\u00A4\u00A2z\r", 13, "z", "z", 1},
      {raw_euc_jp, 0, 4, "", u"\u00A4z\r", 13, "z", "z", 1},               // what is no second byte is a key of its own
      {raw_euc_jp, 0, 4, "a\xA4", u"\r", 13, "a\xA4", "", 0},              // passing over a text changes no byte of it
      {euc_jp, 0, 8, "Unknown", u"あいう\r", 13, "\xA4\xA2\xA4\xA4\xA4\xA6n", "あいうn", 0},
      {euc_jp, 0, 8, "\xA4\xA2\xA4\xA4", u"\u0105\u0105\u0105x\r", 13, "\xA4\xA2 x", "あ?x", 0},  // half is a blank
      {euc_jp, 0, 8, "\xA4\xA2\xA4\xA4", u"x\u0105\bか\r", 13, "x\xA4\xAB", "xか", 0},
      {euc_jp, 0, 8, "", u"漢\u00C3\u00A9\u00EF\u00BD\u00B1\u00E2\u0082\u00AC\u00F0\u0080字\r", 13,  // no two bytes:
       "\xB4\xC1\xBB\xFA", "漢字", 4},                          // e acute, half-width kana, the euro; and broken ones
      {euc_jp, 0, 8, "ab\xA4", u"x\r", 13, "xb", "xb?", 0},                              // as is a broken one
      {euc_jp, 0, 5, "", u"abcd漢\r", 13, "abcd", "abcd", 1},                          // half of it would fit
      {locale, 0, 4, "", u"\u00C3\u00BC \u00C3\u00A4z\r", 13, "\xC3\xBC z", "ü  z", 1},
      {locale, 0, 4, "", u"\u00C3z\u00BC\r", 13, "z", "z", 2},
      {locale, 0, 4, "a\xC3\xBC", u"\u0105\u0105\u0105\b\r", 13, "a", "a?", 0},
      {locale, 0, 4, "\xB4\xC1", u"\u0105\u0105x\r", 13, "\xB4\xC1x", "??x", 0},       // what else stands there stays
      {bytes, 2, 6, "1000000", u"\u0105\r", 13, "     1000000", "", 0},                // shown as 100000
      {bytes, 2, 6, "1000000", u"100000\r", 13, "      100000", "100000", 0},          // typed over what is shown
      // clang-format on
  };
  const FormScreen screen;
  for (const auto &c : cases) {
    char rec[12] = "";
    put_data(rec, c.text, c.type, sizeof rec);
    const FieldDescriptor tab[] = {{c.type, 2, 0, c.length}, {255, 0, 0, 0}};
    const bool wide = c.charset == euc_jp || c.charset == locale;
    std::setlocale(LC_ALL, wide ? "C.UTF-8" : "C");
    language = c.charset == euc_jp || c.charset == raw_euc_jp;
    werase(screen.win.get());
    show_rec(screen.win.get(), rec, tab, attr_dkl);
    type_ahead(c.keys);
    shown = "|";
    const long bells = screen.bells();
    EXPECT_EQ(edit_field(screen.win.get(), rec, tab, 0, {look_at_field}), c.key) << c.stored;
    EXPECT_EQ(text_of(rec, c.type, sizeof rec), c.stored);
    EXPECT_EQ(screen.bells() - bells, c.beeps) << c.stored;
    EXPECT_EQ(shown, c.shown + std::string("|")) << c.stored;
    EXPECT_NE(mvwinch(screen.win.get(), 2, 0) & A_DIM, 0U) << "no longer as one that is edited";
  }
  language = 0;
  std::setlocale(LC_ALL, "C");
}

TEST(Edit, PassesOverASkipFieldAwayFromTheFieldEditedLast) {
  const FormScreen screen;
  char rec[6] = "";
  const FieldDescriptor tab[] = {{0, 0, 0, 2}, {19, 1, 0, 2}, {0, 2, 0, 2}, {255, 0, 0, 0}};
  type_ahead(u"\t\t\t");
  for (const auto &[field, key] : {std::pair(0, 9), {1, 258}, {2, 9}, {1, 259}, {1, 259}, {0, 9}, {1, 258}, {3, 27}}) {
    EXPECT_EQ(edit_field(screen.win.get(), rec, tab, field), key) << field;
  }
  for (const int n : {5, 6, 7}) dobeep(n);
  EXPECT_EQ(screen.bells(), 1);
}

TEST(Image, BlocksAndValuesStayInsideImageAndWindow) {
  const FormScreen screen;
  const Window window = open_window(5, 10, 0, 0);
  WINDOW *const win = window.get();
  draw_blk(win, Edit_screen, -3, 8, 99, 200, '#', 1);
  clsln(win, 1, 8, 2, 8, kAttrHighlight);
  EXPECT_TRUE((mvwinch(win, 1, 8) & A_BOLD) != 0 && (getattrs(win) & A_BOLD) == 0);
  disp_value(win, 0, 1, kAttrNormal, -12, 5, kDecimal);
  null_unt = 0;
  disp_value(win, 1, 1, kAttrNormal, -1, 9, kHexadecimal);
  disp_value(win, 2, 1, kAttrNormal, reinterpret_cast<intptr_t>("te"), 3, kTextValue);
  EXPECT_EQ(rows_of(win, 0, 3), "   -12  ##| 0ffffffff| te      #|");
  insert_char(win, 2, 1, 4, '>');
  insert_char(win, 0, 1, 4, '>');
  EXPECT_EQ(row_of(win, 0) + row_of(win, 2), " >  -2  ## >te     #");
  delete_char(win, 2, 2, 4, '<');
  insert_char(win, 25, 0, 200, '!');
  delete_char(win, 24, -1, 3, '!');
  EXPECT_EQ(row_of(win, 2) + Edit_screen[kImageSize - 1], " >e <    ##");
  const WorkingFolder folder;
  std::string shown_mask(kImageSize, '=');
  put_file("mask", std::string(shown_mask).replace(4 * kImageColumns + 2, 3, ">2<"));
  shown_mask.replace(4 * kImageColumns + 2, 3, "   ");
  FieldDescriptor none[kTemplateTable];
  EXPECT_EQ(show_tmask(win, "mask", none, kAttrNormal, 3, 2, 70, 6), 0);
  EXPECT_EQ(row_of(win, 4), "     == ##");
  for (const auto &[mask, result] : {std::pair("mask", 0), {"missing", -1}, {".", -1}})
    EXPECT_EQ(show_mask(win, mask, none, kAttrNormal), result) << mask;
  EXPECT_EQ(row_of(win, 0), "==========");
  EXPECT_EQ(std::string(Edit_screen, kImageSize), shown_mask);
}

}  // namespace

#include "screen/maskelib.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "screen/field_cells.h"
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
  EXPECT_EQ(recptr(&rec, tab + 7, 0), nullptr);
  EXPECT_EQ(put_field(&rec, tab, 7, "x"), -1);

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
  const struct {
    int type, position;
    std::string takes, refuses;
  } cases[] = {
      // clang-format off
      {0, 0, kAny + "?:", "|\\\x1f\x7f"},          {1, 0, kNumber, "a-,:"},         {2, 0, kNumber, "a-,:\xA4"},
      {3, 0, "a. ", "09|\\"},                      {3, 1, kAny, "|\\"},            {4, 0, kNumber, "-"},
      {5, 0, kAny + "\\", "|"},                    {6, 0, "09/.: ", "a-"},         {7, 1, "09/.: ", "a-"},
      {8, 0, "\\", "|"},                           {9, 0, "\\", "|"},              {12, 0, "09 ", ".a-"},
      {10, 0, "a/.-\xA4", "09|\\:;?<&>*^!,"},     {10, 1, "a09/()\"", "|\\:;?<&>*^!,"},
      {11, 0, "a:?<", "09|\\();\","},             {11, 1, "a09:", "|\\();\","},   {13, 0, "", kAny},
      {14, 0, "09 default", "bgx.-"},              {15, 0, "a9:-", ".|\\)(;\","},  {15, 1, "a9.", "|\\)(;\","},
      {16, 0, "azAZ09", " .@[`{/:\xA4\xE9"},       {17, 0, "a.,:\xA4", "|\\();\""}, {18, 0, "", kAny},
      {19, 0, "", kAny},                           {20, 0, "", "09"},               {21, 0, kAny + "\\", "|"},
      // clang-format on
  };
  for (const auto &c : cases) {
    for (const unsigned char ch : c.takes) EXPECT_TRUE(accepts_character(c.type, c.position, ch)) << c.type << ch;
    for (const unsigned char ch : c.refuses) EXPECT_FALSE(accepts_character(c.type, c.position, ch)) << c.type << ch;
  }
  EXPECT_FALSE(accepts_character(0, 0, 'a' + 256));
}

TEST(Field, KeysThatNoTerminalTestTypes) {
  const auto action = [](int position, int key, int cells) { return field_step(0, 4, position, key, cells).action; };
  EXPECT_EQ(field_step(0, 4, 0, kKeyEnter, 1).key, kKeyReturn);
  EXPECT_EQ(action(1, kKeyF10 - 1, 1), FieldAction::kBeep);
  EXPECT_EQ(action(1, kKeyUnfit, 1), FieldAction::kBeep);
  EXPECT_EQ(action(1, 0, 1), FieldAction::kIgnore);
  EXPECT_EQ(action(2, 0xA4, 2), FieldAction::kEnter);
  EXPECT_EQ(action(3, 0xA4, 2), FieldAction::kBeep);
  EXPECT_EQ(action(4, kKeyBackspace, 1), FieldAction::kErase);
  EXPECT_EQ(action(4, kKeyRight, 1), FieldAction::kEnd);
}

TEST(Mask, MovesBetweenThreeFields) {
  const struct {
    int from, key, to, result;
  } cases[] = {
      {0, 258, 1, -1}, {0, 261, 1, -1}, {1, 13, 2, -1},  {1, 1, 2, -1},   {2, 258, 2, -1},
      {1, 9, 2, -1},   {2, 9, 3, 0},    {0, 259, 0, -1}, {2, 260, 1, -1}, {2, 262, 0, -1},
      {0, 360, 2, -1}, {1, 27, 1, 0},   {1, 274, 1, -1},
  };
  for (const auto &c : cases) {
    int i = c.from;
    EXPECT_EQ(steuerung(&i, c.key, 3), c.result) << c.key;
    EXPECT_EQ(i, c.to) << c.key;
  }
}

TEST(Cells, HalvesNeverJoinTheirNeighbours) {
  const struct {
    std::string text;
    int boundary;
    std::string parted, stored;
  } cases[] = {
      {"\xA4\xA2\xA4\xA4", 2, "\xA4\xA2\xA4\xA4", "\xA4\xA2\xA4\xA4"},
      {"\xA4\xA2\xA4\xA4", 1, "\x1a\x1a\xA4\xA4", "  \xA4\xA4"},
      {"a\xA4\xA2", 2, "a\x1a\x1a", "a  "},
      {"\x8F\xB0\xB1z", 1, "\x1a\x1a\x1az", "   z"},
      {"\x8E\xB1", 2, "\x8E\xB1", "\x8E\xB1"},
      {"ab\xA4", 3, "ab\xA4", "ab "},
      {"\xE9z\xA4", 9, "\xE9z\xA4", " z "},
  };
  for (auto c : cases) {
    part_characters(c.text, c.boundary);
    EXPECT_EQ(c.text, c.parted);
    blank_halves(c.text);
    EXPECT_EQ(c.text, c.stored);
  }
}

// --- templates

TEST(Template, FieldsAreFoundAndBlanked) {
  std::string screen(kImageSize, '.');
  screen.replace(79, 6, ">2...<");           // the type character stands in the next row
  screen.replace(170, 8, "> 1 >_<>");        // a ">" before anything else is text
  screen.replace(235, 10, ">3......9<");     // reaches into the next row
  screen.replace(kImageSize - 3, 3, "<>7");  // never closed
  FieldDescriptor tab[kTemplateTable];
  EXPECT_EQ(search_fields(screen.data(), tab), 1);
  std::string found;
  for (const auto *at = tab; at->type != kFieldEnd; ++at) {
    for (const int value : {at->type, at->row, at->col, at->length}) found += std::to_string(value) + " ";
  }
  EXPECT_EQ(found, "2 1 0 4 0 2 15 1 3 2 76 4 ");
  EXPECT_EQ(screen.substr(78, 8), ".      .");
  EXPECT_EQ(screen.substr(170, 8), "> 1    >");
  EXPECT_EQ(screen.substr(kImageSize - 3), "<>7");
}

TEST(Template, AnyCharactersStayInsideTheTable) {
  std::mt19937 random(8);
  for (int round = 0; round < 300; ++round) {
    std::string screen;
    while (screen.size() < kImageSize) screen += round == 0 ? ">1<" : std::string(1, "><>1<_5\xA4"[random() % 8]);
    std::vector<FieldDescriptor> tab(kTemplateTable);
    screen.resize(kImageSize);
    search_fields(screen.data(), tab.data());
    for (const auto *field = tab.data(); field->type != kFieldEnd; ++field) {
      ASSERT_TRUE(field->row < kImageRows && field->length >= 1 && field->col + field->length <= kImageColumns);
    }
  }
}

// --- on a real screen

// Runs `scene` in a process of its own, on a terminal of 24x80 at which `keys` have been typed; what it reports.
std::string on_terminal(const std::string &keys, void (*scene)(std::string &report)) {
  int terminal;
  const winsize size = {24, 80, 0, 0};
  termios raw = {};
  cfmakeraw(&raw);
  const pid_t child = forkpty(&terminal, nullptr, &raw, &size);
  if (child == 0) {
    alarm(30);
    setenv("TERM", "xterm", 1);
    init_screen();
    init_masklib();
    std::string report;
    scene(report);
    end_screen();
    report.insert(0, 1, '\1');
    _exit(write(1, report.data(), report.size()) < 0 ? 1 : 0);
  }
  if (child < 0 || write(terminal, keys.data(), keys.size()) < 0) return "no terminal";
  std::string output;
  char buffer[4096];
  for (ssize_t n; (n = read(terminal, buffer, sizeof buffer)) > 0;) output.append(buffer, static_cast<size_t>(n));
  waitpid(child, nullptr, 0);
  close(terminal);
  return output.substr(output.rfind('\1') + 1);
}

const struct {
  int language, type, length;
  const char *text, *keys;  // shown first, and typed
  int key;                  // that ended it
  const char *stored;
} kTyping[] = {
    {0, 0, 4, "", "abc\r", 13, "abc"},
    {0, 0, 4, "wxyz", "a\x1bOC\x1bOCbc\n", 13, "axyb"},  // overwrites; behind the last cell nothing is taken
    {0, 0, 4, "wxyz", "\x1bOC\x1bOC\b\t", 9, "wyz"},     // the cells behind move up
    {0, 0, 4, "ab", "\b|\\\x1bOD", 260, "ab"},
    {0, 0, 2, "ab", "\x1bOC\x1bOC", 261, "ab"},
    {0, 13, 4, "yes", "x\x1bOC\b9\x1b[21~", 274, "yes"},  // read-only: Backspace does not erase either
    {0, 14, 7, "", "default\x1bOA", 259, "default"},
    {0, 14, 7, "default", "007    \x1bOB", 258, "7"},
    {0, 12, 4, "0042", "?", '?', "42"},  // also when nothing was typed
    {0, 12, 4, "", "\x1bOF", 360, ""},
    {0, 16, 4, "", "a.b_\x1bOH", 262, "ab"},
    {0, 0, 6, "", "\xE9\xA4\r", 13, "\xE9\xA4"},
    {1, 0, 6, "", "a\xA4\xA2\xA4\xA4\r", 13, "a\xA4\xA2\xA4\xA4"},
    {1, 0, 5, "", "\xA4\xA2\xA4\xA4\xA4\xA6z\r", 13, "\xA4\xA2\xA4\xA4z"},  // of the third only half would fit
    {1, 0, 4, "\xA4\xA2\xA4\xA4", "x\r", 13, "x \xA4\xA4"},                 // its other half is stored as a blank
    {1, 0, 6, "\xA4\xA2\xA4\xA4", "\x1bOC\xA4\xA6\r", 13, " \xA4\xA6"},
    {1, 0, 6, "\xA4\xA2\xA4\xA4", "\x1bOC\x1bOC\b\r", 13, " \xA4\xA4"},
    {1, 16, 4, "", "\xA4\xA2z\r", 13, "z"},
    {1, 0, 4, "", "\xA4z\r", 13, "z"},      // what is no second byte is a key of its own
    {1, 0, 4, "a\xA4", "\r", 13, "a\xA4"},  // passing over a text changes no byte of it
};

TEST(Edit, TypedTextsReachTheRecord) {
  const auto scene = [](std::string &report) {
    WINDOW *win = newwin(10, 40, 5, 5);
    winitscrio(win);
    for (const auto &c : kTyping) {
      char rec[12] = "";
      cpynstr(rec, c.text);
      const FieldDescriptor tab[] = {{static_cast<uint8_t>(c.type), 2, 3, static_cast<uint8_t>(c.length)},
                                     {255, 0, 0, 0}};
      language = c.language;
      show_rec(win, rec, tab, attr_dkl);
      report += std::to_string(edit_field(win, rec, tab, 0)) + " ";
      report += text_of(rec, c.type, c.length) + "\n";
    }
  };
  std::string keys, expected;
  for (const auto &c : kTyping) {
    keys += c.keys;
    expected += std::to_string(c.key) + " " + c.stored + "\n";
  }
  EXPECT_EQ(on_terminal(keys, scene), expected);
}

TEST(Edit, NumbersSkipFieldsAndFieldsOutsideTheImage) {
  const auto scene = [](std::string &report) {
    WINDOW *win = newwin(10, 40, 5, 5);
    winitscrio(win);
    struct {
      int32_t wide, skipped, typed;
      char outside[4];
    } rec = {123456, 7, 5, {'k', 'e', 'p', 't'}};
    const FieldDescriptor tab[] = {{2, 1, 1, 4}, {18, 1, 1, 4}, {2, 2, 1, 4}, {0, 30, 1, 4}, {255, 0, 0, 0}};
    show_rec(win, &rec, tab, attr_dkl);
    for (int i = 0, key = 0; key != kKeyEscape;) {
      key = edit_field(win, &rec, tab, i);
      report += std::to_string(i) + ":" + std::to_string(key) + " ";
      steuerung(&i, key, 4);
    }
    report += std::to_string(rec.wide) + " " + std::to_string(rec.typed) + " " + std::string(rec.outside, 4) + " " +
              std::string(Edit_screen + 81, 4) + "|" + std::string(Edit_screen + 161, 4);
    report += std::to_string(edit_field(win, &rec, tab, 4));
  };
  EXPECT_EQ(on_terminal("\r12 4\rx\x1bOA\x1bOA\r\r\x1b", scene),
            "0:13 1:258 2:13 3:259 2:259 1:259 0:13 1:258 2:13 3:27 123456 12 kept 1234|  1227");
}

TEST(Image, BlocksAndValuesStayInsideImageAndWindow) {
  const auto scene = [](std::string &report) {
    WINDOW *win = newwin(5, 10, 0, 0);
    const auto add = [&](int row) {
      char cells[11];
      mvwinnstr(win, row, 0, cells, 10);
      report += std::string(cells) + "|";
    };
    draw_blk(win, Edit_screen, -3, 8, 99, 200, '#', 1);
    clsln(win, 1, 8, 2, 8, kAttrNormal);
    for (int row = 0; row < 5; ++row) add(row);
    dispdez(win, 0, 1, kAttrNormal, -12, 5);
    disphex(win, 1, 1, kAttrNormal, -1, 9);
    display(win, 2, 1, kAttrNormal, "text", 2);
    for (int row = 0; row < 3; ++row) add(row);
    insert_char(win, 2, 1, 4, '>');
    add(2);
    delete_char(win, 2, 2, 4, '<');
    add(2);
    insert_char(win, 24, 79, 200, '!');
    delete_char(win, 25, -1, 3, '!');
    show_tmsk(win, std::string(kImageSize, '=').c_str(), 3, 2, 70, 4, kAttrNormal);
    add(4);
    FieldDescriptor tab[kTemplateTable];
    report += std::to_string(show_mask(win, "/nowhere", tab, kAttrNormal));
    add(4);
    report += std::string(Edit_screen + 160, 9) + "|" + std::string(Edit_screen + kImageSize - 80, 10);
  };
  EXPECT_EQ(on_terminal("", scene),
            "        ##|         #|         #|        ##|        ##|"
            "   -12  ##|  ffffffff| te      #| >te     #| >e <    #|"
            "  ===   ##|-1  ===   ##| >e <    |  ===   ##");
}

}  // namespace

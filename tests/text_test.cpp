// Texts, tokens and numbers.
#include "util/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "util/numbers.h"
#include "util/tokens.h"

namespace {

using std::string_literals::operator""s;

TEST(Tokens, PiecesAndTheirNumber) {
  const struct {
    const char *text, *sep;
    int n;
    const char *piece, *run_piece;  // of ctoken, of token
    int pieces, run_pieces;
  } cases[] = {
      {"a||b", "|", 1, "a", "a", 3, 2},     {"a||b", "|", 2, "", "b", 3, 2},
      {"a||b", "|", 3, "b", "", 3, 2},      {"|", "|", 1, "", "", 2, 0},
      {"||a|", "|", 1, "", "a", 4, 1},      {"a--b-c", "--", 2, "b-c", "b-c", 2, 2},
      {"a---b", "--", 2, "-b", "-b", 2, 2}, {"abcdefghij", "|", 1, "abcdefg", "abcdefg", 1, 1},
      {"a|b", "", 1, "a|b", "a|b", 1, 1},   {"a|b", "", 9, "a|b", "a|b", 1, 1},
      {"a|b", "|", 0, "", "", 2, 2},        {"", "", 1, "", "", 0, 0},
  };
  for (const auto &c : cases) {
    char out[8];
    EXPECT_STREQ(ctoken(out, sizeof out, c.text, c.sep, c.n), c.piece) << c.text << c.n;
    EXPECT_STREQ(token(out, sizeof out, c.text, c.sep, c.n), c.run_piece) << c.text << c.n;
    EXPECT_TRUE(cnumtoken(c.text, c.sep) == c.pieces && numtoken(c.text, c.sep) == c.run_pieces) << c.text;
  }
  EXPECT_EQ(wp_numtoken(" one\ttwo\x1A\n three "), 3);
}

TEST(Text, CopiesStayInTheirPlace) {
  const auto copied = [](auto copy, const char *src, int n) {
    char place[] = "........";
    copy(place, src, n);
    return std::string(place, sizeof place - 1);
  };
  const auto bounded = [](char *dst, const char *src, int n) { cpynstr(dst, src, n); };
  EXPECT_EQ(copied(bounded, "abcdef", 4), "abc\0...."s);
  EXPECT_EQ(copied(bounded, "ab", 0), "........");
  EXPECT_EQ(copied(cpynchr, "ab cd", 8), "ab\0....."s);
  EXPECT_EQ(copied(cpychr, "ab", 4), "ab  ....");
  EXPECT_EQ(copied(cpyvar, "ab", 4), "ab\0\0\0..."s);
  EXPECT_EQ(copied(UCTstrncpy, "abcdef", 4), "abc\0...."s);
  EXPECT_EQ(copied(UCTstrncpy, "abcdef", 0), "\0......."s);
  char joined[8] = "abc";
  EXPECT_STREQ(UCTstrncat(joined, "defghijk", sizeof joined), "abcdefg");
  EXPECT_STREQ(UCTstrncat(joined, "x", 4), "abc");
}

TEST(Text, Comparisons) {
  const struct {
    const char *a, *b;
    int exact, folded, by_length;  // signs of cmpstr, xstricmp, stricmp
  } cases[] = {
      {"abc", "ABC", 1, 0, 0}, {"abc", "ABCD", 1, -1, -1}, {"b", "aa", 1, 1, -1},
      {"[", "{", -1, -1, -1},  {"\xE4", "a", -1, 1, 1},  // signed where bytes count, unsigned where letters do
  };
  const auto sign = [](int n) { return (n > 0) - (n < 0); };
  for (const auto &c : cases) {
    EXPECT_EQ(sign(cmpstr(c.a, c.b)), c.exact) << c.a << " " << c.b;
    EXPECT_EQ(sign(xstricmp(c.a, c.b)), c.folded) << c.a << " " << c.b;
    EXPECT_EQ(sign(stricmp(c.a, c.b)), c.by_length) << c.a << " " << c.b;
  }
  EXPECT_TRUE(cmpnstr("abX", "abY", 2) == 0 && xstrnicmp("UPS1", "ups2", 3) == 0 && strnicmp("up", "UPS", 9) < 0);
  EXPECT_TRUE(str_contain("UpsModel", "Model", 8) == 1 && str_contain("UpsModel", "Model", 7) == 0);
}

TEST(Text, CaseTrimmingAndPadding) {
  char s[300] = "gr\xFC\xDF \xE9 Z";
  EXPECT_STREQ(Xstrupr(s), "GR\xDC\xDF \xE9 Z");
  EXPECT_STREQ(strlow(s), "gr\xDC\xDF \xE9 z");
  EXPECT_STREQ(Xalltrim(s, "  \ta b\t  "), "\ta b\t");
  EXPECT_STREQ(Xalltrim(s, "   "), "");
  EXPECT_STREQ(Xrtrim(UCTstrncpy(s, " a \t\r\n\x1A", sizeof s)), " a");
  EXPECT_STREQ(UCTstrip_trailing_char(UCTstrncpy(s, "path///", sizeof s), '/'), "path");
  const struct {
    const char *text;
    int width, mode;
    const char *padded;
  } cases[] = {{"ab", 5, 2, "***ab"},    {"ab", 5, 3, "*ab**"},      {"ab", 5, 1, "ab***"},
               {"abcdef", 4, 3, "abcd"}, {"abcdef", 4, 2, "abcdef"}, {"ab", -1, 3, ""}};
  for (const auto &c : cases) EXPECT_STREQ(strpad(UCTstrncpy(s, c.text, sizeof s), c.width, '*', c.mode), c.padded);
}

TEST(Text, TemplatesTakeTheirValues) {
  char out[16];
  EXPECT_STREQ(Xstr_format(out, "24122024", "DD.MM.YYYY", "DDMMYYYY"), "24.12.2024");
  EXPECT_STREQ(Xstr_format(out, "1x9", "h:m", "h?m"), "1:9");      // the template has no "?"
  EXPECT_STREQ(Xstr_format(out, "12", "DD.MM", "DDMM"), "12.MM");  // the values end first
}

TEST(Numbers, AreClampedTo32Bits) {
  constexpr int32_t least = std::numeric_limits<int32_t>::min();
  constexpr int32_t most = std::numeric_limits<int32_t>::max();
  EXPECT_TRUE(to_int32(" \t+7x") == 7 && to_int32("- 7") == 0 && to_uint32("-7") == 0);
  EXPECT_TRUE(to_int32("2147483648") == most && to_int32("-99999999999999999999") == least);
  EXPECT_TRUE(to_uint32("2147483648") == 2147483648U && to_uint32("99999999999999999999") == 4294967295U);
  EXPECT_TRUE(to_int32(-1.9) == -1 && to_int32(1e30) == most && to_int32(-1e30) == least);
  EXPECT_EQ(to_int32(std::nan("")), 0);
}

TEST(Numbers, Digits) {
  char out[34];
  EXPECT_STREQ(qitoa(std::numeric_limits<int32_t>::min(), out, 10), "-2147483648");
  EXPECT_STREQ(qitoa(-1, out, 16), "ffffffff");
  EXPECT_STREQ(xtoa(0x80000000U, out, 2, 1), "-10000000000000000000000000000000");
  EXPECT_STREQ(qultoa(35, out, 37), "");
  EXPECT_EQ(getHexASCII("fFz1", 4), 0xFF01U);
  EXPECT_EQ(getHexASCII("100000001", 9), 2U);  // the ninth digit wraps onto the first
  EXPECT_EQ(getDecASCII("1x34", 3), 103U);
}

}  // namespace

// Texts, tokens, numbers, and the files that hold texts.
#include "util/text.h"

#include <cmath>
#include <limits>
#include <string>
#include <tuple>

#include "tests/folder.h"
#include "util/charset.h"
#include "util/conversion.h"
#include "util/files.h"
#include "util/language.h"
#include "util/messages.h"
#include "util/numbers.h"
#include "util/scramble.h"
#include "util/tokens.h"
#include "util/trace.h"

namespace {

using std::string_literals::operator""s;

TEST(Tokens, PiecesAndTheirNumber) {
  const std::tuple<const char *, const char *, int, const char *, const char *, int, int> cases[] = {
      {"a||b", "|", 2, "", "b", 3, 2},      {"|", "|", 1, "", "", 2, 0},
      {"||a|", "|", 1, "", "a", 4, 1},      {"a--b-c", "--", 2, "b-c", "b-c", 2, 2},
      {"a---b", "--", 2, "-b", "-b", 2, 2}, {"abcdefghij", "|", 1, "abcdefg", "abcdefg", 1, 1},
      {"a|b", "", 1, "a|b", "a|b", 1, 1},   {"a|b", "", 9, "a|b", "a|b", 1, 1},
      {"a|b", "|", 0, "", "", 2, 2},        {"", "", 1, "", "", 0, 0},
  };
  for (const auto &[text, sep, n, piece, run_piece, pieces, run_pieces] : cases) {
    char out[8];
    EXPECT_STREQ(ctoken(out, sizeof out, text, sep, n), piece) << text << n;
    EXPECT_STREQ(token(out, sizeof out, text, sep, n), run_piece) << text << n;
    EXPECT_TRUE(cnumtoken(text, sep) == pieces && numtoken(text, sep) == run_pieces) << text;
  }
  EXPECT_EQ(wp_numtoken("one\ttwo\x1A\n three "), 3);
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
  EXPECT_EQ(copied(bounded, "ab", 1), "\0......."s);
  EXPECT_EQ(copied(cpynchr, "ab cd", 8), "ab\0....."s);
  const auto padded = [](char *dst, const char *src, int n) { strpad(UCTstrncpy(dst, src, 3), n, '-', kCentred, 0); };
  EXPECT_EQ(copied(padded, "ab", 6), "--ab--..");
  EXPECT_EQ(copied(cpychr, "ab", 4), "ab  ....");
  EXPECT_EQ(copied(cpyvar, "ab", 4), "ab\0\0\0..."s);
  EXPECT_EQ(copied(cpyvar, "ab", 0), "\0......."s);
  EXPECT_EQ(copied(UCTstrncat, "ab", 0), "\0......."s);
  EXPECT_EQ(copied(UCTstrncpy, "abcdef", 4), "abc\0...."s);
  EXPECT_EQ(copied(UCTstrncpy, "abcdef", 0), "\0......."s);
  char joined[8] = "abc";
  EXPECT_STREQ(UCTstrncat(joined, "defghijk", sizeof joined), "abcdefg");
  EXPECT_EQ(std::string(UCTstrncat(joined, "x", 4), sizeof joined), "abc\0efg\0"s);
}

// The results are the difference of the first two characters that differ.
TEST(Text, ComparesAndFinds) {
  EXPECT_TRUE(cmpstr("ab", "ab") == 0 && cmpstr("abd", "abc") == 1 && cmpstr("a", "\xE9") == 'a' + 0x17);
  EXPECT_TRUE(cmpnstr("abx", "aby", 2) == 0 && cmpnstr("abx", "aby", 3) == -1 && cmpnstr("a", "a\0b", 3) == 0);
  EXPECT_TRUE(xstricmp("ABC", "abd") == -1 && xstricmp("ab", "A") == 'b' && xstricmp("_", "Az") == '_' - 'a');
  EXPECT_EQ(xstricmp("a", std::string_view("ab", 1)), 0);
  EXPECT_TRUE(stricmp("aZ", "Az") == 0 && stricmp("_", "z") == '_' - 'Z' && stricmp("x", "abc") == -2);
  EXPECT_TRUE(xstrnicmp("AZx", "azy", 2) == 0 && xstrnicmp("AZx", "azy", 3) == -1);
  EXPECT_TRUE(strnicmp("aB", "Abc", 3) == -'C' && strnicmp("ab", "x", 0) == 0);
  EXPECT_TRUE(str_contain("hello", "lo", 5) == 1 && str_contain("hello", "lo", 4) == 0);
  EXPECT_TRUE(str_contain("hello", "hello", 5) == 1 && str_contain("hello", "hello", 4) == 0);
  Label label = {"of %s, %s!", ""};
  EXPECT_EQ(filled(label, {"%s", "2"}), "of %s, 2!");
}

TEST(Text, ControlCharactersAreNotShown) {
  const std::tuple<std::string, std::string, bool, bool> cases[] = {
      // text  shown  UTF-8  EUC-JP
      {"a\033[2J\x7F\n"s, "a?[2J??", true, true},
      {"\0"s, "?", true, true},
      {"\u009B2J \u00A0\u00E9\u3042\U0001F600", "??2J \u00A0\u00E9\u3042\U0001F600", true, false},
      {"\u00E9", "\u00E9", true, true},
      {"\xE3\x81", "\xE3?", false, false},
      {"\x9F\xA0\xE1", "?\xA0\xE1", false, false},  // Latin-1
      {"\xA4\xA2x\x8E\xB1\x8F\xB0\xA1", "\xA4\xA2x\x8E\xB1\x8F\xB0\xA1", false, true},
      {"\xA4\xA2\x8E\x8F\xB0", "\xA4\xA2??\xB0", false, false},
      {"\xA4\xA2\xE3\x81\x9B", "\xA4\xA2\xE3??", false, false},  // and UTF-8 in it
      {"\xE0\xA0\x80\xE1\x80\x80\xF0\x90\x80\x80\xF4\x80\x80\x80",
       "\xE0\xA0\x80\xE1\x80\x80\xF0\x90\x80\x80\xF4\x80\x80\x80", true, false},
      {"\xE0\x82\x9B", "\xE0??", false, false},  // U+009B, longer than it should be, three times
      {"\xF0\x80\x82\x9B", "\xF0???", false, false},
      {"\xC1\x9B\xF5\x80\x80\x80", "\xC1?\xF5???", false, false},
  };
  for (const auto &[text, shown, utf8, euc_jp] : cases) {
    EXPECT_EQ(printable(text), shown);
    EXPECT_TRUE(is_utf8(text) == utf8 && is_euc_jp(text) == euc_jp) << text;
  }
}

TEST(Text, TypedBytesBecomeJapaneseCharactersOfTwo) {
  const std::tuple<const char *, size_t, const char *> cases[] = {
      // typed  bytes of it  taken
      {"\xA4\xA2\xA4", 2, "\xA4\xA2"}, {"\xA4 ", 2, ""},    {"\xA4", 0, ""},     {"\x8E\xB1", 2, ""},
      {"\x8F\xB0\xA1", 3, ""},         {"\x8F\xB0", 0, ""}, {"\x80\xA4", 1, ""},
  };
  for (const auto &[typed, bytes, text] : cases) {
    const TypedCharacter taken = typed_character(typed, Charset::raw_euc_jp);
    EXPECT_TRUE(taken.bytes == bytes && taken.text == text) << typed;
  }
}

TEST(Text, CaseTrimmingAndPadding) {
  char s[300] = "\xE4\xF6\xFC\xDF\xE9 az`{";
  EXPECT_STREQ(Xstrupr(s), "\xC4\xD6\xDC\xDF\xE9 AZ`{");
  EXPECT_STREQ(strlow(s), "\xC4\xD6\xDC\xDF\xE9 az`{");
  EXPECT_STREQ(Xalltrim(s, "  \ta b\t  "), "\ta b\t");
  EXPECT_STREQ(Xalltrim(s, "   "), "");
  EXPECT_STREQ(Xrtrim(UCTstrncpy(s, " a \t\r\n\x1A", sizeof s)), " a");
  EXPECT_STREQ(Xrtrim(UCTstrncpy(s, " \n", sizeof s)), "");
  EXPECT_STREQ(UCTstrip_trailing_char(UCTstrncpy(s, "path///", sizeof s), '/'), "path");
  EXPECT_STREQ(UCTstrip_trailing_char(UCTstrncpy(s, "//", sizeof s), '/'), "");
  for (const auto &[mode, padded] : {std::pair(0, "ab---"), {kLeft, "ab---"}, {kRight, "---ab"}, {kCentred, "-ab--"}}) {
    EXPECT_STREQ(strpad(UCTstrncpy(s, "ab", sizeof s), 5, '-', mode), padded);
  }
  EXPECT_STREQ(strpad(s, 3, '-', kCentred), "-ab");
  EXPECT_STREQ(strpad(s, 2, '-', kRight), "-ab");
  EXPECT_EQ(strpad(UCTstrncpy(s, std::string(280, 'x').c_str(), sizeof s), 3, '-', kLeft), std::string(255, 'x'));
  EXPECT_STREQ(Xstr_format(s, "12345", "D.MM D", "DMMDX"), "4.23 D");
  EXPECT_STREQ(Xstr_format(s, "12", "DD", "DD"), "12");
  EXPECT_STREQ(Xstr_format(s, "123", "D.MM D", "D"), "1.MM D");
}

TEST(Numbers, AreClampedTo32Bits) {
  constexpr int32_t least = std::numeric_limits<int32_t>::min();
  constexpr int32_t most = std::numeric_limits<int32_t>::max();
  EXPECT_TRUE(to_int32(" \t+7x") == 7 && to_int32("- 7") == 0 && to_uint32("-7") == 0);
  EXPECT_TRUE(to_int32("2147483648") == most && to_int32("-99999999999999999999") == least);
  EXPECT_TRUE(to_uint32("2147483648") == 2147483648U && to_uint32("99999999999999999999") == 4294967295U);
  EXPECT_TRUE(to_int32(-1.9) == -1 && to_int32(1e30) == most && to_int32(-1e30) == least);
  EXPECT_TRUE(to_int32(std::nan("")) == 0 && to_int32(std::string_view("12", 1)) == 1);
}

TEST(Numbers, RealOnesAreThoseOfTheLibrary) {
  for (const char *text : {"", ".", "0.1", "9007199254740.9", "98765.4321098765", "9.8765432109876543210987654321",
                           "1..2", " +7", "-0.3", "12.5 kg", "0x1F", "1e3", "123456789012345678", "inf"}) {
    EXPECT_EQ(to_double(text), std::strtod(text, nullptr)) << text;
  }
}

TEST(Numbers, Digits) {
  char out[34];
  EXPECT_STREQ(qitoa(std::numeric_limits<int32_t>::min(), out, 10), "-2147483648");
  EXPECT_STREQ(qitoa(-1, out, 16), "ffffffff");
  EXPECT_STREQ(qitoa(-36, out, 10), "-36");
  EXPECT_STREQ(xtoa(0x80000000U, out, 2, 1), "-10000000000000000000000000000000");
  EXPECT_STREQ(qultoa(71, out, 36), "1z");
  EXPECT_STREQ(qultoa(35, out, 37), "");
  EXPECT_EQ(getHexASCII("fFz1", 4) + getHexASCII("1", 0) + getDecASCII("1", -1), 0xFF01U);
  EXPECT_EQ(getHexASCII("A0000000a", 9), 0xAU + 0xAU);  // the ninth digit wraps onto the first
  EXPECT_EQ(getDecASCII("1x34", 3), 103U);
}

TEST(Scramble, IsItsOwnInverseUpToABufferFull) {
  for (const size_t length : {0U, 1U, 48U, 511U, 600U}) {
    for (const char letter : {'v', 'x'}) {
      const std::string text(length, letter), once = encrypt(text.c_str());
      EXPECT_EQ(encrypt(once.c_str()), text.substr(0, 511));
    }
  }
  EXPECT_STREQ(encrypt(":x"), "") << "kept: a byte equal to its key byte cuts the password";
}

struct TextFiles : testing::Test {
  const WorkingFolder folder;
};

TEST_F(TextFiles, AreConvertedUpToTheFirstLineThatIsInvalid) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      // converted, not converted, in UTF-8
      {"a\n\xA4\xA2\n", "\xFF\nb\n", "a\n\u3042\n"},
      {"one\n\xC6\xFC\xCB\xDC\n", "\xC6\x20\nfour\n", "one\n\u65E5\u672C\n"},
      {std::string(2047, 'x'), "\xA4", std::string(2047, 'x')},  // as much as is converted at once
  };
  for (const auto &[valid, rest, utf8] : cases) {
    put_file("euc-jp", valid + rest);
    saveEUC2UTF("euc-jp", "utf-8");
    EXPECT_EQ(get_file("utf-8"), utf8);
    saveUTF2EUC("utf-8", "again");
    EXPECT_EQ(get_file("again"), valid);
    saveUTF2EUC("missing", "again");
    EXPECT_EQ(get_file("again"), valid);
  }
  saveUTF2EUC("utf-8", "no folder/none");
}

TEST_F(TextFiles, TraceIsWrittenWhileItIsAskedFor) {
  close(STDIN_FILENO);  // its file gets that number
  for (const int32_t level : {0, kTraceResults, 10}) {
    debugLevel = level;
    trace_enter("module", "function");
    myfprintf("%d%s\n", level, std::string(level == 10 ? 3000 : 0, 'x').c_str());
  }
  debugLevel = 0;
  EXPECT_EQ(get_file("setup.dbg"), "5\nmodule: function enter\n10" + std::string(2045, 'x'));
}

TEST_F(TextFiles, MessagesAreCountedFromTheStartOfTheLine) {
  const std::filesystem::path place = folder.path / "work";
  std::filesystem::create_directory(place);
  std::filesystem::current_path(place);
  char whole[32];
  EXPECT_EQ(UCTGetMessageDatString(7, whole, sizeof whole), 0) << "without a file";
  EXPECT_STREQ(whole, "can't read message 7");
  EXPECT_EQ(getLocalPath(whole, 0) + getLocalPath(whole, 1) + getLocalPath(whole, 5), 2);
  EXPECT_EQ(whole, place.string().substr(0, 4));
  // The name after a backslash makes it a file of the folder above.
  ASSERT_EQ(replace_file("../work\\Messages.dat", "m12=Hello\nxm5=abc\nm5=later\n\nm601=no line end"), 1);
  const std::tuple<int, int, const char *> cases[] = {
      {12, 1, "Hello"}, {5, 1, "=abc"}, {601, 1, "no line e"}, {1, 0, "can't rea"}, {-1, 0, "can't rea"},
  };
  for (const auto &[number, result, text] : cases) {
    char buffer[10] = "xxxxxxxxx";
    EXPECT_EQ(UCTGetMessageDatString(number, buffer, sizeof buffer), result);
    EXPECT_STREQ(buffer, text);
  }
}

}  // namespace

// All texts of the program: each Japanese text does the work of its English twin.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "util/tokens.h"

namespace {

// The pairs in a source file: braces around two strings, each of one literal and more.
std::vector<std::pair<std::string, std::string>> pairs_in(const std::string &source) {
  std::vector<std::pair<std::string, std::string>> pairs;
  std::vector<std::string> strings;
  bool continues = false;  // the next literal belongs to the string before
  for (size_t at = 0; at < source.size(); ++at) {
    const bool raw = source.compare(at, 3, "R\"(") == 0;
    if (source.compare(at, 2, "//") == 0) at = source.find('\n', at);
    if (raw || source[at] == '"') {
      if (!continues) strings.emplace_back();
      continues = true;
      const size_t end = raw ? source.find(")\"", at) : 0;
      if (raw) strings.back() += source.substr(at + 3, end - at - 3);
      for (++at; !raw && source[at] != '"'; ++at) strings.back() += source[at += source[at] == '\\'];
      if (raw) at = end + 1;
    }
    if (source[at] == '}' && strings.size() == 2) pairs.emplace_back(strings[0], strings[1]);
    if (source[at] == '{' || source[at] == '}') strings.clear();
    if (source[at] == ',' || source[at] == '{') continues = false;
  }
  return pairs;
}

// The placeholders of a text: "%s", "%ld", "#1", "#SHUTDOWNTIME".
std::vector<std::string> placeholders(std::string_view text) {
  std::vector<std::string> found;
  for (size_t at = text.find_first_of("%#"); at != std::string::npos; at = text.find_first_of("%#", at + 1)) {
    const size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", at + 1);
    found.emplace_back(text.substr(at, end - at));
  }
  return found;
}

// Two-byte kana and kanji and three marks, which every terminal shows two columns wide (East Asian width W); beside
// them only ASCII.
bool is_plain_euc_jp(std::string_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) continue;
    const std::string_view character = text.substr(i++, 2);
    const bool mark = character == "\xA1\xA2" || character == "\xA1\xA3" || character == "\xA1\xBC";
    if (!mark && lead != 0xA4 && lead != 0xA5 && (lead < 0xB0 || lead > 0xF4)) return false;
    if (character.size() < 2 || static_cast<unsigned char>(character[1]) < 0xA1) return false;
  }
  return true;
}
bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

TEST(Texts, JapaneseFollowsEnglish) {
  namespace fs = std::filesystem;
  size_t count = 0;
  for (const auto &entry : fs::recursive_directory_iterator(CONVERTED_TEXTS)) {
    if (entry.path().extension() != ".cpp") continue;
    std::ifstream file(entry.path());
    for (const auto &[english, japanese] : pairs_in({std::istreambuf_iterator<char>(file), {}})) {
      EXPECT_TRUE(is_ascii(english)) << english;
      EXPECT_TRUE(is_plain_euc_jp(japanese)) << english;
      EXPECT_EQ(english.empty(), japanese.empty()) << english;
      EXPECT_EQ(placeholders(english), placeholders(japanese)) << english;
      EXPECT_EQ(cnumtoken(english.c_str(), "|"), cnumtoken(japanese.c_str(), "|")) << english;
      // what stands behind a label keeps its column
      EXPECT_TRUE(!english.ends_with(" :") || english.size() == japanese.size()) << english;
      ++count;
    }
  }
  EXPECT_GT(count, 250u);
}

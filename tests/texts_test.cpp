// All texts of the program: each Japanese text does the work of its English twin.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

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

const std::regex kPlaceholder("[%#][A-Za-z0-9]*");  // "%s", "%ld", "#1", "#SHUTDOWNTIME"
const std::regex kAscii("[ -~]*");
// Two-byte kana and kanji and three marks, which every terminal shows two columns wide (East Asian width W); beside
// them only ASCII.
const std::regex kPlainEucJp("([ -~]|\xA1[\xA2\xA3\xBC]|[\xA4\xA5\xB0-\xF4][\xA1-\xFE])*");

std::vector<std::string> all_of(const std::regex &form, const std::string &text) {
  return {std::sregex_token_iterator(text.begin(), text.end(), form), {}};
}

}  // namespace

TEST(Texts, JapaneseFollowsEnglish) {
  size_t count = 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(CONVERTED_TEXTS)) {
    if (entry.path().extension() != ".cpp") continue;
    std::ifstream file(entry.path());
    for (const auto &[english, japanese] : pairs_in({std::istreambuf_iterator<char>(file), {}})) {
      EXPECT_TRUE(std::regex_match(english, kAscii) && std::regex_match(japanese, kPlainEucJp)) << english;
      EXPECT_EQ(english.empty(), japanese.empty()) << english;
      EXPECT_EQ(all_of(kPlaceholder, english), all_of(kPlaceholder, japanese)) << english;
      EXPECT_EQ(cnumtoken(english.c_str(), "|"), cnumtoken(japanese.c_str(), "|")) << english;
      // what stands behind a label keeps its column
      EXPECT_TRUE(!english.ends_with(" :") || english.size() == japanese.size()) << english;
      ++count;
    }
  }
  EXPECT_GT(count, 250u);
}

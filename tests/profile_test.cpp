// Profiles: the meaning of lines, files byte for byte, and what must hold for any file in any mode.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corbix/profile_list.h"
#include "corbix/xconfig.h"
#include "tests/folder.h"
#include "util/files.h"

namespace {

using std::string_literals::operator""s;

enum : int { kRead = 1, kWrite, kReadCoded, kWriteCoded, kReadMerge, kWriteMerge, kReadKeyless, kReadKeysTopics = 11 };

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST(ProfileLine, ClassifiesLines) {
  const struct {
    std::string_view line;
    int white, entry, topic, key;
  } rows[] = {
      {" \t\r\x1a\n", 1, 0, 0, 0}, {"; [abc]", 0, 0, 0, 0}, {"  # note", 0, 0, 0, 0},   {"[abc]\n", 0, 1, 1, 0},
      {"p=[x]", 0, 1, 1, 1},       {"[a;b]", 0, 1, 1, 0},   {"[]", 0, 1, 0, 0},         {"[abc", 0, 1, 0, 0},
      {"]x[a]", 0, 1, 0, 0},       {"  x.y=2", 0, 1, 0, 1}, {"a b=1", 0, 1, 0, 0},      {"=1", 0, 1, 0, 0},
      {"123=4", 0, 1, 0, 0},       {"a\t=1", 0, 1, 0, 1},   {"\xa4\xa2=1", 0, 1, 0, 0}, {"", 1, 0, 0, 0},
      {"[[]", 0, 1, 1, 0},         {"[[[a", 0, 1, 1, 0},    {"[[[a]", 0, 1, 0, 0},
  };
  for (const auto &row : rows) {
    EXPECT_EQ(is_white_space_line(row.line), row.white) << row.line;
    EXPECT_EQ(is_entry_line(row.line), row.entry) << row.line;
    EXPECT_EQ(is_topic(row.line), row.topic) << row.line;
    EXPECT_EQ(has_key_entry(row.line), row.key) << row.line;
  }
}

TEST(ProfileLine, NameOfTwoByteCharactersIsNoTopicAndLosesItsLeadBytes) {
  char name[1024];
  EXPECT_EQ(is_topic("[\xc5\xc5\xb8\xbb]"), 0);
  EXPECT_EQ(get_topic("[\xc5\xc5\xb8\xbb]", name), 1);
  EXPECT_STREQ(name, "\xc5\xbb");
  EXPECT_EQ(get_topic("\xc5[a", name), 0);  // the bracket is the second byte of a character
}

TEST(ProfileLine, NumberSignInTheFirstColumnIsNoTrailingComment) {
  char out[1024];
  EXPECT_EQ(getComment("# not trailing", out), 0);
  EXPECT_EQ(getComment("k = v # a # b\n", out), 1);
  EXPECT_STREQ(out, "          # a # b");
}

TEST(ProfileLine, GivesValuesOfUpTo1023Characters) {
  char out[1024];
  EXPECT_EQ(get_value("k=" + std::string(1100, 'v'), out, kRead), 1);
  EXPECT_EQ(out, std::string(1023, 'v'));
}

// ---- Files ----------------------------------------------------------------------------------------------------------

struct Profile : testing::Test {
  WorkingFolder folder{access("/dev/shm", W_OK) == 0 ? "/dev/shm/kav-XXXXXX" : "/tmp/kav-XXXXXX"};
  ~Profile() override { XCloseProfile(); }

  // The value that "p" holds, or "(none)".
  static std::string get(int mode, const char *topic, const char *key) {
    char value[1024] = "(none)";
    EXPECT_EQ(XOpenProfile("p", mode), 1);
    XGetPrivateProfileString(topic, key, value, sizeof value);
    XCloseProfile();
    return value;
  }
  static int set(int mode, const char *topic, const char *key, const char *value) {
    EXPECT_EQ(XOpenProfile("p", mode), 1);
    const int result = XSetPrivateProfileString(topic, key, value, "");
    EXPECT_EQ(XCloseProfile(), 1);
    return result;
  }
};

TEST_F(Profile, SetsByteForByte) {
  const struct {
    int mode;
    std::string before;
    const char *topic, *key;
    std::string value;
    int result;
    std::string after;
  } rows[] = {
      // a key that is there: the caller's spelling, the line's place
      {kWrite, "; note\nport=0\n\n[log]\nx = 1\n", kTmpTopic, "Port", "1", 1, "; note\nPort=1\n\n[log]\nx = 1\n"},
      {kWrite, "[log]\nx = 1 ; why\ny=2\n", "LOG", "X", "a longer value", 1, "[log]\nX=a longer value\ny=2\n"},
      {kWriteMerge, "[T]\nport = 0 # why\n", "T", "port", "1", 1, "[T]\nport = 1          # why\n"},
      {kWriteMerge, "[T]\nport=0\n", "T", "Port", "1", 1, "[T]\nport=0\nPort = 1\n"},  // names compare exactly
      // a new key: at the end of the topic's first block
      {kWrite, "a=1\n[T]\nb=2\n\nc=3\n[U]\n", "T", "n", "1", 1, "a=1\n[T]\nb=2\nn=1\n\nc=3\n[U]\n"},
      {kWrite, "[T]", "T", "n", "1", 1, "[T]\nn=1\n"},
      {kWrite, "a=1", kTmpTopic, "n", "1", 1, "a=1\nn=1\n"},  // the last line had no line feed
      // a new topic
      {kWrite, "a=1\n", "T", "n", "1", 1, "a=1\n\n[T]\nn=1\n"},
      {kWrite, "#\n\n", kTmpTopic, "n", "1", 1, "#\n\n\nn=1\n"},
      {12, "a=1\n", kTmpTopic, "n", "1", 1, "a=1\n\n[@$tmp_topic$@]\nn=1\n"},
      // deleting
      {kWrite, "[T]\na=1\nb=2\n", "T", "a", "", 1, "[T]\nb=2\n"},
      {kWrite, "a=1\n[T]\nb=2\n\n; x\n[U]\n", "T", "", "", 1, "a=1\n[U]\n"},
      {kWrite, "[T]\nb=2\n[U]\nc=3\n", "T", "", "", 1, "[U]\nc=3\n"},  // with the first line of the file
      // lines without a key of their own are set by their number
      {kWrite, "one\n[T]\none\nk=1\ntwo\n", "T", "@$tmp_key$@00001", "2", 1, "one\n[T]\none\nk=1\n2\n"},
      // what changes nothing
      {kWrite, "[T]\na=1\n", "T", "b", "", 0, "[T]\na=1\n"},
      {kWrite, "[T]\na=1\n", "T", "", "1", 0, "[T]\na=1\n"},
      {kWrite, "[T]\na=1\n", "U", "b", "", 0, "[T]\na=1\n"},
      {kWrite, "[T]\na=1\n", "T", "a", "1\n[U]", 0, "[T]\na=1\n"},
      {kWrite, "[T]\na=1\n", "T", "a\nb", "1", 0, "[T]\na=1\n"},
      {kWrite, "[T]\na=1\n", "U]\n[V", "b", "1", 0, "[T]\na=1\n"},
      // key and value hold 1023 characters together
      {kWrite, "[T]\n", "T", "a", std::string(1022, 'v'), 1, "[T]\na=" + std::string(1022, 'v') + "\n"},
      {kWrite, "[T]\n", "T", "a", std::string(1023, 'v'), 0, "[T]\n"},
  };
  for (const auto &row : rows) {
    put_file("p", row.before);
    EXPECT_EQ(set(row.mode, row.topic, row.key, row.value.c_str()), row.result) << row.before << row.key;
    EXPECT_EQ(get_file("p"), row.after);
  }
}

TEST_F(Profile, FindsTopicsAndKeys) {
  const struct {
    int mode;
    std::string file;
    const char *topic, *key;
    std::string value;
  } rows[] = {
      {kRead, "a=1\n[T]\nb=2\n", kTmpTopic, "b", "(none)"},
      {kReadKeysTopics, "a=1\n[T]\nb=2\n", kTmpTopic, "a", "(none)"},
      {kRead, "[ Foo ]\na=1\n", "foo", "a", "1"},
      {kReadMerge, "[ Foo ]\na=1\n", "Foo", "a", "(none)"},
      {kReadMerge, "[Foo]\na=1\n", "Foo", "A", "(none)"},
      {kRead, "[Foo] ; behind\na=1\n", "Foo", "a", "1"},  // not in the index under this name: the scan finds it
      {kRead, "[X]\na=1\n[x]\na=2\n", "x", "a", "1"},     // the first of two counts
      {kRead, "[T]\nx y\na b=1\n[U]\nc d=2\n", "U", "@$tmp_key$@00000", "c d=2"},
      {kRead, "[T]\nk =\t v1 \tv2  \n", "T", "k", "v1 v2"},
      {kRead, "[T]\nk=a=b # c\n", "T", "k", "a=b # c"},
      {kReadMerge, "[T]\nk = v # note\n", "T", "k", "v"},
      {kReadKeysTopics, "[T]\na b =1\n", "T", "a b", "1"},
      {kReadKeysTopics, "[T]\na;b=1\n", "T", "a", "1"},
      {kReadKeyless, "[T]\na=1\n; c\nhello\n", "T", "@$tmp_key$@00001", "hello"},
      {kReadKeysTopics, "[T]\nno value\n", "T", "no value", ""},
      {kRead, "[T]\nk=a\0b\nl=2\n"s, "T", "k", "a"},
      {kRead, "[T]\r\na=1\r\n", "T", "a", "1\r"},  // kept: CR belongs to the value
      {kRead, std::string(1022, 'x') + "=1=2\n", kTmpTopic, "@$tmp_key$@00000", "1=2"},  // comes in pieces of 1023
  };
  for (const auto &row : rows) {
    put_file("p", row.file);
    EXPECT_EQ(get(row.mode, row.topic, row.key), row.value) << row.file;
  }
}

TEST_F(Profile, BracketInAValueHidesTheRestOfItsTopic) {
  put_file("p", "a=1\np=[x\nb=2\n");
  EXPECT_EQ(get(kRead, kTmpTopic, "a"), "1");
  for (const char *key : {"p", "b"}) EXPECT_EQ(get(kRead, kTmpTopic, key), "(none)");
}

TEST_F(Profile, NewFilesStartWithTheBannerOrTheirHeader) {
  ASSERT_EQ(set(kWrite, "T", "k", ""), 0);
  const std::string banner = get_file("p");
  EXPECT_TRUE(banner.starts_with("; ") && banner.find_first_of("[\n") == std::string::npos) << banner;
  EXPECT_EQ(set(kWrite, "T", "k", "1"), 1);
  EXPECT_EQ(get_file("p"), banner + "\n[T]\nk=1\n");

  put_file("p", "#\n#  KAVLON Pro Configuration\n#\n\n");
  for (int save = 0; save < 2; ++save) {
    EXPECT_EQ(set(kWrite, kTmpTopic, "UpsLocation", "here"), 1);
    EXPECT_EQ(set(kWrite, kTmpTopic, "UpsDevice", "/dev/ttyS0"), 1);
    EXPECT_EQ(get_file("p"), "#\n#  KAVLON Pro Configuration\n#\n\n\nUpsLocation=here\nUpsDevice=/dev/ttyS0\n");
  }
}

TEST_F(Profile, ListThatLostItsLastLineTakesANewTopic) {
  put_file("p", "[T]\na=1\n");
  ASSERT_EQ(XOpenProfile("p", kWrite), 1);
  EXPECT_TRUE(XSetPrivateProfileString("T", "", "", "") && XSetPrivateProfileString("T", "b", "2", ""));
  ASSERT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(get_file("p"), "\n[T]\nb=2\n");
}

TEST_F(Profile, OpensAndClosesAsPromised) {
  put_file("p", "a= 1\n");
  char value[1024] = "default";
  EXPECT_EQ(XOpenProfile("missing", kRead) + XOpenProfile(".", kRead), 0);
  for (const std::string &name : {"."s, "./" + std::string(254, 'n')}) EXPECT_EQ(XOpenProfile(name.c_str(), kWrite), 0);
  for (const int mode : {-1, 0, 15}) EXPECT_EQ(XOpenProfile("p", mode), 0);
  EXPECT_EQ(XCloseProfile(), 0);
  ASSERT_EQ(XOpenProfile("p", kRead), 1);
  EXPECT_EQ(XOpenProfile("missing", kRead), 1);  // the open one stays
  EXPECT_EQ(XGetPrivateProfileString(kTmpTopic, "b", value, 1024), 0);
  EXPECT_STREQ(value, "default");
  EXPECT_EQ(XGetPrivateProfileString(kTmpTopic, "a", value, 1), 1);
  EXPECT_STREQ(value, "1");
  EXPECT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(XWriteMergePrivateProfileString("T", "k", "v", "p"), 1);
  EXPECT_EQ(XReadMergePrivateProfileString("T", "k", value, "p"), 1);
  EXPECT_STREQ(value, "v");

  ProfileHandle handle = XOpenProfileEx("p", kWrite);
  EXPECT_EQ(XGetPrivateProfileStringNoTrimEx(handle, kTmpTopic, "a", value, 0), 1);
  EXPECT_STREQ(value, " 1");
  EXPECT_EQ(XSetPrivateProfileStringNoTrimEx(handle, "T", "k", "w", ""), 1);
  std::filesystem::remove_all(folder.path);
  EXPECT_EQ(XCloseProfileEx(&handle), 0);  // nowhere to write it
  EXPECT_EQ(handle, nullptr);
}

// ---- Coded files ----------------------------------------------------------------------------------------------------

std::string coded(const std::vector<std::string> &lines) {
  const Stream stream(std::tmpfile());
  for (const std::string &line : lines) EXPECT_EQ(fwriteln(stream.get(), line), 1);
  std::string bytes(static_cast<size_t>(std::ftell(stream.get())), '\0');
  std::rewind(stream.get());
  EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), stream.get()), bytes.size());
  return bytes;
}

TEST_F(Profile, CodedLinesAreTheirBytesUnderTheKeyAndAnEmptyOneEndsThem) {
  EXPECT_EQ(coded({"a=1"}), "\x5d\xac\x6f\x0a\xa8"s);
  EXPECT_EQ(coded({"", "12345678"}), "\x31\x9b\x0d\xa3\x6d\x33\x97\xe2\x5f\x27\x31\x9b"s);
  put_file("p", coded({"", "12345678"}));
  const Stream stream(std::fopen("p", "rb"));
  char line[1025];
  for (const char *text : {"", "12345678", ""}) EXPECT_STREQ(freadln(stream.get(), line, 1024), text);
  EXPECT_EQ(freadln(stream.get(), line, 1024), nullptr);
}

TEST_F(Profile, CodedFileGainsAnEmptyLineWithEveryWriting) {
  put_file("p", coded({"[T]", "a=1"}));
  EXPECT_EQ(get(kReadCoded, "T", "a"), "1");
  EXPECT_EQ(set(kWriteCoded, "T", "a", "2"), 1);
  EXPECT_EQ(get_file("p"), coded({"[T]", "a=2\n", ""}));
  EXPECT_EQ(set(kWriteCoded, "T", "b", "3"), 1);
  EXPECT_EQ(get_file("p"), coded({"[T]", "a=2\n", "b=3\n", "", ""}));
  std::filesystem::remove("p");
  EXPECT_EQ(set(kWriteCoded, "T", "a", "1"), 1);
  EXPECT_EQ(get(kReadCoded, "T", "a"), "1");
}

TEST_F(Profile, CodedLineOf1023BytesLosesItsEnd) {
  for (const size_t length : {1022U, 1023U, 1024U, 1025U}) {
    put_file("p", coded({std::string(length, 'x'), "[T]", "a=1"}));
    EXPECT_EQ(get(kReadCoded, "T", "a"), length == 1023 ? "(none)" : "1") << length;
  }
}

// ---- What comes back ------------------------------------------------------------------------------------------------

TEST_F(Profile, TellsWhatWouldNotComeBack) {
  using Fault = ProfileFault;
  const std::pair<std::string, Fault> rows[] = {
      {"a;b[c", Fault::none},
      {"\xa4[", Fault::none},
      {std::string(1021, 'v'), Fault::none},
      {std::string(1022, 'v'), Fault::too_long},
      {"[", Fault::bracket},
      {"a\nb", Fault::line_feed},
      {"a\0[b"s, Fault::nul},
      {"a\tb", Fault::tab},
      {" ", Fault::blank},
      {"", Fault::empty},
  };
  for (const auto &[value, fault] : rows) EXPECT_EQ(XSurvives("log", "k", value), fault) << value;
  EXPECT_EQ(XSurvives("log", "12", "v"), Fault::key);
  EXPECT_EQ(XSurvives("\xa4\xa2", "k", "v"), Fault::topic);
}

// ---- Any file -------------------------------------------------------------------------------------------------------

using Random = std::mt19937;

std::string random_text(Random &random, std::string_view alphabet, size_t longest) {
  std::string text(random() % (longest + 1), '\0');
  for (char &c : text) c = alphabet[random() % alphabet.size()];
  return text;
}

// A line of any sort; in text files also with a NUL, with CRLF, or longer than a piece.
std::string random_line(Random &random, bool text_file) {
  const std::string key = "k" + std::to_string(random() % 5);
  const std::string sorts[] = {
      random_text(random, " \t\x1a", 4),
      (random() % 2 == 0 ? "; " : "#") + random_text(random, "[]=;# a", 9),
      "[T" + std::to_string(random() % 3) + "]" + random_text(random, " ;x", 3),
      random_text(random, "[];= a\xa4", 7),
      key + random_text(random, " b\t", 2) + "=" + random_text(random, "[]=#; v\t\xa4\xa2", 20),
      random_text(random, "\xa4\xa2\xc5 =", 12),
      "Port = " + std::to_string(random() % 100) + " # why",
      key + "=" + std::string(random() % 900, 'v'),
      std::string("nul\0=1", random() % 7),
      key + "=crlf\r",
      key + "=" + random_text(random, "long text; [x] ", random() % 4 == 0 ? 2500 : 25),
  };
  return sorts[random() % (text_file ? 11 : 8)];
}

std::vector<std::string> random_lines(Random &random, bool text_file) {
  std::vector<std::string> lines(random() % 12);
  for (std::string &line : lines) line = random_line(random, text_file);
  return lines;
}

std::string as_text(const std::vector<std::string> &lines, bool complete) {
  std::string text;
  for (const std::string &line : lines) text += line + "\n";
  if (!text.empty() && !complete) text.pop_back();
  return text;
}

// Links, index and flags agree: every flagged line is what the index holds under its key, and the index holds no more.
void expect_consistent(ProfileRecord *profile) {
  int flagged = 0;
  int indexed = 0;
  for (ProfileLine *line = &profile->first; line != nullptr; line = line->next) {
    ASSERT_TRUE(line->next == nullptr || line->next->prev == line);
    ASSERT_TRUE(line->txt != nullptr || (line == &profile->first && line->next == nullptr));
    ASSERT_EQ(line->has_nul, std::string_view(line->txt, line->length).find('\0') != std::string_view::npos);
    if (!line->hash_flag) continue;
    ++flagged;
    ASSERT_EQ(findTopicHashPtr(text_of(*line), profile->hash), line);
  }
  for (uint32_t i = 0; i < profile->hash->TblSize; ++i) indexed += XMLGetCount(&profile->hash->Tbl[i]);
  ASSERT_EQ(flagged, indexed);
}

// A short run by default; the long one sets 10,000.
int random_files() {
  const char *number = std::getenv("KAV_RANDOM_FILES");
  return number == nullptr ? 400 : std::atoi(number);
}

TEST_F(Profile, SettingAndResettingAKeyLeavesAnyFileAsItWas) {
  Random random(1);
  for (int i = 0; i < random_files(); ++i) {
    const bool untitled = random() % 3 == 0;
    const char *topic = untitled ? kTmpTopic : "target";
    const std::string before = untitled ? "" : as_text(random_lines(random, true), true) + "[target]\n";
    const std::string after = as_text(random_lines(random, true), random() % 4 != 0);
    put_file("p", before + "Probe=0\n" + after);
    ASSERT_EQ(set(kWrite, topic, "Probe", "a longer value"), 1);
    ASSERT_EQ(get_file("p"), before + "Probe=a longer value\n" + after);
    ASSERT_EQ(set(kWrite, topic, "Probe", "0"), 1);
    ASSERT_EQ(get_file("p"), before + "Probe=0\n" + after);
  }
}

struct ProfileModes : Profile, testing::WithParamInterface<int> {};

// In a coded mode also with a text, which is garbage there.
TEST_P(ProfileModes, RewriteAnyFileAndStayConsistentUnderAnyOperations) {
  const int mode = GetParam();
  Random random(static_cast<unsigned>(mode));
  for (int i = 0; i < random_files(); ++i) {
    const bool as_coded = is_binary(mode) && random() % 4 != 0;
    std::vector<std::string> lines = random_lines(random, !as_coded);
    lines.emplace_back("; a line at least");
    const std::string content = as_coded ? coded(lines) : as_text(lines, random() % 4 != 0);
    put_file("p", content);
    ProfileHandle profile = XOpenProfileEx("p", mode);
    ASSERT_NE(profile, nullptr);
    profile->modified = 1;
    ASSERT_EQ(XCloseProfileEx(&profile), 1);
    const bool comparable = as_coded || !is_binary(mode);
    ASSERT_TRUE(!comparable || get_file("p") == content + (as_coded && is_write(mode) ? coded({""}) : "")) << content;
    profile = XOpenProfileEx("p", mode);
    ASSERT_NE(profile, nullptr);
    ASSERT_NO_FATAL_FAILURE(expect_consistent(profile));
    for (int operation = 0; operation < 12; ++operation) {
      const std::string topic = random() % 3 == 0 ? kTmpTopic : "t" + random_text(random, "0[]; \xa4", 1);
      const std::string key = random() % 5 == 0 ? "" : "K" + std::to_string(random() % 5);
      const std::string value = random_text(random, "v[]=#; \t", random() % 4 * 300);
      char found[1024];
      const int set = XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), key.c_str(), value.c_str(), "");
      ASSERT_TRUE(set == 0 || is_write(mode));
      ASSERT_NO_FATAL_FAILURE(expect_consistent(profile));
      XGetPrivateProfileStringEx(profile, topic.c_str(), key.c_str(), found, sizeof found);
    }
    ASSERT_EQ(XCloseProfileEx(&profile), 1);
  }
}

INSTANTIATE_TEST_SUITE_P(All, ProfileModes, testing::Range(1, kModeCount));

// The predicate against the real thing: alone in a file with a neighbour behind it.
TEST_F(Profile, WhatSurvivesComesBackAndWhatDoesNotDoesNot) {
  Random random(2);
  for (int i = 0; i < random_files(); ++i) {
    const std::string topic = random() % 2 == 0 ? kTmpTopic : random_text(random, "Tt[]; \xa4", 3);
    const std::string key = random_text(random, "ab1;= #.\xa4", 3);
    const std::string value = random_text(random, "v[]=#; \t\r\xa4\n", 6);
    put_file("p", "");
    set(kWrite, topic.c_str(), key.c_str(), value.c_str());
    set(kWrite, topic.c_str(), "Neighbour", "1");
    const bool came_back =
        get(kRead, topic.c_str(), key.c_str()) == value && get(kRead, topic.c_str(), "Neighbour") == "1";
    if (XSurvives(topic, key, value) == ProfileFault::none) {
      EXPECT_TRUE(came_back) << topic << "|" << key << "|" << value;
    } else if (XSurvives("T", "k", value) != ProfileFault::none) {
      EXPECT_FALSE(came_back) << topic << "|" << key << "|" << value;
    }
  }
}

TEST(ProfileLibrary, AppendsToTheListOfErrorsWhatFits) {
  char list[32] = "";
  EXPECT_EQ(XAppendVersionErr(list, 10, nullptr, "12345678"), 0);  // 9 + 1 is not less than 10
  EXPECT_EQ(XAppendVersionErr(list, 11, nullptr, "12345678"), 1);
  EXPECT_EQ(XAppendVersionErr(list, 18, "ab", "cd"), 0);  // 3 + 3 + 3 + 8 + 1
  EXPECT_EQ(XAppendVersionErr(list, 19, "ab", "cd"), 1);
  EXPECT_STREQ(list, "12345678,ab::cd");
}

}  // namespace

// Profiles: the meaning of lines, files byte for byte, and what must hold for any file in any mode.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "corbix/profile_line.h"
#include "corbix/profile_list.h"
#include "corbix/xconfig.h"
#include "tests/folder.h"
#include "util/files.h"

namespace {

using std::string_literals::operator""s;

// --- lines

TEST(ProfileLine, ClassifiesLines) {
  const std::tuple<std::string_view, int, int, int, int> rows[] = {
      {" \t\r\x1a\n", 1, 0, 0, 0}, {"; [abc]", 0, 0, 0, 0}, {"  # note", 0, 0, 0, 0},   {"[abc]\n", 0, 1, 1, 0},
      {"p=[x]", 0, 1, 1, 1},       {"[a;b]", 0, 1, 1, 0},   {"[]", 0, 1, 0, 0},         {"[abc", 0, 1, 0, 0},
      {"]x[a]", 0, 1, 0, 0},       {"  x.y=2", 0, 1, 0, 1}, {"a b=1", 0, 1, 0, 0},      {"=1", 0, 1, 0, 0},
      {"123=4", 0, 1, 0, 0},       {"a\t=1", 0, 1, 0, 1},   {"\xa4\xa2=1", 0, 1, 0, 0}, {"", 1, 0, 0, 0},
      {"[[]", 0, 1, 1, 0},         {"[[[a", 0, 1, 1, 0},    {"[[[a]", 0, 1, 0, 0},      {"[a\xc5]", 0, 1, 0, 0},
      {"[\xc5\xc5]", 0, 1, 0, 0},
  };
  for (const auto &[line, white, entry, topic, key] : rows) {
    EXPECT_EQ(is_white_space_line(line), white) << line;
    EXPECT_EQ(is_entry_line(line), entry) << line;
    EXPECT_EQ(is_topic(line), topic) << line;
    EXPECT_EQ(has_key_entry(line), key) << line;
  }
}

TEST(ProfileLine, TopicNameIsWhatFollowsTheFirstBracket) {
  const std::tuple<std::string_view, int, const char *> rows[] = {
      {"[ a;b ]\n", 1, " a;b "},
      {"x[a]y", 1, "a"},
      {"[a[b\n", 1, "ab\n"},
      {"[]a", 1, ""},
      {"x;[a]", 0, ""},
      {"[\xc5\xc5\xb8\xbb]", 1, "\xc5\xbb"},  // kept: two-byte characters lose their lead bytes
      {"\xc5[a", 0, ""},                      // the bracket is the second byte of a character
      {"][", 1, ""},                          // a "]" in front ends nothing
      {"]x]=[a]", 1, "a"},
      {"[\xc5", 1, "\xc5"},  // no second byte
  };
  for (const auto &[line, found, name] : rows) {
    char out[kValueBufferSize] = "none";
    EXPECT_EQ(get_topic(line, out), found) << line;
    EXPECT_STREQ(out, name) << line;
    EXPECT_EQ(holds_topic(line, name, kReadText), found == 1) << line;
  }
}

TEST(ProfileLine, NumberSignInTheFirstColumnIsNoTrailingComment) {
  char out[kValueBufferSize];
  EXPECT_TRUE(getComment("# not trailing", out) == 0 && getComment("k# a # b\n", out) == 1);
  EXPECT_STREQ(out, "          # a # b");
  EXPECT_EQ(get_value("k=v\t" + std::string(1100, 'v'), out, kReadText), 1);
  EXPECT_EQ(out, std::string(1023, 'v'));
}

TEST(ProfileList, IndexFollowsItsLines) {
  ProfileLine first = {};
  HashHandle index = nullptr;
  ASSERT_EQ(initHashTable(&index), 1);
  EXPECT_EQ(set_line_text(nullptr, "[T]\n", index), 0);
  ProfileLine *line = new_node(&first);
  for (const auto &text : {"[a longer one]\n"s, "[T]\n"s, "[U]\0]"s}) EXPECT_EQ(set_line_text(line, text, index), 1);
  EXPECT_EQ(findTopicHashPtr("T", index), nullptr);
  EXPECT_EQ(delete_line(&first, index), &first);
  EXPECT_EQ(findTopicHashPtr("U", index), &first);
  EXPECT_EQ(text_of(first), "[U]");
  uint16_t counter = 12;
  EXPECT_EQ(set_line_text_and_check_key(line = new_node(&first), "a b", &counter, index, kWriteText), 1);
  EXPECT_EQ(text_of(*line), "@$tmp_key$@00012=a b");
  EXPECT_EQ(set_line_text_and_check_key(line, "[V]", &counter, index, kWriteText) + counter, 1 + 13);
  EXPECT_EQ(free_line(line, index), nullptr);
  EXPECT_EQ(findTopicHashPtr("V", index), nullptr);
  first.next = nullptr;
  EXPECT_EQ(delete_line(&first, index), nullptr);
  EXPECT_EQ(first.txt, nullptr);
  EXPECT_EQ(set_line_text(&first, "[W]", index) + set_line_text(new_node(&first), "x", index), 2);
  free_all_lines(&first, index);
  EXPECT_TRUE(first.txt == nullptr && first.next == nullptr && !first.hash_flag);
  HashDestroy(index);
}

// --- files

struct Profile : testing::Test {
  WorkingFolder folder{kMemoryFolder};
  Profile() { XDiscardProfile(); }
  ~Profile() override { XDiscardProfile(); }

  // The value that "p" holds, or "(none)".
  static std::string get(int mode, const char *topic, const char *key) {
    char value[kValueBufferSize] = "(none)";
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

std::string coded(std::initializer_list<std::string_view> lines) {
  std::string bytes;
  for (const std::string_view line : lines) append_coded(bytes, line);
  return bytes;
}

TEST_F(Profile, SetsByteForByteAndACodedFileGainsAnEmptyLine) {
  const std::tuple<int, std::string, const char *, const char *, std::string, int, std::string> rows[] = {
      // a key that is there: the caller's spelling, the line's place
      {kWriteText, "; note\nport=0\n\n[log]\nx = 1\n", kTmpTopic, "Port", "1", 1, "; note\nPort=1\n\n[log]\nx = 1\n"},
      {kWriteText, "[log]\nx = 1 ; why\ny=2\n", "LOG", "X", "a longer value", 1, "[log]\nX=a longer value\ny=2\n"},
      {kWriteMerge, "[T]\nport = 0 # why\n", "T", "port", "1", 1, "[T]\nport = 1          # why\n"},
      {kWriteMerge, "[T]\nport=0\n", "T", "Port", "1", 1, "[T]\nport=0\nPort = 1\n"},  // names compare exactly
      // a new key: at the end of the topic's first block
      {kWriteText, "a=1\n[T]\nb=2\n\nc=3\n[U]\n", "T", "n", "1", 1, "a=1\n[T]\nb=2\nn=1\n\nc=3\n[U]\n"},
      {kWriteText, "[T]", "T", "n", "1", 1, "[T]\nn=1\n"},
      {kWriteText, "@a=1\n", kTmpTopic, "n", "1", 1, "@a=1\nn=1\n"},
      {kWriteText, "a=1", kTmpTopic, "n", "1", 1, "a=1\nn=1\n"},  // the last line had no line feed
      // a new topic
      {kWriteText, "a=1\n", "T", "n", "1", 1, "a=1\n\n[T]\nn=1\n"},
      {kWriteText, "#\n\n", kTmpTopic, "n", "1", 1, "#\n\n\nn=1\n"},
      {kWriteKeys, "a=1\n", kTmpTopic, "n", "1", 1, "a=1\n\n[@$tmp_topic$@]\nn=1\n"},
      // a new file
      {kWriteText, "", "T", "n", "", 0, "; Corbix profile"},
      {kWriteText, "", "T", "n", "1", 1, "; Corbix profile\n[T]\nn=1\n"},
      // deleting
      {kWriteText, "[T]\na=1\nb=2\n", "T", "a", "", 1, "[T]\nb=2\n"},
      {kWriteText, "a=1\n[T]\nb=2\n\n; x\n[U]\n", "T", "", "", 1, "a=1\n[U]\n"},
      {kWriteText, "[T]\nb=2\n[U]\nc=3\n", "T", "", "", 1, "[U]\nc=3\n"},  // with the first line of the file
      // lines without a key of their own are set by their number
      {kWriteText, "one\n[T]\none\nk=1\ntwo\n", "T", "@$tmp_key$@00001", "2", 1, "one\n[T]\none\nk=1\n2\n"},
      // coded files: an empty line more with every writing
      {kWriteCoded, coded({"[T]", "a=1"}), "T", "a", "2", 1, coded({"[T]", "a=2\n", ""})},
      {kWriteCoded, coded({"[T]", "a=1", ""}), "T", "b", "3", 1, coded({"[T]", "a=1", "b=3\n", "", ""})},
      {kWriteCoded, "", "T", "a", "1", 1, coded({"; Corbix profile", "", "\n", "[T]\n", "a=1\n"})},
      // what changes nothing
      {kWriteText, "[T]\na=1\n", "T", "b", "", 0, "[T]\na=1\n"},
      {kWriteText, "[T]\na=1\n", "T", "", "1", 0, "[T]\na=1\n"},
      {kWriteText, "[T]\na=1\n", "T", "a", "1\n[U]", 0, "[T]\na=1\n"},
      {kWriteText, "[T]\na=1\n", "U]\n[V", "b", "1", 0, "[T]\na=1\n"},
      // key and value hold 1023 characters together
      {kWriteText, "[T]\n", "T", "a", std::string(1022, 'v'), 1, "[T]\na=" + std::string(1022, 'v') + "\n"},
      {kWriteText, "[T]\n", "T", "a", std::string(1023, 'v'), 0, "[T]\n"},
  };
  for (const auto &[mode, before, topic, key, value, result, after] : rows) {
    put_file("p", before);
    EXPECT_EQ(set(mode, topic, key, value.c_str()), result) << before << key;
    EXPECT_EQ(get_file("p"), after);
  }
}

TEST_F(Profile, FindsTopicsAndKeysAndABracketInAValueHidesTheRest) {
  const std::tuple<int, std::string, const char *, const char *, std::string> rows[] = {
      {kReadText, "a=1\n[T]\nb=2\n", kTmpTopic, "b", "(none)"},
      {kReadText, "[ Foo ]\na=1\n", "foo", "a", "1"},
      {kReadMerge, "[ Foo ]\na=1\n", "Foo", "a", "(none)"},
      {kReadText, "[Foo] ; behind\na=1\n", "Foo", "a", "1"},  // not in the index under this name: the scan finds it
      {kReadText, "[X]\na=1\n[x]\na=2\n", "x", "a", "1"},     // the first of two counts
      {kReadText, "[T]\nx y\na b=1\n[U]\nc d=2\n", "U", "@$tmp_key$@00000", "c d=2"},
      {kReadText, "[T]\nk =\t v1 \tv2  \n", "T", "k", "v1 v2"},
      {kReadText, "[T]\nk=a=b # c\n", "T", "k", "a=b # c"},
      {kReadMerge, "[T]\nk = v # note\n", "T", "k", "v"},
      {kReadKeys, "[T]\na b =1\n", "T", "a b", "1"},
      {kReadKeyless, "[T]\na=1\n; c\nhello\n", "T", "@$tmp_key$@00001", "hello"},
      {kReadCoded, coded({"[T]", "a=1"}), "T", "a", "1"},
      {kReadKeys, "[T]\nno value\n", "T", "no value", ""},
      {kReadText, "[T]\nk=a\0b\nl=2\n"s, "T", "k", "a"},
      {kReadText, "a=1\np=[x\nb=2\n", kTmpTopic, "a", "1"},  // kept: "[" in a value hides the rest of its topic
      {kReadText, "a=1\np=[x\nb=2\n", kTmpTopic, "p", "(none)"},
      {kReadText, "a=1\np=[x\nb=2\n", kTmpTopic, "b", "(none)"},
      {kReadText, "[T]\r\na=1\r\n", "T", "a", "1\r"},  // kept: CR belongs to the value
      {kReadText, std::string(1022, 'x') + "=1=2\n", kTmpTopic, "@$tmp_key$@00000", "1=2"},  // comes in pieces of 1023
  };
  for (const auto &[mode, file, topic, key, value] : rows) {
    put_file("p", file);
    EXPECT_EQ(get(mode, topic, key), value) << file;
  }
}

TEST_F(Profile, OpensAndClosesAsPromised) {
  put_file("p", "a= 1\n");
  char value[kValueBufferSize] = "default";
  char errors[12] = "";
  EXPECT_TRUE(XAppendVersionErr(errors, 8, "a", "b") == 0 && XAppendVersionErr(errors, 9, "a", "b") == 1);
  EXPECT_TRUE(XAppendVersionErr(errors, 7, nullptr, "c") == 0 && XAppendVersionErr(errors, 8, nullptr, "c") == 1);
  EXPECT_STREQ(errors, "a::b,c");
  EXPECT_TRUE(CORBXCheckInterfaceVersion("1.1.0.0") == 1 && CORBXCheckInterfaceVersion("1.6.1.1") == 0);
  EXPECT_EQ(XAppendVersionErr(nullptr, 8, "a", "b") + XAppendVersionErr(errors, 8, "a", nullptr), 0);
  EXPECT_EQ(CORBXCheckInterfaceVersion(nullptr) + WriteInitialLine("p", nullptr, kWriteText), 0);
  EXPECT_EQ(XOpenProfile("missing", kReadText), 0);
  const std::string too_long = "." + std::string(253, '/') + "p?";  // "p" without its end
  for (const char *name : {".", "none/p", too_long.c_str(), static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(XOpenProfile(name, kReadText) + XOpenProfile(name, kWriteText), 0);
  }
  for (const int mode : {-1, 0, 15}) EXPECT_EQ(XOpenProfile("p", mode), 0);
  ProfileText line;
  ProfileEntry entry;
  EXPECT_EQ(XGetPrivateProfileStringEx(nullptr, kTmpTopic, "a", value, sizeof value), 0);
  EXPECT_TRUE(XCloseProfile() == 0 && !XNextLine(line) && !XNextEntry(kTmpTopic, entry));
  ASSERT_EQ(XOpenProfile("p", kReadText), 1);
  EXPECT_EQ(XOpenProfile("missing", kReadText), 1);  // the open one stays
  EXPECT_EQ(XGetPrivateProfileString(kTmpTopic, "b", value, sizeof value), 0);
  EXPECT_STREQ(value, "default");
  EXPECT_EQ(XGetPrivateProfileString(kTmpTopic, "a", value, 1), 1);
  EXPECT_STREQ(value, "1");
  ProfileHandle handle = XOpenProfileEx("p", kWriteText);
  EXPECT_EQ(XGetPrivateProfileStringNoTrimEx(handle, kTmpTopic, "a", value, 0), 1);
  EXPECT_STREQ(value, " 1");
  EXPECT_EQ(XSetPrivateProfileStringNoTrimEx(handle, "T", "k", "w", ""), 1);
  EXPECT_EQ(XSetPrivateProfileStringNoTrimEx(handle, "T", nullptr, "w", ""), 0);
  EXPECT_EQ(XGetPrivateProfileString("T", "k", value, 0), 0);  // of the one that is open beside it
  EXPECT_EQ(XDiscardProfile(), 1);
  EXPECT_EQ(XDiscardProfile(), 0);
  EXPECT_EQ(XSetPrivateProfileStringNoTrimEx(handle, kTmpTopic, "a", "[", ""), 1);
  EXPECT_EQ(XGetPrivateProfileStringEx(handle, kTmpTopic, "a", value, 0), 0);  // a "[" hides its entry at once
  EXPECT_EQ(XDiscardProfileEx(&handle), 1);
  EXPECT_EQ(get_file("p"), "a= 1\n");
  EXPECT_EQ(XCreateProfile("new", "text"), 1);
  EXPECT_EQ(XCloseProfile(), 1);
  EXPECT_EQ(get_file("new"), "text");
  handle = XOpenProfileEx("p", kWriteText);
  EXPECT_EQ(XSetPrivateProfileStringNoTrimEx(handle, "T", "k", "w", ""), 1);
  std::filesystem::remove_all(folder.path);
  EXPECT_EQ(XCloseProfileEx(&handle), 0);  // nowhere to write it
  EXPECT_TRUE(handle == nullptr && XCloseProfileEx(&handle) == 0 && XCloseProfileEx(nullptr) == 0);
}

TEST_F(Profile, OneOperationNeedsNoOpenProfile) {
  const std::pair<decltype(&XWritePrivateProfileString), decltype(&XReadPrivateProfileString)> kinds[] = {
      {XWritePrivateProfileString, XReadPrivateProfileString},
      {XWriteInCodedPrivateProfileString, XReadInCodedPrivateProfileString},
      {XWriteMergePrivateProfileString, XReadMergePrivateProfileString},
  };
  for (const auto &[write, read] : kinds) {
    std::filesystem::remove("p");
    char value[kValueBufferSize] = "default";
    EXPECT_EQ(read("T", "k", value, "p"), 0);
    EXPECT_STREQ(value, "default");
    EXPECT_EQ(write("T", "k", "v", "p"), 1);
    EXPECT_EQ(read("T", "k", value, "p"), 1);
    EXPECT_STREQ(value, "v");
  }
  put_file("p", ";");
  EXPECT_TRUE(XWritePrivateProfileString(kTmpTopic, "k", "v", "p") == 1 && get_file("p") == ";\nk=v\n");
}

TEST_F(Profile, WalksThroughItsLinesAsTheFileHasThem) {
  const std::string rest(kTextPiece - 1, 'x');
  put_file("p", "#" + rest + "x\n; c\nk=\0v\n\nkeyless\n[T]\nb=2"s);
  ASSERT_EQ(XOpenProfile("p", kReadText), 1);
  std::string walk, keys;
  for (ProfileText line; XNextLine(line);) {
    walk += std::to_string(line.number) + (line.continues ? ", goes on" : "") + (line.has_nul ? ", with NUL" : "") +
            (line.is_generated ? ", generated" : "") + ": " + std::string(line.text) + "|";
  }
  EXPECT_EQ(walk, "1, goes on: #" + rest +  // what is left of a long line is an entry
                      "|1, goes on, generated: [@$tmp_topic$@]\n|1: x\n|2: ; c\n|3, with NUL: k=|4: \n|5: keyless\n|"
                      "6: [T]\n|7: b=2|");
  for (const char *topic : {kTmpTopic, "T", "U"}) {
    for (ProfileEntry entry; XNextEntry(topic, entry);) keys += std::string(entry.key) + " ";
  }
  EXPECT_EQ(keys, "@$tmp_key$@00000 k @$tmp_key$@00001 b ");
}

// --- coded files

TEST_F(Profile, CodedLinesAreTheirBytesUnderTheKeyAndAnEmptyOneEndsThem) {
  EXPECT_EQ(coded({"a=1"}), "\x5d\xac\x6f\x0a\xa8"s);
  const Stream stream(std::fopen("p", "w+b"));
  for (const char *text : {"", "12345678"}) EXPECT_EQ(fwriteln(stream.get(), text), 1);
  std::rewind(stream.get());
  EXPECT_EQ(get_file("p"), "\x31\x9b\x0d\xa3\x6d\x33\x97\xe2\x5f\x27\x31\x9b"s);
  char line[kCodedPiece + 1];
  for (const char *text : {"", "12345678", ""}) EXPECT_STREQ(freadln(stream.get(), line, kCodedPiece), text);
  EXPECT_EQ(freadln(stream.get(), line, kCodedPiece), nullptr);
}

TEST_F(Profile, CodedLineOf1023BytesLosesItsEnd) {
  for (const size_t length : {7U, 1022U, 1023U, 1024U, 1025U}) {
    put_file("p", coded({std::string(length, 'x'), "[T]", "a=1"}));
    EXPECT_EQ(get(kReadCoded, "T", "a"), length == 1023 ? "(none)" : "1") << length;
  }
}

// --- what comes back

// Every text of up to `longest` characters of the alphabet.
std::vector<std::string> texts_of(std::string_view alphabet, size_t longest) {
  std::vector<std::string> texts = {""};
  for (size_t n = 0; n < texts.size() && texts[n].size() < longest; ++n) {
    for (const char c : alphabet) texts.push_back(texts[n] + c);
  }
  return texts;
}

// The predicate against the real thing: alone in a file with a neighbour after it.
TEST_F(Profile, WhatSurvivesComesBackAndWhatDoesNotDoesNot) {
  const auto comes_back = [](const std::string &topic, const std::string &key, const std::string &value) {
    put_file("p", "");
    set(kWriteText, topic.c_str(), key.c_str(), value.c_str());
    set(kWriteText, topic.c_str(), "Neighbour", "1");
    return get(kReadText, topic.c_str(), key.c_str()) == value && get(kReadText, topic.c_str(), "Neighbour") == "1";
  };
  for (const std::string &value : texts_of("v[]=#; \t\r\xa4\n", 2)) {
    EXPECT_EQ(comes_back("T", "k", value), XSurvives("T", "k", value) == ProfileFault::none) << value;
  }
  for (const std::string &name : texts_of("aB1;= #.[]\xa4\n", 2)) {
    EXPECT_TRUE(comes_back("T", name, "v") || XSurvives("T", name, "v") != ProfileFault::none) << "key " << name;
    EXPECT_TRUE(comes_back(name, "k", "v") || XSurvives(name, "k", "v") != ProfileFault::none) << "topic " << name;
  }
  EXPECT_EQ(XSurvives(kTmpTopic, "PASSWORD", "_]["), ProfileFault::bracket);
  EXPECT_EQ(XSurvives("T\n", "k", "v"), ProfileFault::line_feed);
  EXPECT_EQ(XSurvives(std::string(1020, 'T'), "k", std::string(1021, 'v')), ProfileFault::none);
  EXPECT_EQ(XSurvives(std::string(1021, 'T'), "k", "v"), ProfileFault::topic);
  EXPECT_EQ(XSurvives("T[", "k", "v"), ProfileFault::topic);  // comes back as "T" where names compare exactly
}

}  // namespace

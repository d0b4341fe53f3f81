// Base64 and its MIME header, also against the Base64 program of the system.
#include "util/base64.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "tests/folder.h"
#include "util/files.h"

namespace {

using Bytes = std::unique_ptr<char, decltype(&std::free)>;

std::string encoded(const std::string &data, size_t size) {
  size_t length = 0;
  const Bytes text(EncodeBase64(data.data(), size, &length), &std::free);
  EXPECT_EQ(std::strlen(text.get()), length);
  return {text.get(), length};
}

std::string decoded(const std::string &text) {
  const std::vector<char> exact(text.begin(), text.end());  // nothing may be read after it
  size_t length = 77;
  const Bytes data(DecodeBase64(exact.data(), exact.size(), &length), &std::free);
  return data == nullptr ? "<refused>" : std::string(data.get(), length);
}

TEST(Base64, DecodingTakesWhatIsComplete) {
  const char *const cases[][2] = {
      {"Q U\r\nJ-D", "ABC"}, {"QQ==QUI=QUJD", "AABABC"}, {"\x80\xFF", ""},        {"QUJDQ", "ABC"},
      {"QUJDQQ", "ABCA"},    {"QUJDQUI", "ABCAB"},       {"Q===", "<refused>"},   {"QUJD=", "<refused>"},
      {"QQ=", "<refused>"},  {"QQ=A", "<refused>"},      {"QQ=\n=", "<refused>"},
  };
  for (const auto &[text, data] : cases) EXPECT_EQ(decoded(text), data);
  testing::internal::CaptureStderr();
  EXPECT_EQ(decoded("=QQQ"), "<refused>");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "decodeBase64: impossible quantum position");
}

std::string many_bytes(size_t count) {
  std::string bytes;
  for (size_t i = 0; i < count; ++i) bytes += static_cast<char>(i * i / 7);
  return bytes;
}

TEST(Base64, AnyBytesComeBackAndAnyTextIsDecodedWithoutHarm) {
  const std::string bytes = many_bytes(2000);
  for (size_t size = 0; size < 300; ++size) EXPECT_EQ(decoded(encoded(bytes, size)), bytes.substr(0, size));
  testing::internal::CaptureStderr();
  for (size_t begin = 0; begin < bytes.size(); ++begin) decoded(bytes.substr(begin, 20));
  testing::internal::GetCapturedStderr();
}

TEST(Base64, EncodingTakesNoMoreThanItIsGiven) {
  const char *const cases[] = {"\r\n", "QQ==\r\n", "QUI=\r\n", "QUJD\r\n", "QUJDRA==\r\n"};
  for (size_t size = 0; size < std::size(cases); ++size) EXPECT_EQ(encoded("ABCDE", size), cases[size]);
}

TEST(Mime, TheCharacterAfterAValueIsCopiedToo) {
  char value[8] = "xxxxxxx";
  EXPECT_EQ(getValue(getField(" Content-TYPE : a/b;c", "content-type"), value, sizeof value), 1);
  EXPECT_STREQ(value, "a/b;xxx");
  EXPECT_EQ(getValue(": abcdef", value, 3), 1);
  EXPECT_STREQ(value, "abc;xxx");  // bounded, no terminator
  EXPECT_EQ(getParam(": a=b; NAME = \"b c\"; d", "name", value, sizeof value), 1);
  EXPECT_STREQ(value, "b c\"xxx");
  for (const char *field : {": a", ": a; b=c", ": a; name"}) EXPECT_EQ(getParam(field, "name", value, 9) + *value, 0);
  EXPECT_EQ(getValue(": \r\n", value, sizeof value), 0);
}

TEST(Mime, HeadersAreRead) {
  const std::string version = "MIME-Version: 1.0\r\n", transfer = "Content-Transfer-Encoding:";
  const std::tuple<std::string, int, const char *, const char *> cases[] = {
      {version + transfer + " base64\r\n\r\n" + transfer + " late\r\n", 1, "base64", ""},
      {version + "Content-Type: a; name=ab\n" + transfer + " q\nContent-Disposition: b;filename=c\n", 1, "q", "c"},
      {version + "Content-Type: a; name=ab\n" + transfer + std::string(300, 'e') + "\n", 1, "eeeeeeeee", "ab"},
      {transfer + " base64\r\n\r\n", 0, "", ""},
      {"MIME-Version:" + std::string(1100, ' ') + "\n" + transfer + " base64\r\n", 0, "", ""},  // a line too long
  };
  for (auto [header, result, expected_encoding, expected_name] : cases) {
    const Stream stream(fmemopen(header.data(), header.size(), "r"));
    char encoding[10], name[10];
    EXPECT_EQ(mimeCodeReadHeader(stream.get(), encoding, sizeof encoding, name, sizeof name), result) << header;
    EXPECT_STREQ(encoding, expected_encoding);
    EXPECT_STREQ(name, expected_name);
    for (size_t size = 0; size < 12; ++size) {  // nothing is written after the buffers
      std::vector<char> small(size), other(12 - size);
      std::rewind(stream.get());
      mimeCodeReadHeader(stream.get(), small.data(), static_cast<int>(size), other.data(), static_cast<int>(12 - size));
    }
  }
}

TEST(Mime, FilesThereAndBack) {
  const WorkingFolder folder;
  const std::string data = many_bytes(100'000);
  put_file("data", data);
  const std::string text = encoded(data, data.size());
  EXPECT_EQ(FileBase64Codec(1, "data", "text"), static_cast<long>(text.size()));
  EXPECT_TRUE(get_file("text") ==
              "MIME-Version: 1.0\r\nContent-Type: application/octet-stream; name=\"data\"\r\n"
              "Content-Transfer-Encoding: base64\r\nContent-Disposition: attachment; filename=\"data\"\r\n\r\n" +
                  text);
  EXPECT_EQ(FileBase64Codec(0, "text", "again"), static_cast<long>(data.size()));
  EXPECT_TRUE(get_file("again") == data);

  // NOLINTNEXTLINE(cert-env33-c): the Base64 program of the system understands it
  ASSERT_EQ(std::system("sed '1,/^\\r$/d' text | tr -d '\\r' | base64 -d | cmp - data"), 0);
  EXPECT_EQ(FileBase64Codec(0, "data", "out"), 0);  // no header
  for (const char *input : {"none", "."}) EXPECT_EQ(FileBase64Codec(1, input, "out"), 0);
  for (const char *output : {"/dev/full", "none/out"}) EXPECT_EQ(FileBase64Codec(1, "data", output), 0);
  EXPECT_EQ(mimeCodeWriteHeader(nullptr, "base64", "data"), 0);
  EXPECT_FALSE(std::filesystem::exists("out"));
}

}  // namespace

// The message catalogue.
#include "util/messages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "util/files.h"

namespace {

namespace fs = std::filesystem;

TEST(Messages, TextIsCountedFromTheStartOfTheLine) {
  std::string folder = (fs::temp_directory_path() / "kavsetup-messages-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  fs::create_directory(folder + "/work");
  fs::current_path(folder + "/work");
  // The name behind a backslash makes it a file of the folder above.
  ASSERT_EQ(replace_file("../work\\Messages.dat", "m12=Hello\nxm5=abc\nm5=later\n\nm601=no line end"), 1);
  const struct {
    int number, result;
    const char *text;
  } cases[] = {
      {12, 1, "Hello"}, {5, 1, "=abc"}, {601, 1, "no line e"}, {1, 0, "can't rea"}, {-1, 0, "can't rea"},
  };
  for (const auto &c : cases) {
    char buffer[10] = "xxxxxxxxx";
    EXPECT_EQ(UCTGetMessageDatString(c.number, buffer, sizeof buffer), c.result);
    EXPECT_STREQ(buffer, c.text);
  }
  fs::current_path("/");
  fs::remove_all(folder);
}

TEST(Messages, WithoutAFile) {
  char buffer[32];
  EXPECT_EQ(UCTGetMessageDatString(7, buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "can't read message 7");
  EXPECT_EQ(getLocalPath(buffer, 5), 1);
  EXPECT_EQ(std::string(buffer), fs::current_path().string().substr(0, 4));
}

}  // namespace

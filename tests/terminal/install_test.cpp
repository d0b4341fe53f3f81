// The installed programs in a root directory of their own, as on a machine that has nothing else of the project.
// INSTALLED_ROOT names a root directory with an installation (scripts/try-package); without it one is made of this
// build and of what the machine has (scripts/clean-root).
#include <cstdlib>
#include <filesystem>
#include <regex>

#include "tests/folder.h"
#include "tests/terminal/session.h"

namespace {

namespace fs = std::filesystem;

constexpr char kShare[] = "/usr/share/kavsetup";
constexpr char kDocuments[] = "/usr/share/doc/kavsetup";
constexpr char kMonitor[] = "/var/lib/monitor";  // the directory of the monitor, inside

int run(const std::string &command) { return WEXITSTATUS(std::system(command.c_str())); }  // NOLINT(cert-env33-c)

struct Installation : testing::Test {
  WorkingFolder folder;
  std::string root;
  Terminal t;

  // As a stranger does it: a new directory, and the sample database in it.
  void SetUp() override {
    if (run(ENTER_ROOT " / / true") != 0) {
      EXPECT_EQ(std::getenv("CI"), nullptr) << "no other root directory can be entered here";
      GTEST_SKIP() << "no other root directory can be entered here";
    }
    const char *installed = std::getenv("INSTALLED_ROOT");
    root = installed != nullptr ? installed : folder.path / "root";
    if (installed == nullptr) {
      ASSERT_EQ(run(CLEAN_ROOT " " BUILD_FOLDER " " + root), 0);
    }
    fs::remove_all(root + kMonitor);
    fs::create_directories(root + kMonitor);
    fs::copy(root + kShare, root + kMonitor);
  }

  // The exit status of a command inside. Its output goes to the file "output" of the working directory.
  int status_of(const std::string &command, const std::string &directory = kMonitor) const {
    return run("LC_ALL=C.UTF-8 " ENTER_ROOT " " + root + " " + directory + " " + command + " > output");
  }

  void start(const std::vector<std::string> &options) {
    Start how;
    how.program = ENTER_ROOT;
    how.options = {root, kMonitor, "/usr/sbin/kavsetup"};
    how.options.insert(how.options.end(), options.begin(), options.end());
    how.environment = {"TERMINFO="};
    t.start(how);
  }
};

TEST_F(Installation, SetsUpAMonitorThatScriptsThenRead) {
  start({"-japanese"});
  EXPECT_TRUE(t.see("新しい設定ファイルを作成"));
  start({"-u/usr/share/kavsetup/upstyp.ups"});
  t.press({Enter, Down, Enter});
  save_and_exit(t);
  EXPECT_EQ(status_of("kavcfg set UpsModel=K-TRN010VQ-100 CheckRate=5"), 0);
  EXPECT_EQ(status_of("kavcfg check"), 0) << get_file("output");
  EXPECT_EQ(status_of("kavcfg get CheckRate"), 0);
  EXPECT_EQ(get_file("output"), "5\n");
  EXPECT_EQ(status_of("kavdb check upstyp.ups", kShare), 0) << get_file("output");
  EXPECT_EQ(status_of("kavdb dump upstyp.ups", kShare), 0);
  EXPECT_TRUE(get_file("output") == get_file(root + kShare + "/upstyp.txt"));
}

// Each installed file that the README names, and each that it links, is there; of the source it does not tell.
TEST_F(Installation, TellsOfWhatIsInstalled) {
  const std::string readme = get_file(root + kDocuments + "/README.md");
  const std::regex name(R"(`(/usr/[^`]*)`|\]\(([^)]*)\))");
  const std::sregex_iterator first(readme.begin(), readme.end(), name);
  EXPECT_GT(std::distance(first, {}), 10);
  for (auto at = first; at != std::sregex_iterator(); ++at) {
    const std::string path = (*at)[1].matched ? at->str(1) : kDocuments + ("/" + at->str(2));
    EXPECT_TRUE(fs::exists(root + path)) << path;
  }
  for (const char *source : {"scripts/", "build/", "cmake"})
    EXPECT_EQ(readme.find(source), std::string::npos) << source;
}

}  // namespace

#include "unixtools/portprobe.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <thread>
#include <tuple>

#include "tests/folder.h"
#include "unixtools/linesettings.h"
#include "util/files.h"

namespace {

namespace fs = std::filesystem;
using std::string;
using Result = std::pair<int, string>;

Result probe(const string &name, int size = 512) {
  char buffer[512] = "";
  const int code = probe_port(buffer, size, name.c_str(), "%M\r");
  return {code, buffer};
}

// A pseudo-terminal at a speed that no B constant names. `port` keeps the port's side open.
struct Pty {
  Descriptor ups{posix_openpt(O_RDWR | O_NOCTTY)};
  string path;
  int port = -1;
  LineSettings before;

  Pty() {
    EXPECT_EQ(grantpt(ups.number) + unlockpt(ups.number), 0);
    path = ptsname(ups.number);
    port = open(path.c_str(), O_RDWR | O_NOCTTY);
    EXPECT_EQ(get_line_settings(port, before), 1);
    uint32_t kernel[11];  // 4 words of flags, 5 of characters, 2 speeds
    std::memcpy(kernel, before.kernel.data(), sizeof kernel);
    kernel[2] = (kernel[2] & ~0010017U) | 0010000U;  // control flags: the speed stands elsewhere
    kernel[9] = kernel[10] = 31250;
    std::memcpy(before.kernel.data(), kernel, sizeof kernel);
    EXPECT_EQ(set_line_settings(port, before), 1);
    EXPECT_TRUE(has_settings_back());
  }
  ~Pty() { close(port); }
  Pty(const Pty &) = delete;
  Pty &operator=(const Pty &) = delete;

  string name() const { return path.substr(5); }
  bool has_settings_back() const {
    LineSettings now;
    return get_line_settings(port, now) == 1 && now == before;
  }
  bool gets_request() const {
    char request[3];
    return read(ups.number, request, sizeof request) == 3;
  }
};

auto open_descriptors() {
  const auto all = fs::directory_iterator("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

Result check(const string &path) {
  char buffer[128] = "";
  const int code = check_lockfile(buffer, sizeof buffer, path.c_str());
  return {code, buffer};
}

TEST(Device, NamesAreCutFromPathsOrLeftOutWhole) {
  const std::tuple<char *(*)(char *, int, const char *), const char *, string> cases[] = {
      {get_device_path, "/dev/usb/tty1", "/dev/usb/"},
      {get_device_path, nullptr, "/dev/"},
      {get_device, "/dev/usb/tty1", "tty1"},
      {get_device, nullptr, "ttyS0"},
  };
  for (const auto &[part_of, device, expected] : cases) {
    char text[16] = "before";
    const int size = static_cast<int>(expected.size()) + 1;
    EXPECT_EQ(part_of(text, size - 1, device), nullptr);
    EXPECT_EQ(part_of(nullptr, size, device), nullptr);
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(part_of(text, size, device), text);
    EXPECT_EQ(text, expected);
  }
  char reason[64] = "";
  EXPECT_EQ(is_device_valid(reason, sizeof reason, string(506, 'x').c_str()), 1);
  EXPECT_EQ(is_device_valid(reason, sizeof reason, string(507, 'x').c_str()), -1);
  EXPECT_STREQ(reason, "stat(): File name too long");
  EXPECT_EQ(is_device_valid(reason, sizeof reason, (string(507, 'x') + "/").c_str()), 1);
  EXPECT_EQ(build_ret_str(nullptr, 1, "", nullptr) + build_ret_str(reason, 0, "", nullptr), 0);
  EXPECT_EQ(build_ret_str(reason, 28, "x", "y", nullptr), 0);
  EXPECT_STREQ(reason, "stat(): File name too longx");
  EXPECT_EQ(probe(string(507, 'x')), (Result{0, ""}));
}

TEST(LockFile, HoldsThePortUnlessItsProcessIsKnownToBeGone) {
  const WorkingFolder folder;
  const string own = std::to_string(getpid());
  const pid_t gone = fork();
  if (gone == 0) _exit(0);
  waitpid(gone, nullptr, 0);
  const std::tuple<string, int, string> cases[] = {
      {"    " + own + "\n", -5, "locked to " + own},
      {"     " + std::to_string(gone) + "\n", 1, ""},
      {string(31, ' ') + "19999999", -5, "locked to 1"},  // 32 bytes are read
      {"no digit\n", -5, "locked to "},
      {"", -5, "locked to "},
      {"-1", -5, "locked to 1"},
      {"2147483648", -5, "locked to 2147483648"},
      {string(40, '7'), -5, "locked to " + string(31, '7')},
  };
  for (const auto &[content, code, text] : cases) {
    put_file("lock", content);
    EXPECT_EQ(check("lock"), (Result{code, text})) << content;
    EXPECT_EQ(get_file("lock"), content);
  }
  EXPECT_EQ(check("missing"), (Result{1, ""}));
  EXPECT_EQ(check("lock/lock"), (Result{-3, "open(): Not a directory"}));
  EXPECT_EQ(check("."), (Result{-4, "read(): Is a directory"}));
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_EQ(check("pipe"), (Result{-5, "locked to "}));  // without waiting for somebody to write
}

TEST(PortLock, IsFoundByThePortsNameUpTo63Characters) {
  string name = "kavtest" + std::to_string(getpid());
  name.resize(48, 'x');
  const string path = "/var/lock/LCK.." + name;
  for (const string &file : {path, path + "x"}) put_file(file, "1\n");
  if (!fs::exists(path)) GTEST_SKIP() << "/var/lock can't be written";
  EXPECT_EQ(probe(name), (Result{-5, "locked to 1"}));
  EXPECT_EQ(probe(name + "x"), (Result{-6, "open(): No such file or directory"}));
  fs::remove(path);
  fs::remove(path + "x");
}

TEST(LockFile, AnotherUsersProcessHoldsThePort) {
  if (getuid() != 0) GTEST_SKIP() << "needs root to become another user";
  const WorkingFolder folder;
  fs::permissions(".", fs::perms(0755));
  for (const char *name : {"lock", "secret"}) put_file(name, std::to_string(getpid()));
  fs::permissions("secret", fs::perms::none);
  EXPECT_EXIT(_exit(setuid(65534) == 0 && check("lock").first == -5 && check("secret").first == -3 ? 0 : 1),
              testing::ExitedWithCode(0), "");
}

// Each simulated UPS checks the request, the line's settings and that they are back when the port is closed.
TEST(PortAnswer, IsWhatCameUntilASecondOfSilenceOr128Bytes) {
  const auto before = open_descriptors();
  string many;
  while (many.size() < kMaxAnswer) many += "%M1234\r";
  const std::tuple<string, int, int, string> cases[] = {
      // options                                  size  code  answer
      {"--burst 5 --pause 600 --model K-TRN010VQ12", 512, 1, "%MK-TRN010VQ12\r"},
      {"--delay 700 --answer 'XM K-TSN005\\n'", 512, 1, "XM K-TSN005\n"},
      {"--answer '\\xff\\rK\\x00TSN'", 512, 1, "\xff\rK"},
      {"--silent", 10, -12, "read(): "},
      {"--model 1234 --length 128", 128, 1, ""},
      {"--model 1234 --chatter", 129, 1, many.substr(0, 128)},
  };
  for (const auto &[options, size, code, text] : cases) {
    const string command = UPSSIM_PROGRAM " --requests 1 " + options;
    FILE *simulator = popen(command.c_str(), "r");  // NOLINT(cert-env33-c): only rows of this table
    char path[64] = "";
    ASSERT_EQ(std::fscanf(simulator, "%63s", path), 1);
    EXPECT_EQ(probe(path + std::strlen("/dev/"), size), (Result{code, text})) << options;
    EXPECT_EQ(pclose(simulator), 0) << options;
  }
  EXPECT_EQ(open_descriptors(), before);
}

TEST(PortFailure, LeavesTheSettingsAsTheyWereAndTheProcessorAlone) {
  const Pty pty;
  const Descriptor other(open(pty.path.c_str(), O_RDWR | O_NOCTTY));
  const Stream file(std::tmpfile());
  const auto before = open_descriptors();
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t used = std::clock();
  EXPECT_EQ(probe(pty.name()), (Result{-12, "read(): Success"}));
  EXPECT_LT(std::clock() - used, CLOCKS_PER_SEC / 20);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
  EXPECT_TRUE(pty.has_settings_back());

  ASSERT_EQ(flock(other.number, LOCK_EX), 0);
  EXPECT_EQ(probe(pty.name()), (Result{-6, "open(): Resource temporarily unavailable"}));
  flock(other.number, LOCK_UN);

  tcflow(pty.port, TCOOFF);
  EXPECT_EQ(probe(pty.name()), (Result{-11, "write(): Connection timed out"}));
  tcflow(pty.port, TCOON);
  EXPECT_TRUE(pty.has_settings_back());

  EXPECT_EQ(probe("fd/" + std::to_string(fileno(file.get()))),
            (Result{-7, "tcgetattr(): Inappropriate ioctl for device"}));
  EXPECT_EQ(open_descriptors(), before);
}

TEST(PortFailure, AHangUpEndsTheAnswerAndStillGivesTheSettingsBack) {
  Pty pty;
  bool hung_up = false;
  std::thread ups([&] {
    hung_up = pty.gets_request() && write(pty.ups.number, "%MK-T", 5) == 5;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // the answer must be read, the second not be over
    hung_up = hung_up && ioctl(pty.port, TIOCVHANGUP) == 0;
  });
  EXPECT_EQ(probe(pty.name()), (Result{1, "%MK-T"}));
  ups.join();
  if (!hung_up) GTEST_SKIP() << "no right to hang up";
  close(pty.port);
  pty.port = open(pty.path.c_str(), O_RDWR | O_NOCTTY);
  EXPECT_TRUE(pty.has_settings_back());
}

TEST(PortFailure, ASignalThatEndsTheProgramGivesTheSettingsBack) {
  const Pty pty;
  const auto probe_and_end = [&] {
    std::signal(SIGTERM, [](int) {
      restore_probed_port();
      _exit(0);
    });
    std::thread([&] {
      if (pty.gets_request() && !pty.has_settings_back()) kill(getpid(), SIGTERM);
    }).detach();
    probe(pty.name());
  };
  EXPECT_EXIT(probe_and_end(), testing::ExitedWithCode(0), "");
  EXPECT_TRUE(pty.has_settings_back());
}

}  // namespace

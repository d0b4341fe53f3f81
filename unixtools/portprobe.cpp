#include "unixtools/portprobe.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "unixtools/linesettings.h"
#include "util/files.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr const char *kModule = "unixtools/portprobe";
constexpr std::string_view kDefaultDevice = "/dev/ttyS0:2400,n,8,1";
constexpr const char *kLockFilePrefix = "/var/lock/LCK..";
constexpr int kLockFileBytes = 32;
constexpr int kWriteTimeout = 1000;  // ms

// The port being probed, for restore_probed_port: written by the probe, read by it and by signal handlers.
struct ProbedPort {
  std::atomic<bool> changed{false};  // set when the members below are complete
  int descriptor = -1;
  char path[kDevicePathSize] = "";
  LineSettings settings;  // as they were before the probe
};
static_assert(std::atomic<bool>::is_always_lock_free);
ProbedPort probed;

// Gives the probed port its settings back at the end of a scope.
struct SettingsRestorer {
  SettingsRestorer() = default;
  SettingsRestorer(const SettingsRestorer &) = delete;
  SettingsRestorer &operator=(const SettingsRestorer &) = delete;
  ~SettingsRestorer() {
    restore_probed_port();
    probed.changed = false;
  }
};

// Reports that `call` failed, with the system's reason; returns `code`.
int report_failure(char *buf, int size, int code, const char *call) {
  const char *reason = strerror(errno);
  build_ret_str(buf, size, call, reason, nullptr);
  return code;
}

// Copies all of `text` or nothing.
char *copy_whole(char *dst, int size, std::string_view text) {
  if (dst == nullptr || std::cmp_less_equal(size, text.size())) return nullptr;
  cpynstr(dst, text, size);
  return dst;
}

bool build_device_path(char (&path)[kDevicePathSize], const char *name) {
  char directory[kDevicePathSize] = "";
  get_device_path(directory, sizeof directory, nullptr);
  return std::snprintf(path, sizeof path, "%s%s", directory, name) < kDevicePathSize;
}

// The first run of digits, empty when there is none.
std::string_view first_number(std::string_view text) {
  constexpr std::string_view digits = "0123456789";
  const size_t start = std::min(text.find_first_of(digits), text.size());
  return text.substr(start, text.find_first_not_of(digits, start) - start);
}

// Whether `number` names a process and that process does not exist. Only a number above 0 may reach kill: 0 and below
// would mean whole groups of processes.
bool process_is_gone(std::string_view number) {
  pid_t process = 0;
  const bool readable = std::from_chars(number.data(), number.data() + number.size(), process).ec == std::errc();
  return readable && process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

// Writes the request with one call. A line that flow control has stopped takes nothing: it is waited for, but not for
// ever.
bool send_request(int port, std::string_view request) {
  pollfd line = {port, POLLOUT, 0};
  errno = 0;
  const int ready = poll(&line, 1, kWriteTimeout);
  if (ready == 0) errno = ETIMEDOUT;
  return ready > 0 && std::cmp_equal(write(port, request.data(), request.size()), request.size());
}

// Collects the answer into `answer` (kMaxAnswer bytes); returns its length. errno is 0 when silence ended it.
size_t read_answer(int port, char *answer) {
  size_t length = 0;
  while (length < kMaxAnswer) {
    errno = 0;
    const ssize_t got = read(port, answer + length, 1);
    if (got > 0) {
      ++length;
    } else if (got == 0 || errno != EINTR) {  // a resized terminal must not end the answer
      break;
    }
  }
  return length;
}

// Puts the settings of the open port away, asks and gives them back. Results as probe_port.
int ask_port(char *buf, int size, int port, const char *path, const char *request) {
  termios settings{};
  if (tcgetattr(port, &settings) != 0 || !get_line_settings(port, probed.settings)) {
    return report_failure(buf, size, -7, "tcgetattr(): ");
  }
  probed.descriptor = port;
  cpynstr(probed.path, path);
  probed.changed = true;
  const SettingsRestorer restorer;

  set_comm_mode(&settings);
  if (tcsetattr(port, TCSANOW, &settings) != 0) return report_failure(buf, size, -8, "tcsetattr(): ");
  if (!send_request(port, request)) return report_failure(buf, size, -11, "write(): ");

  const std::unique_ptr<char[]> answer(new (std::nothrow) char[kMaxAnswer + 1]);
  if (answer == nullptr) return report_failure(buf, size, 0, "malloc(): ");
  const size_t length = read_answer(port, answer.get());
  if (length == 0) return report_failure(buf, size, kPortSilent, "read(): ");
  answer[length] = '\0';
  build_ret_str(buf, size, answer.get(), nullptr);
  return 1;
}

}  // namespace

int build_ret_str(char *buf, int size, const char *text, ...) {
  trace_enter(kModule, "build_ret_str");
  if (buf == nullptr || size < 1) return 0;

  size_t used = strnlen(buf, static_cast<size_t>(size));
  va_list texts;
  va_start(texts, text);
  for (; text != nullptr; text = va_arg(texts, const char *)) {
    const std::string_view next = text;
    if (std::cmp_greater_equal(used + next.size(), size)) break;
    cpynstr(buf + used, next, size - static_cast<int>(used));
    used += next.size();
  }
  va_end(texts);
  return text == nullptr;
}

char *get_default_device(char *dst, int size) {
  trace_enter(kModule, "get_default_device");
  return copy_whole(dst, size, kDefaultDevice.substr(0, kDefaultDevice.find(':')));
}

char *get_device_path(char *dst, int size, const char *device) {
  trace_enter(kModule, "get_device_path");
  char usual[kDevicePathSize] = "";
  const std::string_view path = device != nullptr ? device : get_default_device(usual, sizeof usual);
  return copy_whole(dst, size, path.substr(0, path.rfind('/') + 1));
}

char *get_device(char *dst, int size, const char *device) {
  trace_enter(kModule, "get_device");
  char usual[kDevicePathSize] = "";
  const std::string_view path = device != nullptr ? device : get_default_device(usual, sizeof usual);
  return copy_whole(dst, size, path.substr(path.rfind('/') + 1));
}

int is_device_valid(char *buf, int size, const char *name) {
  trace_enter(kModule, "is_device_valid");
  // Kept: a path that could be built is not looked up; the caller learns from opening it what is wrong with it.
  char path[kDevicePathSize];
  if (std::strchr(name, '/') != nullptr || build_device_path(path, name)) return 1;

  struct stat device;
  if (stat(name, &device) != 0) return report_failure(buf, size, -1, "stat(): ");
  if (S_ISCHR(device.st_mode)) return 1;
  build_ret_str(buf, size, "not a character device", nullptr);
  return -2;
}

int is_device_free(char *buf, int size, const char *name) {
  trace_enter(kModule, "is_device_free");
  char path[kLockFilePathSize];
  if (std::snprintf(path, sizeof path, "%s%s", kLockFilePrefix, name) >= kLockFilePathSize) return 1;
  return check_lockfile(buf, size, path);
}

int check_lockfile(char *buf, int size, const char *path) {
  trace_enter(kModule, "check_lockfile");
  // Without waiting: where everyone may write into the directory, a pipe can lie in the lock file's place.
  const Descriptor file(open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (file.number < 0) return errno == ENOENT ? 1 : report_failure(buf, size, -3, "open(): ");

  char bytes[kLockFileBytes];
  const ssize_t length = read(file.number, bytes, sizeof bytes);
  if (length < 0) return report_failure(buf, size, -4, "read(): ");

  char number[kLockFileBytes];  // 31 digits at most
  cpynstr(number, first_number({bytes, static_cast<size_t>(length)}));
  if (process_is_gone(number)) return 1;
  build_ret_str(buf, size, "locked to ", number, nullptr);
  return kPortLocked;
}

void set_comm_mode(termios *settings) {
  trace_enter(kModule, "set_comm_mode");
  settings->c_cflag = CREAD | CS8 | CLOCAL;
  settings->c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | ICRNL | IGNCR | INLCR | ISTRIP);
  settings->c_oflag &= ~static_cast<tcflag_t>(OPOST);
  settings->c_lflag &= ~static_cast<tcflag_t>(ISIG | ICANON | ECHO | ECHOE | ECHOK | ECHONL | TOSTOP | IEXTEN);
  settings->c_cc[VMIN] = 0;
  settings->c_cc[VTIME] = 10;  // tenths of a second
  cfsetispeed(settings, B2400);
  cfsetospeed(settings, B2400);
}

int probe_port(char *buf, int size, const char *name, const char *request) {
  trace_enter(kModule, "probe_port");
  char path[kDevicePathSize];
  if (!build_device_path(path, name)) return 0;
  const int valid = is_device_valid(buf, size, name);
  if (valid != 1) return valid;
  const int unlocked = is_device_free(buf, size, name);
  if (unlocked != 1) return unlocked;

  const Descriptor port(open(path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (port.number < 0 || flock(port.number, LOCK_EX | LOCK_NB) != 0) return report_failure(buf, size, -6, "open(): ");
  fcntl(port.number, F_SETFL, 0);
  return ask_port(buf, size, port.number, path, request);
}

void restore_probed_port() {
  if (!probed.changed || set_line_settings(probed.descriptor, probed.settings)) return;
  // The line was hung up under the probe: that cuts off the descriptor, but leaves a serial port its settings. A device
  // that is gone altogether may already have given its path to another.
  struct stat device;
  if (fstat(probed.descriptor, &device) != 0 || device.st_nlink == 0) return;
  const Descriptor port(open(probed.path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  set_line_settings(port.number, probed.settings);
}

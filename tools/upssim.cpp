// A simulated UPS on a pseudo-terminal, for tests and for trying the detection without hardware.
// It waits for the model request, checks what asks (the request itself, the line's settings, and that they are back
// when the port is closed) and answers as its options tell.
#include <fcntl.h>
#include <getopt.h>
#include <poll.h>
#include <sys/prctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "unixtools/linesettings.h"
#include "util/files.h"
#include "util/numbers.h"

namespace {

constexpr const char *kHelp =
    "usage: upssim [OPTION...]\n"
    "Plays a UPS on a pseudo-terminal, whose path is the first line on standard output.\n"
    "\n"
    "What it answers to the request \"%M\" and a carriage return:\n"
    "  -m, --model CODE     \"%M\", CODE and a carriage return (the default, with K-TSN005)\n"
    "  -a, --answer TEXT    TEXT as it stands; \\r, \\n, \\\\ and \\xHH (two hexadecimal digits) stand for bytes\n"
    "  -g, --garbage        40 bytes of noise\n"
    "  -s, --silent         nothing\n"
    "  -L, --length N       the answer over and over, N bytes in all\n"
    "  -c, --chatter        the answer over and over, until the port is closed (10 seconds at most)\n"
    "When:\n"
    "  -d, --delay MS       waits before the answer\n"
    "  -b, --burst N        sends N bytes at a time\n"
    "  -p, --pause MS       waits between two bursts (default 300)\n"
    "Else:\n"
    "  -n, --requests N     ends after N requests, when the port is closed or 5 seconds after the last answer\n"
    "  -l, --link PATH      makes PATH, which must not exist, a link to the pseudo-terminal; removes it at the end\n"
    "  -w, --with-parent    ends when the program that started it ends\n"
    "  -h, --help           shows this text\n"
    "  -V, --version        shows the version\n"
    "\n"
    "What is wrong with a request is written to standard error. Exit status: 0 every request was right, 1 one was "
    "not,\n"
    "2 it could not run.\n";

constexpr option kOptions[] = {
    // clang-format off
  //  name           argument           flag     letter
  { "model",       required_argument, nullptr, 'm' },
  { "answer",      required_argument, nullptr, 'a' },
  { "garbage",     no_argument,       nullptr, 'g' },
  { "silent",      no_argument,       nullptr, 's' },
  { "length",      required_argument, nullptr, 'L' },
  { "chatter",     no_argument,       nullptr, 'c' },
  { "delay",       required_argument, nullptr, 'd' },
  { "burst",       required_argument, nullptr, 'b' },
  { "pause",       required_argument, nullptr, 'p' },
  { "requests",    required_argument, nullptr, 'n' },
  { "link",        required_argument, nullptr, 'l' },
  { "with-parent", no_argument,       nullptr, 'w' },
  { "help",        no_argument,       nullptr, 'h' },
  { "version",     no_argument,       nullptr, 'V' },
  { nullptr,       0,                 nullptr, 0 },
};  // clang-format on
constexpr const char *kLetters = "m:a:gsL:cd:b:p:n:l:whV";

// The flags that a line must not have while it is asked.
struct Flag {
  const char *name;
  tcflag_t termios::*word;
  tcflag_t bit;
};
constexpr Flag kUnwanted[] = {
    // clang-format off
  // name       word               bit
  { "IXON",   &termios::c_iflag, IXON },
  { "IXOFF",  &termios::c_iflag, IXOFF },
  { "ICRNL",  &termios::c_iflag, ICRNL },
  { "IGNCR",  &termios::c_iflag, IGNCR },
  { "INLCR",  &termios::c_iflag, INLCR },
  { "ISTRIP", &termios::c_iflag, ISTRIP },
  { "OPOST",  &termios::c_oflag, OPOST },
  { "ISIG",   &termios::c_lflag, ISIG },
  { "ICANON", &termios::c_lflag, ICANON },
  { "ECHO",   &termios::c_lflag, ECHO },
  { "ECHOE",  &termios::c_lflag, ECHOE },
  { "ECHOK",  &termios::c_lflag, ECHOK },
  { "ECHONL", &termios::c_lflag, ECHONL },
  { "TOSTOP", &termios::c_lflag, TOSTOP },
  { "IEXTEN", &termios::c_lflag, IEXTEN },
};  // clang-format on

constexpr std::string_view kRequest = "%M\r";
constexpr int kRequestGap = 200;      // ms between two bytes of one request
constexpr int kChatterPause = 20;     // ms
constexpr int kChatterLimit = 10000;  // ms
constexpr int kClosePatience = 5000;  // ms
constexpr size_t kNoiseLength = 40;

struct Options {
  std::string answer = "%MK-TSN005\r";
  bool chatter = false;
  int length = 0;    // 0: that of the answer
  int delay = 0;     // ms
  int burst = 0;     // 0: all at once
  int pause = 300;   // ms
  int requests = 0;  // 0: until it is stopped
  const char *link = nullptr;
  bool with_parent = false;
};

// The pseudo-terminal. While nobody asks, we hold the port's side open too: only when we let go of it does the other
// program's closing show, as a hang-up on our side.
struct Line {
  Descriptor ours;
  std::optional<Descriptor> port;
  const char *path;
  termios start{};  // the port's settings while nobody asks
  LineSettings all_start;
  explicit Line(int opened) : ours(opened), path(ptsname(opened)) {}
};

volatile std::sig_atomic_t fault_found = 0;  // written by report, read at the end and by stop
const char *made_link = nullptr;             // written when the link is made, read by remove_link
const char *port_name = "";                  // written when the port is open, read by report

void report(const std::string &what) {
  fault_found = 1;
  std::fprintf(stderr, "upssim: %s: %s\n", port_name, what.c_str());
}

void remove_link() {
  if (made_link != nullptr) unlink(made_link);
}

void stop(int) {
  remove_link();
  _exit(fault_found);
}

int fail(const char *what) {
  std::fprintf(stderr, "upssim: %s: %s\n", what, strerror(errno));
  return 2;
}

// The bytes that `text` stands for.
std::string unescape(std::string_view text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] != '\\' || next == '\0') {
      bytes += text[i];
      continue;
    }
    ++i;
    if (next == 'x' && i + 2 < text.size()) {
      bytes += static_cast<char>(getHexASCII(&text[i + 1], 2));
      i += 2;
    } else {
      bytes += next == 'r' ? '\r' : next == 'n' ? '\n' : next;
    }
  }
  return bytes;
}

std::string noise() {
  std::string bytes;
  for (unsigned value = 0x9D; bytes.size() < kNoiseLength; value = value * 5 + 113) bytes += static_cast<char>(value);
  return bytes;
}

std::string repeated(const std::string &text, size_t length) {
  std::string bytes;
  while (!text.empty() && bytes.size() < length) bytes += text;
  bytes.resize(length);
  return bytes;
}

bool read_number(std::string_view text, int &number) {
  const char *const text_end = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), text_end, number);
  return error == std::errc() && end == text_end && number >= 0;
}

bool read_option(int letter, const char *value, Options &options) {
  switch (letter) {
    case 'm':
      options.answer = "%M" + std::string(value) + "\r";
      return true;
    case 'a':
      options.answer = unescape(value);
      return true;
    case 'g':
      options.answer = noise();
      return true;
    case 's':
      options.answer.clear();
      return true;
    case 'L':
      return read_number(value, options.length);
    case 'c':
      options.chatter = true;
      return true;
    case 'd':
      return read_number(value, options.delay);
    case 'b':
      return read_number(value, options.burst);
    case 'p':
      return read_number(value, options.pause);
    case 'n':
      return read_number(value, options.requests);
    case 'l':
      options.link = value;
      return true;
    case 'w':
      options.with_parent = true;
      return true;
    default:
      return false;
  }
}

// Returns 1; or 0 when an option is wrong.
int read_options(int count, char **words, Options &options) {
  for (int letter = 0; (letter = getopt_long(count, words, kLetters, kOptions, nullptr)) != -1;) {
    if (letter == 'h' || letter == 'V') {
      std::fputs(letter == 'h' ? kHelp : "upssim " KAV_VERSION "\n", stdout);
      std::exit(std::fflush(stdout) == 0 ? 0 : 2);
    }
    if (!read_option(letter, optarg, options)) return 0;
  }
  if (options.length > 0) options.answer = repeated(options.answer, static_cast<size_t>(options.length));
  return optind == count ? 1 : 0;
}

// Holds the port's side, with settings that a probe has to change in every point. 1; or 0 with errno set.
int prepare_line(Line &line) {
  if (grantpt(line.ours.number) != 0 || unlockpt(line.ours.number) != 0) return 0;
  line.port.emplace(open(line.path, O_RDWR | O_NOCTTY | O_CLOEXEC));
  const int port = line.port->number;
  if (tcgetattr(port, &line.start) != 0) return 0;
  for (const Flag &flag : kUnwanted) line.start.*flag.word |= flag.bit;
  cfsetispeed(&line.start, B9600);
  cfsetospeed(&line.start, B9600);
  return tcsetattr(port, TCSANOW, &line.start) == 0 && tcgetattr(port, &line.start) == 0
             ? get_line_settings(port, line.all_start)
             : 0;
}

// Prints the path and makes the link. 1; or 0 with errno set.
int announce(const Line &line, const Options &options) {
  port_name = options.link != nullptr ? options.link : line.path;
  if (options.link != nullptr) {
    if (symlink(line.path, options.link) != 0) return 0;
    made_link = options.link;
  }
  std::puts(line.path);
  return std::fflush(stdout) == 0 ? 1 : 0;
}

// Waits up to `ms` (-1 for ever) for `event` or the closing of the port (POLLHUP). Returns what came, 0 for nothing.
int wait_on(const Line &line, short event, int ms) {
  pollfd ours = {line.ours.number, event, 0};
  return poll(&ours, 1, ms) > 0 ? ours.revents : 0;
}

bool is_closed(const Line &line, int ms) { return (wait_on(line, 0, ms) & POLLHUP) != 0; }

std::string read_request(const Line &line) {
  std::string request;
  char bytes[64];
  while (request.size() < kRequest.size() &&
         (wait_on(line, POLLIN, request.empty() ? -1 : kRequestGap) & POLLIN) != 0) {
    const ssize_t got = read(line.ours.number, bytes, sizeof bytes);
    if (got <= 0) break;
    request.append(bytes, static_cast<size_t>(got));
  }
  return request;
}

void check_request(std::string_view request) {
  if (request == kRequest) return;
  std::string shown = "the request is";
  for (const char c : request) {
    char digits[4];
    std::snprintf(digits, sizeof digits, " %02X", static_cast<unsigned char>(c));
    shown += digits;
  }
  report(shown);
}

void check_settings(const Line &line) {
  termios now{};
  if (tcgetattr(line.ours.number, &now) != 0) return report(std::string("tcgetattr: ") + strerror(errno));
  termios others = now;  // with the flags that may change as they were
  for (const Flag &flag : kUnwanted) {
    if ((now.*flag.word & flag.bit) != 0) report(std::string(flag.name) + " is set");
    others.*flag.word |= flag.bit;
  }
  if (others.c_iflag != line.start.c_iflag || others.c_oflag != line.start.c_oflag ||
      others.c_lflag != line.start.c_lflag) {
    report("flags have changed that should be kept");
  }
  if ((now.c_cflag & ~CBAUD) != (CREAD | CS8 | CLOCAL)) report("the control flags are not CREAD, CS8 and CLOCAL");
  if (cfgetispeed(&now) != B2400 || cfgetospeed(&now) != B2400) report("the speed is not 2400 bit/s");
  if (now.c_cc[VMIN] != 0 || now.c_cc[VTIME] != 10) report("VMIN is not 0 or VTIME is not 10");
}

// Sends the answer as told. False when the port was closed before its end.
bool send_answer(const Line &line, const Options &options) {
  if (is_closed(line, options.delay)) return false;
  const size_t burst = options.burst > 0 ? static_cast<size_t>(options.burst) : options.answer.size();
  const int pause = options.burst > 0 ? options.pause : kChatterPause;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kChatterLimit);
  do {
    for (std::string_view rest = options.answer; !rest.empty();) {
      const std::string_view part = rest.substr(0, burst);
      rest.remove_prefix(part.size());
      // What the line does not take is lost, as on a real one.
      if (write(line.ours.number, part.data(), part.size()) < 0 && errno != EAGAIN) return false;
      if ((options.chatter || !rest.empty()) && is_closed(line, pause)) return false;
    }
  } while (options.chatter && !options.answer.empty() && std::chrono::steady_clock::now() < end);
  return true;
}

// After the port was closed: checks the settings, unless the next program has opened it in the meantime.
void check_closed_port(const Line &line) {
  LineSettings now;
  const int known = get_line_settings(line.ours.number, now);
  if (known == 1 && is_closed(line, 0) && now != line.all_start) report("the line does not have its settings back");
}

// Holds the port again. What its last user did not read is gone, as with a real port. 1; or 0 with errno set.
int hold_port(Line &line) {
  line.port.emplace(open(line.path, O_RDWR | O_NOCTTY | O_CLOEXEC));
  return tcflush(line.port->number, TCIFLUSH) == 0 ? 1 : 0;
}

// Deals with one request, the last of all when `is_last`. 1; or 0 with errno set when the line is lost.
int serve(Line &line, const Options &options, bool is_last) {
  check_request(read_request(line));
  check_settings(line);
  line.port.reset();
  const bool answered = send_answer(line, options);
  const int came = answered ? wait_on(line, POLLIN, kClosePatience) : POLLHUP;
  if ((came & POLLHUP) != 0) check_closed_port(line);
  if (is_last && came == 0) report("the port is still open long after the answer");
  // Bytes that we sent when the port had its settings back have been echoed: they are no request.
  char echo[64];
  while (!answered && read(line.ours.number, echo, sizeof echo) > 0) continue;
  return hold_port(line);
}

}  // namespace

int main(int count, char **words) {
  Options options;
  if (!read_options(count, words, options)) {
    std::fputs("upssim: wrong options; upssim --help lists them\n", stderr);
    return 2;
  }
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) std::signal(number, stop);
  if (options.with_parent) prctl(PR_SET_PDEATHSIG, SIGTERM);

  const int opened = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (opened < 0) return fail("/dev/ptmx");
  Line line(opened);
  if (!prepare_line(line)) return fail(line.path);
  if (!announce(line, options)) return fail(port_name);

  for (int done = 0; options.requests == 0 || done < options.requests; ++done) {
    if (!serve(line, options, done + 1 == options.requests)) return fail(port_name);
  }
  remove_link();
  return fault_found;
}

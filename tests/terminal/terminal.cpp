#include "tests/terminal/terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <iconv.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vterm.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "tests/terminal/keys.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Where the kernel does not tell what a process waits for, silence of this length counts as idle: several times the 20
// ms that curses waits behind an Escape.
constexpr milliseconds kSilence{150};
// The end of a program after a hang-up, with time for a leak check on a busy machine.
constexpr int kHangUpTime = 10000;

struct Fd {
  int number = -1;
  Fd() = default;
  Fd(const Fd &) = delete;
  Fd &operator=(const Fd &) = delete;
  ~Fd() { reset(); }
  void reset(int opened = -1) {
    if (number >= 0) close(number);
    number = opened;
  }
};

struct VTermCloser {
  void operator()(VTerm *emulator) const { vterm_free(emulator); }
};

struct Iconv {
  iconv_t handle = iconv_t(-1);
  Iconv() = default;
  Iconv(const Iconv &) = delete;
  Iconv &operator=(const Iconv &) = delete;
  ~Iconv() { close_handle(); }
  void open(const char *to, const char *from) {
    close_handle();
    handle = iconv_open(to, from);
  }
  void close_handle() {
    if (handle != iconv_t(-1)) iconv_close(handle);
    handle = iconv_t(-1);
  }
};

}  // namespace

struct TerminalState {
  std::filesystem::path root;  // holds work/, the program's directory, and reports/ of the sanitizers
  std::filesystem::path reports;
  std::string directory;
  bool owns_directory = true;

  Fd master, slave;
  std::string slave_name;
  Fd shell;              // its socket: tells the program's id and status, and ends when it is closed
  pid_t shell_id = 0;    // leads the session, as a login shell does
  pid_t program_id = 0;  // 0 before the first start
  bool ended = true;
  int status = -1;
  termios line_settings{};

  std::unique_ptr<VTerm, VTermCloser> emulator;
  VTermScreen *screen = nullptr;
  bool cursor_visible = true, other_screen = false;
  int bells = 0;
  std::map<Key, std::string> keys;

  std::string charset;
  Iconv to_screen, from_keyboard;
  std::string unread;  // bytes of a character that is not whole yet
  std::string unfed;   // bytes of a control sequence that is not whole yet
  std::string last_character;
  std::string answers;  // of the emulator to what the program asks it
  std::string output;   // all of it

  bool pending = false;  // something was sent since the terminal was last seen to be idle
  bool lost = false;     // a wait has failed
  Clock::time_point last_activity;
  Clock::time_point first_output, last_output;  // since timing began
  bool has_output = false;
};

namespace {

// ---- The emulator ---------------------------------------------------------------------------------------------------

int on_property(VTermProp property, VTermValue *value, void *user) {
  auto &t = *static_cast<TerminalState *>(user);
  if (property == VTERM_PROP_CURSORVISIBLE) t.cursor_visible = value->boolean != 0;
  if (property == VTERM_PROP_ALTSCREEN) t.other_screen = value->boolean != 0;
  return 1;
}

int on_bell(void *user) {
  static_cast<TerminalState *>(user)->bells++;
  return 1;
}

void on_answer(const char *bytes, size_t length, void *user) {
  static_cast<TerminalState *>(user)->answers.append(bytes, length);
}

void open_emulator(TerminalState &t, int rows, int columns) {
  static constexpr VTermScreenCallbacks kCallbacks = {.damage = nullptr,
                                                      .moverect = nullptr,
                                                      .movecursor = nullptr,
                                                      .settermprop = on_property,
                                                      .bell = on_bell,
                                                      .resize = nullptr,
                                                      .sb_pushline = nullptr,
                                                      .sb_popline = nullptr};
  t.emulator.reset(vterm_new(rows, columns));
  vterm_set_utf8(t.emulator.get(), 1);
  vterm_output_set_callback(t.emulator.get(), on_answer, &t);
  t.screen = vterm_obtain_screen(t.emulator.get());
  vterm_screen_enable_altscreen(t.screen, 1);
  vterm_screen_set_callbacks(t.screen, &kCallbacks, &t);
  vterm_screen_reset(t.screen, 1);
  t.bells = 0;
}

void get_size(const TerminalState &t, int &rows, int &columns) {
  rows = columns = 0;
  if (t.emulator) vterm_get_size(t.emulator.get(), &rows, &columns);
}

std::string utf8(uint32_t code) {
  const auto byte = [](uint32_t value) { return static_cast<char>(value); };
  const auto tail = [&](int shift) { return byte(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | (code >> 6)), tail(0)};
  if (code < 0x10000) return {byte(0xE0 | (code >> 12)), tail(6), tail(0)};
  return {byte(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
}

Cell read_cell(const TerminalState &t, int row, int column) {
  constexpr uint32_t kRightHalf = 0xFFFFFFFF;
  VTermScreenCell raw{};
  if (t.screen == nullptr || vterm_screen_get_cell(t.screen, {row, column}, &raw) == 0) return {};
  Cell cell{};
  for (const uint32_t code : raw.chars) {
    if (code == 0) break;
    if (code != kRightHalf) cell.text += utf8(code);
  }
  if (raw.chars[0] == 0) cell.text = " ";
  cell.foreground = VTERM_COLOR_IS_DEFAULT_FG(&raw.fg) ? kDefault : raw.fg.indexed.idx;
  cell.background = VTERM_COLOR_IS_DEFAULT_BG(&raw.bg) ? kDefault : raw.bg.indexed.idx;
  cell.bold = raw.attrs.bold != 0;
  cell.reverse = raw.attrs.reverse != 0;
  cell.underline = raw.attrs.underline != 0;
  return cell;
}

std::string cells_text(const TerminalState &t, int row, int column, int width) {
  std::string text;
  for (int i = column; i < column + width; i++) text += read_cell(t, row, i).text;
  return text;
}

// The place of a text on the screen as it is now.
Position find_now(const TerminalState &t, std::string_view text) {
  int rows, columns;
  get_size(t, rows, columns);
  for (int row = 0; row < rows; row++) {
    const size_t found = cells_text(t, row, 0, columns).find(text);
    if (found == std::string::npos) continue;
    int column = 0;
    for (size_t length = 0; length < found; column++) length += read_cell(t, row, column).text.size();
    return {row, column};
  }
  return {-1, -1};
}

// ---- Bytes in and out -----------------------------------------------------------------------------------------------

// Converts all of `pending` but an incomplete character at its end, which stays there. What can't be converted becomes
// a question mark.
std::string recode(const Iconv &converter, std::string &pending) {
  std::string result;
  char *in = pending.data();
  size_t in_left = pending.size();
  while (in_left > 0) {
    char buffer[4096];
    char *out = buffer;
    size_t out_left = sizeof buffer;
    const bool stopped = iconv(converter.handle, &in, &in_left, &out, &out_left) == size_t(-1);
    const int error = errno;
    result.append(buffer, out);
    if (stopped && error == EINVAL) break;
    if (stopped && error == EILSEQ) {
      result += '?';
      in++;
      in_left--;
    }
  }
  pending.erase(0, pending.size() - in_left);
  return result;
}

// Writes repeats (CSI n b) out: the emulator's own end in the wrong column beside the right margin. A sequence that is
// not whole yet stays in `unfed`.
std::string write_repeats_out(TerminalState &t, std::string_view bytes) {
  t.unfed += bytes;
  std::string result;
  size_t at = 0;
  while (at < t.unfed.size()) {
    const char byte = t.unfed[at];
    if (byte != '\033') {
      const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
      t.last_character = continues ? t.last_character + byte : std::string{byte};
      result += byte;
      at++;
      continue;
    }
    const bool is_control = at + 1 < t.unfed.size() && t.unfed[at + 1] == '[';
    const size_t end = is_control ? t.unfed.find_first_not_of("0123456789", at + 2) : at + 1;
    if (end == std::string::npos || end == t.unfed.size()) break;
    const bool is_repeat = is_control && t.unfed[end] == 'b';
    if (is_repeat)
      for (int n = std::clamp(std::atoi(&t.unfed[at + 2]), 1, 1000); n > 0; n--) result += t.last_character;
    else
      result.append(t.unfed, at, end - at);
    at = is_repeat ? end + 1 : end;
  }
  t.unfed.erase(0, at);
  return result;
}

void feed_emulator(TerminalState &t, std::string_view bytes) {
  std::string text(bytes);
  if (t.charset != "UTF-8") {
    t.unread += bytes;
    text = recode(t.to_screen, t.unread);
  }
  text = write_repeats_out(t, text);
  vterm_input_write(t.emulator.get(), text.data(), text.size());
}

// Takes what the program has written by now. False when there was nothing.
bool take_output(TerminalState &t) {
  char buffer[65536];
  bool any = false;
  while (t.master.number >= 0) {
    pollfd ready = {t.master.number, POLLIN, 0};
    if (poll(&ready, 1, 0) <= 0) break;
    const ssize_t got = read(t.master.number, buffer, sizeof buffer);
    if (got <= 0) break;
    any = true;
    t.last_activity = t.last_output = Clock::now();
    if (!t.has_output) t.first_output = t.last_output;
    t.has_output = true;
    const std::string_view bytes(buffer, static_cast<size_t>(got));
    t.output += bytes;
    feed_emulator(t, bytes);
  }
  return any;
}

// Reads the shell's report of the program's end when it has come.
void take_status(TerminalState &t) {
  pollfd ready = {t.shell.number, POLLIN, 0};
  if (t.ended || poll(&ready, 1, 0) <= 0) return;
  int status = -1;
  if (read(t.shell.number, &status, sizeof status) != sizeof status) status = -1;
  t.status = WIFEXITED(status) ? WEXITSTATUS(status) : WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1;
  t.ended = true;
}

// Sleeps until the program has written something or has ended, or, when asked for, takes input; `time` ms at most.
void wait_for_program(const TerminalState &t, int time, bool for_input = false) {
  pollfd ready[] = {{t.master.number, static_cast<short>(for_input ? POLLIN | POLLOUT : POLLIN), 0},
                    {t.ended ? -1 : t.shell.number, POLLIN, 0}};
  poll(ready, std::size(ready), time);
}

int time_left(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

void note_sent(TerminalState &t) {
  t.pending = true;
  t.last_activity = Clock::now();
}

void send_bytes(TerminalState &t, std::string_view bytes) {
  auto deadline = Clock::now() + std::chrono::seconds(10);
  note_sent(t);
  while (!bytes.empty() && !t.ended && !t.lost && t.master.number >= 0) {
    const ssize_t sent = write(t.master.number, bytes.data(), bytes.size());
    if (sent > 0) {
      bytes.remove_prefix(static_cast<size_t>(sent));
      t.last_activity = Clock::now();
      deadline = t.last_activity + std::chrono::seconds(10);
      continue;
    }
    // The program's input is full: it must be able to write while it works that off.
    wait_for_program(t, time_left(deadline), true);
    take_output(t);
    take_status(t);
    t.lost = Clock::now() >= deadline;
    if (t.lost) ADD_FAILURE() << "the program takes no input";
  }
}

void send_answers(TerminalState &t) {
  const std::string answers = std::exchange(t.answers, {});
  if (!answers.empty()) send_bytes(t, answers);
}

// ---- What the program does ------------------------------------------------------------------------------------------

// The content of a file, as far as it can be read: a process may end while its file below /proc is read.
std::string read_all(const std::filesystem::path &path) {
  Fd file;
  file.reset(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string content;
  char buffer[4096];
  ssize_t got;
  while ((got = read(file.number, buffer, sizeof buffer)) > 0) content.append(buffer, static_cast<size_t>(got));
  return content;
}

// The program that reads the keys: the leader of the terminal's foreground process group.
pid_t foreground(const TerminalState &t) {
  const pid_t group = t.master.number < 0 ? -1 : tcgetpgrp(t.master.number);
  return group > 0 && group != t.shell_id ? group : t.program_id;
}

bool is_stopped(pid_t process) {
  const std::string stat = read_all("/proc/" + std::to_string(process) + "/stat");
  const size_t name_end = stat.rfind(')');
  return name_end != std::string::npos && stat.compare(name_end, 3, ") T") == 0;
}

enum class Waits { kNo, kForKey, kUnknown };

// Whether a process sleeps without a time limit until the terminal has input for it. A lone Escape is waited for with a
// limit, a device too.
Waits waits_for_key(const TerminalState &t, pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::istringstream call(read_all(folder + "/syscall"));
  if (!call || call.str().empty()) return Waits::kUnknown;
  long number = -1;
  std::string word;
  unsigned long arguments[6] = {};
  if (!(call >> number) || number < 0) return Waits::kNo;
  for (unsigned long &argument : arguments) {
    call >> word;
    argument = std::strtoul(word.c_str(), nullptr, 16);
  }
  bool waits = false;
  switch (number) {
    case SYS_read: {
      std::error_code error;
      waits = std::filesystem::read_symlink(folder + "/fd/" + std::to_string(arguments[0]), error) == t.slave_name;
      break;
    }
#ifdef SYS_poll
    case SYS_poll:
      waits = static_cast<int32_t>(arguments[2]) < 0;
      break;
#endif
#ifdef SYS_select
    case SYS_select:
      waits = arguments[4] == 0;
      break;
#endif
    case SYS_ppoll:
      waits = arguments[2] == 0;
      break;
    case SYS_pselect6:
      waits = arguments[4] == 0;
      break;
    default:
      break;
  }
  return waits ? Waits::kForKey : Waits::kNo;
}

// Whether the program has taken all its input. Asking with poll is what makes that sure: it first moves what is still
// on its way between the two ends of the pseudo-terminal.
bool input_is_taken(const TerminalState &t) {
  pollfd ready = {t.slave.number, POLLIN, 0};
  return poll(&ready, 1, 0) <= 0;
}

bool is_idle(const TerminalState &t) {
  if (t.ended) return true;
  const pid_t process = foreground(t);
  if (is_stopped(process)) return true;
  if (!input_is_taken(t)) return false;
  const Waits waits = waits_for_key(t, process);
  return waits == Waits::kForKey || (waits == Waits::kUnknown && Clock::now() - t.last_activity > kSilence);
}

// Takes output until the program is idle (true) or the time is over.
bool run_until_idle(TerminalState &t, Clock::time_point deadline) {
  while (true) {
    take_output(t);
    send_answers(t);
    take_status(t);
    // Idle first, then no output: what was written before the program fell idle has then been taken.
    if (is_idle(t) && !take_output(t)) {
      t.pending = false;
      return true;
    }
    if (Clock::now() >= deadline) return false;
    wait_for_program(t, 1);
  }
}

// Waits until the program has taken an Escape for a key of its own: until it waits for the next key without a limit, or
// has done something else for ten times as long as curses waits for the rest of a sequence.
void let_escape_act(TerminalState &t) {
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (!t.ended && !input_is_taken(t) && Clock::now() < deadline) {
    wait_for_program(t, 1);
    take_output(t);
    take_status(t);
  }
  run_until_idle(t, Clock::now() + milliseconds(200));
  t.pending = true;
}

std::string dump_screen(const TerminalState &t) {
  int rows, columns;
  get_size(t, rows, columns);
  if (rows == 0) return "(no program was started)\n";
  VTermPos at{};
  vterm_state_get_cursorpos(vterm_obtain_state(t.emulator.get()), &at);
  std::ostringstream text;
  text << "   ";
  for (int column = 0; column < columns; column++) text << (column % 10 == 0 ? std::to_string(column / 10 % 10) : ".");
  text << '\n';
  for (int row = 0; row < rows; row++)
    text << (row < 10 ? " " : "") << row << ' ' << cells_text(t, row, 0, columns) << '\n';
  text << "cursor " << (t.cursor_visible ? "at " : "hidden at ") << at.row << ", " << at.col;
  if (t.ended) text << "; the program has ended with status " << t.status;
  text << '\n';
  return text.str();
}

void fail(TerminalState &t, const std::string &what, const char *file, int line) {
  if (!t.lost) ADD_FAILURE_AT(file, line) << what << '\n' << dump_screen(t);
  t.lost = true;
}

void settle_if_pending(Terminal &terminal) {
  if (terminal.state->pending) terminal.settle();
}

// ---- Starting and ending --------------------------------------------------------------------------------------------

std::vector<char *> pointers(std::vector<std::string> &texts) {
  std::vector<char *> result;
  for (std::string &text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

// The program's environment: the defaults, each replaced by a setting of the same name.
std::vector<std::string> environment(const TerminalState &t, const Start &how) {
  const char *path = std::getenv("PATH");
  const std::string log = "log_path=" + (t.reports / "report").string() + ":exitcode=99";
  std::vector<std::string> all = {
      "TERM=xterm-256color", "LC_ALL=C.UTF-8",
      "HOME=" + t.directory, std::string("PATH=") + (path != nullptr ? path : "/usr/bin:/bin"),
      "ASAN_OPTIONS=" + log, "UBSAN_OPTIONS=print_stacktrace=1:" + log};
  for (const std::string &setting : how.environment) {
    const std::string name = setting.substr(0, setting.find('=') + 1);
    std::erase_if(all, [&](const std::string &other) { return other.starts_with(name); });
    all.push_back(setting);
  }
  return all;
}

// Gives the terminal to a process group, also when asked from the background.
void put_in_foreground(int terminal, pid_t group) {
  signal(SIGTTOU, SIG_IGN);
  tcsetpgrp(terminal, group);
  signal(SIGTTOU, SIG_DFL);
}

[[noreturn]] void become_program(int terminal, const char *directory, char *const *arguments, char *const *settings) {
  setpgid(0, 0);
  put_in_foreground(terminal, getpid());
  for (const int target : {0, 1, 2}) dup2(terminal, target);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  if (chdir(directory) == 0) execvpe(arguments[0], arguments, settings);
  _exit(127);
}

// The shell leads the session, so that the line settings outlive the program, as they do for a person, and that the
// program can be stopped. It passes a hang-up on, tells the program's id and status, and lives until its socket ends.
[[noreturn]] void become_shell(int terminal, int socket, const char *directory, char *const *arguments,
                               char *const *settings) {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGCHLD, SIGTSTP, SIGTTIN, SIGTTOU, SIGWINCH})
    signal(number, SIG_DFL);  // whatever the test was started under
  sigset_t watched;
  sigemptyset(&watched);
  for (const int number : {SIGHUP, SIGCHLD}) sigaddset(&watched, number);
  sigprocmask(SIG_SETMASK, &watched, nullptr);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setsid();
  ioctl(terminal, TIOCSCTTY, 0);
  const pid_t program = fork();
  if (program == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    become_program(terminal, directory, arguments, settings);
  }
  bool told = write(socket, &program, sizeof program) == sizeof program;
  int status = 0;
  while (program > 0 && waitpid(program, &status, WNOHANG) != program) {
    if (sigwaitinfo(&watched, nullptr) != SIGHUP) continue;
    kill(-program, SIGHUP);
    kill(-program, SIGCONT);
  }
  put_in_foreground(terminal, getpid());
  told = told && write(socket, &status, sizeof status) == sizeof status;
  char end;
  while (told && read(socket, &end, 1) > 0) continue;
  _exit(0);
}

bool open_pseudo_terminal(TerminalState &t, int rows, int columns) {
  t.master.reset(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
  if (t.master.number < 0 || grantpt(t.master.number) != 0 || unlockpt(t.master.number) != 0) return false;
  char name[64];
  if (ptsname_r(t.master.number, name, sizeof name) != 0) return false;
  t.slave_name = name;
  t.slave.reset(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
  const winsize size = {static_cast<unsigned short>(rows), static_cast<unsigned short>(columns), 0, 0};
  return t.slave.number >= 0 && ioctl(t.slave.number, TIOCSWINSZ, &size) == 0 &&
         tcgetattr(t.slave.number, &t.line_settings) == 0;
}

bool start_shell(TerminalState &t, std::vector<std::string> arguments, std::vector<std::string> settings) {
  int sockets[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0) return false;
  const std::vector<char *> argument_list = pointers(arguments), setting_list = pointers(settings);
  Fd far_end;
  t.shell.reset(sockets[0]);
  far_end.reset(sockets[1]);
  t.shell_id = fork();
  if (t.shell_id == 0) {
    close(t.master.number);
    close(t.shell.number);
    become_shell(t.slave.number, far_end.number, t.directory.c_str(), argument_list.data(), setting_list.data());
  }
  far_end.reset();
  return t.shell_id > 0 && read(t.shell.number, &t.program_id, sizeof t.program_id) == sizeof t.program_id;
}

void fail_on_reports(TerminalState &t) {
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(t.reports, error)) {
    ADD_FAILURE() << "a sanitizer reported:\n" << read_all(entry.path());
    std::filesystem::remove(entry.path(), error);
  }
}

bool run_until_end(TerminalState &t, int timeout) {
  const auto deadline = Clock::now() + milliseconds(timeout);
  while (!t.ended && Clock::now() < deadline) {
    wait_for_program(t, time_left(deadline));
    take_output(t);
    send_answers(t);
    take_status(t);
  }
  take_output(t);
  return t.ended;
}

// Ends the program, if it still runs, and the session.
void end_session(TerminalState &t) {
  if (t.shell_id <= 0) return;
  if (!t.ended) {
    t.master.reset();
    if (!run_until_end(t, kHangUpTime)) {
      ADD_FAILURE() << "the program did not end when its terminal was gone\n" << dump_screen(t);
      kill(t.program_id, SIGKILL);
      run_until_end(t, kHangUpTime);
    }
  }
  t.shell.reset();
  waitpid(t.shell_id, nullptr, 0);
  t.shell_id = 0;
  t.slave.reset();
  t.master.reset();
  fail_on_reports(t);
}

Timing timing(const TerminalState &t, Clock::time_point began, size_t bytes) {
  const auto since = [&](Clock::time_point time) {
    return std::chrono::duration<double, std::milli>(time - began).count();
  };
  const bool any = t.has_output;
  return {any ? since(t.first_output) : -1, any ? since(t.last_output) : -1, since(Clock::now()), bytes};
}

std::string new_directory() {
  const char *parent = std::getenv("TMPDIR");
  std::string name = std::string(parent != nullptr && *parent != '\0' ? parent : "/tmp") + "/kavsetup-XXXXXX";
  return mkdtemp(name.data()) != nullptr ? name : "";
}

}  // namespace

std::ostream &operator<<(std::ostream &out, const Position &position) {
  return out << '{' << position.row << ", " << position.column << '}';
}

Terminal::Terminal() : state(std::make_unique<TerminalState>()) {
  state->root = new_directory();
  state->directory = state->root / "work";
  state->reports = state->root / "reports";
  std::error_code error;
  if (state->root.empty() || !std::filesystem::create_directory(state->directory, error) ||
      !std::filesystem::create_directory(state->reports, error)) {
    ADD_FAILURE() << "can't make a directory for the program";
    state->lost = true;
  }
  for (const std::filesystem::path source : {KAVSETUP_DATABASE, KAVSETUP_MESSAGES})
    std::filesystem::copy_file(source, path(source.filename().string()), error);
}

Terminal::Terminal(const std::string &shared_directory) : state(std::make_unique<TerminalState>()) {
  state->root = std::filesystem::path(shared_directory).parent_path();
  state->directory = shared_directory;
  state->reports = state->root / "reports";
  state->owns_directory = false;
}

Terminal::Terminal(Terminal &&) noexcept = default;

Terminal::~Terminal() {
  if (!state) return;
  end_session(*state);
  std::error_code error;
  if (state->owns_directory && !state->root.empty()) std::filesystem::remove_all(state->root, error);
}

Timing Terminal::start(const Start &how) {
  TerminalState &t = *state;
  end_session(t);
  for (const auto &[name, content] : how.files) write_file(name, content);
  const std::vector<std::string> settings = environment(t, how);
  for (const std::string &setting : settings)
    if (setting.starts_with("TERM=")) t.keys = key_sequences(setting.substr(5));
  t.charset = how.charset;
  if (t.charset != "UTF-8") {
    t.to_screen.open("UTF-8", t.charset.c_str());
    t.from_keyboard.open(t.charset.c_str(), "UTF-8");
  }
  for (std::string *text : {&t.unread, &t.unfed, &t.last_character, &t.answers, &t.output}) text->clear();
  t.has_output = false;
  open_emulator(t, how.rows, how.columns);
  std::vector<std::string> arguments = {how.program.empty() ? KAVSETUP_PROGRAM : how.program};
  arguments.insert(arguments.end(), how.options.begin(), how.options.end());
  const auto began = t.last_activity = Clock::now();
  t.ended = !open_pseudo_terminal(t, how.rows, how.columns) || !start_shell(t, arguments, settings);
  t.status = -1;
  if (t.ended) fail(t, "can't start the program", __FILE__, __LINE__);
  t.pending = true;
  settle();
  return timing(t, began, t.output.size());
}

void Terminal::press(const std::vector<Key> &keys) {
  for (const Key key : keys) {
    send_bytes(*state, state->keys[key]);
    if (key == Key::Escape) let_escape_act(*state);
  }
}

void Terminal::press(std::initializer_list<Key> keys) { press(std::vector<Key>(keys)); }

void Terminal::type(std::string_view text) {
  std::string bytes(text);
  send_bytes(*state, state->charset == "UTF-8" ? bytes : recode(state->from_keyboard, bytes));
}

void Terminal::paste(std::string_view text) {
  std::string bytes(text);
  std::replace(bytes.begin(), bytes.end(), '\n', '\r');
  vterm_keyboard_start_paste(state->emulator.get());
  send_answers(*state);
  type(bytes);
  vterm_keyboard_end_paste(state->emulator.get());
  send_answers(*state);
}

Timing Terminal::measure(Key key) {
  settle_if_pending(*this);
  const size_t before = state->output.size();
  state->has_output = false;
  const auto began = Clock::now();
  press({key});
  settle();
  return timing(*state, began, state->output.size() - before);
}

bool Terminal::see(std::string_view text, int timeout, const char *file, int line) {
  TerminalState &t = *state;
  const auto deadline = Clock::now() + milliseconds(timeout);
  while (true) {
    take_output(t);
    send_answers(t);
    if (find_now(t, text).row >= 0) return true;
    if (t.lost || t.ended || Clock::now() >= deadline) break;
    wait_for_program(t, time_left(deadline));
    take_status(t);
  }
  fail(t, "not on the screen: \"" + std::string(text) + "\"", file, line);
  return false;
}

bool Terminal::see_not(std::string_view text, const char *file, int line) {
  if (!settle(10000, file, line)) return false;
  const Position at = find_now(*state, text);
  if (at.row < 0) return true;
  ADD_FAILURE_AT(file, line) << "on the screen: \"" << text << "\"\n" << dump();
  return false;
}

bool Terminal::settle(int timeout, const char *file, int line) {
  if (state->lost) return false;
  if (run_until_idle(*state, Clock::now() + milliseconds(timeout))) return true;
  fail(*state, "the program does not come to rest", file, line);
  return false;
}

std::string Terminal::row(int row) {
  int rows, columns;
  get_size(*state, rows, columns);
  std::string line = text(row, 0, columns);
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string Terminal::text(int row, int column, int width) {
  settle_if_pending(*this);
  return cells_text(*state, row, column, width);
}

Position Terminal::find(std::string_view text) {
  settle_if_pending(*this);
  return find_now(*state, text);
}

Cell Terminal::cell(int row, int column) {
  settle_if_pending(*this);
  return read_cell(*state, row, column);
}

Position Terminal::cursor() {
  settle_if_pending(*this);
  VTermPos at{};
  if (state->emulator) vterm_state_get_cursorpos(vterm_obtain_state(state->emulator.get()), &at);
  return {at.row, at.col};
}

bool Terminal::cursor_visible() {
  settle_if_pending(*this);
  return state->cursor_visible;
}

int Terminal::bells() {
  settle_if_pending(*this);
  return state->bells;
}

bool Terminal::given_back() {
  settle_if_pending(*this);
  termios now{};
  if (tcgetattr(state->slave.number, &now) != 0) return false;
  const termios &then = state->line_settings;
  return state->cursor_visible && !state->other_screen && now.c_iflag == then.c_iflag && now.c_oflag == then.c_oflag &&
         now.c_cflag == then.c_cflag && now.c_lflag == then.c_lflag &&
         std::equal(std::begin(now.c_cc), std::end(now.c_cc), std::begin(then.c_cc));
}

std::string Terminal::dump() const { return dump_screen(*state); }

size_t Terminal::mark() {
  settle_if_pending(*this);
  return state->output.size();
}

std::string Terminal::written_since(size_t mark) {
  settle_if_pending(*this);
  return state->output.substr(std::min(mark, state->output.size()));
}

void Terminal::resize(int rows, int columns) {
  settle_if_pending(*this);
  vterm_set_size(state->emulator.get(), rows, columns);
  const winsize size = {static_cast<unsigned short>(rows), static_cast<unsigned short>(columns), 0, 0};
  ioctl(state->master.number, TIOCSWINSZ, &size);
  note_sent(*state);
}

void Terminal::hang_up() {
  settle_if_pending(*this);
  state->master.reset();
}

void Terminal::send_signal(int number) {
  kill(foreground(*state), number);
  note_sent(*state);
}

int Terminal::wait_exit(int timeout, const char *file, int line) {
  TerminalState &t = *state;
  if (t.lost || !run_until_end(t, timeout)) {
    fail(t, "the program goes on", file, line);
    return -1;
  }
  t.pending = false;
  fail_on_reports(t);
  return t.status;
}

int Terminal::process() const { return state->program_id; }

const std::string &Terminal::directory() const { return state->directory; }

std::string Terminal::path(std::string_view name) const { return state->directory + "/" + std::string(name); }

std::vector<std::string> Terminal::files() const {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(state->directory, error))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

bool Terminal::has_file(std::string_view name) const {
  std::error_code error;
  return std::filesystem::exists(path(name), error);
}

std::string Terminal::file(std::string_view name) const { return read_all(path(name)); }

void Terminal::write_file(std::string_view name, std::string_view content) {
  std::ofstream stream(path(name), std::ios::binary | std::ios::trunc);
  stream << content;
  if (!stream.flush()) ADD_FAILURE() << "can't write " << path(name);
}

#include "screen/terminal.h"

#include "screen/scrio.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <term.h>  // after all headers of ours: its macros bear everyday names
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <string_view>

void (*before_leaving)() = nullptr;
void (*keep_work)() = nullptr;

namespace {

// They end the program at once.
constexpr int kEndingSignals[] = {SIGINT,  SIGQUIT, SIGABRT, SIGSEGV, SIGBUS,  SIGFPE,  SIGILL,
                                  SIGXCPU, SIGPIPE, SIGALRM, SIGUSR1, SIGUSR2, SIGTRAP, SIGSYS};
// They end it where a key is waited for, so that what the person did can be kept; until then they are blocked.
constexpr int kLeavingSignals[] = {SIGHUP, SIGTERM};

// What the handlers know of the terminal. Written while the screen is set up, by the handlers themselves the flags.
termios line_settings;
int settings_from = -1;  // the descriptor that line_settings came from
char leaving_text[256];
size_t leaving_length = 0;
volatile sig_atomic_t must_give_back = 0;
volatile sig_atomic_t size_changed = 0;
volatile sig_atomic_t leaving_signal = 0;  // that came; 0: none

std::terminate_handler former_terminate = nullptr;
struct sigaction stop_action;  // of curses, which gives the terminal back while the program is stopped

// With these the terminal tells what is pasted from what is typed.
constexpr char kMarkPastes[] = "\033[?2004h", kDoNotMarkPastes[] = "\033[?2004l";
bool knows_pastes = false;  // the terminal takes such sequences, though it may ignore them

int append_leaving_byte(int byte) {
  if (leaving_length < std::size(leaving_text)) leaving_text[leaving_length++] = static_cast<char>(byte);
  return byte;
}

void append_leaving(const char *capability) {
  if (capability != nullptr) tputs(capability, 1, append_leaving_byte);
}

void send_at_once(std::string_view bytes) {
  [[maybe_unused]] const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
}

// As endwin would do it, but in nothing that a signal handler must not do.
void give_back_at_once() {
  if (before_leaving != nullptr) before_leaving();
  if (must_give_back == 0 || isendwin()) return;  // stopped in the background: it was given back then
  must_give_back = 0;
  send_at_once({leaving_text, leaving_length});
  if (settings_from >= 0) tcsetattr(settings_from, TCSANOW, &line_settings);
}

bool is_hung_up() {
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, 0) > 0 && (input.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

void stop_program(int number) {
  const bool marks = must_give_back != 0 && knows_pastes;
  if (marks) send_at_once(kDoNotMarkPastes);
  stop_action.sa_handler(number);
  if (marks) send_at_once(kMarkPastes);
}

// The handler is gone by now (SA_RESETHAND): the signal, sent anew, ends the program when this returns.
void end_by_signal(int number) {
  give_back_at_once();
  raise(number);
}

void note_leaving_signal(int number) { leaving_signal = number; }
void note_size_change(int) { size_changed = 1; }

[[noreturn]] void end_by_exception() {
  give_back_at_once();  // before the message, which the screen would hide
  former_terminate();
  std::abort();
}

void take_signal(int number, void (*handler)(int), int flags) {
  struct sigaction present = {};
  sigaction(number, nullptr, &present);
  if (present.sa_handler != SIG_DFL) return;
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigfillset(&action.sa_mask);
  sigaction(number, &action, nullptr);
}

// What comes through only while a key is waited for: nothing else is ever interrupted by it.
sigset_t waiting_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGWINCH);
  for (const int number : kLeavingSignals) sigaddset(&signals, number);
  return signals;
}

void remember_line_settings() {
  for (const int descriptor : {STDOUT_FILENO, STDIN_FILENO}) {
    if (tcgetattr(descriptor, &line_settings) != 0) continue;
    settings_from = descriptor;
    return;
  }
}

// Control-S would freeze the screen. From now on these are the settings that curses comes back to.
void free_flow_keys() {
  termios settings;
  if (tcgetattr(STDOUT_FILENO, &settings) != 0) return;
  settings.c_iflag &= ~static_cast<tcflag_t>(IXON);
  tcsetattr(STDOUT_FILENO, TCSADRAIN, &settings);
  def_prog_mode();
}

}  // namespace

bool can_show_screens() {
  int found = 0;
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) return false;
  if (setupterm(nullptr, STDOUT_FILENO, &found) != OK) return false;
  const bool moves_cursor = cursor_address != nullptr;
  del_curterm(cur_term);
  return moves_cursor;
}

void watch_terminal() {
  remember_line_settings();
  const sigset_t signals = waiting_signals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  take_signal(SIGWINCH, note_size_change, 0);
  for (const int number : kLeavingSignals) take_signal(number, note_leaving_signal, 0);
  for (const int number : kEndingSignals) take_signal(number, end_by_signal, static_cast<int>(SA_RESETHAND));
  take_signal(SIGXFSZ, SIG_IGN, 0);  // a write then fails, with a reason that can be told
  if (former_terminate != nullptr) return;
  former_terminate = std::set_terminate(end_by_exception);
  std::atexit(give_back_at_once);  // curses ends the program itself when it finds no memory
}

void prepare_line() {
  free_flow_keys();
  knows_pastes = cursor_address != nullptr && std::string_view(cursor_address).starts_with("\033[");
  mark_pastes(true);
  sigaction(SIGTSTP, nullptr, &stop_action);
  if (stop_action.sa_handler == SIG_DFL || stop_action.sa_handler == SIG_IGN) return;
  struct sigaction action = stop_action;
  action.sa_handler = stop_program;
  sigaction(SIGTSTP, &action, nullptr);
}

void mark_pastes(bool on) {
  if (knows_pastes) send_at_once(on ? kMarkPastes : kDoNotMarkPastes);
}

int escape_wait(dev_t device) {
  constexpr int kAtOnce = 20, kSerialLine = 200;
  constexpr unsigned kConsoles = 4, kFirstSerial = 64, kOldTerminals = 3, kTerminals = 136, kLastTerminals = 143;
  const unsigned kind = major(device);
  const bool is_pseudo = kind == kOldTerminals || (kind >= kTerminals && kind <= kLastTerminals);
  return is_pseudo || (kind == kConsoles && minor(device) < kFirstSerial) ? kAtOnce : kSerialLine;
}

dev_t input_device() {
  unsigned device = 0;
  ioctl(STDIN_FILENO, TIOCGDEV, &device);
  return device;
}

void prepare_giving_back() {
  must_give_back = 0;
  leaving_length = 0;
  if (knows_pastes) append_leaving(kDoNotMarkPastes);
  const char *to_last_row = cursor_address == nullptr ? nullptr : tparm(cursor_address, LINES - 1, 0);
  const char *const capabilities[] = {exit_alt_charset_mode, exit_attribute_mode, orig_pair,    to_last_row,
                                      exit_ca_mode,          keypad_local,        cursor_normal};
  for (const char *capability : capabilities) append_leaving(capability);
  must_give_back = 1;
}

void forget_giving_back() { must_give_back = 0; }

Arrival wait_for_input(int limit) {
  sigset_t signals;
  sigprocmask(SIG_SETMASK, nullptr, &signals);
  sigdelset(&signals, SIGWINCH);
  for (const int number : kLeavingSignals) sigdelset(&signals, number);
  const timespec time = {limit / 1000, limit % 1000 * 1000000L};
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  const int ready = ppoll(&input, 1, limit < 0 ? nullptr : &time, &signals);
  if (ready == 0) return Arrival::nothing;
  return ready < 0 && errno == EINTR ? Arrival::signal : Arrival::input;
}

int signal_to_leave() { return leaving_signal; }

void end_by_left_signal() {
  const sigset_t signals = waiting_signals();
  std::signal(leaving_signal, SIG_DFL);
  raise(leaving_signal);
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

bool input_has_ended() {
  if (is_hung_up()) return true;
  int unread = 0;
  return !isatty(STDIN_FILENO) && (ioctl(STDIN_FILENO, FIONREAD, &unread) != 0 || unread == 0);
}

TerminalSize take_new_size() {
  if (size_changed == 0) return {0, 0};
  size_changed = 0;
  winsize size = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return {0, 0};
  return {size.ws_row, size.ws_col};
}

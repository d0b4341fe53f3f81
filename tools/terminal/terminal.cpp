#include "tools/terminal/terminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <tuple>

#include "tools/terminal/program.h"
#include "util/converter.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kTimeLimit = 10000;  // for what should come at once, on a busy machine and with a leak check

// --- The emulator

int on_property(VTermProp property, VTermValue *value, void *user) {
  auto &t = *static_cast<TerminalState *>(user);
  if (property == VTERM_PROP_CURSORVISIBLE) t.shows_cursor = value->boolean != 0;
  if (property == VTERM_PROP_ALTSCREEN) t.other_screen = value->boolean != 0;
  return 1;
}

int on_bell(void *user) { return ++static_cast<TerminalState *>(user)->bell_count; }

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
  t.cells = vterm_obtain_screen(t.emulator.get());
  vterm_screen_enable_altscreen(t.cells, 1);
  vterm_screen_set_callbacks(t.cells, &kCallbacks, &t);
  vterm_screen_reset(t.cells, 1);
  t.bell_count = 0;
}

// `bytes` in another charset. A character at the end that is not whole stays in `bytes`; what can't be converted
// becomes a question mark.
std::string recode(const std::string &to, const std::string &from, std::string &bytes) {
  const Converter converter(to.c_str(), from.c_str());
  std::string result;
  char *in = bytes.data();
  size_t in_left = bytes.size();
  while (in_left > 0) {
    char buffer[4096];
    char *out = buffer;
    size_t out_left = sizeof buffer;
    const bool stopped = iconv(converter.handle, &in, &in_left, &out, &out_left) == size_t(-1);
    const int error = errno;
    result.append(buffer, out);
    if (stopped && error == EINVAL) break;
    if (!stopped || error != EILSEQ) continue;
    result += '?';
    ++in;
    --in_left;
  }
  bytes.erase(0, bytes.size() - in_left);
  return result;
}

ScreenCell read_cell(const TerminalState &t, int row, int column) {
  constexpr uint32_t kRightHalf = 0xFFFFFFFF;
  VTermScreenCell raw{};
  if (t.cells == nullptr || vterm_screen_get_cell(t.cells, {row, column}, &raw) == 0) return {};
  std::string text;
  for (const uint32_t code : raw.chars) {
    if (code == 0) break;
    if (code != kRightHalf) text.append(reinterpret_cast<const char *>(&code), sizeof code);
  }
  return {.text = raw.chars[0] == 0     ? " "
                  : raw.chars[0] < 0x80 ? text.substr(0, 1)
                                        : recode("UTF-8", "UTF-32LE", text),
          .foreground = VTERM_COLOR_IS_DEFAULT_FG(&raw.fg) ? kDefault : raw.fg.indexed.idx,
          .background = VTERM_COLOR_IS_DEFAULT_BG(&raw.bg) ? kDefault : raw.bg.indexed.idx,
          .bold = raw.attrs.bold != 0,
          .reverse = raw.attrs.reverse != 0,
          .underline = raw.attrs.underline != 0};
}

std::string cells_text(const TerminalState &t, int row, int column, int width) {
  std::string text;
  for (int i = column; i < column + width; ++i) text += read_cell(t, row, i).text;
  return text;
}

std::vector<std::string> rows_of(const TerminalState &t) {
  int rows = 0, columns = 0;
  if (t.emulator) vterm_get_size(t.emulator.get(), &rows, &columns);
  std::vector<std::string> texts;
  for (int row = 0; row < rows; ++row) {
    texts.push_back(cells_text(t, row, 0, columns));
    texts.back().erase(texts.back().find_last_not_of(' ') + 1);
  }
  return texts;
}

// The place of a text on the screen as it is now.
Position find_now(const TerminalState &t, std::string_view text) {
  const std::vector<std::string> rows = rows_of(t);
  for (size_t row = 0; row < rows.size(); ++row) {
    const size_t found = rows[row].find(text);
    if (found == std::string::npos) continue;
    Position at = {static_cast<int>(row), 0};
    for (size_t length = 0; length < found; ++at.column) length += read_cell(t, at.row, at.column).text.size();
    return at;
  }
  return {-1, -1};
}

// --- What the program does

int number_of(const std::optional<Descriptor> &descriptor) { return descriptor ? descriptor->number : -1; }

void take(TerminalState &t, std::string_view bytes) {
  t.last_output = Clock::now();
  t.output += bytes;
  t.unread += bytes;
  const std::string text = t.charset == "UTF-8" ? std::exchange(t.unread, {}) : recode("UTF-8", t.charset, t.unread);
  vterm_input_write(t.emulator.get(), text.data(), text.size());
}

// Takes what the program has written, and its end; waits `time` ms at most for one of them, or until it takes input.
// False when nothing was written.
bool pump(TerminalState &t, int time, bool for_input = false) {
  pollfd ready[] = {{number_of(t.master), static_cast<short>(for_input ? POLLIN | POLLOUT : POLLIN), 0},
                    {t.ended ? -1 : number_of(t.shell), POLLIN, 0}};
  poll(ready, std::size(ready), time);
  bool any = false;
  char buffer[65536];
  for (ssize_t got; (got = read(ready[0].fd, buffer, sizeof buffer)) > 0; any = true)
    take(t, {buffer, static_cast<size_t>(got)});
  int status = -1;
  if (ready[1].revents == 0) return any;
  t.ended = true;
  if (read(ready[1].fd, &status, sizeof status) != sizeof status) status = -1;
  t.status = WIFEXITED(status) ? WEXITSTATUS(status) : WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1;
  return any;
}

// The content of a file, empty when it can't be read: a process may end while its file below /proc is.
std::string read_all(const fs::path &path) {
  std::string content;
  std::ignore = read_file(path.c_str(), content);
  return content;
}

// Whether the program sleeps without a time limit until the terminal has input for it. A lone Escape is
// waited for with a limit, a device too.
bool waits_for_key(const TerminalState &t) {
  const std::string folder = "/proc/" + std::to_string(t.process);
  std::istringstream call(read_all(folder + "/syscall"));
  long number = -1;
  std::string word;
  unsigned long arguments[5] = {};
  if (!(call >> number)) return false;  // it runs
  for (unsigned long &argument : arguments) {
    call >> word;
    argument = std::strtoul(word.c_str(), nullptr, 16);
  }
  std::error_code error;
#ifdef SYS_poll
  if (number == SYS_poll) return static_cast<int32_t>(arguments[2]) < 0;
#endif
#ifdef SYS_select
  if (number == SYS_select) return arguments[4] == 0;
#endif
  if (number == SYS_ppoll) return arguments[2] == 0;
  if (number == SYS_pselect6) return arguments[4] == 0;
  return number == SYS_read && fs::read_symlink(folder + "/fd/" + std::to_string(arguments[0]), error) == t.slave_name;
}

// Whether the program has taken all its input. Asking with poll is what makes that sure: it first moves what is still
// on its way between the two ends of the pseudo-terminal.
bool input_is_taken(const TerminalState &t) {
  pollfd ready = {number_of(t.slave), POLLIN, 0};
  return poll(&ready, 1, 0) <= 0;
}

// A signal that was sent to the program may wake it later: until then it looks as if it slept on.
bool is_idle(const TerminalState &t) {
  const std::string status = read_all("/proc/" + std::to_string(t.process) + "/status");
  const bool stopped = status.find("\nState:\tT") != std::string::npos;
  const bool was_signalled = status.find("\nShdPnd:\t0000000000000000") == std::string::npos;
  return t.ended || stopped || (!was_signalled && input_is_taken(t) && waits_for_key(t));
}

// Takes output until the program is idle (true) or the time is over.
bool run_until_idle(TerminalState &t, Clock::time_point deadline) {
  for (pump(t, 0); Clock::now() < deadline; pump(t, 1)) {
    // Idle first, then no output: what was written before the program fell idle has then been taken.
    if (!is_idle(t) || pump(t, 0)) continue;
    t.pending = false;
    return true;
  }
  return false;
}

bool run_until_end(TerminalState &t, int timeout) {
  const auto deadline = Clock::now() + milliseconds(timeout);
  while (!t.ended && Clock::now() < deadline) pump(t, 10);
  pump(t, 0);
  return t.ended;
}

std::string dump(const TerminalState &t) {
  std::ostringstream text;
  for (const std::string &row : rows_of(t)) text << row << '\n';
  VTermPos at{};
  if (t.emulator) vterm_state_get_cursorpos(vterm_obtain_state(t.emulator.get()), &at);
  text << "cursor " << (t.shows_cursor ? "at " : "hidden at ") << at.row << ", " << at.col;
  if (t.ended) text << "; the program has ended with status " << t.status;
  text << '\n';
  return text.str();
}

void fail(TerminalState &t, const std::string &what, const char *file, int line) {
  if (!std::exchange(t.lost, true)) terminal_fault(what + "\n" + dump(t), file, line);
}

bool settle(TerminalState &t, int timeout, const char *file, int line) {
  if (!t.lost && run_until_idle(t, Clock::now() + milliseconds(timeout))) return true;
  fail(t, "the program does not come to rest", file, line);
  return false;
}

TerminalState &settled(TerminalState &t) {
  if (t.pending) settle(t, kTimeLimit, __FILE__, __LINE__);
  return t;
}

void send_bytes(TerminalState &t, std::string_view bytes) {
  auto deadline = Clock::now() + milliseconds(kTimeLimit);
  t.pending = true;
  while (!bytes.empty() && !t.ended && !t.lost && t.master) {
    const ssize_t sent = write(t.master->number, bytes.data(), bytes.size());
    if (sent > 0) {
      bytes.remove_prefix(static_cast<size_t>(sent));
      deadline = Clock::now() + milliseconds(kTimeLimit);
      continue;
    }
    pump(t, 1000, true);  // the program's input is full: it must be able to write while it works that off
    if (Clock::now() >= deadline) fail(t, "the program takes no input", __FILE__, __LINE__);
  }
}

// Waits until the program has taken an Escape for a key of its own: until it waits for the next key without a limit, or
// has done something else for ten times as long as curses waits for the rest of a sequence.
void let_escape_act(TerminalState &t) {
  const auto deadline = Clock::now() + milliseconds(kTimeLimit);
  while (!t.ended && !input_is_taken(t) && Clock::now() < deadline) pump(t, 1);
  run_until_idle(t, Clock::now() + milliseconds(200));
  t.pending = true;
}

// --- Ending

void fail_on_reports(const TerminalState &t) {
  for (const auto &entry : fs::directory_iterator(t.root + "/reports")) {
    terminal_fault("a sanitizer reported:\n" + read_all(entry.path()), __FILE__, __LINE__);
    fs::remove(entry.path());
  }
}

// Ends the program, if it still runs, and the session.
void end_session(TerminalState &t) {
  if (t.shell_id <= 0) return;
  t.master.reset();
  if (!run_until_end(t, kTimeLimit)) {
    terminal_fault("the program did not end when its terminal was gone\n" + dump(t), __FILE__, __LINE__);
    kill(t.process, SIGKILL);
  }
  t.shell.reset();
  waitpid(std::exchange(t.shell_id, 0), nullptr, 0);
  t.slave.reset();
  fail_on_reports(t);
}

double since(Clock::time_point began, const TerminalState &t) {
  return std::chrono::duration<double, std::milli>(t.last_output - began).count();
}

}  // namespace

std::ostream &operator<<(std::ostream &out, const Position &position) {
  return out << '{' << position.row << ", " << position.column << '}';
}

Terminal::Terminal() : state(new TerminalState) {
  state->root = fs::temp_directory_path() / "kavsetup-XXXXXX";
  if (mkdtemp(state->root.data()) == nullptr) fail(*state, "no directory can be made", __FILE__, __LINE__);
  state->directory = state->root + "/work";
  for (const char *folder : {"/work", "/reports"}) fs::create_directory(state->root + folder);
  for (const fs::path source : {KAVSETUP_DATABASE, KAVSETUP_MESSAGES})
    fs::copy_file(source, path(source.filename().string()));
}

Terminal::~Terminal() {
  end_session(*state);
  std::error_code error;
  fs::remove_all(state->root, error);
}

Timing Terminal::start(const Start &how) {
  end_session(*state);
  for (const auto &[name, content] : how.files) write_file(name, content);
  state->charset = how.charset;
  for (std::string *text : {&state->unread, &state->output}) text->clear();
  open_emulator(*state, how.rows, how.columns);
  const auto began = Clock::now();
  state->ended = !start_program(*state, how);
  state->status = -1;
  if (state->ended) fail(*state, "can't start the program", __FILE__, __LINE__);
  state->pending = true;
  settle();
  return {since(began, *state), state->output.size()};
}

void Terminal::press(const std::vector<Key> &keys) {
  for (const Key key : keys) {
    send_bytes(*state, key.bytes);
    if (key.bytes == Escape.bytes) let_escape_act(*state);
  }
}

void Terminal::type(std::string_view text) {
  std::string bytes(text);
  send_bytes(*state, state->charset == "UTF-8" ? bytes : recode(state->charset, "UTF-8", bytes));
}

Timing Terminal::measure(Key key) {
  const size_t before = settled(*state).output.size();
  const auto began = Clock::now();
  press({key});
  settle();
  return {since(began, *state), state->output.size() - before};
}

bool Terminal::see(std::string_view text, int timeout, const char *file, int line) {
  const auto deadline = Clock::now() + milliseconds(timeout);
  for (bool last = false; !last;) {
    last = state->lost || state->ended || Clock::now() >= deadline;
    pump(*state, 0);
    if (find_now(*state, text).row >= 0) return true;
    if (!last) pump(*state, 20);
  }
  fail(*state, "not on the screen: \"" + std::string(text) + "\"", file, line);
  return false;
}

bool Terminal::settle(int timeout, const char *file, int line) { return ::settle(*state, timeout, file, line); }

int Terminal::wait_exit(int timeout, const char *file, int line) {
  if (state->lost || !run_until_end(*state, timeout)) {
    fail(*state, "the program goes on", file, line);
    return -1;
  }
  state->pending = false;
  fail_on_reports(*state);
  return state->status;
}

std::string Terminal::screen() {
  std::string all;
  for (const std::string &row : rows_of(settled(*state))) all += row + "\n";
  return all;
}

std::string Terminal::text(int row, int column, int width) { return cells_text(settled(*state), row, column, width); }
Position Terminal::find(std::string_view text) { return find_now(settled(*state), text); }
ScreenCell Terminal::cell(int row, int column) { return read_cell(settled(*state), row, column); }
bool Terminal::cursor_visible() { return settled(*state).shows_cursor; }
int Terminal::bells() { return settled(*state).bell_count; }
std::string Terminal::written() { return settled(*state).output; }
bool Terminal::has_ended() { return settled(*state).ended; }

Position Terminal::cursor() {
  VTermPos at{};
  vterm_state_get_cursorpos(vterm_obtain_state(settled(*state).emulator.get()), &at);
  return {at.row, at.col};
}

bool Terminal::given_back() {
  LineSettings now;
  return settled(*state).shows_cursor && !state->other_screen && get_line_settings(number_of(state->slave), now) == 1 &&
         now == state->line_settings;
}

std::string Terminal::dump() const { return ::dump(*state); }

void Terminal::resize(int rows, int columns) {
  vterm_set_size(settled(*state).emulator.get(), rows, columns);
  set_size(*state, rows, columns);
  state->pending = true;
}

void Terminal::disturb(std::string_view bytes) {
  vterm_input_write(settled(*state).emulator.get(), bytes.data(), bytes.size());
}

void Terminal::hang_up() { settled(*state).master.reset(); }

void Terminal::send_signal(int number) {
  kill(state->process, number);
  state->pending = true;
}

pid_t Terminal::process() const { return state->process; }
std::string Terminal::directory() const { return state->directory; }
std::string Terminal::path(std::string_view name) const { return state->directory + "/" + std::string(name); }
std::string Terminal::file(std::string_view name) const { return read_all(path(name)); }

void Terminal::write_file(std::string_view name, std::string_view content) {
  std::ofstream stream(path(name), std::ios::binary | std::ios::trunc);
  if (!(stream << content).flush()) fail(*state, "can't write " + std::string(name), __FILE__, __LINE__);
}

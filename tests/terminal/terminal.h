// A program in a real terminal: a pseudo-terminal with a directory of its own, whose output a terminal emulator reads.
//
//   Terminal t;
//   t.start();                                   // returns when the program waits for its first key
//   t.press({Down, Enter});
//   t.see("Set UPS values");                     // waits for the text, fails the test when it does not come
//   EXPECT_EQ(t.text(10, 30, 14), "Set UPS values");
//   EXPECT_EQ(t.cell(10, 30).background, kGreen);
//
// When is the screen complete? The program is idle when it has taken every byte of its input and sleeps, without a time
// limit, until the next one comes; its output is then complete too. settle() waits for exactly that (the kernel tells),
// never for a time. Everything that looks at the screen settles first when something was sent, so a test needs
// settle() itself only before it looks at what the program leaves elsewhere (a file, its memory). While the program
// works on its own (it sleeps, waits for a device), it does not become idle: use see() and dump(), which take the
// screen as it is.
//
// A wait that fails prints the screen. All later waits of that terminal then fail at once, so that a broken test ends
// soon.
//
// Rows and columns count from 0, texts are UTF-8, times are milliseconds.
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

enum class Key {
  Enter,
  KeypadEnter,
  Escape,
  Space,
  ShiftQuestion,
  Tab,
  ShiftTab,
  Backspace,
  Delete,
  Insert,
  Up,
  Down,
  Left,
  Right,
  Home,
  End,
  PageUp,
  PageDown,
  F1,
  F2,
  F3,
  F10,
  ControlC,
  ControlL,
  ControlZ,
};
using enum Key;

// Colours of the terminal's palette; kDefault is the terminal's own foreground or background.
inline constexpr int kDefault = -1;
inline constexpr int kBlack = 0, kRed = 1, kGreen = 2, kYellow = 3, kBlue = 4, kMagenta = 5, kCyan = 6, kWhite = 7;

struct Cell {
  std::string text;  // one character (with its accents); empty in the right half of a wide one
  int foreground, background;
  bool bold, reverse, underline;
};

struct Position {
  int row, column;
  bool operator==(const Position &) const = default;
};
std::ostream &operator<<(std::ostream &out, const Position &position);  // for the messages of a failing test

// How a program is started. The environment of the test is not passed on, but for PATH.
struct Start {
  std::vector<std::string> options = {};
  std::vector<std::string> environment = {};                    // "NAME=value", over the defaults (TERM, LC_ALL, HOME)
  std::vector<std::pair<std::string, std::string>> files = {};  // name and content, put into the directory first
  int rows = 24;
  int columns = 80;
  std::string program = {};       // empty: kavsetup
  std::string charset = "UTF-8";  // what the terminal speaks; with another one the environment names a locale for it
};

// From a key, or the start, to what came of it. The first two are negative when nothing was written.
struct Timing {
  double first_output, last_output, idle;
  size_t bytes;
};

struct TerminalState;

struct Terminal {
  // A new directory under TMPDIR or /tmp, with the sample database and messages.dat in it; removed at the end.
  // The other form shares the directory() of a terminal that lives longer.
  Terminal();
  explicit Terminal(const std::string &shared_directory);
  Terminal(Terminal &&) noexcept;
  Terminal &operator=(Terminal &&) = delete;
  // Hangs up on a program that still runs and fails the test when it does not end then. A sanitizer's report also
  // fails the test, whatever the program's status was.
  ~Terminal();

  // Starts a program in the directory and returns when it is idle or has ended. A terminal can start one program after
  // another, each with an empty screen.
  Timing start(const Start &how = {});

  // Keys are sent as the terminal of TERM sends them in application mode. Each Escape is taken by the program as a key
  // of its own before the next byte is sent.
  void press(std::initializer_list<Key> keys);
  void press(const std::vector<Key> &keys);
  // Sends a text as it stands: typed ahead, without waiting.
  void type(std::string_view text);
  // Sends a text as a terminal pastes it: at once, line feeds as carriage returns, and marked as pasted if the program
  // asked for that.
  void paste(std::string_view text);
  // Presses the key and settles.
  Timing measure(Key key);

  // Waits until the text stands in one row of the screen. False when it does not come.
  bool see(std::string_view text, int timeout = 10000, const char *file = __builtin_FILE(),
           int line = __builtin_LINE());
  // Settles; the text must then be in no row.
  bool see_not(std::string_view text, const char *file = __builtin_FILE(), int line = __builtin_LINE());
  // Waits until the program is idle or has ended.
  bool settle(int timeout = 10000, const char *file = __builtin_FILE(), int line = __builtin_LINE());

  std::string row(int row);                          // without blanks at its end
  std::string text(int row, int column, int width);  // the cells of `width` columns
  Position find(std::string_view text);              // its first place; {-1, -1} when it is in no row
  Cell cell(int row, int column);
  Position cursor();
  bool cursor_visible();
  int bells();  // how often the program has beeped
  // The cursor is visible, the first screen is shown again and the line settings are what they were at the start.
  bool given_back();
  // All rows as they are now, numbered, and the cursor. Does not settle.
  std::string dump() const;

  // What the program wrote since its start, byte for byte: the number of bytes (settled), and those behind a mark.
  size_t mark();
  std::string written_since(size_t mark);

  void resize(int rows, int columns);
  void hang_up();                // the terminal is gone
  void send_signal(int number);  // to the program in the foreground
  // Waits for the end of the program that was started. Its exit status, 128 and the number of the signal that ended
  // it, or -1 when it goes on.
  int wait_exit(int timeout = 10000, const char *file = __builtin_FILE(), int line = __builtin_LINE());
  int process() const;  // the id of the program that was started

  const std::string &directory() const;
  std::string path(std::string_view name) const;
  std::vector<std::string> files() const;  // names, sorted
  bool has_file(std::string_view name) const;
  std::string file(std::string_view name) const;  // its content; empty when there is none
  void write_file(std::string_view name, std::string_view content);

  std::unique_ptr<TerminalState> state;
};

// A program in a real terminal: a pseudo-terminal with a directory of its own, whose output a terminal emulator reads.
//
//   Terminal t;
//   t.start();                                   // returns when the program waits for its first key
//   t.press({Down, Enter});
//   t.see("Set UPS values");                     // waits for the text; it is a fault when it does not come
//   t.text(10, 30, 14);                          // "Set UPS values"
//
// When is the screen complete? The program is idle when it has taken every byte of its input and sleeps, without a time
// limit, until the next one comes; its output is then complete too. settle() waits for exactly that (the kernel tells),
// never for a time. Everything that looks at the screen settles first when something was sent, so settle() is
// needed only before a look at what the program leaves elsewhere (a file, its memory). While the program
// works on its own (it sleeps, waits for a device), it does not become idle: use see() and dump(), which take the
// screen as it is.
//
// A wait that fails is a fault; all later waits of that terminal then fail at once. Rows and columns count from 0,
// texts are UTF-8, times are milliseconds.
#pragma once

#include <sys/types.h>

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What a terminal of the type xterm-256color sends for its keys.
struct Key {
  std::string_view bytes;
};
inline constexpr Key Enter{"\r"}, KeypadEnter{"\033OM"}, Escape{"\033"}, Space{" "}, ShiftQuestion{"?"}, Tab{"\t"},
    ShiftTab{"\033[Z"}, Backspace{"\177"}, Delete{"\033[3~"}, Insert{"\033[2~"}, Up{"\033OA"}, Down{"\033OB"},
    Right{"\033OC"}, Left{"\033OD"}, Home{"\033OH"}, End{"\033OF"}, PageUp{"\033[5~"}, PageDown{"\033[6~"},
    F1{"\033OP"}, F2{"\033OQ"}, F10{"\033[21~"}, ControlL{"\014"}, ControlZ{"\032"};

// Colours of the terminal's palette; kDefault is the terminal's own foreground or background.
inline constexpr int kDefault = -1, kBlack = 0, kRed = 1, kWhite = 7;

struct ScreenCell {
  std::string text;  // one character (with its accents); empty in the right half of a wide one
  int foreground, background;
  bool bold, reverse, underline;
};

struct Position {
  int row, column;
  bool operator==(const Position &) const = default;
};
std::ostream &operator<<(std::ostream &out, const Position &position);

// What becomes of a fault, whose text shows the screen: each program defines it. A test fails, another program ends.
void terminal_fault(const std::string &what, const char *file, int line);

// How a program is started. The own environment is not passed on, but for PATH.
struct Start {
  std::vector<std::string> options = {};
  std::vector<std::string> environment = {};                    // "NAME=value", over the defaults (TERM, LC_ALL, HOME)
  std::vector<std::pair<std::string, std::string>> files = {};  // name and content, put into the directory first
  int rows = 24, columns = 80;
  std::string program = {};       // empty: kavsetup
  std::string charset = "UTF-8";  // what the terminal speaks; with another one the environment names a locale for it
};

// From a key, or the start, to the last byte that was written for it; negative when there was none.
struct Timing {
  double last_output;
  size_t bytes;
};

struct TerminalState;

struct Terminal {
  // A new directory with the sample database and messages.dat in it; removed at the end.
  Terminal();
  // Hangs up on a program that still runs; it is a fault when it does not end then. A sanitizer's report is one, too,
  // whatever the program's status was.
  ~Terminal();

  // Starts a program in the directory and returns when it is idle or has ended. A terminal can start one program after
  // another, each with an empty screen.
  Timing start(const Start &how = {});

  // Each Escape is taken by the program as a key of its own before the next byte is sent.
  void press(const std::vector<Key> &keys);
  // Sends a text as it stands: typed ahead, or pasted, without waiting.
  void type(std::string_view text);
  // Presses the key and settles.
  Timing measure(Key key);

  // Waits until the text stands in one row of the screen. False when it does not come.
  bool see(std::string_view text, int timeout = 10000, const char *file = __builtin_FILE(),
           int line = __builtin_LINE());
  // Waits until the program is idle or has ended.
  bool settle(int timeout = 10000, const char *file = __builtin_FILE(), int line = __builtin_LINE());
  // Waits for the program's end. Its exit status, 128 and the number of the signal that ended it, or -1 when it goes
  // on.
  int wait_exit(int timeout = 10000, const char *file = __builtin_FILE(), int line = __builtin_LINE());

  std::string screen();                              // all rows without blanks at their ends
  std::string text(int row, int column, int width);  // the cells of `width` columns
  Position find(std::string_view text);              // its first place; {-1, -1} when it is in no row
  ScreenCell cell(int row, int column);
  Position cursor();
  bool cursor_visible();
  int bells();            // how often the program has beeped
  std::string written();  // since its start, byte for byte
  bool has_ended();
  // The cursor is visible, the first screen is shown again and the line settings are what they were at the start.
  bool given_back();
  // The screen as it is now, and the cursor. Does not settle.
  std::string dump() const;

  void resize(int rows, int columns);
  void hang_up();  // the terminal is gone
  // Another program writes to the terminal.
  void disturb(std::string_view bytes);
  void send_signal(int number);

  pid_t process() const;  // that was started
  std::string directory() const;
  std::string path(std::string_view name) const;
  std::string file(std::string_view name) const;  // its content; empty when there is none
  void write_file(std::string_view name, std::string_view content);

 private:
  std::unique_ptr<TerminalState> state;
};

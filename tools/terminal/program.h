// What stands behind a Terminal, and the start of a program in it: its pseudo-terminal, its session and its
// environment.
#pragma once

#include <vterm.h>

#include <chrono>
#include <optional>

#include "tools/terminal/terminal.h"
#include "unixtools/linesettings.h"
#include "util/files.h"

struct TerminalState {
  std::string root;       // holds the program's directory and reports/ of the sanitizers
  std::string directory;  // the program's
  std::optional<Descriptor> master, slave;
  std::string slave_name;
  std::optional<Descriptor> shell;  // its socket: tells the program's id and status, and ends when it is closed
  pid_t shell_id = 0;               // leads the session, as a login shell does
  pid_t process = 0;                // that was started
  LineSettings line_settings;       // at the start
  bool ended = true;
  int status = -1;

  struct Closer {
    void operator()(VTerm *opened) const { vterm_free(opened); }
  };
  std::unique_ptr<VTerm, Closer> emulator;
  VTermScreen *cells = nullptr;
  bool shows_cursor = true, other_screen = false;
  int bell_count = 0;

  std::string charset, output;
  std::string unread;    // bytes of a character that is not whole yet
  bool pending = false;  // something was sent since the terminal was last seen to be idle
  bool lost = false;     // a wait has failed
  std::chrono::steady_clock::time_point last_output;
};

// False when the program could not be started. A program that is not there ends with status 127.
bool start_program(TerminalState &t, const Start &how);
// Tells the program how large its terminal is by now.
void set_size(const TerminalState &t, int rows, int columns);

// The screen: its start and end, its windows, attributes and the cursor.
//
// An attribute word is a curses attribute in 32 bits: the colour pair in bits 8 to 15, A_REVERSE 0x40000, A_BOLD
// 0x200000. Rows and columns count from 0 and are relative to the window. Most functions come in two forms: on the
// standard screen, and with the prefix w on a window.
#pragma once

#include <ncurses.h>

#include <cstdint>
#include <memory>

inline constexpr int kScreenRows = 24;  // the smallest terminal that every screen fits on
inline constexpr int kScreenColumns = 80;

inline constexpr int32_t kAttrNormal = 0x400;          // yellow on blue: texts, labels, entries
inline constexpr int32_t kAttrHighlight = 0x200100;    // bold red on blue: the selected entry, boxes, the active field
inline constexpr int32_t kAttrHelp = 0x200200;         // bold green on blue: help
inline constexpr int32_t kAttrBackground = 0x40400;    // reversed: the main window
inline constexpr int32_t kAttrEditBackground = 0x600;  // cyan on blue: around masks and menus

// --- start and end

// False when the standard input or output is no terminal, or one that can't move its cursor: no screen can be shown.
bool can_show_screens();
// Starts curses and defines the colour pairs. From then on the terminal is given back before the program stops, also by
// a signal that ends it (it still dies by that signal), by abort() and by an
// exception that nobody takes.
void init_screen();
// Ends curses and gives the terminal back; safe to call more than once and without a screen.
void end_screen();
// Ends the program with the terminal given back, where it waits for a key: a signal asks for that (it dies by it), or
// the terminal was hung up or its input is at its end (status 1).
[[noreturn]] void leave_lost_terminal();
// Called by it, for what must not be lost; no signal handler. Null: nothing. Written by the session.
extern void (*keep_work)();
// Called before the program is ended in one of these ways: for what else must be given back. It may do what a signal
// handler may, nothing else. Null: nothing. Written by whoever holds such a thing, for as long as it is held.
extern void (*before_leaving)();
// Reads without echo, key by key, waiting; function keys as one code.
void initscrio();
void winitscrio(WINDOW *win);
// The window as it is now belongs to the picture that the terminal shows when the next key is waited for.
void wshow(WINDOW *win);
// Sends what changed since the picture that the terminal shows, at once, and puts its cursor on the window's: hidden,
// unless the window's text is edited (show_cursor) or the terminal has no colours to tell what is chosen.
void update_terminal(WINDOW *win);

// --- windows

// A window above those that are open; it is closed at the end of its scope, and all that it covered shows again what
// was there before, whoever's it was.
struct WindowCloser {
  void operator()(WINDOW *win) const;
};
using Window = std::unique_ptr<WINDOW, WindowCloser>;
// A window of `rows` by `columns` cells with its first cell at (row, column) of the screen, or as far up and left of it
// as it takes to fit on 24 rows and 80 columns; read as winitscrio sets it. Null when it could not be made.
[[nodiscard]] Window open_window(int rows, int columns, int row, int column);
// All open windows belong to the next picture, from the bottom up.
void repaint_windows();
// The terminal has a new size: when the screens fit on it, everything is painted anew; no window changes.
void adopt_terminal_size(int rows, int columns);

// --- attributes and cursor

// setattr stores the word as it stands. On a terminal with colours wsetattr gives a reversed word colour pair n + 16
// instead (see colour_word).
void setattr(int32_t attr);
void wsetattr(WINDOW *win, int32_t attr);
// The word that wsetattr sets on a terminal with colours.
int32_t colour_word(int32_t attr);

void c_set_pos(int row, int col);
void wc_set_pos(WINDOW *win, int row, int col);
void wcursor(WINDOW *win, int row, int col);
// Both -1 when there is no window.
void c_get_pos(int *row, int *col);
void wc_get_pos(WINDOW *win, int *row, int *col);
void c_up();
void c_down();
void c_left();
void c_right();
void c_home();
void wc_up(WINDOW *win);
void wc_down(WINDOW *win);
void wc_left(WINDOW *win);
void wc_right(WINDOW *win);
void wc_home(WINDOW *win);
void c_enab();
void c_disab();
void c_set_size();  // these two do nothing: kept, the interface names them
void c_get_size();
// Whether the cursor is shown while a key is waited for on this window: while a field is `edited`.
void show_cursor(WINDOW *win, bool edited);
// The window's cursor goes to the first cell inside its frame that is not blank.
void move_to_text(WINDOW *win);

#include "screen/scrio.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "screen/keys.h"
#include "screen/terminal.h"
#include "util/check.h"

namespace {

struct ColourPair {
  short pair;
  short foreground;
  short background;
};

constexpr ColourPair kColourPairs[] = {
    // clang-format off
  // pair  foreground     background
    {  1, COLOR_RED,     COLOR_BLUE    },
    {  2, COLOR_GREEN,   COLOR_BLUE    },
    {  3, COLOR_YELLOW,  COLOR_BLUE    },
    {  4, COLOR_YELLOW,  COLOR_BLUE    },  // kept: as pair 3, masks are known by it
    {  5, COLOR_MAGENTA, COLOR_BLUE    },
    {  6, COLOR_CYAN,    COLOR_BLUE    },
    {  7, COLOR_WHITE,   COLOR_BLUE    },
    { 17, COLOR_BLUE,    COLOR_RED     },
    { 18, COLOR_BLUE,    COLOR_GREEN   },
    { 19, COLOR_BLUE,    COLOR_YELLOW  },
    { 20, COLOR_BLUE,    COLOR_GREEN   },  // kept: not the inverse of pair 4, the main window is known by it
    { 21, COLOR_BLUE,    COLOR_MAGENTA },
    { 22, COLOR_BLUE,    COLOR_CYAN    },
    { 23, COLOR_BLUE,    COLOR_WHITE   },
    // clang-format on
};

constexpr short kNormalPair = 4;
constexpr int32_t kInversePair = 0x1000;  // from a colour pair to its inverse

struct OpenWindow {
  WINDOW *win;
  int rows, columns, row, column;
};

// The open windows, from the bottom up. Written by open_window and WindowCloser.
std::vector<OpenWindow> open_windows;

bool is_on_screen() { return stdscr != nullptr && !isendwin(); }

// Curses leaves a cell without colours where a window cuts through a two-column character of the window below.
void mend_cell(int row, int column) {
  cchar_t cell;
  wchar_t text[CCHARW_MAX + 1];
  attr_t attributes = 0;
  short pair = 0;
  if (column < 0 || column >= kScreenColumns || mvwin_wch(newscr, row, column, &cell) == ERR) return;
  if (getcchar(&cell, text, &attributes, &pair, nullptr) != ERR && pair == 0) {
    mvwchgat(newscr, row, column, 1, A_NORMAL, kNormalPair, nullptr);
  }
}

void repaint(WINDOW *win) {
  touchwin(win);
  wshow(win);
}

void set_attribute(WINDOW *win, int32_t attr) {
  wattrset(win, static_cast<int>(static_cast<chtype>(attr) & A_ATTRIBUTES));
}

// Of the sequences that begin with Escape curses then takes nothing but that: it would give up a slow one too early.
void take_sequences_ourselves() { define_key("\033", kKeyEscape); }

}  // namespace

void init_screen() {
  watch_terminal();
  initscr();
  give_terminal_back = end_screen;
  prepare_line();
  prepare_giving_back();
  if (std::getenv("ESCDELAY") == nullptr) set_escdelay(escape_wait(input_device()));
  take_sequences_ourselves();
  if (MB_CUR_MAX == 1) use_legacy_coding(1);  // bytes from 0xA0 on are shown as they are

  start_color();
  if (!has_colors()) return;
  use_default_colors();  // else each update would end by setting white on black
  for (const ColourPair &row : kColourPairs) init_pair(row.pair, row.foreground, row.background);
}

void end_screen() {
  if (is_on_screen()) {
    mark_pastes(false);
    endwin();
  }
  forget_giving_back();
}

void leave_lost_terminal() {
  if (before_leaving != nullptr) before_leaving();
  if (keep_work != nullptr) keep_work();
  end_screen();
  if (signal_to_leave() != 0 && !input_has_ended()) end_by_left_signal();
  _exit(EXIT_FAILURE);  // nothing that runs at exit may come to wait for the terminal
}

void initscrio() { winitscrio(stdscr); }

void winitscrio(WINDOW *win) {
  noecho();
  cbreak();
  nodelay(win, FALSE);
  keypad(win, TRUE);
  leaveok(win, TRUE);
}

void wshow(WINDOW *win) {
  const bool is_drawn = is_wintouched(win);
  wnoutrefresh(win);
  if (!is_drawn || !has_colors()) return;
  for (int row = getbegy(win); row < getbegy(win) + getmaxy(win); ++row) {
    mend_cell(row, getbegx(win) - 1);
    mend_cell(row, getbegx(win) + getmaxx(win));
  }
}

void update_terminal(WINDOW *win) {
  curs_set(is_leaveok(win) && has_colors() ? 0 : 1);
  leaveok(newscr, FALSE);
  wmove(newscr, getbegy(win) + getcury(win), getbegx(win) + getcurx(win));
  doupdate();
}

// --- windows

void WindowCloser::operator()(WINDOW *win) const {
  std::erase_if(open_windows, [win](const OpenWindow &open) { return open.win == win; });
  delwin(win);
  repaint_windows();
}

Window open_window(int rows, int columns, int row, int column) {
  rows = std::clamp(rows, 1, kScreenRows);
  columns = std::clamp(columns, 1, kScreenColumns);
  row = std::clamp(row, 0, kScreenRows - rows);
  column = std::clamp(column, 0, kScreenColumns - columns);
  WINDOW *const win = newwin(rows, columns, row, column);
  if (win == nullptr) return nullptr;
  winitscrio(win);
  open_windows.push_back({win, rows, columns, row, column});
  return Window(win);
}

void repaint_windows() {
  if (!is_on_screen()) return;
  repaint(stdscr);
  for (const OpenWindow &open : open_windows) repaint(open.win);
}

// Curses fits windows to the terminal when it learns of a new size: each gets back the place that it was given.
void adopt_terminal_size(int rows, int columns) {
  if (rows < kScreenRows || columns < kScreenColumns) return;  // what is there comes back when it fits again
  resize_term(rows, columns);
  for (const OpenWindow &open : open_windows) {
    wresize(open.win, open.rows, open.columns);
    mvwin(open.win, open.row, open.column);
  }
  prepare_giving_back();
  clearok(curscr, TRUE);
  repaint_windows();
}

// --- attributes and cursor

void setattr(int32_t attr) { set_attribute(stdscr, attr); }

void wsetattr(WINDOW *win, int32_t attr) { set_attribute(win, has_colors() ? colour_word(attr) : attr); }

int32_t colour_word(int32_t attr) {
  constexpr auto kReverse = static_cast<int32_t>(A_REVERSE);
  if ((attr & kReverse) == 0) return attr;
  return (attr | ((attr & 0xFF00) + kInversePair)) ^ kReverse;
}

void wc_set_pos(WINDOW *win, int row, int col) { wmove(win, row, col); }
void wcursor(WINDOW *win, int row, int col) { wmove(win, row, col); }
void wc_get_pos(WINDOW *win, int *row, int *col) {
  *row = getcury(win);
  *col = getcurx(win);
}

void wc_up(WINDOW *win) { wmove(win, getcury(win) - 1, getcurx(win)); }
void wc_down(WINDOW *win) { wmove(win, getcury(win) + 1, getcurx(win)); }
void wc_left(WINDOW *win) { wmove(win, getcury(win), getcurx(win) - 1); }
void wc_right(WINDOW *win) { wmove(win, getcury(win), getcurx(win) + 1); }
void wc_home(WINDOW *win) { wmove(win, 0, 0); }

void c_set_pos(int row, int col) { wc_set_pos(stdscr, row, col); }
void c_get_pos(int *row, int *col) { wc_get_pos(stdscr, row, col); }
void c_up() { wc_up(stdscr); }
void c_down() { wc_down(stdscr); }
void c_left() { wc_left(stdscr); }
void c_right() { wc_right(stdscr); }
void c_home() { wc_home(stdscr); }
void c_enab() { curs_set(1); }
void c_disab() { curs_set(0); }
void c_set_size() {}
void c_get_size() {}

void show_cursor(WINDOW *win, bool edited) { leaveok(win, edited ? FALSE : TRUE); }

void move_to_text(WINDOW *win) {
  for (int row = 1; row < getmaxy(win) - 1; ++row) {
    for (int column = 1; column < getmaxx(win) - 1; ++column) {
      cchar_t cell = {};
      mvwin_wch(win, row, column, &cell);
      if (cell.chars[0] != L' ') return wc_set_pos(win, row, column);
    }
  }
}

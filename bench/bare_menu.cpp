// A menu of its arguments in bare curses: what starting a program and drawing that screen costs at the least.
#include <ncurses.h>

#include <clocale>
#include <span>

namespace {

void draw_box(WINDOW *win, const char *title) {
  wattrset(win, COLOR_PAIR(4));
  werase(win);
  box(win, 0, 0);
  mvwaddstr(win, 1, 26, title);
}

void draw_menu(WINDOW *menu, std::span<char *const> entries, int selected) {
  int row = 0;
  for (const char *entry : entries) {
    wattrset(menu, row == selected ? COLOR_PAIR(1) | A_BOLD : COLOR_PAIR(4));
    mvwaddstr(menu, 3 + row++, 20, entry);
  }
  wrefresh(menu);
}

}  // namespace

int main(int count, char *arguments[]) {
  const std::span<char *const> entries(arguments + 1, arguments + count);
  const int rows = count + 3;
  setlocale(LC_ALL, "");
  initscr();
  start_color();
  use_default_colors();
  init_pair(1, COLOR_RED, COLOR_BLUE);
  init_pair(4, COLOR_YELLOW, COLOR_BLUE);
  init_pair(6, COLOR_CYAN, COLOR_BLUE);
  cbreak();
  noecho();
  curs_set(0);
  WINDOW *background = newwin(24, 80, 0, 0);
  WINDOW *heading = newwin(3, 74, 2, 3);
  WINDOW *menu = newwin(rows, 72, (24 - rows) / 2, 4);
  keypad(menu, TRUE);
  wattrset(background, COLOR_PAIR(6));
  for (int row = 0; row < 24; ++row) mvwhline(background, row, 0, '#', 80);
  draw_box(heading, "KAVLON Configuration");
  draw_box(menu, "KAVLON Configuration");
  mvwhline(menu, 2, 1, ACS_HLINE, 70);
  wnoutrefresh(background);
  wnoutrefresh(heading);
  int selected = 0;
  for (int key = 0; key != '\n'; key = wgetch(menu)) {
    if (key == KEY_DOWN) selected = (selected + 1) % (count - 1);
    draw_menu(menu, entries, selected);
  }
  endwin();
  return 0;
}

// The test terminal's own test program: shows the codes of the keys that it reads. 'b' beeps, 'c' hides the cursor,
// 's' sleeps for a fifth of a second before its code shows; F10 ends with status 3.
#include <curses.h>

int main() {
  initscr();
  start_color();
  cbreak();
  noecho();
  keypad(stdscr, TRUE);
  set_escdelay(20);
  init_pair(1, COLOR_YELLOW, COLOR_BLUE);
  bkgd(static_cast<chtype>(' ' | COLOR_PAIR(1)));
  mvhline(0, 0, '#', 80);
  box(stdscr, 0, 0);
  attron(A_BOLD | A_REVERSE);
  mvaddstr(1, 30, "KEYS");
  attroff(A_BOLD | A_REVERSE);
  move(2, 2);
  for (int count = 0, key; (key = getch()) != KEY_F(10) && key != ERR; count++) {
    if (key == 'b') beep();
    if (key == 'c') curs_set(0);
    if (key == 's') napms(200);
    if (getcurx(stdscr) > 70) move(2 + getcury(stdscr) % 20, 2);
    printw("%d ", key);
    if (key == '#') mvprintw(22, 2, "%d keys", count + 1);
  }
  endwin();
  return 3;
}

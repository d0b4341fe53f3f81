// Curses without a terminal, for tests of what is drawn and of what keys do.
#pragma once

#include <ncurses.h>

#include <cstdio>
#include <initializer_list>
#include <iterator>
#include <string>

struct CursesScreen {
  FILE *device = std::fopen("/dev/null", "r+");
  SCREEN *screen;
  CursesScreen() : screen(newterm("xterm-256color", device, device)) {
    start_color();
    cbreak();
    noecho();
  }
  CursesScreen(const CursesScreen &) = delete;
  CursesScreen &operator=(const CursesScreen &) = delete;
  ~CursesScreen() {
    endwin();
    delscreen(screen);
    std::fclose(device);
  }
};

// Keys that are read next, in this order.
inline void type_ahead(std::initializer_list<int> keys) {
  for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) ungetch(*key);
}

// The bytes of a row of a window.
inline std::string row_of(WINDOW *win, int row, int col = 0, int width = 80) {
  char text[512] = "";
  mvwinnstr(win, row, col, text, width);
  return text;
}

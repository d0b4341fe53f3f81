// Curses without a terminal, for tests of what is drawn and of what keys do.
#pragma once

#include <ncurses.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

struct CursesScreen {
  FILE *device = std::tmpfile();
  SCREEN *screen;
  explicit CursesScreen(const char *type = "xterm-256color") : screen(newterm(type, device, device)) {
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
  // How often it has beeped.
  long bells() const {
    std::string written(1 << 20, '\0');
    const ssize_t size = pread(fileno(device), written.data(), written.size(), 0);
    return std::count(written.begin(), written.begin() + size, '\a');
  }
};

// Keys, or bytes, that are read next, in this order; of kana and kanji the bytes in UTF-8.
inline void type_ahead(const std::u16string &keys) {
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    if (*key < 0x3000) {
      ungetch(*key);
    } else {
      for (const int byte : {0x80 | (*key & 0x3F), 0x80 | (*key >> 6 & 0x3F), 0xE0 | *key >> 12}) ungetch(byte);
    }
  }
}

// The bytes of a row of a window.
inline std::string row_of(WINDOW *win, int row, int col = 0, int width = 80) {
  char text[512] = "";
  mvwinnstr(win, row, col, text, width);
  return text;
}

// Rows of a window, all of them by default, with "|" after each and without blanks at their ends.
inline std::string rows_of(WINDOW *win, int first = 0, int count = 24) {
  std::string rows;
  for (int row = first; row < std::min(first + count, getmaxy(win)); ++row) {
    const std::string text = row_of(win, row);
    rows += text.substr(0, text.find_last_not_of(' ') + 1) + "|";
  }
  return rows;
}

// The colour pairs of a window's first rows and columns, a digit for each cell, with "|" before each row.
inline std::string colours_of(WINDOW *win, int rows, int columns) {
  std::string colours;
  for (int i = 0; i < rows * columns; ++i) {
    const int cell = static_cast<int>(mvwinch(win, i / columns, i % columns));
    colours += (i % columns == 0 ? "|" : "") + std::to_string(PAIR_NUMBER(cell));
  }
  return colours;
}

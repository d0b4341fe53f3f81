// The screen: everything that is drawn and every key that is read passes through here.
//
// An attribute word is a curses attribute in 32 bits: the colour pair in bits 8 to 15, A_REVERSE 0x40000, A_BOLD
// 0x200000. Rows and columns count from 0 and are relative to the window. A positioned write outside the window writes
// nothing. Most functions come in two forms: on the standard screen, and with the prefix w on a window.
//
// Texts are bytes, and one byte is one cell: a character of two bytes (EUC-JP) takes two cells. This layer alone knows
// what the terminal speaks and converts on the way out and in. Control bytes, and bytes that are no character, show as
// "?".
#pragma once

#include <ncurses.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

inline constexpr int kScreenRows = 24;  // the smallest terminal that every screen fits on
inline constexpr int kScreenColumns = 80;

inline constexpr int32_t kAttrNormal = 0x400;          // yellow on blue: texts, labels, entries
inline constexpr int32_t kAttrHighlight = 0x200100;    // bold red on blue: the selected entry, boxes, the active field
inline constexpr int32_t kAttrHelp = 0x200200;         // bold green on blue: help
inline constexpr int32_t kAttrBackground = 0x40400;    // reversed: the main window
inline constexpr int32_t kAttrEditBackground = 0x600;  // cyan on blue: behind the masks and menus

// Keys as the terminal library numbers them.
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyLineFeed = 10;
inline constexpr int kKeyReturn = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeyHelp = '?';
inline constexpr int kKeyDown = 258;
inline constexpr int kKeyUp = 259;
inline constexpr int kKeyLeft = 260;
inline constexpr int kKeyRight = 261;
inline constexpr int kKeyHome = 262;
inline constexpr int kKeyBackspace = 263;
inline constexpr int kKeyF10 = 274;
inline constexpr int kKeyNextPage = 338;
inline constexpr int kKeyPreviousPage = 339;
inline constexpr int kKeyEnter = 343;  // on the keypad
inline constexpr int kKeyEnd = 360;
// 1 for the three codes that an Enter key may send.
constexpr bool is_enter(int key) { return key == kKeyLineFeed || key == kKeyReturn || key == kKeyEnter; }

// --- start and end

// Starts curses and defines the colour pairs. From then on the terminal is given back before the program stops, also by
// a signal that ends it (it still dies by that signal; a hang-up ends it as leave_lost_terminal), by abort() and by an
// exception that nobody takes.
void init_screen();
// Ends curses and gives the terminal back; safe to call more than once and without a screen.
void end_screen();
// Ends the program, status 1, with the terminal given back: it was hung up or its input is at its end.
[[noreturn]] void leave_lost_terminal();
// Called before the program is ended in one of these ways: for what else must be given back. It may do what a signal
// handler may, nothing else. Null: nothing. Written by whoever holds such a thing, for as long as it is held.
extern void (*before_leaving)();
// Reads without echo, key by key, waiting; function keys as one code.
void initscrio();
void winitscrio(WINDOW *win);
void wshow(WINDOW *win);

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
// Repaints all open windows, from the bottom up.
void repaint_windows();
// The terminal has a new size: when the screens fit on it, everything is painted anew; no window changes.
void adopt_terminal_size(int rows, int columns);

// --- attributes and cursor

// Stores the word as it stands, respectively: on a terminal with colours, a reversed word takes colour pair n + 16
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
// While a field is edited: `edited` makes the terminal's cursor stand on the window's cursor and shows it; else it is
// left where it is and hidden.
void show_cursor(WINDOW *win, bool edited);

// --- output

void putch_char(int ch, int32_t attr);
void wputch_char(WINDOW *win, int ch, int32_t attr);
void wputch(WINDOW *win, int ch);
void wputs(WINDOW *win, std::string_view str);
void putcharv(int ch, int32_t attr, int row, int col);
void wputcharv(WINDOW *win, int ch, int32_t attr, int row, int col);
void printv(std::string_view str, int32_t attr, int row, int col);
void wprintv(WINDOW *win, std::string_view str, int32_t attr, int row, int col);
void display_str(int row, int col, int32_t attr, std::string_view str);
void wdisplay_str(WINDOW *win, int row, int col, int32_t attr, std::string_view str);
// At most 259 characters; what does not fit is cut.
[[gnu::format(printf, 4, 5)]] void fdisp_printf(int row, int col, int32_t attr, const char *fmt, ...);
[[gnu::format(printf, 5, 6)]] void wfdisp_printf(WINDOW *win, int row, int col, int32_t attr, const char *fmt, ...);
// As wprintv, but at most `width` cells: what would reach over the window's frame is cut by its caller with this.
void wprintv_cut(WINDOW *win, std::string_view str, int32_t attr, int row, int col, int width);
// Outside curses: a text as the terminal speaks. Line feeds pass.
void print_text(FILE *stream, const char *text);
// The other way round: a text as it was typed on the terminal, as records and files hold it. 1, or 0 (`text` untouched)
// when they can't hold one of its characters.
[[nodiscard]] int text_from_terminal(std::string_view typed, std::string &text);

// --- clearing

// Blanks in rows row1 to row2 - 1, columns col1 to col2 - 1.
void cls_on(int row1, int col1, int row2, int col2, int32_t attr);
// The screen but for its column 79, then home.
void cls();
void cls_attr(int32_t attr);
void wcls(WINDOW *win);

// --- lines, frames, areas

// The eight pieces of a frame: top, right, bottom, left edge, upper left, upper right, lower right, lower left corner.
// Style 4 gives blanks, any other the single line.
void get_frame_pieces(chtype pieces[8], int style);
// A line from (row1, col1): vertical when the columns are equal, else horizontal; the end coordinate itself is the
// number of cells.
void fdraw_line(int row1, int col1, int row2, int col2, chtype ch, int32_t attr);
void wfdraw_hline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr);
void wfdraw_vline(WINDOW *win, int row, int col, int length, chtype ch, int32_t attr);
void wfdraw_line(WINDOW *win, int row, int col, int vlength, int hlength, chtype ch, int32_t attr);
void fdraw_rect(int row1, int col1, int row2, int col2, int32_t attr, const chtype pieces[8]);
void wfdraw_rect(WINDOW *win, int row, int col, int height, int width, int32_t attr, const chtype pieces[8]);
void wfdraw_frame_size(WINDOW *win, int row, int col, int height, int width, int32_t attr, int style);
// Round the whole window.
void wfdraw_frame(WINDOW *win, int32_t attr, int style);
// A line across the window, joined to its frame by tee pieces.
void wfdraw_separator(WINDOW *win, int row, int32_t attr);
// The closed rectangle, respectively `height` lines of `width` cells, respectively the inside of the window's frame.
void ffill_area(int row1, int col1, int row2, int col2, int ch, int32_t attr);
void wffill_area(WINDOW *win, int row, int col, int height, int width, int ch, int32_t attr);
void wffill_full_area(WINDOW *win, int ch, int32_t attr);
void fdraw_box(int row1, int col1, int row2, int col2, int32_t frameattr, int style, int32_t fillattr, int fillch);
void wfdraw_box(WINDOW *win, int row, int col, int height, int width, int32_t frameattr, int style, int32_t fillattr,
                int fillch);
void swap(int *a, int *b);

// --- keys

// The key, 0 when a read failed. A resize of the terminal is no key; when the terminal is gone, the program ends. A
// character of several bytes arrives byte by byte, in the encoding of texts; one that texts can't hold gives
// kKeyUnfit once.
int inkey();
int winkey(WINDOW *win);
inline constexpr int kKeyUnfit = 0x10000;
// Reads a key and echoes it where the cursor stood before.
int inkeye(int32_t attr);
// One read without waiting: the raw value, -1 when there is no key.
int inkeyx();
// Waits; the low 8 bits of the key, bits 8 to 15 in *scan when given.
int inkeysys(int *scan);
// 1 when a key waits (it stays to be read), else 0. Leaves the standard screen in no-delay mode.
int kbhit();
// Waits, busy, for n seconds of processor time. Returns 0.
int time_wait(int n);
// Drops every key that has arrived but was not read yet.
void drop_typed_keys();

// Edits the text of `buf` (280 bytes) in a field of `length` cells; returns the key that ended it. See the differences:
// the window form ends on every key that does not edit and leaves the window in no-delay mode; the standard-screen form
// ends on 13 and 27 only, shows at most `length` characters and blanks one cell more.
int finputs(int row, int col, int length, int32_t attr, char *buf);
int wfinputs(WINDOW *win, int row, int col, int length, int32_t attr, char *buf);

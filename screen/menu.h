// Menus. They open a window of their own above the parent and give the screen back as it was when they close.
//
// Texts of several lines or entries are one string whose pieces a separator divides ("yes|no").
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "screen/draw.h"
#include "util/language.h"
#include "util/text.h"

// The help of a menu: fills `title` (at most 70 characters, 71 bytes) and `text` (256 bytes) for the entry `strid` of
// the menu known by `help`, 1; or 0 for an unknown `help`. The session plants the real one; null shows no help.
extern int (*menu_help)(int help, int strid, char *title, char *text);

// `style` is a FrameStyle, `align` an Alignment.
// Frame, title lines (divided by "|") and separator of a menu; 1.
int DrawMenuFrame(WINDOW *win, int32_t attr, const char *title, int style);
// What a menu gives instead of the chosen entry's position from 1: it was left by Escape; it could not be shown (fewer
// than two entries).
enum MenuResult : int { kMenuEscaped = -1, kMenuNotShown = 0 };
// A fixed menu.
int DoMenu(WINDOW *parent, int row, int col, int width, int32_t attr, int32_t attr_sel, const char *title,
           const char *items, const char *sep, int style);
int DoMenuExt(WINDOW *parent, int row, int col, int width, int32_t attr, int32_t attr_sel, const char *title,
              const char *items, const char *sep, int style, int help);
// A scrolling menu with `height` list rows, never more than there are entries; the window is five rows higher and moves
// up until it fits. The chosen entry's text goes to `out` (84 bytes). Results as DoMenu.
int DoScrollMenu(WINDOW *parent, int row, int col, int width, int height, int32_t attr, int32_t attr_sel, char *out,
                 const char *title, const char *items, const char *sep, int style, int align);
int DoScrollMenuExt(WINDOW *parent, int row, int col, int width, int height, int32_t attr, int32_t attr_sel, char *out,
                    const char *title, const char *items, const char *sep, int style, int align, int help);
// Piece n of a text, from 1, as ctoken takes it (up to 1023 characters).
std::string text_piece(const char *text, const char *sep, int n);
// A text filled up with blank lines to two: what a menu needs to show it.
std::string at_least_two_lines(const char *text);
// Entries as one string, divided by "|": one more at the end; the labels in the present language.
void add_entry(std::string &entries, std::string_view entry);
std::string join(std::span<const Label> labels);
// The question as title, "yes" and "no" as entries. As wide as the question plus two.
enum Answer : int { kNoAnswer = 0, kYes = 1, kNo = 2 };  // kNoAnswer: the list was left
inline constexpr char kYesNoEntries[] = "yes|no";        // in both languages, as the fields show the answer
int yes_no_menu(WINDOW *parent, int row, int col, const char *question);

// The screen layer's own test program: menus and boxes of every kind, reached from a first menu. It shows each result
// on row 23. With an argument the language is Japanese.
#include <clocale>
#include <stdexcept>

#include "screen/maskelib.h"
#include "screen/menu.h"
#include "util/check.h"
#include "util/language.h"
#include "util/text.h"

namespace {

constexpr const char *kJapanese = "\xC0\xDF\xC4\xEA";  // "settings"

int help_of_entry(int help, int strid, char *title, char *text) {
  cpynstr(title, "Entry help", 71);
  cpynstr(text, strid == 1 ? " |two lines" : "one line", 256);
  return help == 7;
}

std::string numbered_entries(int count) {
  std::string entries;
  for (int i = 1; i <= count; ++i) entries += (i > 1 ? "|" : "") + std::string("model ") + std::to_string(i);
  return entries;
}

void edit_a_line(WINDOW *main) {
  const Window win = open_window(5, 40, 10, 20);
  wfdraw_box(win.get(), 0, 0, 5, 40, kAttrNormal, 1, kAttrNormal, ' ');
  char text[280] = "";
  cpynstr(text, kJapanese, 280);
  show_cursor(win.get(), true);
  const int key = wfinputs(win.get(), 2, 2, 12, kAttrHighlight, text);
  show_cursor(win.get(), false);
  wfdisp_printf(main, 23, 0, 0x600, "key %d text '%s'", key, text);
}

void show_keys(WINDOW *main) {
  int column = 12;
  for (int key = 0; key != kKeyEscape; column += 6) {
    key = winkey(main);
    wfdisp_printf(main, 23, column, 0x600, "%d ", key);
    wshow(main);
  }
}

void do_entry(WINDOW *main, int entry) {
  char chosen[84] = "-";
  const std::string models = numbered_entries(20);
  switch (entry) {
    case 1:
      wfdisp_printf(main, 23, 0, 0x600, "scroll %d %s  ",
                    DoScrollMenuExt(main, 12, 21, 36, 9, kAttrNormal, kAttrHighlight, chosen, "Models", models.c_str(),
                                    "|", 1, 3, 7),
                    chosen);
      break;
    case 2:
      draw_box(main, "first line|a longer second line|\x1B[31m\xC0\xDF", "|", kAttrHighlight, kAttrHighlight, 1);
      break;
    case 3:
      draw_box_nowait(main, "for a second", "|", kAttrHighlight);
      break;
    case 4:
      wfdisp_printf(main, 23, 0, 0x600, "answer %d", yes_no_menu(main, 10, 45, "Is this a question ?"));
      break;
    case 5:
      edit_a_line(main);
      break;
    case 6:
      show_keys(main);
      break;
    case 7:
      require(false, "entry != 7", "tests/screen_demo");
      break;
    default:
      throw std::runtime_error("thrown");
  }
}

}  // namespace

int main(int argc, char **) {  // NOLINT(bugprone-exception-escape): to see what becomes of one
  std::setlocale(LC_ALL, "");
  language = argc > 1 ? 1 : 0;
  attr_dkl = kAttrNormal;
  menu_help = help_of_entry;
  init_screen();
  const Window main_window = open_window(kScreenRows, kScreenColumns, 0, 0);
  WINDOW *const main = main_window.get();
  draw_edit_background(main, kAttrEditBackground);
  for (int column = 0; column < kScreenColumns; column += 4) {
    wprintv(main, kJapanese, kAttrEditBackground, 14, column);
    wprintv_cut(main, kJapanese, kAttrEditBackground, 20, column + 1, 4);
  }
  for (int entry = 0; entry != -1;) {
    const std::string entries = std::string("Scroll|Box|Nowait|Question|Line|Keys|Assertion|Exception ") + kJapanese;
    entry = DoMenuExt(main, 7, 3, 73, kAttrNormal, kAttrHighlight, "Demo", entries.c_str(), "|", 1, 7);
    if (entry > 0) do_entry(main, entry);
    wshow(main);
  }
  end_screen();
  print_text(stderr, kJapanese);
  return 5;
}

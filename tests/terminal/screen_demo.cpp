// What the program itself never does, for screen_test: shows the codes of keys ("keys", until Escape), edits a Japanese
// line ("line") and fails in two ways.
#include <clocale>
#include <stdexcept>

#include "screen/scrio.h"
#include "util/check.h"
#include "util/language.h"
#include "util/text.h"

int main(int argc, char **argv) {  // NOLINT(bugprone-exception-escape): to see what becomes of one
  const std::string_view what = argc > 1 ? argv[1] : "keys";
  std::setlocale(LC_ALL, "");
  language = 1;
  init_screen();
  const Window window = open_window(kScreenRows, kScreenColumns, 0, 0);
  WINDOW *const main = window.get();
  wshow(main);
  require(what != "assertion", "what != assertion", "tests/screen_demo");
  if (what == "exception") throw std::runtime_error("thrown");
  if (what == "line") {
    char text[280] = "";
    cpynstr(text, "\xC0\xDF\xC4\xEA");  // "settings"
    show_cursor(main, true);
    const int key = wfinputs(main, 2, 2, 12, kAttrHighlight, text);
    wfdisp_printf(main, 4, 0, kAttrNormal, "key %d text '%s'#", key, text);
  }
  for (int key = 0, column = 0; key != kKeyEscape; column += 6) {
    wshow(main);
    key = winkey(main);
    wfdisp_printf(main, 5, column, kAttrNormal, "%d ", key);
  }
  end_screen();
}

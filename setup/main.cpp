// kavsetup: the whole life of the program.
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "screen/draw.h"
#include "screen/maskelib.h"
#include "screen/menu.h"
#include "setup/configuration/configuration.h"
#include "setup/events_cfg/events.h"
#include "setup/options.h"
#include "setup/session.h"
#include "setup/texts.h"
#include "unixtools/portprobe.h"
#include "util/charset.h"
#include "util/files.h"

namespace {

// On the main window. False when there is none.
bool create_configurations() {
  const Window win = open_window(kScreenRows, kScreenColumns, 0, 0);
  if (win == nullptr) return false;
  // not shown by itself: what comes at once covers all of it, and the terminal would flash and take 24 rows for nothing
  wffill_full_area(win.get(), ' ', kAttrBackground);
  create_new_cfg = 1;
  for (;;) {
    const int choice = draw_main_menu(win.get(), kAttrNormal);
    if (choice == kChoiceExit) return true;
    if (choice == kChoiceCreate) do_config(win.get(), kAttrNormal, kConfigurationFile, kSessionCreate);
  }
}

// False when the terminal is too small for the program.
bool run_on_screen() {
  if (LINES < kScreenRows || COLS < kScreenColumns) return false;
  if (!does_file_exist(kConfigurationFile, kAnyFile)) return create_configurations();
  // without the main window: all of it would be behind the session's own
  do_config(stdscr, kAttrNormal, kConfigurationFile, kSessionEdit);
  return true;
}

void run_program(int count, char *const arguments[]) {
  attr_dkl = kAttrNormal;
  attr_hell = kAttrHighlight;
  menu_help = get_menu_help;
  before_leaving = restore_probed_port;
  std::setlocale(LC_CTYPE, "");  // no more than that: each category costs files, and numbers keep their decimal points
  std::setlocale(LC_MESSAGES, "");
  read_options(count, arguments);
  if (!can_show_screens()) {
    print_text(stderr, ("kavsetup: " + std::string(no_terminal[language]) + "\n").c_str());
    return;
  }

  init_screen();
  const bool ran = run_on_screen();
  end_screen();
  for (const std::string &line : save_report()) print_text(stderr, ("kavsetup: " + line + "\n").c_str());
  if (!ran) print_text(stderr, (std::string(err_start[language]) + "\n").c_str());
}

// The windows are closed by now, what they took is free again.
void end_without_memory() {
  if (before_leaving != nullptr) before_leaving();
  try {
    if (keep_work != nullptr) keep_work();
  } catch (const std::bad_alloc &) {  // the line below tells of it all the same
  }
  end_screen();
  std::fprintf(stderr, "kavsetup: %s\n", std::strerror(ENOMEM));
}

}  // namespace

int main(int argc, char *argv[]) {
  try {
    run_program(argc - 1, argv + 1);
  } catch (const std::bad_alloc &) {
    end_without_memory();
  }
  return EXIT_FAILURE;  // kept: scripts in the field expect 1 from every session
}

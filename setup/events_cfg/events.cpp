#include "setup/events_cfg/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "screen/box.h"
#include "screen/maskelib.h"
#include "screen/menu.h"
#include "setup/events_cfg/job_edit.h"
#include "setup/events_cfg/texts.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "setup/settings/models.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

constexpr int kMaxEvents = 128;
constexpr int kLongestFixedMenu = 10;  // more entries scroll
constexpr int kTitleLength = 70;       // longest event name in the menu

enum HelpContext { kEventMenuHelp = 5, kFunctionListHelp = 7, kJobMenuHelp = 8, kDeleteMenuHelp = 9 };

struct MenuPlace {
  int row, col, width;
};
constexpr MenuPlace kJobMenus = {6, 3, 74};

// A menu of `entries` that scrolls, `rows` at a time, when there are too many.
int choose(WINDOW *screen, const MenuPlace &at, const char *title, const std::string &entries, int rows, int help) {
  if (cnumtoken(entries.c_str(), "|") <= kLongestFixedMenu) {
    return DoMenuExt(screen, at.row, at.col, at.width, attr_dkl, kAttrHighlight, title, entries.c_str(), "|",
                     kSingleLine, help);
  }
  char chosen[84];
  return DoScrollMenuExt(screen, at.row, at.col, at.width, rows, attr_dkl, kAttrHighlight, chosen, title,
                         entries.c_str(), "|", kSingleLine, kCentred, help);
}

bool bypass_is_offered() { return isZELKGSeries() == 1; }

std::string event_entries(int count) {
  std::string entries;
  for (int event = 0; event < std::min(count, kMaxEvents); ++event) {
    if (event == kBypassEvent && !bypass_is_offered()) continue;
    add_entry(entries, std::string_view(eventlist[event].name[language]).substr(0, kTitleLength));
  }
  add_entry(entries, " ");
  add_entry(entries, MENU_EVENT_EXIT[language]);
  return entries;
}

// The heading of an event's jobs.
std::string event_title(int event) {
  char title[kTitleLength + 1];
  // kept: taken from the menu by event number, so after the hidden event the next one's name stands
  return ctoken(title, sizeof title, event_entries(DbEventListCnt).c_str(), "|", event + 1);
}

std::string job_entries(int jobs) {
  std::string entries;
  for (int job = 0; job < jobs; ++job) {
    char line[kJobLineLength + 1];
    job_line(*ActEvent[job], line);
    add_entry(entries, line);
  }
  add_entry(entries, " ");
  return entries;
}

void edit_job(WINDOW *screen, int32_t attr, int event, int job) {
  JobRec &record = *ActEvent[job];
  if (record.function < 0) {
    draw_box(screen, unknown_function_label[language], "|", kAttrHighlight, kAttrHighlight, 0);
    return;
  }
  std::string text;
  if (!edit_function_values(screen, attr, record, event) || !build_func_string(record, text)) return;
  if (!replace_event_function(event, job, text)) return;  // the list stays as it was
}

// 1 when a job was deleted.
int delete_job(WINDOW *screen, int event, int jobs) {
  const int choice = do_event_function_menu(screen, event, jobs, kJobMenus.row, kJobMenus.col, kJobMenus.width, 1);
  if (choice < 1 || choice > jobs) return 0;
  return del_event_function(event, choice - 1);
}

// Shows the jobs and acts on one choice. 1 to show them again.
int run_job_list(WINDOW *screen, int32_t attr, int event) {
  tail_shutdown_function(event);
  const int jobs = parse_joblist(CStrArr_GetStr(&EventStrings, event), event);
  const int choice = do_event_function_menu(screen, event, jobs, kJobMenus.row, kJobMenus.col, kJobMenus.width, 0);
  int again = 0;
  if (choice >= 1 && choice <= jobs) {
    edit_job(screen, attr, event, choice - 1);
    again = 1;
  } else if (choice == jobs + 2) {
    again = add_event_function(screen, attr, event);
  } else if (choice == jobs + 3) {
    again = delete_job(screen, event, jobs);
  }
  free_act_event();
  return again;
}

std::string function_entries() {
  std::string entries;
  for (const FuncListRec &function : function_catalogue()) {
    add_entry(entries, std::string_view(function.title).substr(0, kJobLineLength));
  }
  add_entry(entries, " ");
  add_entry(entries, MENU_EVENT_EXIT[language]);
  return entries;
}

// Index of the chosen function, -1 when the list was left.
int choose_function(WINDOW *screen) {
  constexpr int kSpacer = kFunctionCount + 1;
  int choice = 0;
  do {
    choice = choose(screen, kJobMenus, MENU_EVENT_ADD[language], function_entries(), 13, kFunctionListHelp);
  } while (choice == kSpacer);
  return choice >= 1 && choice <= kFunctionCount ? choice - 1 : -1;
}

struct MenuHelp {
  const char *const *title;
  const char *const *text;
};

void fill_help(const MenuHelp &help, char *title, char *text) {
  std::snprintf(title, 71, "%.70s", help.title[language]);
  std::snprintf(text, 256, " |%.70s", help.text[language]);
}

}  // namespace

int edit_new_event_cfg(WINDOW *screen, const char *, int32_t attr) {
  const int count = reset_lists_for_model(get_act_ups());
  if (count < 1) {
    char text[256];
    std::snprintf(text, sizeof text, no_events_label[language], get_act_ups());
    draw_box(screen, text, "|", kAttrHighlight, kAttrHighlight, 0);
    draw_edit_background(screen, kAttrEditBackground);
    return 0;
  }
  for (;;) {
    int item = do_new_event_menu(screen, count, 6, 3, 74);
    if (item > kBypassEvent && !bypass_is_offered()) ++item;
    if (item < 1 || item == count + 2) return 1;
    if (item > count) continue;  // the spacer
    edit_event_functions(screen, count, attr, item - 1);
  }
}

int do_new_event_menu(WINDOW *screen, int count, int row, int col, int width) {
  return choose(screen, {row, col, width}, MENU_EVENT_TITLE[language], event_entries(count), 14, kEventMenuHelp);
}

int edit_event_functions(WINDOW *screen, int, int32_t attr, int event) {
  while (run_job_list(screen, attr, event)) {
  }
  return 1;
}

int do_event_function_menu(WINDOW *screen, int event, int jobs, int row, int col, int width, int delete_mode) {
  const std::string title = delete_mode ? MENU_EVENT_DEL[language] : event_title(event);
  std::string entries = job_entries(jobs);
  if (!delete_mode) {
    add_entry(entries, MENU_EVENT_ADD[language]);
    add_entry(entries, MENU_EVENT_DEL[language]);
  }
  add_entry(entries, MENU_EVENT_EXIT[language]);
  int choice = 0;
  do {
    choice =
        choose(screen, {row, col, width}, title.c_str(), entries, 15, delete_mode ? kDeleteMenuHelp : kJobMenuHelp);
  } while (choice == jobs + 1);
  return choice;
}

int add_event_function(WINDOW *screen, int32_t attr, int event) {
  const int function = choose_function(screen);
  if (function < 0) return 0;
  const auto job = std::make_unique<JobRec>();
  std::string text;
  fill_function_rec(*job, function, event);
  return edit_function_values(screen, attr, *job, event) && build_func_string(*job, text) &&
         append_event_function(event, text);
}

int get_menu_help(int menu, int item, char *title, char *text) {
  switch (menu) {
    case kEventMenuHelp:
      fill_help({hlptxt_label07, hlptxt_label06}, title, text);
      return 1;
    case kJobMenuHelp:
      fill_help({hlptxt_label08, hlptxt_label09}, title, text);
      return 1;
    case kDeleteMenuHelp:
      fill_help({hlptxt_label15, hlptxt_label14}, title, text);
      return 1;
    case kFunctionListHelp:
      break;
    default:
      return 0;
  }
  if (item < 1 || item > kFunctionCount) return 1;
  char name[kTitleLength + 1], description[kTitleLength + 1];
  ctoken(name, sizeof name, func_list[item - 1][language], "|", 2);
  ctoken(description, sizeof description, func_list[item - 1][language], "|", 3);
  std::snprintf(title, 71, "%.70s", hlptxt_label08[language]);
  std::snprintf(text, 256, "%s|%s", name, description);
  return 1;
}

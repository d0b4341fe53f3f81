#include "setup/session.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "corbix/xconfig.h"
#include "screen/box.h"
#include "screen/draw.h"
#include "screen/image.h"
#include "screen/keys.h"
#include "screen/menu.h"
#include "screen/texts.h"
#include "setup/cfgmask/masks.h"
#include "setup/check/check.h"
#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/configuration/texts.h"
#include "setup/events_cfg/events.h"
#include "setup/forms/forms.h"
#include "setup/mail/mail.h"
#include "setup/options.h"
#include "setup/texts.h"
#include "setup/upsprobe.h"
#include "util/files.h"
#include "util/trace.h"

namespace {

// A box with a file's name in it.
void show_file_box(WINDOW *win, const char *const *label, const char *file) {
  char text[512];
  std::snprintf(text, sizeof text, label[language], file);
  draw_box(win, text, "|", kAttrHighlight, kAttrHighlight, 0);
}

void show_file_missing(WINDOW *win, const char *file) {
  wfdraw_frame_size(win, 9, 9, 3, 41, kAttrHighlight, kSingleLine);
  wffill_area(win, 10, 10, 1, 39, ' ', kAttrHighlight);
  char text[512];
  std::snprintf(text, sizeof text, file_missing_label[language], file);
  wprintv_cut(win, text, kAttrHighlight, 10, 11, 38);
  wc_set_pos(win, 10, 11);
  wait_for_key(win);
}

std::string standing;  // what is wrong with the files, or what an earlier session left; written by run_session

// What can be known before of a save that would fail goes before what is wrong with the file.
std::string tell_standing() {
  const std::string obstacle = obstacle_to_saving(kConfigurationFile);
  return obstacle.empty() ? standing : obstacle;
}

std::string first_finding(const char *file) {
  std::vector<KeyFinding> findings;
  check_loaded(findings);
  const auto found = std::ranges::find_if(findings, [](const KeyFinding &finding) { return finding.line > 0; });
  if (found == findings.end()) return "";
  const std::string key = found->key.empty() ? "" : found->key + ": ";
  return std::string(file) + ":" + std::to_string(found->line) + ": " + key + found->text;
}

std::string find_standing(const char *file) {
  const std::string unsaved = unsaved_file(file);
  if (does_file_exist(unsaved.c_str(), 1)) return filled(unsaved_label, {unsaved});
  const std::string copy = interrupted_copy(file);
  if (!copy.empty()) return filled(copy_label, {copy});
  if (get_max_ups_list(UpsTypeArr) == 0) return filled(no_models_label, {upstypname});
  return first_finding(file);
}

void keep_session() { keep_unsaved(kConfigurationFile); }

// The models and the settings of a session. 1, else the person was told why not.
int load_existing(WINDOW *win, const char *file) {
  if (!InitUpsTypeArray()) {
    show_file_box(win, database_error_label, upstypname);
    return 0;
  }
  if (init_config_vals(file)) return 1;
  XCloseProfile();
  show_file_missing(win, file);
  return 0;
}

bool is_readable(const char *file) { return access(file, R_OK) == 0 && !does_file_exist(file, kDirectoryOnly); }

int prepare_existing(WINDOW *win, const char *file) {
  if (is_readable(file)) return 1;
  show_file_missing(win, file);
  return 0;
}

int prepare_new(WINDOW *win, const char *file) {
  if (!init_new_config_vals()) {
    show_file_box(win, file_exists_label, file);
    return 0;
  }
  // kept crossed: the box of the other condition stands here, support knows it by this text
  if (does_file_exist(file, kAnyFile)) {
    show_file_box(win, file_open_label, file);
    return 0;
  }
  ask_for_probe(win, file);
  return 1;
}

void edit_events(WINDOW *win, const char *file, int32_t attr) {
  if (debugLevel > kTraceDetails) myfprintf("do_config: c_event %s %d\n", get_act_ups(), isZELKGSeries());
  edit_new_event_cfg(win, file, attr);
}

// Acts on one choice of the session menu. 1 to show the menu again, 0 when the session is over.
int act_on(int choice, WINDOW *win, const char *file, int32_t attr) {
  enum { kUps = 1, kSystem, kPaths, kEvents, kMail, kSpacer, kSave };
  switch (choice) {
    case kUps:
      edit_std_cfg(win, file, attr);
      return 1;
    case kSystem:
      edit_custom_cfg(win, file, attr);
      return 1;
    case kPaths:
      edit_path_cfg(win, file, attr);
      return 1;
    case kEvents:
      edit_events(win, file, attr);
      return 1;
    case kMail:
      edit_mail_cfg(win, attr);
      return 1;
    case kSpacer:
      return 1;
    case kSave:
      if (save_configuration(file)) return 0;
      dobeep(1);
      return 1;
    default:
      return 0;
  }
}

// A new session has its models and settings by now, the detection needs them.
void run_session(WINDOW *win, const char *file, int32_t attr, bool is_new) {
  const auto choose = [&] { return do_menu(win, 7, 3, getmaxx(win) - 7, attr); };
  keep_work = keep_session;
  int choice = choose();
  // not earlier: the first screen need not wait for the models, the settings and the check
  if (is_new || load_existing(win, file)) {
    standing = find_standing(file);
    standing_notice = tell_standing;
    while (act_on(choice, win, file, attr)) choice = choose();
  }
  keep_work = nullptr;
}

}  // namespace

int draw_main_menu(WINDOW *parent, int32_t attr) {
  draw_edit_background(parent, kAttrEditBackground);
  std::string items = first_menu_create[language];
  add_entry(items, first_menu_exit[language]);
  return DoMenu(parent, 9, 4, 71, attr, kAttrHighlight, first_menu_title[language], items.c_str(), "|", kSingleLine);
}

int do_menu(WINDOW *parent, int row, int col, int width, int32_t attr) {
  return DoMenu(parent, row, col, width, attr, kAttrHighlight, session_title[language], join(session_entries).c_str(),
                "|", kSingleLine);
}

void do_config(WINDOW *parent, int32_t attr, const char *file, int mode) {
  const Window win = open_window(getmaxy(parent), getmaxx(parent), 0, 0);
  if (win == nullptr) return;
  draw_edit_background(win.get(), kAttrEditBackground);
  if (init_masklib() != 0) return;
  const bool is_new = mode == kSessionCreate;
  if (is_new ? !InitUpsTypeArray() : !is_readable(upstypname)) {
    show_file_box(win.get(), database_error_label, upstypname);
    return;
  }
  init_all_tabs();
  const bool ready =
      (mode == kSessionEdit && prepare_existing(win.get(), file)) || (is_new && prepare_new(win.get(), file));
  if (ready) run_session(win.get(), file, attr, is_new);
}

int ask_for_probe(WINDOW *parent, const char *file) {
  std::string items = probe_menu_automatic[language];
  add_entry(items, probe_menu_skip[language]);
  int result = DoMenu(parent, 9, 4, 71, kAttrNormal, kAttrHighlight, background_label[language], items.c_str(), "|",
                      kSingleLine);
  if (result != 1) return result;
  do {
    result = show_probe_win(parent, file, kAttrNormal, "messages.dat");
    if (debugLevel > kTraceDetails) myfprintf("ask_for_probe: return %d\n", result);
  } while (result == 1);
  return result;
}

#include "setup/cfgmask/masks.h"

#include <cstring>
#include <string>

#include "screen/box.h"
#include "screen/menu.h"
#include "setup/cfgmask/texts.h"
#include "setup/configuration/configuration.h"
#include "setup/forms/forms.h"
#include "setup/forms/texts.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

void show_ups_values(WINDOW *win) {
  if (win != nullptr) show_rec(win, &StdRec, StdTabArr, attr_dkl);
}

// --- UPS mask

constexpr FrameLabel kStdHints[] = {{7, 58, list_hint_label}};

bool std_has_list(const void *, int field) { return field == kModel; }

void pick_model(const void *, WINDOW *win, int) {
  char name[sizeof(ModelEntry::ups_name)];
  if (!get_upsname(win, name)) return;
  choose_model(name);
  show_ups_values(win);
}

bool model_is_chosen(const void *, WINDOW *win) {
  if (std::strcmp(get_act_ups(), "Unknown") != 0) return true;
  draw_box(win, model_missing_label[language], "|", kAttrHighlight, kAttrHighlight, 0);
  return false;
}

constexpr SettingsMask kStdMask = {kMaskUps, 16, 6, kFinishKeys, kStdHints, std_has_list, pick_model, model_is_chosen};

// --- system mask

bool custom_has_list(const void *, int field) {
  if (follows_shutdown(field)) return may_shut_down();
  return field == kShutdownAllowed || field == kUpsRestart;
}

const char *custom_list_title(int field) {
  switch (field) {
    case kShutdownAllowed:
      return shutdown_list_title[language];
    case kUpsShutdown:
      return ups_shutdown_list_title[language];
    case kUpsRestart:
      return ups_restore_list_title[language];
    default:
      return fixed_shutdown_list_title[language];
  }
}

void pick_custom(const void *, WINDOW *win, int field) {
  const int choice = yes_no_box(win, custom_list_title(field));
  fill_custom_rec(win, choice, field);
  if (field != kShutdownAllowed || choice != kNo) return;
  for (int other = 0; other < kCustomFieldCount; ++other) {
    if (follows_shutdown(other)) fill_custom_rec(win, kNo, other);
  }
}

constexpr SettingsMask kCustomMask = {kMaskSystem, 14, 7, kFinishKeys, {}, custom_has_list, pick_custom};

// --- path mask

bool path_has_list(const void *, int field) { return field == kDataLogging; }
void pick_path(const void *, WINDOW *win, int field) {
  fill_path_rec(win, yes_no_box(win, logging_list_title[language]), field);
}

constexpr SettingsMask kPathMask = {kMaskPaths, 16, 6, kFinishKeys, {}, path_has_list, pick_path};

// --- extra-job mask

bool special_has_list(const void *, int field) { return field % kFieldsPerExtraJob == 0; }
void pick_special(const void *, WINDOW *win, int field) {
  fill_special_rec(win, yes_no_box(win, extra_job_list_title[language]), field);
}

constexpr SettingsMask kSpecialMask = {kMaskExtraJobs, 16, 6, kFinishKeys, {}, special_has_list, pick_special};

}  // namespace

int edit_std_cfg(WINDOW *, const char *, int32_t attr) {
  TmpInvisible = Invisible;
  run_settings_mask(kStdMask, attr);
  Invisible = TmpInvisible;
  return 0;
}

int edit_custom_cfg(WINDOW *, const char *, int32_t attr) {
  trace_enter("setup/cfgmask", "edit_custom_cfg");
  run_settings_mask(kCustomMask, attr);
  return 0;
}

int edit_path_cfg(WINDOW *, const char *, int32_t attr) {
  run_settings_mask(kPathMask, attr);
  return 0;
}

int edit_special_cfg(WINDOW *, const char *, int32_t attr) {
  run_settings_mask(kSpecialMask, attr);
  return 0;
}

void draw_std_frame(WINDOW *win, int32_t attr) { draw_settings_frame(kStdMask, win, attr); }
void draw_custom_frame(WINDOW *win, int32_t attr) { draw_settings_frame(kCustomMask, win, attr); }
void draw_path_frame(WINDOW *win, int32_t attr) { draw_settings_frame(kPathMask, win, attr); }
void draw_special_frame(WINDOW *win, int32_t attr) { draw_settings_frame(kSpecialMask, win, attr); }

void show_cfg_maske(WINDOW *win, const void *record, const FieldDescriptor *table, int32_t attr) {
  show_rec(win, record, table, attr);
}

void draw_tmp_hlp_screen(WINDOW *parent, int mask, int field) { show_hlp_txt(parent, mask, field); }

int yes_no_box(WINDOW *win, const char *title) { return yes_no_menu(win, 10, 45, title); }

int fill_custom_rec(WINDOW *win, int choice, int field) {
  return fill_yes_no(win, field_of_mask(kMaskSystem, field), choice);
}
int fill_path_rec(WINDOW *win, int choice, int field) {
  return fill_yes_no(win, field_of_mask(kMaskPaths, field), choice);
}
int fill_special_rec(WINDOW *win, int choice, int field) {
  return fill_yes_no(win, field_of_mask(kMaskExtraJobs, field), choice);
}

int show_ups_list(WINDOW *win, char *name) {
  std::string items;
  for (const ModelEntry *entry = UpsTypeArr; std::strcmp(entry->ups_name, kTableEnd) != 0; ++entry) {
    add_entry(items, entry->ups_name[0] == '\0' ? " " : entry->ups_name);
  }
  char chosen[84] = "";
  const int result = DoScrollMenu(win, 10, 21, 36, 9, attr_dkl, kAttrHighlight, chosen, model_list_title[language],
                                  items.c_str(), "|", kSingleLine, kCentred);
  const bool is_model = result > 0 && std::strcmp(chosen, " ") != 0;
  if (is_model) cpynstr(name, chosen, sizeof(ModelEntry::ups_name));
  return is_model;
}

int get_upsname(WINDOW *win, char *name) { return show_ups_list(win, name); }

void fill_ups_rec(WINDOW *win, const ModelEntry *entry) {
  take_model(*entry);
  show_ups_values(win);
}

void fill_baudrate(WINDOW *win, int model) {
  take_line_settings(model);
  show_ups_values(win);
}

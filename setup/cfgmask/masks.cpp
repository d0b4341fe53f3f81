#include "setup/cfgmask/masks.h"

#include <cstring>

#include "screen/maskloop.h"
#include "screen/menu.h"
#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/texts.h"
#include "setup/cfgmask/writers.h"
#include "setup/events_cfg/catalogue.h"
#include "setup/events_cfg/event_table.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

// What a settings mask decides by itself.
struct Decisions {
  bool (*has_list)(const void *mask, int field);
  void (*pick)(const void *mask, WINDOW *win, int field);
  bool (*may_leave)(const void *mask, WINDOW *win);
};

// A settings mask of `rows` rows from row `row` of the screen on: what they have in common, and its own decisions. The
// context is its number.
constexpr Mask settings_mask(const int *number, int rows, int row, void *record, const FieldDescriptor *fields,
                             int count, std::span<const FrameLabel> labels, const Decisions &own) {
  return {.rows = rows,
          .columns = 76,
          .row = row,
          .column = 2,
          .record = record,
          .fields = fields,
          .count = count,
          .rules = kFinishKeys,
          .labels = labels,
          .context = number,
          .notice = settings_notice,
          .has_list = own.has_list,
          .pick = own.pick,
          .check = check_mask_field,
          .show_error = show_mask_error,
          .show_help = show_mask_help,
          .may_leave = own.may_leave};
}

// --- UPS mask

constexpr FrameLabel kStdFrame[] = {
    {1, 2, stdframe_label01},  {2, 2, stdframe_label02}, {3, 2, stdframe_label03},  {4, 2, stdframe_label04},
    {5, 2, stdframe_label05},  {6, 2, stdframe_label06}, {7, 2, stdframe_label07},  {7, 58, list_hint_label},
    {8, 2, stdframe_label08},  {9, 2, stdframe_label09}, {10, 2, stdframe_label10}, {11, 2, stdframe_label11},
    {12, 2, stdframe_label12},
};

bool std_has_list(const void *, int field) { return field == kModel; }

void pick_model(const void *, WINDOW *win, int) {
  char name[sizeof(ModelEntry::ups_name)];
  if (get_upsname(win, name)) choose_model(win, name);
}

bool model_is_chosen(const void *, WINDOW *win) {
  if (std::strcmp(get_act_ups(), "Unknown") != 0) return true;
  draw_box(win, model_missing_label[language], "|", kAttrHighlight, kAttrHighlight, 0);
  return false;
}

constexpr Mask kStdMask = settings_mask(&kMaskUps, 16, 6, &StdRec, StdTabArr, kStdFieldCount, kStdFrame,
                                        {std_has_list, pick_model, model_is_chosen});

// --- system mask

constexpr FrameLabel kCustomFrame[] = {
    {1, 2, customframe_label01}, {3, 2, customframe_label02}, {4, 2, customframe_label03},
    {5, 2, customframe_label04}, {6, 2, customframe_label05}, {7, 2, customframe_label06},
    {8, 2, customframe_label07}, {9, 2, customframe_label08}, {10, 2, customframe_label09},
};

bool custom_has_list(const void *, int field) {
  if (follows_shutdown(field)) return std::strncmp(CustomRec.shutdown_allowed, "yes", 3) == 0;
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
  constexpr int kNo = 2;
  const int choice = yes_no_box(win, custom_list_title(field));
  fill_custom_rec(win, choice, field);
  if (field != kShutdownAllowed || choice != kNo) return;
  for (int other = 0; other < kCustomFieldCount; other++) {
    if (follows_shutdown(other)) fill_custom_rec(win, kNo, other);
  }
}

constexpr Mask kCustomMask = settings_mask(&kMaskSystem, 14, 7, &CustomRec, CustomTabArr, kCustomFieldCount,
                                           kCustomFrame, {custom_has_list, pick_custom, nullptr});

// --- path mask

constexpr FrameLabel kPathFrame[] = {
    {2, 10, pathframe_label01},
    {5, 10, pathframe_label02},
    {5, 53, pathframe_label03},
    {8, 29, pathframe_label04},
};

bool path_has_list(const void *, int field) { return field == kDataLogging; }
void pick_path(const void *, WINDOW *win, int field) {
  fill_path_rec(win, yes_no_box(win, logging_list_title[language]), field);
}

constexpr Mask kPathMask = settings_mask(&kMaskPaths, 16, 6, &PathRec, PathTabArr, kPathFieldCount, kPathFrame,
                                         {path_has_list, pick_path, nullptr});

// --- extra-job mask

constexpr FrameLabel kSpecialFrame[] = {
    {2, 2, specialframe_label01}, {2, 41, specialframe_label04}, {3, 2, specialframe_label05},
    {5, 2, specialframe_label02}, {5, 41, specialframe_label04}, {6, 2, specialframe_label05},
    {8, 2, specialframe_label03}, {8, 41, specialframe_label04}, {9, 2, specialframe_label05},
};

bool special_has_list(const void *, int field) { return field % kFieldsPerExtraJob == 0; }
void pick_special(const void *, WINDOW *win, int field) {
  fill_special_rec(win, yes_no_box(win, extra_job_list_title[language]), field);
}

constexpr Mask kSpecialMask = settings_mask(&kMaskExtraJobs, 16, 6, &SpecialRec, SpecialTabArr, kSpecialFieldCount,
                                            kSpecialFrame, {special_has_list, pick_special, nullptr});

}  // namespace

int edit_std_cfg(WINDOW *, const char *, int32_t attr) {
  TmpInvisible = Invisible;
  run_mask(kStdMask, attr);
  Invisible = TmpInvisible;
  return 0;
}

int edit_custom_cfg(WINDOW *, const char *, int32_t attr) {
  trace_enter("setup/cfgmask", "edit_custom_cfg");
  run_mask(kCustomMask, attr);
  return 0;
}

int edit_path_cfg(WINDOW *, const char *, int32_t attr) {
  run_mask(kPathMask, attr);
  return 0;
}

int edit_special_cfg(WINDOW *, const char *, int32_t attr) {
  run_mask(kSpecialMask, attr);
  return 0;
}

void draw_std_frame(WINDOW *win, int32_t attr) { draw_mask_frame(win, attr, kStdFrame); }
void draw_custom_frame(WINDOW *win, int32_t attr) { draw_mask_frame(win, attr, kCustomFrame); }
void draw_path_frame(WINDOW *win, int32_t attr) { draw_mask_frame(win, attr, kPathFrame); }
void draw_special_frame(WINDOW *win, int32_t attr) { draw_mask_frame(win, attr, kSpecialFrame); }

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

void choose_model(WINDOW *win, const char *name) {
  const int model = get_ups_list_id(UpsTypeArr, name);
  fill_baudrate(win, model);
  fill_ups_rec(win, &UpsTypeArr[model]);
  DbEventListCnt = fill_event_strings(name);
  DbFuncListCnt = 0;
  const bool needs_password = std::strncmp(name, "ZELK", 4) == 0 && CustomRec.password[0] == '\0';
  if (needs_password) put_field(&CustomRec, CustomTabArr, kPassword, default_of_setting("PASSWORD"));
}

int follows_shutdown(int field) { return field == kUpsShutdown || field == kUpTimeSupport; }

int is_shutdown_with_sched(int code) { return code == kSchedulerEvent; }

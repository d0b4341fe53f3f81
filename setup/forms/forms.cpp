#include "setup/forms/forms.h"

#include <cstdio>

#include "screen/menu.h"
#include "setup/forms/texts.h"
#include "setup/settings/checks.h"

namespace {

std::string standing_text;  // written by ask_standing_notice

const SettingsMask &settings_mask(const void *context) { return *static_cast<const SettingsMask *>(context); }

void draw_labels(const void *context, WINDOW *win, int32_t attr) {
  for (const Setting &setting : settings_of(settings_mask(context).number)) {
    const auto &[row, col, label] = setting.label;
    if (row > 0) draw_frame_label(win, attr, {row, col, label.text});
  }
}

const char *notice_of(const void *context) {
  return notice_or_standing(settings_notice(settings_mask(context).number));
}
bool check(const void *context, int field) { return value_check(field, settings_mask(context).number) != 0; }
void show_error(const void *context, WINDOW *win, int field) {
  show_value_error(win, field, settings_mask(context).number);
}
void show_help(const void *context, WINDOW *win, int field) { show_hlp_txt(win, settings_mask(context).number, field); }

int count_fields(const FieldDescriptor *table) {
  int count = 0;
  while (table[count].type != kFieldEnd) ++count;
  return count;
}

}  // namespace

std::string (*standing_notice)() = nullptr;

void ask_standing_notice() { standing_text = standing_notice == nullptr ? "" : standing_notice(); }

const char *notice_or_standing(const char *own) {
  return own != nullptr || standing_text.empty() ? own : standing_text.c_str();
}

void run_settings_mask(const SettingsMask &mask, int32_t attr) {
  ask_standing_notice();
  const RecordField first = field_of_mask(mask.number, 0);
  run_mask({.rows = mask.rows,
            .columns = 76,
            .row = mask.row,
            .column = 2,
            .record = first.record,
            .fields = first.table,
            .count = count_fields(first.table),
            .rules = mask.rules,
            .labels = mask.labels,
            .context = &mask,
            .draw_more = draw_labels,
            .prepare = mask.prepare,
            .notice = notice_of,
            .has_list = mask.has_list,
            .pick = mask.pick,
            .check = check,
            .show_error = show_error,
            .show_help = show_help,
            .may_leave = mask.may_leave},
           attr);
}

void draw_settings_frame(const SettingsMask &mask, WINDOW *win, int32_t attr) {
  draw_mask_frame(win, attr, mask.labels);
  draw_labels(&mask, win, attr);
}

int fill_yes_no(WINDOW *win, const RecordField &place, int choice) {
  if (choice != kYes && choice != kNo) return 0;
  put_field(place.record, place.table, place.field, choice == kYes ? "yes" : "no");
  show_field(win, place.record, place.table, place.field, attr_dkl);
  return 1;
}

void show_value_error(WINDOW *win, int field, int mask) {
  char text[256];
  std::snprintf(text, sizeof text, value_error_label[language], static_cast<long>(get_value_check_min(field, mask)),
                static_cast<long>(get_value_check_max(field, mask)));
  draw_hlp_screen(win, text, value_error_title[language], kAttrHelp);
}

void show_hlp_txt(WINDOW *win, int mask, int field) {
  char text[512];
  get_hlp_txt(text, mask, field);
  draw_hlp_screen(win, text, help_title(mask), kAttrHelp);
}

void draw_hlp_screen(WINDOW *win, const char *text, const char *title, int32_t attr) {
  draw_hlp_screen_at(win, 10, text, title, attr);
}

void draw_hlp_screen_at(WINDOW *win, int row, const char *text, const char *title, int32_t attr) {
  DoMenu(win, row, 2, 75, attr, attr, title, at_least_two_lines(text).c_str(), "|", kSingleLine);
}

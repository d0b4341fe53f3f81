#include "setup/section.h"

#include <cstring>

#include "setup/texts.h"

int32_t number_in(const RecordField &place) {
  const void *member = recptr(place.record, place.table, place.field);
  if (member == nullptr || !is_number_field(place.table[place.field].type)) return 0;
  int32_t number = 0;
  std::memcpy(&number, member, sizeof number);
  return number;
}

char *text_in(const RecordField &place, char *buffer) {
  buffer[0] = '\0';
  get_field(place.record, place.table, place.field, buffer);
  return buffer;
}

int fill_yes_no(WINDOW *win, const RecordField &place, int choice) {
  if (choice != 1 && choice != 2) return 0;
  put_field(place.record, place.table, place.field, choice == 1 ? "yes" : "no");
  show_field(win, place.record, place.table, place.field, attr_dkl);
  return 1;
}

void store_value(const LoadRow &row, const char *value, bool stored) {
  if (row.take != nullptr) {
    row.take(value, stored);
  } else {
    put_field(row.place.record, row.place.table, row.place.field, value);
  }
}

void load_section(std::span<const LoadRow> rows) {
  for (const LoadRow &row : rows) {
    char value[1024];  // GetMaxCfgBuf()
    const bool stored = XGetPrivateProfileString(kTmpTopic, row.key, value, sizeof value) != 0;
    store_value(row, stored ? value : row.fallback, stored);
  }
}

void store_defaults(std::span<const LoadRow> rows) {
  for (const LoadRow &row : rows) store_value(row, row.fallback, false);
}

const LoadRow *load_row_in(std::span<const LoadRow> rows, const char *key) {
  for (const LoadRow &row : rows) {
    if (std::strcmp(row.key, key) == 0) return &row;
  }
  return nullptr;
}

const char *default_in(std::span<const LoadRow> rows, const char *key) {
  const LoadRow *row = load_row_in(rows, key);
  return row == nullptr ? nullptr : row->fallback;
}

const char *fault_notice(ProfileFault fault) {
  switch (fault) {
    case ProfileFault::none:
      return nullptr;
    case ProfileFault::bracket:
      return fault_bracket_label[language];
    case ProfileFault::blank:
      return fault_blank_label[language];
    case ProfileFault::empty:
      return fault_empty_label[language];
    default:
      return fault_cut_label[language];
  }
}

const char *section_notice(std::span<const WriteRow> rows, const char *(*fallback)(const char *key)) {
  for (const WriteRow &row : rows) {
    char value[1024];
    if (!row.text(row.field, value) || std::strcmp(value, " ") == 0) continue;  // one blank is our own empty value
    const ProfileFault fault = XSurvives(kTmpTopic, row.key, value);
    const char *instead = fault == ProfileFault::empty ? fallback(row.key) : "?";
    if (instead != nullptr && *instead != '\0' && fault != ProfileFault::none) return fault_notice(fault);
  }
  return nullptr;
}

int write_section(const char *file, std::span<const WriteRow> rows) {
  if (!XOpenProfile(file, 2)) return 0;
  int chain = 1;
  bool written = false;
  for (const WriteRow &row : rows) {
    if (!chain) break;
    char value[1024];
    const bool wanted = (row.rule != WriteRule::follows || written) && row.text(row.field, value);
    written = wanted && XSetPrivateProfileString(kTmpTopic, row.key, value, file);
    const bool may_fail = row.rule == WriteRule::ignored || (row.rule == WriteRule::empty_may_fail && value[0] == '\0');
    if (wanted && !written && !may_fail) chain = 0;
  }
  return XCloseProfile() && chain;
}

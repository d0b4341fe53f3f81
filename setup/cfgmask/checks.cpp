#include "setup/cfgmask/checks.h"

#include <cstdio>
#include <cstdlib>

#include "screen/menu.h"
#include "setup/cfgmask/settings.h"
#include "setup/cfgmask/texts.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr ValueCheck kValueChecks[] = {
    // clang-format off
    //  min        max  mask            field
    {    30,      9999, kMaskUps,       kLoggingRate        },  // s
    {     0,    204800, kMaskUps,       kLogLimit           },  // kB
    {    40,        60, kMaskUps,       kCautionTemperature },  // degrees C
    {    61,        85, kMaskUps,       kWarningTemperature },  // degrees C; the gap keeps caution below warning
    {     1, 100000000, kMaskUps,       kPower              },  // VA
    {     1, 100000000, kMaskUps,       kLoad               },  // VA
    {     1,    100000, kMaskUps,       kHoldMinutes        },
    {     1,    100000, kMaskUps,       kRechargeHours      },
    {     1,       600, kMaskSystem,    kCheckRate          },  // s
    {     0,      1000, kMaskSystem,    kShutdownMinutes    },
    {     0,        99, kMaskSystem,    kUpsShutdownDelay   },  // minutes
    {     0,      1000, kMaskSystem,    kFixedDownTime      },  // minutes
    {     0,        99, kMaskExtraJobs, 1                   },  // minutes
    {     0,        99, kMaskExtraJobs, 4                   },
    {     0,        99, kMaskExtraJobs, 7                   },
    {     0,    204800, kMaskPaths,     kDataLogSize        },  // kB
    {     0,         0, 0,              -1                  },
    // clang-format on
};

constexpr int kNoRow = -1;

int find_value_check(int field, int mask) {
  for (int row = 0; kValueChecks[row].field != -1; row++) {
    if (kValueChecks[row].mask == mask && kValueChecks[row].field == field) return row;
  }
  return kNoRow;
}

// Checks the temperature text in `field` against its row and writes it back with one decimal, whatever it was.
int check_temperature(int field, const char *function) {
  const RecordField place = field_of_mask(kMaskUps, field);
  char text[256];
  const double value = std::strtod(text_in(place, text), nullptr);
  if (debugLevel > kTraceDetails)
    myfprintf("%s: dval=%f lval=%ld\n", function, value, static_cast<long>(to_int32(value)));
  std::snprintf(text, sizeof text, "%2.1f", value);
  put_field(place.record, place.table, place.field, text);
  return get_value_check_min(field, kMaskUps) <= value && value <= get_value_check_max(field, kMaskUps);
}

void trace_checked_value(int field, int mask, int row, int32_t value) {
  if (debugLevel <= kTraceDetails) return;
  const ValueCheck &bounds = kValueChecks[row];
  const long number = value;
  if (mask == kMaskUps && field == kLogLimit) myfprintf("value_check: log_max=%ld\n", number);
  if (mask == kMaskSystem && field == kShutdownMinutes) {
    // kept: diagnosis scripts parse this line, whose second number is an int
    myfprintf("value_check down_time(%d): %ld <= %ld %d <= %ld\n", row, static_cast<long>(bounds.min), number, value,
              static_cast<long>(bounds.max));
  }
}

int number_of(const void *mask) { return *static_cast<const int *>(mask); }

}  // namespace

const std::span<const ValueCheck> ValueCheckArr = kValueChecks;

int32_t get_value_check_min(int field, int mask) {
  const int row = find_value_check(field, mask);
  return row == kNoRow ? 0 : kValueChecks[row].min;
}

int32_t get_value_check_max(int field, int mask) {
  const int row = find_value_check(field, mask);
  return row == kNoRow ? 0 : kValueChecks[row].max;
}

int is_in_range(int field, int mask, int32_t number) {
  const int row = find_value_check(field, mask);
  return row == kNoRow || (kValueChecks[row].min <= number && number <= kValueChecks[row].max);
}

int value_check(int field, int mask) {
  const int row = find_value_check(field, mask);
  if (row == kNoRow) return 1;
  if (mask == kMaskUps && field == kCautionTemperature) return value_check_tempcaution();
  if (mask == kMaskUps && field == kWarningTemperature) return value_check_tempwarning();
  const int32_t value = number_in(field_of_mask(mask, field));
  trace_checked_value(field, mask, row, value);
  return is_in_range(field, mask, value);
}

int value_check_tempcaution() { return check_temperature(kCautionTemperature, "value_check_tempcaution"); }

int value_check_tempwarning() { return check_temperature(kWarningTemperature, "value_check_tempwarning"); }

void show_value_error(WINDOW *win, int field, int mask) {
  char text[256];
  std::snprintf(text, sizeof text, value_error_label[language], static_cast<long>(get_value_check_min(field, mask)),
                static_cast<long>(get_value_check_max(field, mask)));
  draw_hlp_screen(win, text, value_error_title[language], kAttrHelp);
}

void get_hlp_txt(char *text, int mask, int field) {
  const HelpText *help = HlpTxtArr.data();
  while (help->mask != -1 && (help->mask != mask || help->field != field)) help++;
  cpynstr(text, help->text[language], 512);
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
  DoMenu(win, row, 2, 75, attr, attr, title, at_least_two_lines(text).c_str(), "|", 1);
}

bool check_mask_field(const void *mask, int field) { return value_check(field, number_of(mask)) != 0; }
void show_mask_error(const void *mask, WINDOW *win, int field) { show_value_error(win, field, number_of(mask)); }
void show_mask_help(const void *mask, WINDOW *win, int field) { show_hlp_txt(win, number_of(mask), field); }

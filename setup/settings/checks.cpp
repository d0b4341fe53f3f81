#include "setup/settings/checks.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "setup/settings/settings.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr size_t count_ranges(const auto &...sections) {
  return (static_cast<size_t>(std::count_if(sections.begin(), sections.end(), has_range)) + ...);
}
constexpr size_t kRangeCount = count_ranges(kUpsSettings, kSystemSettings, kExtraJobSettings, kPathSettings);

constexpr std::array<ValueCheck, kRangeCount + 1> ranges_of(const auto &...sections) {
  std::array<ValueCheck, kRangeCount + 1> rows = {};
  size_t count = 0;
  const auto add = [&](const Setting &setting) {
    if (has_range(setting)) rows[count++] = {setting.min, setting.max, setting.mask, setting.field};
  };
  (std::for_each(sections.begin(), sections.end(), add), ...);
  rows[count] = {0, 0, 0, kNoField};
  return rows;
}
constexpr auto kValueChecks = ranges_of(kUpsSettings, kSystemSettings, kExtraJobSettings, kPathSettings);

constexpr size_t count_helps(const auto &...sections) {
  const auto has_help = [](const Setting &setting) { return setting.help.is_there; };
  return (static_cast<size_t>(std::count_if(sections.begin(), sections.end(), has_help)) + ...);
}
constexpr size_t kHelpCount =
    count_helps(kUpsSettings, kSystemSettings, kExtraJobSettings, kPathSettings, kMailSettings);
// kept: the rows of two masks stand in an order of their own, which no lookup depends on
constexpr int kPathHelpOrder[] = {kLogFile, kDataLogFile, kDataLogSize, kDataLogging};
constexpr int kMailHelpOrder[] = {kMailSubject, kMailEnableFlag, kMailFromAddr, kSmtpHost,
                                  kSmtpUser,    kSmtpPassword,   kUseMailSign,  kMailSignFile};

constexpr std::array<HelpText, kHelpCount + 1> make_help_texts() {
  std::array<HelpText, kHelpCount + 1> rows = {};
  size_t count = 0;
  const auto add = [&](const auto &settings, int field) {
    for (const Setting &setting : settings) {
      if (setting.field == field && setting.help.is_there) rows[count++] = {setting.mask, field, setting.help.text};
    }
  };
  for (int field = 0; field < kStdFieldCount; ++field) add(kUpsSettings, field);
  for (int field = 0; field < kCustomFieldCount; ++field) add(kSystemSettings, field);
  for (int field = 0; field < kSpecialFieldCount; ++field) add(kExtraJobSettings, field);
  for (const int field : kPathHelpOrder) add(kPathSettings, field);
  for (const int field : kMailHelpOrder) add(kMailSettings, field);
  rows[count] = {-1, -1, help_missing};
  return rows;
}
constexpr auto kHelpTexts = make_help_texts();
static_assert(kHelpTexts.back().mask == -1);

constexpr int kNoRow = -1;

int find_value_check(int field, int mask) {
  for (int row = 0; ValueCheckArr[static_cast<size_t>(row)].field != kNoField; ++row) {
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

}  // namespace

const std::span<const ValueCheck> ValueCheckArr = kValueChecks;
const std::span<const HelpText> HlpTxtArr = kHelpTexts;

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

void get_hlp_txt(char *text, int mask, int field) {
  const HelpText *help = HlpTxtArr.data();
  while (help->mask != -1 && (help->mask != mask || help->field != field)) ++help;
  cpynstr(text, help->text[language], 512);
}

const char *help_title(int mask) {
  switch (mask) {
    case kMaskUps:
      return std_help_title[language];
    case kMaskSystem:
      return custom_help_title[language];
    case kMaskExtraJobs:
      return job_help_title[language];
    case kMaskPaths:
      return path_help_title[language];
    case kMaskMail:
      return mail_help_title[language];
    default:
      return other_help_title[language];
  }
}

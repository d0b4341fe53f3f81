#include "util/times.h"

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "util/text.h"

namespace {

constexpr time_t kNoTime = -1;
constexpr clock_t kTicksOfATenth = 100000;

// A date and a clock as they are written: the year with its century, months from 1.
struct Moment {
  int day, month, year, hour, minute, second;
};

// What UCTSetTimeZone found in TZ. Written by it and UCTResetTimeZone.
enum class OldZone { kNotSaved, kWasNotSet, kSaved };
OldZone old_tz_state = OldZone::kNotSaved;
char old_tz_env[32];

// All zero for a time that has no local form.
Moment local_moment(time_t time) {
  const std::tm *local = std::localtime(&time);
  if (local == nullptr) return {};
  return {local->tm_mday, local->tm_mon + 1, local->tm_year + 1900, local->tm_hour, local->tm_min, local->tm_sec};
}

Moment present_moment() { return local_moment(std::time(nullptr)); }

time_t time_of(const Moment &moment) {
  std::tm local = {};
  local.tm_mday = moment.day;
  local.tm_mon = moment.month - 1;
  local.tm_year = moment.year - 1900;
  local.tm_hour = moment.hour;
  local.tm_min = moment.minute;
  local.tm_sec = moment.second;
  local.tm_isdst = -1;  // the library knows
  return std::mktime(&local);
}

// The widths keep every number far from its limits.
bool read_log_moment(const char *text, Moment &m) {
  return std::sscanf(text, "%2d/%2d/%4d,%2d:%2d:%2d",  // NOLINT(cert-err34-c)
                     &m.day, &m.month, &m.year, &m.hour, &m.minute, &m.second) == 6;
}

// Prints at most size - 1 characters: years beyond 9999 are cut. Returns `out`.
[[gnu::format(printf, 3, 4)]] char *print_bounded(char *out, size_t size, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(out, size, format, arguments);
  va_end(arguments);
  return out;
}

bool lies_in(int value, int least, int most) { return value >= least && value <= most; }

}  // namespace

char *UCTtime_to_str(char *out) {
  const Moment m = present_moment();
  return print_bounded(out, 17, "%02d.%02d.%04d %02d:%02d", m.day, m.month, m.year, m.hour, m.minute);
}

char *UCTtime_to_date(char *out) {
  const Moment m = present_moment();
  return print_bounded(out, 11, "%02d.%02d.%04d", m.day, m.month, m.year);
}

char *UCTtime_to_hour(char *out) {
  const Moment m = present_moment();
  return print_bounded(out, 6, "%02d:%02d", m.hour, m.minute);
}

char *UCTtime_to_hoursec(char *out) {
  const Moment m = present_moment();
  return print_bounded(out, 9, "%02d:%02d:%02d", m.hour, m.minute, m.second);
}

int timem(char *buf) {
  UCTtime_to_hoursec(buf);
  return 1;
}

int datem(char *buf) {
  const time_t now = std::time(nullptr);
  if (ctime_r(&now, buf) == nullptr) buf[0] = '\0';
  return 1;
}

time_t UCTstr_to_time(const char *text) {
  Moment m = {};
  const int numbers = std::sscanf(text, "%2d.%2d.%4d %2d:%2d",  // NOLINT(cert-err34-c): as above
                                  &m.day, &m.month, &m.year, &m.hour, &m.minute);
  return numbers == 5 ? time_of(m) : kNoTime;
}

char *UCTlogtime_to_str(char *out, time_t time) {
  const Moment m = local_moment(time);
  return print_bounded(out, 32, "%02d/%02d/%04d,%02d:%02d:%02d", m.day, m.month, m.year, m.hour, m.minute, m.second);
}

time_t UCTstr_to_logtime(const char *text) {
  Moment m = {};
  return read_log_moment(text, m) ? time_of(m) : kNoTime;
}

int UCTvalidate_logtime(const char *text) {
  Moment m = {};
  return read_log_moment(text, m) && lies_in(m.month, 1, 12) && lies_in(m.day, 1, mdays[m.month - 1]) &&
         lies_in(m.hour, 0, 23) && lies_in(m.minute, 0, 59) && lies_in(m.second, 0, 59);
}

int XBuildDateTimeStr(time_t time, char *date, char *clock, int flags) {
  constexpr size_t kRoom = 32;
  const Moment m = local_moment(time);
  if (m.day == 0) return 0;
  if (date != nullptr && (flags & 1) != 0) {
    print_bounded(date, kRoom, "%02d.%02d.%02d", m.day, m.month, std::abs(m.year % 100));
  } else if (date != nullptr) {
    print_bounded(date, kRoom, "%02d.%02d.%d", m.day, m.month, m.year);
  }
  if (clock != nullptr && (flags & 2) != 0) {
    print_bounded(clock, kRoom, "%02d:%02d:%02d", m.hour, m.minute, m.second);
  } else if (clock != nullptr) {
    print_bounded(clock, kRoom, "%02d:%02d", m.hour, m.minute);
  }
  return 1;
}

int UCTSetTimeZone(const char *zone) {
  if (zone == nullptr) return 0;
  const char *present = std::getenv("TZ");
  old_tz_state = present == nullptr ? OldZone::kWasNotSet : OldZone::kSaved;
  cpynstr(old_tz_env, present == nullptr ? "" : present);

  char taken[64];
  cpynstr(taken, zone);
  if (setenv("TZ", taken, 1) != 0) return 0;
  tzset();
  return 1;
}

void UCTResetTimeZone() {
  if (old_tz_state == OldZone::kNotSaved) return;
  if (old_tz_state == OldZone::kSaved) {
    setenv("TZ", old_tz_env, 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
  old_tz_state = OldZone::kNotSaved;
}

void UCTSleep(int ms) {
  for (int left = ms / 1000; left > 0; --left) usleep(999999);
  if (ms > 0) usleep(static_cast<useconds_t>(ms % 1000) * 1000);
}

int Xsleep(int seconds) {
  sleep(static_cast<unsigned>(std::max(seconds, 0)));
  return 1;
}

void sleep10Sec(int n) {
  const clock_t begin = std::clock();
  if (begin == clock_t{-1}) return;  // there is no processor clock that could advance
  while (std::clock() - begin < n * kTicksOfATenth) continue;
}

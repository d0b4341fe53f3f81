// Dates and times as text (local time), the time zone, and waiting.
#pragma once

#include <ctime>

// The present time: "dd.mm.yyyy hh:mm" (17 bytes), "dd.mm.yyyy" (11), "hh:mm" (6), "hh:mm:ss" (9). Return `out`.
char *UCTtime_to_str(char *out);
char *UCTtime_to_date(char *out);
char *UCTtime_to_hour(char *out);
char *UCTtime_to_hoursec(char *out);
// The same: "hh:mm:ss"; and the whole ctime text with its line end (26 bytes; empty beyond the year 9999). Return 1.
int timem(char *buf);
int datem(char *buf);
// "dd.mm.yyyy hh:mm" as a time; (time_t)-1 for a text that no time can be read from. Numbers out of range carry over.
time_t UCTstr_to_time(const char *text);

// "dd/mm/yyyy,hh:mm:ss" of `time` into `out` (20 bytes for years up to 9999; 32 are always enough). Returns `out`.
char *UCTlogtime_to_str(char *out, time_t time);
time_t UCTstr_to_logtime(const char *text);
// 1 when all six numbers of that form are there and in range.
int UCTvalidate_logtime(const char *text);
// The days of each month as that check takes them: 29 in every February, 30 in August and 31 in September. Kept:
// monitors in the field check their log times by the same table.
inline constexpr int mdays[12] = {31, 29, 31, 30, 31, 30, 31, 30, 31, 31, 30, 31};

// Date "dd.mm.yyyy", or "dd.mm.yy" with flag 1, into `date`; clock "hh:mm", or "hh:mm:ss" with flag 2, into `clock`
// (32 bytes are always enough for either); each may be null. Flags are added. Returns 1, or 0 for a time that has no
// local form.
int XBuildDateTimeStr(time_t time, char *date, char *clock, int flags);

// Sets TZ to `zone` (up to 63 characters) and remembers the present value (up to 31 characters, or that there was
// none). 1; 0 for null or when the environment can't be changed. UCTResetTimeZone brings the remembered value back,
// once.
int UCTSetTimeZone(const char *zone);
void UCTResetTimeZone();

// Sleeps `ms` milliseconds (999999 microseconds for each whole second); `seconds` seconds (returns 1); or waits, busy,
// for n tenths of a second of processor time. A signal ends a sleep early.
void UCTSleep(int ms);
int Xsleep(int seconds);
void sleep10Sec(int n);

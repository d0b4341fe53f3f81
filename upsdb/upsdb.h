// The UPS type database: a coded profile, read only, that describes every supported model.
// One database is open at a time. It shares the profile store's single profile with the configuration file, so whoever
// opens it closes it before the configuration is opened. All calls return 1, or 0 on failure; nothing is printed.
#pragma once

#include <cstdint>

// One line of the section UPS. The members lie in the order that programs linked with this reader expect.
struct UpsData {
  int32_t reserved_word;  // always 0
  int32_t baud_rate;      // field 1
  char parity;            // field 2
  int16_t data_bits;      // field 3
  int16_t stop_bits;      // field 4
  char name[32];          // field 0, terminated
  int16_t code;           // field 5, hexadecimal, the low half: the model's kind
  int16_t number;         // field 6: its cable
  double power;           // field 7, VA
  double load;            // field 7 again: kept, a model's nominal load is its power
  double hold_minutes;    // field 8
  double recharge_hours;  // field 9
  int64_t reserved[8];    // always 0
  double further[4];      // fields 10 to 13, carried unchanged
};

struct UpsVersion {
  int32_t number[4];  // major first
};

struct UpsVersionInfo {
  int32_t oem;
  UpsVersion version;
};

// Opens the database `file`. 0 when one is open already (it stays open) or the file can't be read.
[[nodiscard]] int UpsOpenDb(const char *file);
// Closes the database, if one is open, and gives back what the reader has kept of it.
void UpsCloseDb();
int UpsIsOpenDb();
// The version of this interface: 12.
int UpsDbGetVersion();

// The number of models, also of those whose record can't be read; 0 when closed, at most 32767.
int16_t UpsGetCountDb();
// Model n, from 0, in the order of the file. The record is cleared first. 0 when closed or there is no line n; 0 also
// when the line lacks fields (below 14 nothing is filled, else every field that is there).
int UpsGetAtDb(UpsData &record, int16_t n);
// The model `name`, whatever the case of its letters; results as UpsGetAtDb, 0 also for an unknown name.
int UpsFindDb(UpsData &record, const char *name);

// The database's version, and its date, as text. CAUTION: copied like strncpy - the rest of the `length` bytes is
// cleared, but a text of `length` characters or more leaves NO terminator. 0 (buffer untouched) when closed or missing.
int UpsVersionNrDb(char *buffer, int length);
int UpsFileDateDb(char *buffer, int length);
// The OEM number and the version; what the database lacks stays 0. 0 for null or when closed.
int UpsVersionInfoDb(UpsVersionInfo *info);
// The OEM number; 0 in the database is reported as 1. 0 (number untouched) when closed or missing.
int UpsOEMIdDb(int16_t &number);

// "1.2.3.4" into `buffer` (`size` bytes, cut when it does not fit). 0 for no buffer, and for no version (buffer "").
int UpsBuildVersionInfoStr(char *buffer, int size, const UpsVersion *version);
// Reads "1.2.3.4"; numbers that are not there are 0. 0 for null (`version` is cleared all the same).
int UpsParseVersionInfoStr(UpsVersion *version, const char *text);
// 1 when the major numbers are equal or the needed one is below 1; 0 for null.
int UpsIsCompatibleVersionInfo(const UpsVersion *have, const UpsVersion *need);

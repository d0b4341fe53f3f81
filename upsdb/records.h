// Lines of the open database, and what the reader keeps of them: shared by the files of this folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "corbix/xconfig.h"
#include "upsdb/fields.h"
#include "upsdb/upsdb.h"

inline constexpr char kAboutSection[] = "CUSTOM";
inline constexpr char kVersionKey[] = "Version";
inline constexpr char kFileDateKey[] = "FileDate";
inline constexpr char kVendorSection[] = "VENDOR";
inline constexpr char kOemKey[] = "OEMID";
inline constexpr char kModelSection[] = "UPS";

extern const RecordForm kModelForm;

// Fills a model record from a line of UPS; results as UpsGetAtDb. The record is not cleared first.
int fillUpsDataFromUCString(UpsData &record, const char *line);

// Line n, from 0, of a section into `buffer` (kValueBufferSize bytes). 0, buffer untouched, when closed or not there.
int getEntryFromDb(char *buffer, const char *section, int n);
// The number of a section's lines, at most 32767; 0 when closed or there is no such section.
int16_t countDBEntries(const char *section);
// The number of the model `name` in UPS; -1 when it is unknown. The last model found is remembered, also when
// another database is opened: kept, callers look up one model over and over and never change the database in between.
int16_t findEntryInDb(const char *name);

// Copies of the lines of VARIABLEN (none before their first use), and their number (0 before the first count). Written
// by upsdb/families while the database is open, given back by UpsCloseDb.
extern std::vector<std::string> tmpVarTab;
extern int16_t VarCount;

// Closes the database and forgets the last model found. For tests.
void reset_upsdb();

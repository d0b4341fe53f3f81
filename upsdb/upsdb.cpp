#include "upsdb/upsdb.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "upsdb/position.h"
#include "upsdb/records.h"
#include "util/numbers.h"
#include "util/text.h"

std::vector<std::string> tmpVarTab;
int16_t VarCount = 0;

namespace {

constexpr int kInterfaceVersion = 12;
constexpr int kMostLines = std::numeric_limits<int16_t>::max();
constexpr size_t kNumberDigits = 5;  // of a generated key

struct FoundModel {
  char name[kFieldBufferSize];
  int16_t number;
};

int isDBOpen = 0;
FoundModel UpsCache = {"", -1};

// The lines of a section by their numbers, where they lie in the profile; without data where there is none.
using Lines = std::vector<std::string_view>;
// Of the sections that were asked for: readers go from line to line, and each is looked for from the first one on.
std::map<std::string, Lines, std::less<>> sections;

constexpr size_t further_at(size_t i) { return offsetof(UpsData, further) + i * sizeof(double); }

constexpr FieldRow kModelFields[] = {
    // clang-format off
  // position  conversion         place in the record                meaning
  {  0, Conversion::text,         offsetof(UpsData, name),           sizeof(UpsData::name),      "name" },
  {  1, Conversion::number,       offsetof(UpsData, baud_rate),      sizeof(UpsData::baud_rate), "baud rate" },
  {  2, Conversion::character,    offsetof(UpsData, parity),         sizeof(UpsData::parity),    "parity" },
  {  3, Conversion::short_number, offsetof(UpsData, data_bits),      sizeof(UpsData::data_bits), "data bits" },
  {  4, Conversion::short_number, offsetof(UpsData, stop_bits),      sizeof(UpsData::stop_bits), "stop bits" },
  {  5, Conversion::hex_number,   offsetof(UpsData, code),           sizeof(UpsData::code),      "code" },
  {  6, Conversion::short_number, offsetof(UpsData, number),         sizeof(UpsData::number),    "cable" },
  {  7, Conversion::real,         offsetof(UpsData, power),          sizeof(UpsData::power),     "power" },
  {  7, Conversion::real,         offsetof(UpsData, load),           sizeof(UpsData::load),      "power" },
  {  8, Conversion::real,         offsetof(UpsData, hold_minutes),   sizeof(double),             "hold minutes" },
  {  9, Conversion::real,         offsetof(UpsData, recharge_hours), sizeof(double),             "recharge hours" },
  { 10, Conversion::real,         further_at(0),                     sizeof(double),             "first factor" },
  { 11, Conversion::real,         further_at(1),                     sizeof(double),             "second factor" },
  { 12, Conversion::real,         further_at(2),                     sizeof(double),             "third factor" },
  { 13, Conversion::real,         further_at(3),                     sizeof(double),             "fourth factor" },
};  // clang-format on

// The value of `key` in `section` into `buffer` (kValueBufferSize bytes); 0 when closed or missing.
int get_value_of_key(const char *section, const char *key, char *buffer) {
  return isDBOpen ? XGetPrivateProfileString(section, key, buffer, kValueBufferSize) : 0;
}

// A value as strncpy copies it.
int copy_value(const char *section, const char *key, char *buffer, int length) {
  char value[kValueBufferSize];
  if (length < 0 || !get_value_of_key(section, key, value)) return 0;
  std::strncpy(buffer, value, static_cast<size_t>(length));
  return 1;
}

// The number in a generated key; kMostLines for any other key.
int number_of(std::string_view key) {
  unsigned number = 0;
  const char *end = key.data() + key.size();
  const bool is_number = is_tmp_key(key) && key.size() == std::string_view(kTmpKey).size() + kNumberDigits &&
                         std::from_chars(end - kNumberDigits, end, number).ptr == end;
  return is_number ? static_cast<int>(number) : kMostLines;
}

const Lines &lines_of_section(const char *section) {
  static const Lines kNone;
  if (!isDBOpen || section == nullptr) return kNone;
  const auto known = sections.find(section);
  if (known != sections.end()) return known->second;
  Lines lines;
  ProfileEntry entry;
  while (XNextEntry(section, entry)) {
    const int n = number_of(entry.key);
    if (n >= kMostLines) continue;
    const auto index = static_cast<size_t>(n);
    if (index >= lines.size()) lines.resize(index + 1);
    if (lines[index].data() == nullptr) lines[index] = entry.text;
  }
  return sections.emplace(section, std::move(lines)).first->second;
}

void forget_lines() {
  sections.clear();
  tmpVarTab.clear();
  VarCount = 0;
}

}  // namespace

const RecordForm kModelForm = {"model", 14, 26, kModelFields};

int fillUpsDataFromUCString(UpsData &record, const char *line) {
  record.reserved_word = 0;
  return fill_fields(kModelForm, line, &record);
}

int getEntryFromDb(char *buffer, const char *section, int n) {
  const Lines &lines = lines_of_section(section);
  const auto index = static_cast<size_t>(n);  // beyond all when negative
  if (index >= lines.size() || lines[index].data() == nullptr) return 0;
  get_value(lines[index], buffer, kReadCoded);
  return 1;
}

int16_t countDBEntries(const char *section) {
  const Lines &lines = lines_of_section(section);
  const auto is_missing = [](std::string_view line) { return line.data() == nullptr; };
  return static_cast<int16_t>(std::ranges::find_if(lines, is_missing) - lines.begin());
}

int16_t findEntryInDb(const char *name) {
  if (stricmp(name, UpsCache.name) == 0) return UpsCache.number;
  char line[kValueBufferSize];
  for (int n = 0; n < kMostLines && getEntryFromDb(line, kModelSection, n); ++n) {
    char found[kFieldBufferSize];
    if (!get_text_field(0, line, found) || stricmp(found, name) != 0) continue;
    cpynstr(UpsCache.name, name);
    UpsCache.number = static_cast<int16_t>(n);
    return UpsCache.number;
  }
  return -1;
}

int UpsOpenDb(const char *file) {
  if (isDBOpen || !XOpenProfile(file, kReadCoded)) return 0;
  isDBOpen = 1;
  forget_lines();
  return 1;
}

void UpsCloseDb() {
  if (!isDBOpen) return;
  XCloseProfile();
  isDBOpen = 0;
  forget_lines();
}

int UpsIsOpenDb() { return isDBOpen; }

int UpsDbGetVersion() { return kInterfaceVersion; }

int16_t UpsGetCountDb() { return countDBEntries(kModelSection); }

int UpsGetAtDb(UpsData &record, int16_t n) {
  record = {};
  char line[kValueBufferSize];
  return getEntryFromDb(line, kModelSection, n) ? fillUpsDataFromUCString(record, line) : 0;
}

int UpsFindDb(UpsData &record, const char *name) {
  record = {};
  const int16_t number = isDBOpen ? findEntryInDb(name) : int16_t{-1};
  return number >= 0 ? UpsGetAtDb(record, number) : 0;
}

int UpsVersionNrDb(char *buffer, int length) { return copy_value(kAboutSection, kVersionKey, buffer, length); }

int UpsFileDateDb(char *buffer, int length) { return copy_value(kAboutSection, kFileDateKey, buffer, length); }

int UpsVersionInfoDb(UpsVersionInfo *info) {
  if (info == nullptr) return 0;
  *info = {};
  if (!isDBOpen) return 0;
  char value[kValueBufferSize];
  if (get_value_of_key(kAboutSection, kVersionKey, value)) UpsParseVersionInfoStr(&info->version, value);
  if (get_value_of_key(kVendorSection, kOemKey, value)) info->oem = to_int32(value);
  return 1;
}

int UpsOEMIdDb(int16_t &number) {
  char value[kValueBufferSize];
  if (!get_value_of_key(kVendorSection, kOemKey, value)) return 0;
  const auto oem = static_cast<int16_t>(to_int32(value));
  number = oem == 0 ? int16_t{1} : oem;
  return 1;
}

int UpsBuildVersionInfoStr(char *buffer, int size, const UpsVersion *version) {
  if (buffer == nullptr || size <= 0) return 0;
  buffer[0] = '\0';
  if (version == nullptr) return 0;
  const auto &number = version->number;
  std::snprintf(buffer, static_cast<size_t>(size), "%d.%d.%d.%d", number[0], number[1], number[2], number[3]);
  return 1;
}

int UpsParseVersionInfoStr(UpsVersion *version, const char *text) {
  if (version == nullptr) return 0;
  *version = {};
  if (text == nullptr) return 0;
  for (int32_t &number : version->number) {
    char *end = nullptr;
    std::strtol(text, &end, 10);
    if (end == text) break;
    number = to_int32(text);
    if (*end != '.') break;
    text = end + 1;
  }
  return 1;
}

int UpsIsCompatibleVersionInfo(const UpsVersion *have, const UpsVersion *need) {
  if (have == nullptr || need == nullptr) return 0;
  return need->number[0] < 1 || have->number[0] == need->number[0];
}

void reset_upsdb() {
  UpsCloseDb();
  UpsCache = {"", -1};
}

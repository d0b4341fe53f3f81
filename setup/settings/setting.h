// A setting: one row says all that is known of it. Masks, loading, saving, ranges, help and kavcfg are views of the
// rows.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "record/fields.h"
#include "util/language.h"

// Mask numbers: keys of the range and help tables.
inline constexpr int kMaskUps = 1;
inline constexpr int kMaskSystem = 2;
inline constexpr int kMaskExtraJobs = 3;
inline constexpr int kMaskPaths = 4;
inline constexpr int kMaskMail = 6;

enum class Kind {
  text,
  number,
  decimal,   // a number with one decimal, kept as text
  yes_no,    // one of the two words
  flag,      // yes or no on the mask, 1 or 0 in the file
  secret,    // a password: scrambled in the file, never shown outside its mask
  model,     // a name of the model table
  cable,     // a name of the cable table on the mask, its code in the file
  path,      // of a new configuration: in the working directory, when that is short enough
  constant,  // always written the same
  follower,  // written along with the setting of the same field, never read
  job_list,  // of one event
};

// Of a number. The file holds the same, but seconds where the mask has minutes_in_seconds.
enum class Unit { none, seconds, minutes, minutes_in_seconds, hours, kilobytes, volt_amperes, celsius };
// What the file holds for one of the mask's units.
constexpr int32_t units_in_file(Unit unit) { return unit == Unit::minutes_in_seconds ? 60 : 1; }

// What the write of a key means for those after it.
enum class WriteRule {
  link,            // written while all went well; its failure ends the chain
  ignored,         // its result does not count
  follows,         // written only when the row before it was written
  empty_may_fail,  // as link, but an empty value that could not be deleted is no failure
};

inline constexpr int kNoField = -1;

// A label's or help's text, or none. A flag says so: the compiler of the sanitizers' build can't tell whether an
// address is null.
struct RowText {
  const char *const *text = nullptr;
  bool is_there = false;
  constexpr RowText(std::nullptr_t = nullptr) {}
  constexpr RowText(Label &label) : text(label), is_there(true) {}
};

// A label at (row, col) of its mask; row 0: not drawn.
struct FieldLabel {
  uint8_t row = 0;
  uint8_t col = 0;
  RowText text = {};
};

struct Setting;
// How the file holds a setting where that is not the text of its field.
struct InFile {
  // The file's value into the records; `stored` tells it from the default.
  void (*take)(const Setting &setting, const char *value, bool stored) = nullptr;
  // The records' value for the file; false, `value` untouched, to leave the key out.
  bool (*value_of)(const Setting &setting, std::string &value) = nullptr;
  std::string (*scramble)(const std::string &text) = nullptr;  // of a secret: from clear to stored and back
  bool (*is_kept)() = nullptr;                                 // while false, the key is erased
  bool never_empty = false;                                    // the empty text is stored as one blank
  WriteRule rule = WriteRule::link;
};

struct Setting {
  const char *key;
  Kind kind;
  const char *fallback;  // the value when the key is missing, in clear; null: the key is never read
  int read;              // place in the order of reading, from 1; 0: never read
  int field;             // of the mask's record, kNoField: of none; the event of a job list
  int32_t min, max;      // in the mask's unit, both included; equal: no range
  Unit unit;

  FieldDescriptor cells = {};  // where the mask shows the field; no length: it does not, another row has the field
  FieldLabel label = {};
  RowText help = {};

  InFile in_file = {};
  int mask = 0;  // filled in by settings_of_mask
};

// False for keys that are only written, along with others.
constexpr bool can_be_set(const Setting &setting) { return setting.fallback != nullptr; }
constexpr bool has_range(const Setting &setting) { return setting.min != setting.max; }

// The rows of one mask, in the order of their writing.
template <size_t N>
constexpr std::array<Setting, N> settings_of_mask(int mask, const Setting (&rows)[N]) {
  std::array<Setting, N> settings = std::to_array(rows);
  for (Setting &setting : settings) setting.mask = mask;
  return settings;
}

// The field table of a mask whose settings have the fields 0 to `Count` - 1.
template <int Count>
constexpr std::array<FieldDescriptor, Count + 1> fields_of(const auto &settings) {
  std::array<FieldDescriptor, Count + 1> fields = {};
  for (const Setting &setting : settings) {
    if (setting.cells.length > 0) fields[static_cast<size_t>(setting.field)] = setting.cells;
  }
  fields[Count] = {kFieldEnd, 0, 0, 0};
  return fields;
}

// The settings that are read, in the order of their reading; null where the rows' numbers have a gap.
template <size_t Count>
constexpr std::array<const Setting *, Count> in_order_of_reading(const auto &...sections) {
  std::array<const Setting *, Count> order = {};
  const auto place = [&order](const Setting &setting) {
    if (setting.read > 0) order[static_cast<size_t>(setting.read) - 1] = &setting;
  };
  (std::for_each(sections.begin(), sections.end(), place), ...);
  return order;
}
// True, or it does not compile: what is read through null is no constant.
constexpr bool has_no_gap(const auto &order) {
  return std::all_of(order.begin(), order.end(), [](const Setting *setting) { return setting->read > 0; });
}

// Proves that each field has one row that shows it, with a label and a help, and that numbers stand in number fields.
constexpr bool have_one_row_each(const auto &settings, int count) {
  for (int field = 0; field < count; ++field) {
    int rows = 0;
    for (const Setting &setting : settings) rows += setting.cells.length > 0 && setting.field == field;
    if (rows != 1) return false;
  }
  for (const Setting &setting : settings) {
    if (setting.cells.length == 0) continue;
    const bool is_number = setting.kind == Kind::number;
    if (!setting.help.is_there || !setting.label.text.is_there) return false;
    if (is_number != is_number_field(setting.cells.type) || setting.field >= count) return false;
  }
  return true;
}

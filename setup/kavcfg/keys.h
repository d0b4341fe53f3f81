// The keys of the configuration, each with what the masks' tables say of it. A value is the text of its line in the
// file, in the file's own units; the records hold what was loaded or taken last.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "setup/section.h"

struct Setting {
  std::string key;
  const LoadRow *load = nullptr;    // null: a job list, or a key that follows from others and is never read
  const WriteRow *write = nullptr;  // null: a job list
  int mask = 0;                     // that of write->field
  int event = -1;                   // of a job list
};

// Fills the field tables. Before anything else here.
void init_settings();
// All keys in the order in which a new file has them, the extra jobs behind the paths. The same for the whole run.
std::span<const Setting> all_settings();
// The setting of a key, whatever the case of its letters; null when there is none.
const Setting *setting_of_key(std::string_view key);

bool is_job_list(const Setting &setting);
bool is_follower(const Setting &setting);  // written with other keys, can't be set
bool is_secret(const Setting &setting);    // a password: never shown, its value is scrambled
bool is_model(const Setting &setting);
bool is_yes_no(const Setting &setting);
// The field that shows the setting; {} when none does.
RecordField field_of(const Setting &setting);
// The smallest and the largest value of a setting with a range. False when it has none.
bool range_of(const Setting &setting, std::string &smallest, std::string &largest);

// The records' value. 1, or 0 (`value` untouched) for a number out of its range.
[[nodiscard]] int value_in_records(const Setting &setting, std::string &value);
// Takes a value into the records, as loading does; not for followers. A job list that memory does not suffice for stays
// as it was.
void take_value(const Setting &setting, const std::string &value);
// Equal as numbers, for a setting that is one, or as texts; the blank that stands for an empty text is one.
bool is_same_value(const Setting &setting, std::string_view a, std::string_view b);

// The values of all settings in their order. A missing key has its default, a missing job list and follower "".
// values_of_file: 1, or 0 (`values` untouched) when the file can't be read. default_values: of a new configuration, but
// for the paths. Both leave a password's default in the records.
[[nodiscard]] int values_of_file(const char *file, std::vector<std::string> &values);
std::vector<std::string> default_values();

// All settings but the job lists: their records, and how they are loaded, stored and written, for all of them alike.
#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corbix/xconfig.h"
#include "setup/settings/extra_jobs.h"
#include "setup/settings/mail.h"
#include "setup/settings/paths.h"
#include "setup/settings/system.h"
#include "setup/settings/ups.h"

// A field of a settings record.
struct RecordField {
  void *record = nullptr;
  const FieldDescriptor *table = nullptr;
  int field = kNoField;
};
// The number in a number field, 0 for another one.
int32_t number_in(const RecordField &place);
// The text of a field, terminated; `buffer` holds 256 bytes. Returns `buffer`.
char *text_in(const RecordField &place, char *buffer);

// The field tables of the masks but the mail mask.
void init_tab();
// A field of a mask's record; {} for a mask that has none.
RecordField field_of_mask(int mask, int field);
// The field that holds a setting, {} when none does; and its text, as the mask shows it.
RecordField field_of(const Setting &setting);
std::string text_of_field(const Setting &setting);

// The rows of a mask in the order of their writing; none for another number.
std::span<const Setting> settings_of(int mask);
// The value of a missing key, as the file would hold it; "" when it has none.
std::string default_of(const Setting &setting);

// --- the records and the file

// The file's value of a setting, or with `stored` false its default in clear, into the records. Not for constants and
// followers.
void take_value(const Setting &setting, const char *value, bool stored);
// What a save writes of the records; false, `value` untouched, for a number out of its range, which is left out.
[[nodiscard]] bool value_of(const Setting &setting, std::string &value);

// Equal as numbers, for a setting that is one, or as texts; the blank that stands for an empty text is one.
bool is_same_value(const Setting &setting, std::string_view a, std::string_view b);

// From the file's texts as noted below, in the order given; a missing key takes its default.
void load_settings(std::span<const Setting *const> settings);
// The default alone. A path's is in `directory`, or in the product's own one when that is empty or too long.
void store_default(const Setting &setting, const char *directory);
// All settings that are read, in that order, but the mail settings, which have procedures of their own.
std::span<const Setting *const> core_settings();

// The text of a key of the open profile; none when it has no such key.
std::optional<std::string> text_in_profile(const Setting &setting);
// Notes what the open profile holds, or that nothing was loaded yet.
void note_file();
void forget_file();
// Of what was noted: the text of a key, null when the file had no such key; and all lines, for the check.
struct NotedLine {
  ProfileText place;  // without its text
  std::string text;
};
const std::string *text_in_file(const Setting &setting);
const std::vector<NotedLine> &lines_in_file();

// Settings that the sections leave to the file, until the next call: their rows count as written.
void leave_to_file(std::vector<const Setting *> settings);
bool is_left_to_file(const Setting &setting);
// The key that ended the last section that gave 0, told by its writer; null for none.
const char *refused_key();
void set_refused_key(const char *key);

// The sections of single masks, their rows in order, into the open profile. 1; or 0 when a key that counts was refused:
// the keys after it are skipped. A number outside its range is left out: the file keeps its earlier value, and that is
// no failure.
int write_std();
int write_custom();
int write_path();
int write_mail();
int write_special();

// The writers of single masks: each a read-modify-write of `file` in which only the named keys change. 1; or 0 when the
// section gives 0, when the file can't be opened, or when it could not be replaced (it is then as it was).
int save_std_cfg(const char *file);
int save_custom_cfg(const char *file);
int save_path_cfg(const char *file);
int save_special_cfg(const char *file);  // the extra jobs; no session calls it

// --- what the file can't give back

// The fault for which a load would not give the records' value back; an empty value comes back as its default.
ProfileFault loss_of(const Setting &setting);
// The text for one fault; null for none.
const char *fault_notice(ProfileFault fault);
// The first loss of a mask's settings as a text for the person; null when all of them survive.
const char *settings_notice(int mask);

// Sections of the configuration file: tables of keys, loaded and written by one procedure each.
#pragma once

#include <cstdint>
#include <span>

#include "corbix/xconfig.h"
#include "screen/maskelib.h"

// A field of a settings record.
struct RecordField {
  void *record = nullptr;
  const FieldDescriptor *table = nullptr;
  int field = -1;
};
// The number in a number field, 0 for another one.
int32_t number_in(const RecordField &place);
// The text of a field, terminated; `buffer` holds 256 bytes. Returns `buffer`.
char *text_in(const RecordField &place, char *buffer);

// The answer of a yes/no list into a field: choice 1 puts "yes", choice 2 "no" and shows the field, 1; any other choice
// changes nothing, 0.
int fill_yes_no(WINDOW *win, const RecordField &place, int choice);

// One key to load: its default, and the field that takes its value, or the procedure where the file holds it otherwise
// than the record (`stored` tells a value of the file from the default).
struct LoadRow {
  const char *key;
  const char *fallback;
  RecordField place;
  void (*take)(const char *value, bool stored) = nullptr;
};
// Puts a value into a row's place.
void store_value(const LoadRow &row, const char *value, bool stored);
// From the open profile, a missing key from its default.
void load_section(std::span<const LoadRow> rows);
// The defaults alone.
void store_defaults(std::span<const LoadRow> rows);

// What the write of a key means for those behind it.
enum class WriteRule {
  link,            // written while all went well; its failure ends the chain
  ignored,         // its result does not count
  follows,         // written only when the row before it was written
  empty_may_fail,  // as link, but an empty value that could not be deleted is no failure
};
// One key to write: `text` puts the value of `field` into `value` (1024 bytes) and returns 1, or 0 to leave the key
// out.
struct WriteRow {
  const char *key;
  int (*text)(int field, char *value);
  int field = -1;
  WriteRule rule = WriteRule::link;
};
// What the file can't give back of the rows' values, as a text for the person; null when all of them survive. An empty
// value comes back as its key's default, which `fallback` tells.
const char *section_notice(std::span<const WriteRow> rows, const char *(*fallback)(const char *key));
// The text for one fault; null for none.
const char *fault_notice(ProfileFault fault);
// The row of a key, and its default; null when it is none of theirs.
const LoadRow *load_row_in(std::span<const LoadRow> rows, const char *key);
const char *default_in(std::span<const LoadRow> rows, const char *key);

// Writes the rows in order into the configuration `file`, behind which the file is closed. 1; or 0 when it can't be
// opened (nothing is written), when a key that counts was refused (the keys behind it are skipped) or when the file
// could not be replaced (it is then as it was).
int write_section(const char *file, std::span<const WriteRow> rows);

// Records described by tables: which field of a line goes where, and as what.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

enum class Conversion : uint8_t {
  text,          // char[size], cut and terminated
  character,     // char
  number,        // int32_t
  short_number,  // int16_t
  hex_number,    // int16_t: the low half of a number after "0x"
  real,          // double
  always,        // int32_t: 1 when the text is "ALWAYS", else 0
};

// One field of a line and its place in the record.
struct FieldRow {
  int position;
  Conversion conversion;
  size_t offset;
  size_t size;  // bytes in the record
  const char *meaning;
};

// The form of a line; `record` is what a person calls it. The rows stand in the order of their positions, so that a
// line is walked through once. Fields after the last one that means something are ignored.
struct RecordForm {
  const char *record;
  int least_fields;
  int most_fields;
  std::span<const FieldRow> fields;
};

// Reads one field of `line` into its place in a record of standard layout. 1, or 0 when it is missing or malformed: its
// place keeps what it held.
int fill_field(const FieldRow &field, std::string_view line, void *record);
// Reads every field of the form, also those after one that fails. 1 when all were read; 0 also, with nothing read,
// when the line has fewer fields than the form asks for.
int fill_fields(const RecordForm &form, std::string_view line, void *record);

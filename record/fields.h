// The fields of a form: a table over a plain record, its members as texts, and what may be typed into them.
//
// The record's members follow the table: a text member takes `length` bytes and is not terminated when it is full; a
// number is an int32_t aligned to 4; types 5, 8, 9 and those above 20 take no room.
#pragma once

#include <cstdint>

struct FieldDescriptor {
  uint8_t type;  // 0 to 20; 255 ends the table
  uint8_t row;   // of the field's first cell, in the mask's window
  uint8_t col;
  uint8_t length;  // cells, and bytes of a text member
};

inline constexpr uint8_t kFieldText = 0;
inline constexpr uint8_t kFieldDecimalText = 1;
inline constexpr uint8_t kFieldNumber = 2;  // shown without a sign
inline constexpr uint8_t kFieldSignedNumber = 4;
inline constexpr uint8_t kFieldPath = 10;
inline constexpr uint8_t kFieldDigits = 12;
inline constexpr uint8_t kFieldReadOnly = 13;
inline constexpr uint8_t kFieldDefaultOrDigits = 14;
inline constexpr uint8_t kFieldAddress = 15;
inline constexpr uint8_t kFieldAlphanumeric = 16;
inline constexpr uint8_t kFieldJobText = 17;
inline constexpr uint8_t kFieldSkipNumber = 18;
inline constexpr uint8_t kFieldSkipText = 19;
inline constexpr uint8_t kFieldReadOnlyNumber = 20;
inline constexpr uint8_t kFieldEnd = 255;
constexpr bool is_number_field(int type) {
  return type == kFieldNumber || type == kFieldSignedNumber || type == kFieldSkipNumber || type == kFieldReadOnlyNumber;
}
constexpr bool is_text_field(int type) {
  return type <= kFieldReadOnlyNumber && type != 5 && type != 8 && type != 9 && !is_number_field(type);
}
// Passed over: neither shown nor edited, another field may share its cells.
constexpr bool is_skip_field(int type) { return type == kFieldSkipNumber || type == kFieldSkipText; }
constexpr bool is_read_only_field(int type) { return type == kFieldReadOnly || type == kFieldReadOnlyNumber; }

extern int32_t null_unt;  // 1: numbers are padded with blanks, 0: with zeros; 1 at first

// Where field i's member lies in a record whose members follow the table; -1 when there is no field i. Owners of a
// record prove with it that record and table belong together; recptr is built on it.
constexpr int member_offset(const FieldDescriptor *tab, int i) {
  int offset = 0;
  for (int k = 0; tab[k].type != kFieldEnd; ++k) {
    const bool number = is_number_field(tab[k].type);
    if (number) offset = (offset + 3) / 4 * 4;
    if (k == i) return offset;
    offset += number ? 4 : is_text_field(tab[k].type) ? tab[k].length : 0;
  }
  return -1;
}
// The address of field i's member, null when there is no field i.
void *recptr(void *rec, const FieldDescriptor *tab, int i);
// get_data: the text of a member into `buf` (length + 1 bytes); put_data: the member from a text. Texts are padded with
// NUL and cut to `length`, before a character of which only a part would be left; a number is right-aligned, and one
// wider than `length` shows its first digits. Skip fields and types without a member have no text: `buf` or the member
// keeps what it holds.
void get_data(char *buf, const void *member, int type, int length);
void put_data(void *member, const char *text, int type, int length);
// The same for field i: 0, or -1 when there is no such field. `buf` holds 256 bytes at least.
int get_field(const void *rec, const FieldDescriptor *tab, int i, char *buf);
int put_field(void *rec, const FieldDescriptor *tab, int i, const char *text);

// --- what is typed

// True when a field of that type takes the character that begins with the byte `ch` in cell `position` (from 0).
bool accepts_character(int type, int position, int ch);
// What a text becomes when its field is left, in place (12 bytes at least): without trailing blanks; type 12 a decimal
// integer, type 14 too unless it is "default"; an empty text stays empty.
void finish_text(char *text, int type);
// Cuts trailing blanks.
char *stripstr(char *str);
// Re-prints the text as a decimal integer (the buffer holds 12 bytes at least).
char *drop_leading_zeros(char *str);

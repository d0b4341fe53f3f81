// Forms: a field table over a plain record.
//
// The record's members follow the table: a text member takes `length` bytes and is not terminated when it is full; a
// number is an int32_t aligned to 4; types 5, 8, 9 and those above 20 take no room. The text of every shown field also
// lies in `Edit_screen`, from where an edited text is taken back. Cells beyond the image do not exist: a text that
// would reach over its edge ends there, and a field that begins beyond it keeps its value and can't be typed into.
// Cells of the image that lie beyond the window are not shown.
#pragma once

#include <cstdint>

#include "screen/scrio.h"

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

inline constexpr int kImageRows = 25;
inline constexpr int kImageColumns = 80;
inline constexpr int kImageSize = kImageRows * kImageColumns;

// Image of the mask on the screen, one byte a cell; written by everything here that draws. The next two are spare, the
// last one holds a template's characters. All null before init_masklib.
extern char *Edit_screen, *User1_screen, *User2_screen, *Sysbuff;
extern int32_t attr_dkl;   // attribute of fields; set at start
extern int32_t attr_hell;  // attribute of the field being edited; set at start
extern int32_t null_unt;   // 1: numbers are padded with blanks, 0: with zeros
extern int32_t old;        // index of the field edited last, for skip fields; -1 at first and after field 0
// Without effect on editing: kept, the library's users may set them.
extern int32_t case_up, anz_block, normal_cu, num_lock, key_wait, ins_flag, swirch_cu;

// Makes the four buffers (once a run) and blanks Edit_screen. 0, or 1 when memory runs out.
int init_masklib();
// All three take whole images, kImageSize bytes. mcls blanks Edit_screen.
void clear_buffer(char *buf, char ch);
void mcls();
void copy_screen(char *dst, const char *src);
// The attribute of the standard screen.
void set_sysattr(int32_t attr);

// --- fields of a record

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
// The text of a member into `buf` (length + 1 bytes), respectively the member from a text. Texts are padded with NUL
// and cut to `length`, in Japanese before a character of which only half would be left; a number is right-aligned, and
// one wider than `length` shows its first digits. Skip fields and types without a member have no text: `buf`,
// respectively the member, keeps what it holds.
void get_data(char *buf, const void *member, int type, int length);
void put_data(void *member, const char *text, int type, int length);
// The same for field i: 0, or -1 when there is no such field. `buf` holds 256 bytes at least.
int get_field(const void *rec, const FieldDescriptor *tab, int i, char *buf);
int put_field(void *rec, const FieldDescriptor *tab, int i, const char *text);

// --- on the screen

// Shows field i in `attr`, in the image too, and sets the window's attribute back to the normal one. 0, or -1 when
// there is no such field. A skip field changes nothing on the screen. show_rec shows all fields.
int show_field(WINDOW *win, const void *rec, const FieldDescriptor *tab, int i, int32_t attr);
void show_rec(WINDOW *win, const void *rec, const FieldDescriptor *tab, int32_t attr);
// Edits field i; the key that ended it: 13 (every Enter key), 27, 9, '?', the cursor keys, Home, End, F10. A skip field
// reads no key: Up when the field edited last lies behind it, else Down. 27 at once when there is no such field. A
// number that was not typed into keeps its value, also when not all of its digits are shown.
int edit_field(WINDOW *win, void *rec, const FieldDescriptor *tab, int i);
// Moves the field index by the key that ended an edit; `count` fields. -1 to go on, 0 to leave the mask (Escape, and
// Tab behind the last field, which sets i to `count`).
int steuerung(int *i, int key, int count);

// 1 when a field of that type takes the character `ch` in cell `position` (from 0).
int accepts_character(int type, int position, int ch);
// What a key does to a field of `length` cells with the cursor on cell `position`, which may be one behind the last. A
// character takes `cells` cells (2 for a two-byte one).
enum class FieldAction { kIgnore, kBeep, kEnter, kErase, kMoveLeft, kMoveRight, kEnd };
struct FieldStep {
  FieldAction action;
  int key;  // the result of edit_field for kEnd, else 0
};
FieldStep field_step(int type, int length, int position, int key, int cells);
// What a text becomes when its field is left, in place (12 bytes at least): without trailing blanks; type 12 a decimal
// integer, type 14 too unless it is "default"; an empty text stays empty.
void finish_text(char *text, int type);

// --- blocks on the window and in the image; rows and columns inclusive

// With `fill` not 0 `ch` in every cell, else the cells of the image, each row up to its first NUL. Current attribute.
void draw_blk(WINDOW *win, char *image, int row1, int col1, int row2, int col2, char ch, int fill);
// Redraws cells from the image in `attr`, which stays set; attribute 0 shows blanks instead.
void wattrib(WINDOW *win, int row, int col, int length, int32_t attr);
// Fill a block with `ch`, respectively with blanks, and set the window's attribute back to the normal one.
void drawln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr, char ch);
void clsln(WINDOW *win, int row1, int col1, int row2, int col2, int32_t attr);
// Shift the cells from column `pos` on within columns `pos` to `end`: right, `ch` goes to `pos`; left, `fill` goes to
// `end`. Current attribute; a NUL shows as a blank.
void insert_char(WINDOW *win, int row, int pos, int end, char ch);
void delete_char(WINDOW *win, int row, int pos, int end, char fill);

// --- values and texts

// Writes `length` cells: mode 1 decimal, 2 hexadecimal (32 bits), of the integer `value`, right-aligned; 3 the text
// that `value` points to, left-aligned. The attribute goes to the standard screen only: the window draws in its current
// one and then has the normal one. Other modes write nothing.
void disp_value(WINDOW *win, int row, int col, int32_t attr, intptr_t value, int length, int mode);
void dispdez(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length);
void disphex(WINDOW *win, int row, int col, int32_t attr, int32_t value, int length);
void display(WINDOW *win, int row, int col, int32_t attr, const char *value, int length);
namespace maskelib {
// At most `length` characters of `str`, padded to `length`: mode 2 right-aligned, 3 centred (the larger half behind),
// else left-aligned. The buffer holds length + 1 bytes when `terminate` is set, else `length`.
char *strpad(char *str, int length, char pad, int mode, int terminate);
}  // namespace maskelib
// Cuts trailing blanks.
char *stripstr(char *str);
// Re-prints the text as a decimal integer (the buffer holds 12 bytes at least).
char *drop_leading_zeros(char *str);
// hh:mm:ss (9 bytes), respectively the whole ctime text with its line end (26 bytes; empty beyond the year 9999).
// Return 1.
int timem(char *buf);
int datem(char *buf);
// Beeps when n is below 6.
void dobeep(int n);

// --- masks kept as files of kImageSize characters

// A field is written ">", a type character (a digit, or "_" for type 0), fillers, "<". Its length counts from the type
// character to before the "<", and ends with its row. A field that is not closed is left as text. The shortest takes
// three characters, so a table of kTemplateTable descriptors holds the fields and the end of any template.
inline constexpr int kTemplateTable = kImageSize / 3 + 1;
// Blanks the fields in the screen's characters and writes their table. 1 when there is at least one, else 0.
int search_fields(char *screen, FieldDescriptor *tab);
// Read a template into Sysbuff (a short file is filled up with blanks), write its table and show all of it on the
// cleared window, respectively the block. 0, or -1 when it can't be read; nothing is changed then.
int show_mask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr);
int show_tmask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr, int row1, int col1, int row2,
               int col2);
// Show all rows of a screen image, respectively a block of it, take them over into Edit_screen, and set the window's
// attribute back to the normal one.
void show_msk(WINDOW *win, const char *screen, int32_t attr);
void show_tmsk(WINDOW *win, const char *screen, int row1, int col1, int row2, int col2, int32_t attr);

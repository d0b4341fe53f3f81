// Forms: the fields of a record (record/fields.h) on the screen, shown and edited.
//
// A field that begins beyond the image keeps its value and can't be typed into.
#pragma once

#include "record/fields.h"
#include "screen/scrio.h"

extern int32_t attr_dkl;   // attribute of fields; set at start
extern int32_t attr_hell;  // attribute of the field being edited; set at start
extern int32_t old;        // index of the field edited last, for skip fields; -1 at first and after field 0
// Without effect on editing: kept, the library's users may set them.
extern int32_t case_up, anz_block, normal_cu, num_lock, key_wait, ins_flag, swirch_cu;
// For tests: the attributes, `old`, null_unt and the image (init_masklib comes first) as at the start.
void reset_masklib();

// Shows field i in `attr`, in the image too, and sets the window's attribute back to the normal one. 0, or -1 when
// there is no such field. A skip field changes nothing on the screen. show_rec shows all fields.
int show_field(WINDOW *win, const void *rec, const FieldDescriptor *tab, int i, int32_t attr);
void show_rec(WINDOW *win, const void *rec, const FieldDescriptor *tab, int32_t attr);
// Edits field i; the key that ended it: 13 (every Enter key), 27, 9, '?', the cursor keys, Home, End, F10. A skip field
// reads no key: Up when the field edited last lies after it, else Down. 27 at once when there is no such field. A
// number that was not typed into keeps its value, also when not all of its digits are shown. While it is typed, the
// text goes into the record too when somebody watches.
struct FieldWatch {
  void (*changed)(const void *context, WINDOW *win) = nullptr;  // called after each change of the text
  const void *context = nullptr;
};
int edit_field(WINDOW *win, void *rec, const FieldDescriptor *tab, int i, const FieldWatch &watch = {});
// Moves the field index by the key that ended an edit; `count` fields. -1 to go on, 0 to leave the mask (Escape, and
// Tab on the last field, which sets i to `count`).
int steuerung(int *i, int key, int count);

// What a key does to a field of `length` cells with the cursor on cell `position`, which may be one past the last. A
// character takes `cells` cells, one for each of its bytes.
enum class FieldAction { ignore, beep, enter, erase, move_left, move_right, end };
struct FieldStep {
  FieldAction action;
  int key;  // the result of edit_field for `end`, else 0
};
FieldStep field_step(int type, int length, int position, int key, int cells);
// Beeps when n is below 6.
void dobeep(int n);

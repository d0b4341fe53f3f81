// The one loop that edits every mask, and the one procedure that draws every mask's frame.
//
// A mask is described: its window, its record and fields, its labels, and the decisions that are its own.
#pragma once

#include <span>

#include "screen/maskelib.h"
#include "util/language.h"

// One text on a mask's frame. "%c" in it shows as "<".
struct FrameLabel {
  int row;
  int col;  // kInTheMiddle: of the window
  const char *const *label;
};
inline constexpr int kInTheMiddle = -1;

// On the label's row, cut at the window's frame.
void draw_frame_label(WINDOW *win, int32_t attr, const FrameLabel &label);
// Frame, blank inside, the labels, and on the last rows but one the separator and the key line.
void draw_mask_frame(WINDOW *win, int32_t attr, std::span<const FrameLabel> labels);

// How a mask differs from the others in its keys.
inline constexpr unsigned kFinishKeys = 1;     // F10, and ENTER on the last field, leave the mask
inline constexpr unsigned kPickStays = 2;      // after a field's list the cursor stays, and ENTER is not checked
inline constexpr unsigned kCheckEveryKey = 4;  // every key is checked, F10 and those that do not move too
inline constexpr unsigned kRefuseAtEnd = 8;    // a failed check on a key that leaves ends the mask as refused

struct Mask {
  int rows, columns, row, column;  // the window on the screen
  void *record;
  const FieldDescriptor *fields;
  int count;
  unsigned rules;
  std::span<const FrameLabel> labels = {};

  const void *context;  // handed first to each of the procedures; those that are null here may be left out
  void (*draw_more)(const void *context, WINDOW *win, int32_t attr) = nullptr;  // beside the labels
  void (*prepare)(const void *context) = nullptr;                               // called before each field is edited
  const char *(*notice)(const void *context);  // what the person should know of the values, on the separator, or null
  bool (*has_list)(const void *context, int field);           // ENTER on this field opens a list now
  void (*pick)(const void *context, WINDOW *win, int field);  // opens it and takes the choice over
  bool (*check)(const void *context, int field);              // the field's value is acceptable; may rewrite the field
  void (*show_error)(const void *context, WINDOW *win, int field);
  void (*show_help)(const void *context, WINDOW *win, int field);
  bool (*may_leave)(const void *context, WINDOW *win) = nullptr;  // asked for F10 and ENTER on the last field
};

// What a key does to a mask of `count` fields with the cursor on `field`.
struct MaskStep {
  int next;      // the field it moves to
  bool finish;   // it is one of the finishing keys
  bool leaving;  // the mask ends
  bool check;    // the field's value is checked first
};
MaskStep mask_step(int field, int key, int count, unsigned rules);

// Shows the mask above `parent` and edits until it is left. True; or false when it was refused at the end
// (kRefuseAtEnd) or its window could not be made. Edits are in the record either way.
bool run_mask(const Mask &mask, int32_t attr);

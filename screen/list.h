// Lists of positioned strings: what menus are drawn from, and moving through them. An entry holds at most 83
// characters; what is longer is cut.
#pragma once

#include "screen/scrio.h"

// One entry of a list; the list is its first node, an empty one is null.
struct StringNode {
  int32_t row = 0;  // -1 in lists that are drawn by DrawStringFromListInList only
  int32_t col = 0;
  int32_t width = 0;  // for centring and right alignment
  int32_t attr = 0;
  int32_t attr_sel = 0;
  char text[84] = "";
  int32_t strid = 0;  // what choosing the entry returns
  int32_t num = 0;    // position from 1; not renumbered on removal
  StringNode *prev = nullptr;
  StringNode *next = nullptr;
};

// Appends an entry; with a null list it starts one. The node, or null when memory runs out.
StringNode *Insert_String(StringNode *list, const char *text, int32_t strid, int32_t attr, int32_t attr_sel,
                          int32_t row, int32_t col, int32_t width);
// Frees the entry that get_element_by_num finds; 1, or 0 for a null list. When that is the first one (so also for a
// `num` beyond the last), the caller's list pointer is dead.
int Remove_String(StringNode *list, int32_t num);
// Frees every entry; 0 for an empty list, else 1.
int RemoveFullList(StringNode *list);
// The last node; what is done on the way there.
enum WalkMode : int { kOnlyWalk = 0, kRenumber = 1, kWaitForKeys = 2 };
StringNode *get_last_one(StringNode *list, int mode);
StringNode *get_next(StringNode *node);
int32_t get_last_entry_num(StringNode *list);
// The node at position `num`, its text copied to `dst` (84 bytes). A list of one node, or `num` beyond the last, gives
// the first node and copies nothing.
StringNode *get_element_by_num(StringNode *list, int32_t num, char *dst);
// -1 for an empty or one-node list or a `num` beyond the last.
int32_t get_strid_by_num(StringNode *list, int32_t num);
// The node with that strid, its text copied to `dst` (84 bytes); the node where the search stopped, nothing copied,
// when there is none; null for a null list.
StringNode *get_element_by_strid(StringNode *list, int32_t strid, char *dst);
void DumpList(StringNode *list);

// align: an Alignment (util/text.h); any other value centres. The results are the strid of the selected entry, 0
// when there is none.
int32_t DrawStringFromList(WINDOW *win, StringNode *list, int32_t num, int selected, int align);
int32_t DrawStringFromListInList(WINDOW *win, StringNode *list, int32_t num, int selected, int row, int col, int width,
                                 int align);
int32_t DrawFullStringBox(WINDOW *win, StringNode *list, int32_t sel, int align);
int32_t DrawFullStringListBox(WINDOW *win, StringNode *list, int32_t first, int32_t cursor, int row, int col, int width,
                              int count, int align);
// Moves the first visible entry and the cursor row (both from 1) by a key; the selected entry's index, 0 for null
// pointers. In a list of fewer than `visible` entries Down can put the cursor below the last one; no other key does.
int ProcessListKeyboard(int key, int32_t *first, int32_t *cursor, int32_t total, int32_t visible);

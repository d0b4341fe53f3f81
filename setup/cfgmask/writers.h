// The settings records back into the configuration file: only the named keys change. Each writer is a complete
// read-modify-write of `file` and returns 1, or 0 when a key was not stored. A number outside its range is left out:
// the file keeps its earlier value, and that is no failure.
#pragma once

#include <span>

#include "setup/section.h"

int save_std_cfg(const char *file);
int save_custom_cfg(const char *file);
int save_path_cfg(const char *file);
int save_special_cfg(const char *file);  // the extra jobs; no session calls it

// The keys of a mask in the order of their writing; of any other number, the extra jobs.
std::span<const WriteRow> section_of_mask(int mask);

// What the file can't give back of a mask's values (`mask`: its number, a `const int`), as a text for the person; null:
// nothing.
const char *settings_notice(const void *mask);

// What a session has changed, beside what others have changed in its file meanwhile; and what it could not save.
#pragma once

#include <string>
#include <vector>

#include "setup/settings/settings.h"

// What the records would write of a setting; not `written` for a number out of its range.
struct Stored {
  bool written = false;
  std::string value;
  bool operator==(const Stored &) const = default;
};
Stored stored_value(const Setting &setting);
std::vector<Stored> all_stored_values();  // of all settings, in their order

// From here on the session's changes count. After loading or making a configuration.
void begin_changes();
// Whether anything would be saved that the file did not have, or a new configuration begins without.
bool has_changes();

// With the configuration open for saving: what another program changed since it was loaded and the session did not is
// left to the file, by the writers of the sections. Lines for the person, about these and about what both changed.
std::vector<std::string> leave_changes_of_others(const char *file);
// After a save that was not complete: what `file` holds now is what the session knows of it.
void take_over_written(const char *file);

// Gives `file`.unsaved the session's changes, as KEY=VALUE lines, owner-only; earlier lines for other keys stay.
// Without changes nothing is written. 1, or 0 when it could not be written. A line in front of them marks passwords as
// stored.
int keep_unsaved(const char *file);
std::string unsaved_file(const char *file);  // its name
inline constexpr char kStoredMark[] = "; settings that were not saved, passwords as stored";

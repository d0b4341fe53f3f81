// Tests of a whole configuration: each value, and whether the monitor finds it at all.
#pragma once

#include <string>
#include <vector>

#include "setup/configuration/configuration.h"

struct KeyFinding {
  int line;         // in the file, from 1; 0: none
  std::string key;  // may be ""
  std::string text;
  bool is_warning = false;  // it may be meant so
};

enum class Outcome { done, refused, file_unreadable, file_unwritable, database_unreadable };

// Appends everything that is wrong with the file that was loaded, as long as the records hold what it held, in the
// order of the lines. Needs the models (InitUpsTypeArray).
void check_loaded(std::vector<KeyFinding> &findings);
// Loads `file` and appends the same, what may be meant otherwise, and what an earlier save left. done; or
// file_unreadable or database_unreadable, nothing appended.
[[nodiscard]] Outcome check_configuration(const char *file, std::vector<KeyFinding> &findings);

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

// Loads `file` into the records and appends everything that is wrong with it, in the order of the lines;
// check_configuration also what may be meant otherwise. done; or file_unreadable or database_unreadable, nothing
// appended. check_file needs the models (InitUpsTypeArray).
[[nodiscard]] Outcome check_file(const char *file, std::vector<KeyFinding> &findings);
[[nodiscard]] Outcome check_configuration(const char *file, std::vector<KeyFinding> &findings);

// What a configuration means, where that may be meant otherwise.
#pragma once

#include <map>
#include <vector>

#include "setup/check/check.h"
#include "setup/check/shutdown.h"

// Where the walk over a file found something; lines from 1, 0 for none.
struct FoundLines {
  std::map<const Setting *, int> settings = {};
  int windows_end = 0;  // the first line that ends in a carriage return
};

// Appends the warnings about the records, which hold the configuration `file`.
void add_warnings(const char *file, const FoundLines &found, std::vector<KeyFinding> &findings);
// Why the battery does not last until the shutdown is over; "" when it does.
std::string battery_warning(const ShutdownPlan &plan);

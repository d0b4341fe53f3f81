// Changes of single settings, with everything that the masks change along with them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "setup/check/check.h"

struct Change {
  const Setting *setting;  // no follower; each one once
  std::string value;       // of a password, the text in clear
};

// Gives `file` the new values in one write, which leaves everything else of it as it is; or changes nothing. A model
// other than the present one brings along what it does in its mask, and no system shutdown brings no UPS shutdown, but
// for what is given beside them. What follows from a changed setting follows it.
// done; refused, the reasons appended; the others, when the file or, for a model, the database is not accessible.
[[nodiscard]] Outcome change_configuration(const char *file, std::span<const Change> changes,
                                           std::vector<KeyFinding> &reasons);

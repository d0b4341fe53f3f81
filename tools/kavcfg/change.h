// Changes of settings, with everything that the masks change along with them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "setup/check/check.h"

struct Change {
  const Setting *setting;  // one that can be set; each one once
  std::string value;       // of a secret, the text in clear
  bool is_stored = false;  // of a secret: the text as the file holds it
  int line = 0;            // where it was read, from 1; 0: nowhere
};

// What a change did to a key of the file; no text: the file has no such key.
struct Difference {
  const Setting *setting;
  std::optional<std::string> before, after;
};

struct ChangeResult {
  Outcome outcome;
  int error = 0;  // of a file that could not be read or written, an errno
  std::vector<Difference> differences = {};
  std::vector<KeyFinding> faults = {};
};

enum class Deed { write, try_only };

// Gives `file` the new values in one write, which leaves everything else of it as it is; or, when a value is refused or
// the deed is only tried, changes nothing. A model other than the present one brings along what it does in its mask,
// and no system shutdown brings no UPS shutdown, but for what is given beside them. What follows from a changed setting
// follows it. refused: the faults tell why.
[[nodiscard]] ChangeResult change_configuration(const char *file, std::span<const Change> changes, Deed deed);
// The same for a file that is not there yet: the defaults of a new configuration in the working directory and the given
// values, byte for byte what the screens make of them.
[[nodiscard]] ChangeResult create_configuration(const char *file, std::span<const Change> changes, Deed deed);

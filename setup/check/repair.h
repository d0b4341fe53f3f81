// Repairs of a configuration that change nothing of what it means to say.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "setup/check/check.h"

// The text of a configuration without byte order mark and carriage returns, with ";" for "#" before comments that hold
// a "[", without tabs in values and without exact repeats of settings; and the keys `misspelt`, whatever their case, as
// the keys that they were meant to be, unless these are there too. Stored passwords, what a "[" hides and what stands
// after a topic stay as they are. Each repair is appended to `repairs`; its line counts as the carriage returns had it
// when they were line ends.
std::string repaired(std::string_view content, std::span<const std::string> misspelt, std::vector<KeyFinding> &repairs);

// What a terminal sends for its keys.
#pragma once

#include <map>
#include <string>

#include "tests/terminal/terminal.h"

// The bytes of every key on a terminal of the type `term`, after the terminal database; a key that the type does not
// have sends what xterm sends.
std::map<Key, std::string> key_sequences(const std::string &term);

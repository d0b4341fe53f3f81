#include <gtest/gtest.h>

#include "tools/terminal/terminal.h"

void terminal_fault(const std::string &what, const char *file, int line) { ADD_FAILURE_AT(file, line) << what; }

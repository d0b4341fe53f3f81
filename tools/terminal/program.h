// The start of a program in a Terminal: its pseudo-terminal, its session and its environment.
#pragma once

#include "tools/terminal/terminal.h"

// False when the program could not be started. A program that is not there ends with status 127.
bool start_program(Terminal &t, const Start &how);
// Tells the program how large its terminal is by now.
void set_size(const Terminal &t, int rows, int columns);

// What the command line sets; the database's name is upstypname of the models.
#pragma once

#include <cstdint>

extern int32_t testmode;  // set by the hidden switch; nothing consults it: kept as a flag

// Reads the arguments after the program's name; one that is no option ends the program through usage().
void read_options(int count, char *const arguments[]);
// Prints how to start the program and ends it, status 0.
[[noreturn]] void usage();

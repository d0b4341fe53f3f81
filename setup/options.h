// What the command line sets, and what is fixed at the start.
#pragma once

#include <cstdint>

// All written by the start alone.
extern int32_t testmode;        // set by the hidden switch; nothing consults it: kept as a flag
extern int32_t create_new_cfg;  // 1 when the program started without a configuration; read by init_new_config_vals
extern int32_t oemid;           // of the UPS type database, 0 without one; nothing depends on it
extern char upstypname[256];    // file name of the UPS type database
extern const char *const kConfigurationFile;  // the one file that every session works on

// Reads the arguments behind the program's name; one that is no option ends the program through usage().
void read_options(int count, char *const arguments[]);
// Prints how to start the program and ends it, status 0.
[[noreturn]] void usage();

// The debug trace "setup.dbg" in the working directory.
#pragma once

#include <cstdint>

// 0 no trace; "-debug" sets 10. Callers gate their lines with the two levels below. Written once by the command line.
extern int32_t debugLevel;

inline constexpr int32_t kTraceResults = 5;  // entries and results of saving: at levels above this one
inline constexpr int32_t kTraceDetails = 8;  // everything else: at levels above this one

// Appends one formatted text, at most 2047 bytes, to the trace while debugLevel is not 0. The text carries its own line
// end. The file is opened and closed for every line, so that a crash loses nothing; it is created readable by its owner
// only, since passwords can stand in it. A line that can't be written is dropped.
[[gnu::format(printf, 1, 2)]] void myfprintf(const char *format, ...);

// Traces that `function` of the module `path` (such as "setup/cfgmask") was entered: "path: function enter".
void trace_enter(const char *path, const char *function);

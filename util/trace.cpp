#include "util/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

int32_t debugLevel = 0;

void myfprintf(const char *format, ...) {
  if (debugLevel == 0) return;
  char line[2048] = "";
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  if (length <= 0) return;

  const int file = open("setup.dbg", O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return;
  const size_t size = std::min(static_cast<size_t>(length), sizeof line - 1);
  if (write(file, line, size) < 0) { /* dropped: the trace must never stop the work */
  }
  close(file);
}

void trace_enter(const char *path, const char *function) {
  if (debugLevel > kTraceResults) myfprintf("%s: %s %s\n", path, function, "enter");
}

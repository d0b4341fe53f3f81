#include "unixtools/linesettings.h"

#include <asm/termbits.h>  // defines its own termios: no other file can include it beside <termios.h>
#include <sys/ioctl.h>

#include <cstring>

static_assert(sizeof(termios2) <= sizeof(LineSettings::kernel));

int get_line_settings(int line, LineSettings &settings) {
  termios2 record{};
  if (ioctl(line, TCGETS2, &record) != 0) return 0;
  settings = {};
  std::memcpy(settings.kernel.data(), &record, sizeof record);
  return 1;
}

int set_line_settings(int line, const LineSettings &settings) {
  termios2 record{};
  std::memcpy(&record, settings.kernel.data(), sizeof record);
  return ioctl(line, TCSETS2, &record) == 0;
}

// The settings of a serial line as the kernel keeps them, to be put away and given back bit for bit.
#pragma once

#include <array>
#include <cstddef>

// A termios record can't hold a speed that has no B constant: written back, it would leave the line at the speed that
// was set in between. This record holds everything.
struct LineSettings {
  std::array<std::byte, 64> kernel{};  // the kernel's own record, zero after its end
  bool operator==(const LineSettings &) const = default;
};

// Return 1; or 0, errno set and nothing changed. Setting acts at once and is async-signal-safe.
[[nodiscard]] int get_line_settings(int line, LineSettings &settings);
int set_line_settings(int line, const LineSettings &settings);

// What follows a power failure, as the settings of the records have it.
#pragma once

// All in minutes after the power failure.
struct ShutdownPlan {
  bool happens;    // the system may be shut down
  bool is_fixed;   // it begins after a fixed time; else as late as the battery allows
  double begins;   // the shutdown of the system
  double ends;     // the system is down
  bool ups_stops;  // the UPS is switched off, too
  double ups_off;
  double empty;  // the battery, at the present load
  [[nodiscard]] double over() const { return ups_stops ? ups_off : ends; }
};
ShutdownPlan shutdown_plan();

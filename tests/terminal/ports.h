// The tool where the serial ports are simulated, in a mount namespace of its own. For tests whose programs are defined
// by kav_port_test of tests/CMakeLists.txt.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tools/terminal/terminal.h"

// Starts the tool there; `ports` are options of scripts/try-detection. False where no namespace can be made: the test
// is then skipped, but in continuous integration it must run.
inline bool start_with_ports(Terminal &t, const std::vector<std::string> &ports,
                             const std::vector<std::string> &tool_options = {}) {
  constexpr int kNoNamespace = 77;
  Start how;
  how.program = TRY_DETECTION;
  how.options = {"-b", BUILD_FOLDER};
  how.options.insert(how.options.end(), ports.begin(), ports.end());
  how.options.push_back(KAVSETUP_PROGRAM);
  how.options.insert(how.options.end(), tool_options.begin(), tool_options.end());
  t.start(how);
  if (t.find("\u250c").row >= 0) return true;  // a corner of the first menu
  EXPECT_EQ(t.wait_exit(), kNoNamespace);
  EXPECT_EQ(std::getenv("CI"), nullptr) << "no mount namespace of our own can be made here";
  return false;
}

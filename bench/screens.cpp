// What a person waits for: the start, a key in a menu, Escape; beside bare curses, all in one run.
// Prints a table; the times are medians in milliseconds.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "tests/terminal/terminal.h"

namespace {

constexpr int kRuns = 25;

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Peak memory of a process, kB.
long peak_memory(int process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  }
  return 0;
}

struct Figures {
  double start, down;
  size_t down_bytes;
  long memory;
};

Figures measure(const Start &how) {
  std::vector<double> starts, downs;
  Figures figures = {};
  for (int i = 0; i < kRuns; i++) {
    Terminal t;
    starts.push_back(t.start(how).last_output);
    for (int k = 0; k < 4; k++) {
      const Timing down = t.measure(Key::Down);
      downs.push_back(down.last_output);
      figures.down_bytes = std::max(figures.down_bytes, down.bytes);
    }
    figures.memory = peak_memory(t.process());
  }
  figures.start = median(starts);
  figures.down = median(downs);
  return figures;
}

double measure_escape() {
  std::vector<double> times;
  Terminal t;
  t.start();
  t.press({Key::Enter, Key::Down, Key::Enter});
  for (int i = 0; i < kRuns; i++) {
    t.press({Key::Enter});
    t.settle();
    times.push_back(t.measure(Key::Escape).last_output);
  }
  return median(times);
}

}  // namespace

int main() {
  const Figures bare = measure({.program = BARE_MENU});
  const Figures ours = measure({});
  std::printf("%-28s %10s %10s %8s\n", "", "bare", "kavsetup", "ratio");
  std::printf("%-28s %10.2f %10.2f %8.2f\n", "start to first menu, ms", bare.start, ours.start,
              ours.start / bare.start);
  std::printf("%-28s %10.2f %10.2f %8.2f\n", "Down in a menu, ms", bare.down, ours.down, ours.down / bare.down);
  std::printf("%-28s %10zu %10zu\n", "bytes of one Down", bare.down_bytes, ours.down_bytes);
  std::printf("%-28s %10ld %10ld\n", "peak memory, kB", bare.memory, ours.memory);
  std::printf("%-28s %10s %10.2f\n", "Escape out of a mask, ms", "", measure_escape());
  return 0;
}

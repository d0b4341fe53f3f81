// Load and one lookup in a process that does nothing else: nothing is in its caches, and all of its memory is new.
// Lines: cold/STORE/KEYS/TOPICS,MICROSECONDS of the processor, the median of kRuns processes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "bench/stores.h"

namespace {

constexpr int kRuns = 25;

double processor_time() {
  timespec now = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return 1e6 * static_cast<double>(now.tv_sec) + 1e-3 * static_cast<double>(now.tv_nsec);
}

// The process that is measured: STORE PATH TOPIC KEY.
int run_once(char *const arguments[]) {
  const std::string topic = arguments[3];
  const std::string key = arguments[4];
  const Setting setting = {topic, key, topic + ":" + key};
  for (const Store &store : all_stores()) {
    if (std::strcmp(store.name, arguments[1]) != 0) continue;
    const double begin = processor_time();
    void *file = store.open(arguments[2], false);
    const bool done = file != nullptr && store.get(file, setting) && store.close(file);
    std::printf("%f\n", processor_time() - begin);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  return EXIT_FAILURE;
}

double time_of(const std::string &command) {
  char line[64] = "";
  FILE *process = popen(command.c_str(), "r");
  const bool read = process != nullptr && std::fgets(line, sizeof line, process) != nullptr;
  if (!read || pclose(process) != 0) std::abort();
  return std::atof(line);
}

void measure(const char *program, const Store &store, int keys, int topics) {
  const SettingsFile file(keys, topics);
  const Setting &last = file.settings.back();
  const std::string command =
      std::string("exec ") + program + " " + store.name + " " + file.path + " " + last.topic + " " + last.key;
  std::vector<double> times(kRuns);
  for (double &time : times) time = time_of(command);
  std::sort(times.begin(), times.end());
  std::printf("cold/%s/%d/%d,%.1f\n", store.name, keys, topics, times[kRuns / 2]);
}

}  // namespace

int main(int count, char *arguments[]) {
  if (count == 5) return run_once(arguments);
  for (const Store &store : all_stores()) {
    for (const int topics : {1, 10, 100}) {
      for (const int keys : {100, 1000, 10000}) measure(arguments[0], store, keys, topics);
    }
  }
  return 0;
}

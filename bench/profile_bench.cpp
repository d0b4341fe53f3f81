// The profile store beside other libraries: load and one lookup, a thousand lookups, 40 sets and a durable write, all
// in a process that has done the same before.
// Names: OPERATION/STORE/KEYS/TOPICS; "least" is the least of the repetitions.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bench/stores.h"

namespace {

constexpr int64_t kSizes[] = {100, 1000, 10000};
constexpr int64_t kTopicCounts[] = {1, 10, 100};
constexpr int kSets = 40;
constexpr int kLookups = 1000;

void check(benchmark::State &state, bool result) {
  if (!result) state.SkipWithError("the library failed");
}

// The last setting of all, which every reader finds last.
void load_and_look_up(benchmark::State &state, const Store &store) {
  const SettingsFile file(state.range(0), state.range(1));
  for (auto _ : state) {
    void *opened = store.open(file.path.c_str(), false);
    check(state, store.get(opened, file.settings.back()));
    check(state, store.close(opened));
  }
}

// In random order, as no reader can foresee it.
void look_up(benchmark::State &state, const Store &store) {
  const SettingsFile file(state.range(0), state.range(1));
  std::mt19937 random;
  std::vector<const Setting *> wanted(kLookups);
  for (const Setting *&setting : wanted) setting = &file.settings[random() % file.settings.size()];
  void *opened = store.open(file.path.c_str(), false);
  for (auto _ : state) {
    for (const Setting *setting : wanted) check(state, store.get(opened, *setting));
  }
  store.close(opened);
}

// The sets are spread over the whole file, and each round changes it.
void set_and_write(benchmark::State &state, const Store &store) {
  const SettingsFile file(state.range(0), state.range(1));
  int round = 0;
  for (auto _ : state) {
    const std::string value = std::to_string(++round);
    void *opened = store.open(file.path.c_str(), true);
    for (size_t i = 0; i < kSets; ++i) {
      check(state, store.set(opened, file.settings[i * file.settings.size() / kSets], value.c_str()));
    }
    if (store.save != nullptr) check(state, store.save(opened, file.path.c_str()));
    check(state, store.close(opened));
  }
}

double least(const std::vector<double> &times) { return *std::ranges::min_element(times); }

using Operation = void (*)(benchmark::State &, const Store &);

benchmark::internal::Benchmark *add(const char *name, const Store &store, Operation operation) {
  return benchmark::RegisterBenchmark((std::string(name) + "/" + store.name).c_str(),
                                      [=](benchmark::State &state) { operation(state, store); })
      ->Unit(benchmark::kMicrosecond)
      ->ComputeStatistics("least", least);
}

void add_all(const Store &store) {
  for (const int64_t topics : kTopicCounts) {
    for (const int64_t keys : kSizes) {
      add("load", store, load_and_look_up)->Args({keys, topics});
      if (store.set == nullptr) continue;
      // most of its time it waits for the disk
      add("write", store, set_and_write)->Args({keys, topics})->UseRealTime()->MinTime(0.3);
    }
    if (store.keeps) add("lookups", store, look_up)->Args({kSizes[0], topics});
  }
}

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  for (const Store &store : all_stores()) add_all(store);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

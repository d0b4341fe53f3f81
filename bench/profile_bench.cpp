// The profile store beside a bare list of lines, on files of 100, 1,000 and 10,000 lines.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "corbix/xconfig.h"
#include "util/files.h"

namespace {

constexpr int kReadText = 1;
constexpr int kWriteText = 2;

// A file of `lines` lines in `topics` topics, removed at the end of its scope. The untitled part comes first.
struct BenchFile {
  std::string path;
  std::string last_key;

  BenchFile(int64_t lines, int64_t topics) {
    char name[] = "/tmp/profile_bench_XXXXXX";
    close(mkstemp(name));
    path = name;
    std::string text;
    for (int64_t i = 0; i < lines; ++i) {
      if (topics > 1 && i > 0 && i % (lines / topics) == 0) {
        text += "[topic " + std::to_string(i) + "]\n";
      } else if (i % 10 == 5) {
        text += "; what the next setting means\n";
      } else {
        const std::string key = "Setting" + std::to_string(i);
        text += key + "=value of setting " + std::to_string(i) + "\n";
        if (i < lines / topics) last_key = key;
      }
    }
    if (!replace_file(name, text)) std::abort();
  }
  BenchFile(const BenchFile &) = delete;
  BenchFile &operator=(const BenchFile &) = delete;
  ~BenchFile() { unlink(path.c_str()); }
};

struct BareLine {
  char *text;
  BareLine *next;
};

// What every reader of lines has to do at least: fgets, one node and one copy for each line, all freed at the end.
void load_bare_list(const char *path) {
  FILE *stream = OpenAFile(path, "r");
  BareLine *first = nullptr;
  BareLine **end = &first;
  char buffer[1024];
  while (std::fgets(buffer, sizeof buffer, stream) != nullptr) {
    const size_t size = std::strlen(buffer) + 1;
    auto *line = static_cast<BareLine *>(std::malloc(sizeof(BareLine)));
    line->text = static_cast<char *>(std::malloc(size));
    std::memcpy(line->text, buffer, size);
    line->next = nullptr;
    *end = line;
    end = &line->next;
  }
  CloseAFile(stream);
  benchmark::DoNotOptimize(first);
  while (first != nullptr) {
    BareLine *next = first->next;
    std::free(first->text);
    std::free(first);
    first = next;
  }
}

void check(benchmark::State &state, int result) {
  if (!result) state.SkipWithError("the profile store failed");
}

void BareList(benchmark::State &state) {
  const BenchFile file(state.range(0), state.range(1));
  for (auto _ : state) load_bare_list(file.path.c_str());
  state.SetComplexityN(state.range(0));
}

void LoadAndLookup(benchmark::State &state) {
  const BenchFile file(state.range(0), state.range(1));
  char value[1024];
  for (auto _ : state) {
    check(state, XOpenProfile(file.path.c_str(), kReadText));
    check(state, XGetPrivateProfileString(kTmpTopic, file.last_key.c_str(), value, sizeof value));
    check(state, XCloseProfile());
  }
  state.SetComplexityN(state.range(0));
}

// 1,000 lookups spread over all keys of one topic.
void ThousandLookups(benchmark::State &state) {
  const BenchFile file(state.range(0), 1);
  char value[1024];
  std::string keys[1000];
  for (int i = 0; i < 1000; ++i) {
    int64_t line = i % state.range(0);
    if (line % 10 == 5) ++line;
    keys[i] = "Setting" + std::to_string(line);
  }
  check(state, XOpenProfile(file.path.c_str(), kReadText));
  for (auto _ : state) {
    for (const std::string &key : keys) {
      check(state, XGetPrivateProfileString(kTmpTopic, key.c_str(), value, sizeof value));
    }
  }
  XCloseProfile();
}

// Load, 40 sets that change the file, and the durable write.
void LoadSetAndWrite(benchmark::State &state) {
  const BenchFile file(state.range(0), 1);
  int round = 0;
  for (auto _ : state) {
    const std::string value = std::to_string(++round);
    check(state, XOpenProfile(file.path.c_str(), kWriteText));
    for (int i = 0; i < 40; ++i) {
      const std::string key = "Setting" + std::to_string(i * 2);
      check(state, XSetPrivateProfileString(kTmpTopic, key.c_str(), value.c_str(), ""));
    }
    check(state, XCloseProfile());
  }
  state.SetComplexityN(state.range(0));
}

}  // namespace

BENCHMARK(BareList)->ArgsProduct({{100, 1000, 10000}, {1, 10}})->Complexity(benchmark::oN);
BENCHMARK(LoadAndLookup)->ArgsProduct({{100, 1000, 10000}, {1, 10}})->Complexity(benchmark::oN);
BENCHMARK(ThousandLookups)->Arg(40)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadSetAndWrite)->Arg(100)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN)->Unit(benchmark::kMicrosecond);

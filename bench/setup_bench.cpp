// The database of 500 models, and the job language. Names: OPERATION/kavsetup.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/models.h"
#include "setup/jobs/job_language.h"
#include "upsdb/upsdb.h"
#include "util/files.h"

namespace {

constexpr char kDatabase[] = "/tmp/kavsetup_bench.ups";
constexpr int kEvent = 3;

void check(benchmark::State &state, bool result) {
  if (!result) state.SkipWithError("it failed");
}

// As the set-up tool fills its list: every model once.
void load_database(benchmark::State &state) {
  check(state, replace_file(kDatabase, big_database()));
  for (auto _ : state) {
    check(state, UpsOpenDb(kDatabase) && UpsGetCountDb() == kModels);
    for (int16_t i = 0; i < kModels; ++i) {
      UpsData record;
      check(state, UpsGetAtDb(record, i));
    }
    UpsCloseDb();
  }
  unlink(kDatabase);
}

// As a chosen model is looked up: open, find, close.
void select_model(benchmark::State &state) {
  check(state, replace_file(kDatabase, big_database()));
  const std::string name = model_name(kModels - 1);
  for (auto _ : state) {
    UpsData record;
    check(state, UpsOpenDb(kDatabase) && UpsFindDb(record, name.c_str()));
    UpsCloseDb();
  }
  unlink(kDatabase);
}

std::string list_of_jobs() {
  std::string list;
  for (int i = 0; i < kMaxJobs; ++i) list += "LOGMSG(\"message " + std::to_string(i) + "\")O;";
  return list;
}

void parse_jobs(benchmark::State &state) {
  const std::string list = list_of_jobs();
  const auto job = std::make_unique<JobRec>();
  for (auto _ : state) {
    for (const std::string &text : split_joblist(list.c_str())) parse_job(text.c_str(), kEvent, *job);
  }
}

void build_jobs(benchmark::State &state) {
  std::vector<std::unique_ptr<JobRec>> jobs;
  for (const std::string &text : split_joblist(list_of_jobs().c_str())) {
    jobs.push_back(std::make_unique<JobRec>());
    parse_job(text.c_str(), kEvent, *jobs.back());
  }
  for (auto _ : state) {
    for (const auto &job : jobs) {
      std::string text;
      check(state, build_func_string(*job, text));
    }
  }
}

}  // namespace

BENCHMARK(load_database)->Name("database/kavsetup")->Unit(benchmark::kMicrosecond);
BENCHMARK(select_model)->Name("model/kavsetup")->Unit(benchmark::kMicrosecond);
BENCHMARK(parse_jobs)->Name("parse/kavsetup")->Unit(benchmark::kMicrosecond);
BENCHMARK(build_jobs)->Name("build/kavsetup")->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();

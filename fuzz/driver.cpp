// Runs a fuzz target without libFuzzer: NAME_fuzz CORPUS [MUTATIONS]
// Every file of the corpus, then mutations of them, always the same ones.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/fuzz.h"
#include "util/numbers.h"

namespace {

constexpr int kMutations = 2000;
constexpr size_t kLongestInput = 4096;

using Random = std::mt19937;

size_t below(Random &random, size_t limit) { return limit == 0 ? 0 : random() % limit; }

std::vector<std::string> read_corpus(const char *folder) {
  std::vector<std::string> inputs;
  for (const auto &entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  std::ranges::sort(inputs);
  return inputs;
}

void mutate(std::string &input, const std::vector<std::string> &corpus, Random &random) {
  const size_t at = below(random, input.size() + 1);
  const size_t length = below(random, 16) + 1;
  const std::string &other = random() % 2 == 0 ? input : corpus[below(random, corpus.size())];
  const std::string piece = other.substr(below(random, other.size() + 1), length * 4);
  const unsigned kind = random() % 5;
  if (kind == 0 && at < input.size()) input[at] = static_cast<char>(random());
  if (kind == 1 && at < input.size()) input[at] = static_cast<char>(input[at] ^ (1 << random() % 8));
  if (kind == 2) input.insert(at, length, static_cast<char>(random()));
  if (kind == 3) input.erase(at, length);
  if (kind == 4) input.replace(at, below(random, length + 1), piece);
  input.resize(std::min(input.size(), kLongestInput));
}

void run(const std::string &input) {
  // a copy of just this size, so that a sanitizer sees every byte read too much
  const std::vector<uint8_t> bytes(input.begin(), input.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char *argv[]) {
  const std::vector<std::string> corpus = argc > 1 ? read_corpus(argv[1]) : std::vector<std::string>();
  const int mutations = argc > 2 ? to_int32(argv[2]) : kMutations;
  expect(!corpus.empty());
  Random random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same mutations in every run
  for (const std::string &input : corpus) run(input);
  for (int i = 0; i < mutations; ++i) {
    std::string input = corpus[below(random, corpus.size())];
    for (size_t changes = below(random, 8) + 1; changes > 0; --changes) mutate(input, corpus, random);
    run(input);
  }
}

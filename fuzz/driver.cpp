// Runs a fuzz target without libFuzzer: NAME_fuzz CORPUS [MUTATIONS [SEED]]
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
  switch (random() % 6) {
    case 0:
      if (at < input.size()) input[at] = static_cast<char>(random());
      break;
    case 1:
      if (at < input.size()) input[at] = static_cast<char>(input[at] ^ (1 << random() % 8));
      break;
    case 2:
      input.insert(at, length, static_cast<char>(random()));
      break;
    case 3:
      input.erase(at, length);
      break;
    case 4:
      input.insert(at, input.substr(below(random, input.size() + 1), length * length));
      break;
    default:
      const std::string &other = corpus[below(random, corpus.size())];
      input.replace(at, length, other.substr(below(random, other.size() + 1), length * 4));
  }
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
  const int mutations = argc > 2 ? std::atoi(argv[2]) : kMutations;
  if (corpus.empty()) {
    std::fprintf(stderr, "usage: %s CORPUS [MUTATIONS [SEED]]; the corpus may not be empty\n", argv[0]);
    return EXIT_FAILURE;
  }
  Random random(argc > 3 ? static_cast<unsigned>(std::atoi(argv[3])) : 1);
  for (const std::string &input : corpus) run(input);
  for (int i = 0; i < mutations; ++i) {
    std::string input = corpus[below(random, corpus.size())];
    for (size_t changes = below(random, 8) + 1; changes > 0; --changes) mutate(input, corpus, random);
    run(input);
  }
  std::fprintf(stderr, "%zu inputs of the corpus and %d mutations\n", corpus.size(), mutations);
}

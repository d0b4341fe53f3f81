// Runs a fuzz target without libFuzzer: NAME_fuzz CORPUS
// Every file of the corpus, then mutations of them, always the same ones.
#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

#include "fuzz/fuzz.h"

namespace {

constexpr int kMutations = 2000;
constexpr size_t kLongestInput = 4096;

using Random = std::mt19937;

size_t up_to(Random &random, size_t most) { return random() % (most + 1); }

std::vector<std::string> read_corpus(const char *folder) {
  std::vector<std::string> inputs;
  for (const auto &entry : std::filesystem::directory_iterator(folder)) {
    expect(read_file(entry.path().c_str(), inputs.emplace_back()) == 1);
  }
  std::ranges::sort(inputs);
  return inputs;
}

// Another byte, or a piece of `other` in place of one; each may be empty.
void mutate(std::string &input, const std::string &other, Random &random) {
  const size_t at = up_to(random, input.size());
  if (random() % 2 == 0 && at < input.size()) {
    input[at] = static_cast<char>(random());
  } else {
    const size_t begin = up_to(random, other.size());
    input.replace(at, up_to(random, 16), other, begin, up_to(random, 32));
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
  const std::vector<std::string> corpus = read_corpus(argc > 1 ? argv[1] : ".");
  expect(!corpus.empty());
  Random random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same mutations in every run
  const auto one = [&] { return corpus[up_to(random, corpus.size() - 1)]; };
  for (const std::string &input : corpus) run(input);
  for (int i = 0; i < kMutations; ++i) {
    std::string input = one();
    for (size_t changes = up_to(random, 7) + 1; changes > 0; --changes) mutate(input, one(), random);
    run(input);
  }
}

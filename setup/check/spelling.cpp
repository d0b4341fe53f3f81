#include "setup/check/spelling.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "util/text.h"

namespace {

constexpr size_t kMostEdits = 2;

size_t edits_between(std::string_view a, std::string_view b) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > kMostEdits) return kMostEdits + 1;
  std::vector<size_t> row(b.size() + 1);  // edits from the start of `a` so far to each start of `b`
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t k = 0; k < b.size(); ++k) {
      const bool differs = xstricmp(a.substr(i, 1), b.substr(k, 1)) != 0;
      const size_t edits = std::min({row[k + 1] + 1, row[k] + 1, diagonal + (differs ? 1 : 0)});
      diagonal = row[k + 1];
      row[k + 1] = edits;
    }
  }
  return row.back();
}

}  // namespace

std::string nearest_name(std::string_view name, std::span<const std::string_view> names) {
  std::string_view nearest;
  size_t fewest = kMostEdits + 1;
  for (const std::string_view candidate : names) {
    const size_t edits = edits_between(name, candidate);
    if (edits >= fewest) continue;
    fewest = edits;
    nearest = candidate;
  }
  return std::string(nearest);
}

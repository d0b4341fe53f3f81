// The memory that a loaded file takes at its peak, with one lookup in it: what the allocator handed out, its own words
// for each piece included. Lines: memory/STORE/KEYS/TOPICS,BYTES.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "bench/stores.h"

extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void *__libc_realloc(void *piece, size_t size);
void __libc_free(void *piece);
}

namespace {

size_t in_use = 0;
size_t peak = 0;

size_t size_of(void *piece) { return piece == nullptr ? 0 : malloc_usable_size(piece) + sizeof(size_t); }

void *count(void *piece) {
  in_use += size_of(piece);
  peak = std::max(peak, in_use);
  return piece;
}

void print_peak(const Store &store, int64_t keys, int64_t topics) {
  const SettingsFile file(keys, topics);
  void *warm = store.open(file.path.c_str(), false);  // what a library keeps for good does not count
  store.get(warm, file.settings.back());
  store.close(warm);
  const size_t before = peak = in_use;
  void *opened = store.open(file.path.c_str(), false);
  if (!store.get(opened, file.settings.back())) std::abort();
  const size_t bytes = peak - before;
  store.close(opened);
  std::printf("memory/%s/%d/%d,%zu\n", store.name, static_cast<int>(keys), static_cast<int>(topics), bytes);
}

}  // namespace

extern "C" {
void *malloc(size_t size) { return count(__libc_malloc(size)); }
void *aligned_alloc(size_t alignment, size_t size) { return count(__libc_memalign(alignment, size)); }
void *calloc(size_t number, size_t size) { return count(__libc_calloc(number, size)); }
void *realloc(void *piece, size_t size) {
  in_use -= size_of(piece);
  return count(__libc_realloc(piece, size));
}
void free(void *piece) {
  in_use -= size_of(piece);
  __libc_free(piece);
}
}

int main() {
  for (const Store &store : all_stores()) {
    for (const int topics : {1, 10, 100}) {
      for (const int keys : {100, 1000, 10000}) print_peak(store, keys, topics);
    }
  }
  return 0;
}

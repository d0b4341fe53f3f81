// Allocations that fail where a sanitizer owns malloc: those of "new", wherever it is called, and our own calls of
// malloc, calloc and realloc (the linker's --wrap leads them here).
#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/faults/faults.h"

extern "C" {
void *real_malloc(size_t size) asm("__real_malloc");
void *real_calloc(size_t count, size_t size) asm("__real_calloc");
void *real_realloc(void *block, size_t size) asm("__real_realloc");
void *faulty_malloc(size_t size) asm("__wrap_malloc");
void *faulty_calloc(size_t count, size_t size) asm("__wrap_calloc");
void *faulty_realloc(void *block, size_t size) asm("__wrap_realloc");

void *faulty_malloc(size_t size) { return allocation_fails() ? nullptr : real_malloc(size); }
void *faulty_calloc(size_t count, size_t size) { return allocation_fails() ? nullptr : real_calloc(count, size); }
void *faulty_realloc(void *block, size_t size) { return allocation_fails() ? nullptr : real_realloc(block, size); }
}

namespace {

void *allocate_or_throw(size_t size) {
  void *block = faulty_malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void *operator new(size_t size) { return allocate_or_throw(size); }
void *operator new[](size_t size) { return allocate_or_throw(size); }
void *operator new(size_t size, const std::nothrow_t &) noexcept { return faulty_malloc(size); }
void *operator new[](size_t size, const std::nothrow_t &) noexcept { return faulty_malloc(size); }
void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete(void *block, size_t) noexcept { std::free(block); }
void operator delete[](void *block, size_t) noexcept { std::free(block); }

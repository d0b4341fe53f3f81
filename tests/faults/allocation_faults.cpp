// Allocations that fail: all of them, those of the system's libraries too.
#include <cstddef>

#include "tests/faults/faults.h"

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void *malloc(size_t size) { return allocation_fails() ? nullptr : __libc_malloc(size); }
void *calloc(size_t count, size_t size) { return allocation_fails() ? nullptr : __libc_calloc(count, size); }
void *realloc(void *block, size_t size) { return allocation_fails() ? nullptr : __libc_realloc(block, size); }
}

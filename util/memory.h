// Running out of memory: the standard library tells of it by an exception, our procedures by their results.
#pragma once

#include <cerrno>
#include <new>

// What `work` gives; false, errno set, when memory runs out in it.
template <typename Work>
bool in_memory(Work work) {
  try {
    return work();
  } catch (const std::bad_alloc &) {
    errno = ENOMEM;
    return false;
  }
}

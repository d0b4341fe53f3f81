#include "util/check.h"

#include <cstdio>
#include <cstdlib>

void (*give_terminal_back)() = nullptr;

void stop_at(const char *condition, const char *path) {
  if (give_terminal_back != nullptr) give_terminal_back();
  std::fprintf(stderr, "Assertion failed: %s, %s\n", condition, path);
  std::abort();
}

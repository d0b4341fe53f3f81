// Part of each source that scripts/mutate builds with its mutants: is the one with this number chosen?
#pragma once

#include <cstdio>

inline bool kav_is(int number) {
  static const int chosen = [] {
    int read = 0;
    std::FILE *const file = std::fopen(KAV_NUMBER, "r");
    return file != nullptr && std::fscanf(file, "%d", &read) + std::fclose(file) > 0 ? read : 0;
  }();
  return number == chosen;
}

// A converter between two encodings, closed at the end of its scope.
#pragma once

#include <iconv.h>

#include <cstdint>

struct Converter {
  iconv_t handle;
  // Names of encodings as iconv knows them.
  Converter(const char *to, const char *from) : handle(iconv_open(to, from)) {}
  Converter(const Converter &) = delete;
  Converter &operator=(const Converter &) = delete;
  ~Converter() {
    if (is_open()) iconv_close(handle);
  }
  // False when the system has no such conversion.
  [[nodiscard]] bool is_open() const { return reinterpret_cast<intptr_t>(handle) != -1; }
};

// What the fuzz targets share.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "util/files.h"

// What each target defines: takes any bytes, stops the program when it finds a fault, gives 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

inline void expect(bool holds) {
  if (!holds) std::abort();
}

// A file of this process alone, in memory where the system has a folder for that; removed at the end.
struct FuzzFile {
  std::string path;
  explicit FuzzFile(const char *name) : path(access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : "/tmp/") {
    path += name + std::string("_fuzz.") + std::to_string(getpid());
  }
  FuzzFile(const FuzzFile &) = delete;
  FuzzFile &operator=(const FuzzFile &) = delete;
  ~FuzzFile() { unlink(path.c_str()); }
  void hold(const std::string &content) const { expect(replace_file(path.c_str(), content) == 1); }
  std::string content() const {
    std::string all;
    expect(read_file(path.c_str(), all) == 1);
    return all;
  }
};

inline std::string text_of_bytes(const uint8_t *data, size_t size) { return {data, data + size}; }

// A temporary directory as the working directory of a test, and its files.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// In memory where the system has a folder for that: for thousands of files.
inline const char *const kMemoryFolder = access("/dev/shm", W_OK) == 0 ? "/dev/shm/kav-XXXXXX" : "/tmp/kav-XXXXXX";

// Entered when it is made; left and removed, with all that is in it, at the end of its scope.
struct WorkingFolder {
  std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::path path;
  explicit WorkingFolder(std::string pattern = "/tmp/kav-XXXXXX") {
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    path = pattern;
    std::filesystem::current_path(path);
  }
  WorkingFolder(const WorkingFolder &) = delete;
  WorkingFolder &operator=(const WorkingFolder &) = delete;
  ~WorkingFolder() {
    std::filesystem::current_path(before);
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

inline void put_file(const std::filesystem::path &name, const std::string &content) {
  std::ofstream(name, std::ios::binary) << content;
}

inline std::string get_file(const std::filesystem::path &name) {
  std::ifstream file(name, std::ios::binary);
  EXPECT_TRUE(file.good()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Commands of the shell, for tests of the small programs.
#pragma once

#include <sys/wait.h>

#include <cstdio>

#include "tests/folder.h"

struct Result {
  int status;
  std::string output;
  bool operator==(const Result &) const = default;
};

inline Result run_shell(const std::string &command) {
  FILE *program = popen(command.c_str(), "r");
  if (program == nullptr) return {-1, ""};
  Result result = {};
  for (int byte; (byte = std::fgetc(program)) != EOF;) result.output += static_cast<char>(byte);
  const int status = pclose(program);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

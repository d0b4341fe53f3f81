// Commands of the shell and other processes, for tests.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <functional>

#include "tests/folder.h"

// The exit status of a process of its own that does `work`, or 128 and the signal that ended it. What is thrown ends
// it.
inline int status_of_child(const std::function<int()> &work) {
  const pid_t child = fork();
  if (child == 0) _exit([&]() noexcept { return work(); }());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

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

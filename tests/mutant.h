// Part of each source that scripts/mutate builds with its mutants. System calls are made directly: tests fail those of
// libc.
#pragma once

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <unistd.h>

// Is the mutant with this number chosen? Where /tmp/kav-reached exists, the mutants that were asked for are appended to
// it.
inline bool kav_is(int number) {
  const int error = errno;
  static const int chosen = [] {
    char text[16] = "";
    const long file = syscall(SYS_openat, AT_FDCWD, "/tmp/kav-number", O_RDONLY);
    (void)!syscall(SYS_read, file, text, sizeof text - 1);
    syscall(SYS_close, file);
    return atoi(text);
  }();
  static bool is_reached[20000];
  if (chosen == 0 && !is_reached[number]) {
    is_reached[number] = true;
    const long file = syscall(SYS_openat, AT_FDCWD, "/tmp/kav-reached", O_WRONLY | O_APPEND);
    (void)!syscall(SYS_write, file, &number, sizeof number);
    syscall(SYS_close, file);
  }
  errno = error;
  return number == chosen;
}

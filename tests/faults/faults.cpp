#include "tests/faults/faults.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

FaultPlan plan;
bool planned = false;
bool from_environment = false;
int calls = 0;
int allocations = 0;
std::vector<long> made_calls;  // as many as its room takes, which is no allocation of the program's

// Counts a system call. True when it fails.
bool fails(long number) {
  ++calls;
  if (calls == plan.kill_at_call) raise(SIGKILL);
  if (made_calls.size() < made_calls.capacity()) made_calls.push_back(number);
  const bool is_met = calls == plan.call || (plan.is_lasting && calls > plan.call);
  if (!is_met || plan.error == 0) return false;
  errno = plan.error;
  return true;
}

long made(long number, auto... arguments) { return syscall(number, arguments...); }

// The call itself, unless it fails.
template <typename Result = int>
Result faulty(long number, auto... arguments) {
  return static_cast<Result>(fails(number) ? -1 : made(number, arguments...));
}

// How much of `size` bytes a write takes.
size_t taken(size_t size) { return calls == plan.call ? std::min<size_t>(size, 1) : size; }

}  // namespace

void plan_faults(const FaultPlan &new_plan) {
  made_calls.clear();
  made_calls.reserve(1000);
  plan = new_plan;
  planned = true;
  from_environment = false;
  calls = 0;
  allocations = 0;
}

bool fault_happened() {
  return (plan.call > 0 && calls >= plan.call) || (plan.allocation > 0 && allocations >= plan.allocation);
}

std::string lasting_calls() {
  std::map<long, std::string> names = {{SYS_pwrite64, " write"},
                                       {SYS_ftruncate, " cut"},
                                       {SYS_fsync, " flush"},
                                       {SYS_renameat, " rename"},
                                       {SYS_unlinkat, " remove"}};
  std::string all;
  for (const long call : made_calls) all += names[call];
  return all.erase(0, 1);
}

bool allocation_fails() {
  if (!planned) {
    const char *number = std::getenv("KAV_FAIL_ALLOCATION");
    plan.allocation = number == nullptr ? 0 : static_cast<int>(std::strtol(number, nullptr, 10));
    planned = from_environment = true;
  }
  if (++allocations != plan.allocation) return false;
  if (from_environment) made(SYS_close, made(SYS_openat, AT_FDCWD, "fault-met", O_WRONLY | O_CREAT, 0600));
  errno = ENOMEM;
  return true;
}

// The program's own definitions go before those of the C library.
extern "C" {

int open(const char *path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return faulty(SYS_openat, AT_FDCWD, path, flags, mode);
}

ssize_t read(int file, void *buffer, size_t size) { return faulty<ssize_t>(SYS_read, file, buffer, size); }
ssize_t pread(int file, void *buffer, size_t size, off_t at) {
  return faulty<ssize_t>(SYS_pread64, file, buffer, size, at);
}
ssize_t write(int file, const void *data, size_t size) {
  return fails(SYS_write) ? -1 : made(SYS_write, file, data, taken(size));
}
ssize_t pwrite(int file, const void *data, size_t size, off_t at) {
  return fails(SYS_pwrite64) ? -1 : made(SYS_pwrite64, file, data, taken(size), at);
}

int fsync(int file) { return faulty(SYS_fsync, file); }
int ftruncate(int file, off_t size) noexcept { return faulty(SYS_ftruncate, file, size); }
int rename(const char *from, const char *to) noexcept { return faulty(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to); }
int linkat(int from, const char *old, int to, const char *path, int flags) noexcept {
  return faulty(SYS_linkat, from, old, to, path, flags);
}
// What can't be removed stays: this one is only counted.
int unlink(const char *path) noexcept {
  fails(SYS_unlinkat);
  return static_cast<int>(made(SYS_unlinkat, AT_FDCWD, path, 0));
}
int fchown(int file, uid_t owner, gid_t group) noexcept { return faulty(SYS_fchown, file, owner, group); }
int fchmod(int file, mode_t mode) noexcept { return faulty(SYS_fchmod, file, mode); }
ssize_t flistxattr(int file, char *names, size_t size) noexcept {
  return faulty<ssize_t>(SYS_flistxattr, file, names, size);
}
ssize_t fgetxattr(int file, const char *name, void *value, size_t size) noexcept {
  return faulty<ssize_t>(SYS_fgetxattr, file, name, value, size);
}
ssize_t getrandom(void *bytes, size_t size, unsigned flags) {
  return faulty<ssize_t>(SYS_getrandom, bytes, size, flags);
}

int faulty_flock(int file, int operation) asm("flock");  // there is a record of that name, too
int faulty_flock(int file, int operation) { return faulty(SYS_flock, file, operation); }

// A file whose close fails is closed all the same.
int close(int file) {
  const bool failing = fails(SYS_close);
  const int error = errno;
  const long result = made(SYS_close, file);
  if (!failing) return static_cast<int>(result);
  errno = error;
  return -1;
}
}

#include "util/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "util/memory.h"
#include "util/trace.h"

namespace {

constexpr mode_t kNewFileMode = 0640;  // settings hold passwords
constexpr mode_t kUnfinishedMode = 0600;
constexpr size_t kFirstRoom = 4096;    // for a file that does not tell its size, such as a pipe
constexpr int kLongestLinkChain = 40;  // as the kernel's own limit

// What came of one way to save. other_way: the file is untouched, and writing in place may do.
enum class Outcome { saved, failed, other_way };

// The file that is to be replaced; no descriptor when there is none yet.
struct OldFile {
  Descriptor file;
  struct stat state = {};
};

// A file that we made; it is removed at the end of its scope unless its path is cleared before.
struct MadeFile {
  Descriptor file;
  std::string path;
  MadeFile() = default;
  MadeFile(const MadeFile &) = delete;
  MadeFile &operator=(const MadeFile &) = delete;
  ~MadeFile() {
    const int error = errno;
    if (!path.empty()) unlink(path.c_str());
    errno = error;
  }
};

// The result of a system call, which is made again while signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// For what no system call has told yet.
bool fails_with(int error) {
  errno = error;
  return false;
}

bool read_to_end(int file, std::string &content) {
  struct stat state = {};
  const bool size_known = fstat(file, &state) == 0 && state.st_size > 0;
  size_t room = size_known ? static_cast<size_t>(state.st_size) + 1 : kFirstRoom;  // the one more meets the end
  size_t used = 0;
  for (;;) {
    content.resize(std::min(room, kLargestFile + 1));
    const ssize_t got = uninterrupted([&] { return read(file, content.data() + used, content.size() - used); });
    if (got < 0) return false;
    if (got == 0) break;
    used += static_cast<size_t>(got);
    if (used > kLargestFile) return fails_with(EFBIG);
    if (used == content.size()) room = 2 * used;
  }
  content.resize(used);
  return true;
}

// Writes the whole of `content` at `offset`.
bool write_whole(int file, std::string_view content, size_t offset) {
  while (!content.empty()) {
    const ssize_t written =
        uninterrupted([&] { return pwrite(file, content.data(), content.size(), static_cast<off_t>(offset)); });
    if (written <= 0) return false;
    content.remove_prefix(static_cast<size_t>(written));
    offset += static_cast<size_t>(written);
  }
  return true;
}

bool set_size(int file, size_t size) {
  return uninterrupted([&] { return ftruncate(file, static_cast<off_t>(size)); }) == 0;
}

bool flush(int file) {
  return uninterrupted([&] { return fsync(file); }) == 0;
}

// Some network file systems can't flush a folder (EINVAL) and keep its entries in order by themselves.
bool flush_folder(int folder) { return flush(folder) || errno == EINVAL; }

// An interrupted close has closed the file, and what it held was flushed before.
bool close_checked(Descriptor &file) { return close(std::exchange(file.number, -1)) == 0 || errno == EINTR; }

// True when the file holds exactly `content`. Allocates nothing: it is asked when a save went wrong, too.
bool holds(int file, std::string_view content) {
  char buffer[8192];
  size_t offset = 0;
  for (;;) {
    const ssize_t got = uninterrupted([&] { return pread(file, buffer, sizeof buffer, static_cast<off_t>(offset)); });
    if (got < 0) return false;
    if (got == 0) return offset == content.size();
    const std::string_view piece(buffer, static_cast<size_t>(got));
    if (content.substr(offset, piece.size()) != piece) return false;
    offset += piece.size();
  }
}

std::string name_of(const std::string &path) { return path.substr(path.rfind('/') + 1); }

std::string path_in(const std::string &folder, const std::string &name) { return folder + "/" + name; }

Descriptor open_folder(const std::string &folder) {
  return Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// The path after all symbolic links, also where the last one points to a file that is not there yet; "" on failure.
std::string behind_links(std::string path) {
  for (int links = 0; links < kLongestLinkChain; ++links) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    if (real != nullptr) return real.get();
    if (errno != ENOENT) return "";
    char buffer[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), buffer, sizeof buffer);
    if (length < 0) return path;
    const std::string target(buffer, static_cast<size_t>(length));
    path = target.starts_with('/') ? target : beside(path, target);
  }
  return "";
}

// Opens what is to be replaced, through its links so that the kernel's guard against links in shared folders works.
// It must be writable, although a renaming would do without: a write-protected file stays as it is.
// True also when there is no such file yet.
bool open_old_file(const char *path, OldFile &old) {
  old.file.number = open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (old.file.number < 0) return errno == ENOENT;
  return fstat(old.file.number, &old.state) == 0 && (S_ISREG(old.state.st_mode) || fails_with(EPERM));
}

// True when `path` is still the file that was opened, and no one put another one into its place.
bool is_still_there(const std::string &path, const OldFile &old) {
  struct stat state = {};
  const bool found = lstat(path.c_str(), &state) == 0;
  if (old.file.number < 0) return !found || fails_with(EEXIST);
  return (found && state.st_dev == old.state.st_dev && state.st_ino == old.state.st_ino) || fails_with(ESTALE);
}

// The names of copies: the prefix, a number, "-" and the name of the file; and of one that keeps what the file held,
// ".", a number that tells the new content from others, and the end.
constexpr std::string_view kCopyPrefix = ".kavsetup-";
constexpr std::string_view kOldContent = ".old";
constexpr size_t kDigits = 16;  // of a number

std::string digits_of(uint64_t number) {
  char digits[kDigits + 1] = "";
  std::snprintf(digits, sizeof digits, "%016" PRIx64, number);
  return digits;
}

// FNV-1a: a content that was written half differs in it from the whole.
uint64_t number_of_content(std::string_view content) {
  uint64_t number = 0xCBF29CE484222325;
  for (const char c : content) number = (number ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return number;
}

// A path in `folder` for a copy of the file `name` that no one can foresee; "" on failure.
std::string unforeseeable_path(const std::string &folder, const std::string &name) {
  uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) != sizeof number) return "";
  return path_in(folder, std::string(kCopyPrefix) + digits_of(number) + "-" + name);
}

// On failure errno tells why.
bool create_in(const std::string &folder, const std::string &name, mode_t mode, MadeFile &made) {
  std::string path = unforeseeable_path(folder, name);
  made.file.number = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
  if (made.file.number < 0) return false;
  made.path.swap(path);  // a copy could find no memory, and the file would stay
  return true;
}

// A file without a name, so that a killed process leaves nothing behind; or one with a name where there are no such
// files or no way to name them later.
bool create_unnamed_in(const std::string &folder, const std::string &name, mode_t mode, MadeFile &made) {
  if (access("/proc/self/fd", F_OK) == 0) {
    made.file.number = open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
  }
  return made.file.number >= 0 || create_in(folder, name, mode, made);
}

bool give_name(const std::string &folder, const std::string &name, MadeFile &made) {
  if (!made.path.empty()) return true;
  const std::string opened = "/proc/self/fd/" + std::to_string(made.file.number);
  std::string path = unforeseeable_path(folder, name);
  const auto link_path = [&] { return linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW); };
  if (uninterrupted(link_path) != 0) return false;
  made.path.swap(path);
  return true;
}

// Brings a made file to disk, complete and with its name.
bool finish(const std::string &folder, const std::string &name, std::string_view content, MadeFile &made) {
  return write_whole(made.file.number, content, 0) && flush(made.file.number) && give_name(folder, name, made) &&
         close_checked(made.file);
}

// --- the attributes of a file

// The kernel makes these from the content and the other attributes; a copy would be wrong.
bool is_made_by_kernel(std::string_view attribute) {
  return attribute == "security.ima" || attribute == "security.evm";
}

bool read_attribute(int file, const char *name, std::string &value) {
  value.resize(XATTR_SIZE_MAX);
  const ssize_t size = fgetxattr(file, name, value.data(), value.size());
  value.resize(static_cast<size_t>(std::max<ssize_t>(size, 0)));
  return size >= 0;
}

// An attribute that the new file has already (the system labels new files) needs no right to be set.
bool keep_extended_attribute(int from, int to, const char *name) {
  std::string value;
  std::string present;
  if (!read_attribute(from, name, value)) return false;
  if (read_attribute(to, name, present) && present == value) return true;
  return fsetxattr(to, name, value.data(), value.size(), 0) == 0;
}

// Access control lists are among them.
bool keep_extended_attributes(int from, int to) {
  ssize_t size = flistxattr(from, nullptr, 0);  // most files have none
  std::string names(static_cast<size_t>(std::max<ssize_t>(size, 0)), '\0');
  if (size > 0) size = flistxattr(from, names.data(), names.size());
  if (size < 0) return errno == ENOTSUP;
  names.resize(static_cast<size_t>(size));
  for (size_t at = 0; at < names.size(); at += std::strlen(&names[at]) + 1) {
    const char *name = &names[at];
    if (!is_made_by_kernel(name) && !keep_extended_attribute(from, to, name)) return false;
  }
  return true;
}

// A folder can give its new files an access control list of its own.
bool drop_inherited_list(int file) {
  return fremovexattr(file, "system.posix_acl_access") == 0 || errno == ENODATA || errno == ENOTSUP;
}

// In this order: a change of the owner can clear mode bits, and a list changes what the mode's group bits mean.
bool keep_attributes(const OldFile &old, int to) {
  return fchown(to, old.state.st_uid, old.state.st_gid) == 0 && drop_inherited_list(to) &&
         fchmod(to, old.state.st_mode & 07777) == 0 && keep_extended_attributes(old.file.number, to);
}

// --- the first way: a new file, renamed over the old one

// Rights and mount points are in the way of new files and renaming only; a full or broken disk is in every way.
Outcome outcome_of_error(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case EXDEV:
      return Outcome::other_way;
    default:
      return Outcome::failed;
  }
}

Outcome save_by_renaming(const std::string &path, const OldFile &old, std::string_view content) {
  const bool exists = old.file.number >= 0;
  const std::string folder = folder_of(path);
  const Descriptor directory = open_folder(folder);
  MadeFile made;
  if (directory.number < 0 ||
      !create_unnamed_in(folder, name_of(path), exists ? kUnfinishedMode : kNewFileMode, made)) {
    return outcome_of_error(errno);
  }
  if (exists && !keep_attributes(old, made.file.number)) return Outcome::other_way;
  if (!finish(folder, name_of(path), content, made) || !is_still_there(path, old)) return Outcome::failed;
  if (uninterrupted([&] { return std::rename(made.path.c_str(), path.c_str()); }) != 0) return outcome_of_error(errno);
  made.path.clear();
  return flush_folder(directory.number) ? Outcome::saved : Outcome::failed;
}

// --- the second way: in place, after a copy

bool copy_into(const std::string &folder, const std::string &name, std::string_view content, MadeFile &copy) {
  const Descriptor directory = open_folder(folder);
  MadeFile made;
  if (directory.number < 0 || !create_unnamed_in(folder, name, kUnfinishedMode, made) ||
      !finish(folder, name, content, made) || !flush_folder(directory.number)) {
    return false;
  }
  copy.path.swap(made.path);
  return true;
}

// Beside the file if possible, where a person looks first; else where everyone may write, first where it lasts.
bool copy_somewhere(const std::string &path, std::string_view content, std::string_view next, MadeFile &copy) {
  const std::string name = name_of(path) + "." + digits_of(number_of_content(next)) + std::string(kOldContent);
  return copy_into(folder_of(path), name, content, copy) || copy_into("/var/tmp", name, content, copy) ||
         copy_into("/tmp", name, content, copy);
}

// What the file grows by goes first, and to disk: a full disk shows before any old byte is lost. The file is cut last.
bool overwrite(int file, std::string_view old_content, std::string_view content) {
  const size_t old_size = old_content.size();
  if (content.size() > old_size) {
    if (!write_whole(file, content.substr(old_size), old_size) || !flush(file)) return false;
  }
  return write_whole(file, content.substr(0, old_size), 0) && set_size(file, content.size()) && flush(file);
}

// True when the old content stands in the file again. What was never overwritten is not written again: it could fail as
// the new content did.
bool put_back(int file, std::string_view old_content) {
  return set_size(file, old_content.size()) && (holds(file, old_content) || write_whole(file, old_content, 0)) &&
         flush(file);
}

// Allocates nothing once the file is touched.
bool save_in_place(const std::string &path, const OldFile &old, std::string_view content) {
  std::string old_content;
  MadeFile copy;
  if (!read_to_end(old.file.number, old_content) || !copy_somewhere(path, old_content, content, copy)) return false;
  if (overwrite(old.file.number, old_content, content)) return true;
  const int error = errno;
  const bool is_back = put_back(old.file.number, old_content);
  errno = error;
  if (!is_back) {
    myfprintf("util/files: %s is damaged, its old content is in %s\n", path.c_str(), copy.path.c_str());
    copy.path.clear();
  }
  return false;
}

bool replace(const char *path, std::string_view content) {
  OldFile old;
  if (!open_old_file(path, old)) return false;
  const bool exists = old.file.number >= 0;
  if (exists && holds(old.file.number, content)) return true;

  const std::string target = behind_links(path);
  if (target.empty() || !is_still_there(target, old)) return false;
  const bool linked = exists && old.state.st_nlink > 1;
  const Outcome outcome = linked ? Outcome::other_way : save_by_renaming(target, old, content);
  if (outcome == Outcome::other_way && exists) return save_in_place(target, old, content);
  return outcome == Outcome::saved;
}

// --- the lock, and what a killed writer left

// Bits and group of the file that the lock is for, so that whoever may write that one can take the lock, too.
void give_writers_access(int lock, const std::string &target) {
  struct stat state = {};
  if (stat(target.c_str(), &state) != 0 || (state.st_mode & S_IWGRP) == 0) return;
  if (fchown(lock, static_cast<uid_t>(-1), state.st_gid) == 0) fchmod(lock, kUnfinishedMode | S_IRGRP | S_IWGRP);
}

std::string lock_path(const std::string &target) { return beside(target, "." + name_of(target) + ".lock"); }

// Opens the lock's file; where the folder takes no new file, the file itself.
bool open_lock(const std::string &target, SaveLock &lock) {
  lock.path = lock_path(target);
  lock.file.number =
      open(lock.path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kUnfinishedMode);
  if (lock.file.number >= 0) {
    give_writers_access(lock.file.number, target);
    return true;
  }
  if (outcome_of_error(errno) == Outcome::failed) return false;
  lock.path.clear();
  lock.file.number = open(target.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  return lock.file.number >= 0;
}

// Whether the locked file is still the one that others find: its last holder removes it.
bool is_same_file(const SaveLock &lock) {
  struct stat locked = {};
  struct stat found = {};
  if (lock.path.empty()) return true;
  return fstat(lock.file.number, &locked) == 0 && stat(lock.path.c_str(), &found) == 0 &&
         locked.st_dev == found.st_dev && locked.st_ino == found.st_ino;
}

std::string content_of(const std::string &path) {
  std::string content;
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (file.number < 0 || !read_to_end(file.number, content)) content.clear();
  return content;
}

// A copy beside a file.
struct Copy {
  std::string path;
  bool is_old;       // it keeps what the file held
  std::string next;  // the number of what the file was to hold then
};

// Whether the file was left between its old and its new content.
bool is_needed(const Copy &copy, const std::string &target) {
  const std::string content = content_of(target);
  return copy.is_old && digits_of(number_of_content(content)) != copy.next && content_of(copy.path) != content;
}

struct EntriesCloser {
  void operator()(DIR *entries) const { closedir(entries); }
};
using Entries = std::unique_ptr<DIR, EntriesCloser>;

// Takes a name apart; false when it is not that of a copy of the file `name`.
bool is_copy_of(const std::string &name, std::string_view entry, Copy &copy) {
  const std::string end = "-" + name;
  if (!entry.starts_with(kCopyPrefix)) return false;
  copy.is_old = entry.ends_with(kOldContent);
  if (copy.is_old) {
    entry.remove_suffix(kOldContent.size());
    if (entry.size() < kDigits + 1) return false;
    copy.next = entry.substr(entry.size() - kDigits);
    entry.remove_suffix(kDigits + 1);
  }
  return entry.size() == kCopyPrefix.size() + kDigits + end.size() && entry.ends_with(end);
}

template <typename Take>
void for_each_copy(const std::string &target, Take take) {
  const Entries entries(opendir(folder_of(target).c_str()));
  while (const dirent *entry = entries == nullptr ? nullptr : readdir(entries.get())) {
    Copy copy = {beside(target, entry->d_name), false, ""};
    if (is_copy_of(name_of(target), entry->d_name, copy)) take(copy);
  }
}

// No other writer is at work: what none of them needs any more was given up.
void remove_given_up(const std::string &target) {
  for_each_copy(target, [&](const Copy &copy) {
    if (!is_needed(copy, target)) unlink(copy.path.c_str());
  });
}

bool lock_file(const char *path, SaveLock &lock, int wait) {
  constexpr int kPause = 20;  // ms
  const std::string target = behind_links(path);
  if (target.empty()) return false;
  for (int waited = 0;; waited += kPause) {
    if (!open_lock(target, lock)) return false;
    const bool locked = flock(lock.file.number, LOCK_EX | LOCK_NB) == 0;
    if (locked && is_same_file(lock)) break;
    const int error = locked ? EWOULDBLOCK : errno;
    if (error != EWOULDBLOCK && error != EINTR) return false;
    lock.path.clear();  // it is another one's
    close_checked(lock.file);
    if (waited >= wait) return fails_with(EWOULDBLOCK);
    usleep(kPause * 1000);
  }
  remove_given_up(target);
  return true;
}

}  // namespace

Descriptor::~Descriptor() {
  const int error = errno;  // of what failed before
  if (number >= 0) close(number);
  errno = error;
}

FILE *OpenAFile(const char *path, const char *mode) { return std::fopen(path, mode); }

int CloseAFile(FILE *stream) { return std::fclose(stream) == 0; }

int AFileExists(const char *path) {
  const Stream stream(OpenAFile(path, "r"));
  return stream != nullptr;
}

int does_file_exist(const char *path, int mode) {
  struct stat status = {};
  const bool exists = stat(path, &status) == 0;
  if (mode == kDirectoryOnly) return exists && S_ISDIR(status.st_mode);
  return exists || errno != ENOENT;
}

int CreateAFile(const char *path) {
  const Descriptor file(open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode));
  return file.number >= 0;
}

int AFileHasAtLeastOneLine(const char *path) {
  char line[256];
  const Stream stream(OpenAFile(path, "r"));
  return stream != nullptr && std::fgets(line, sizeof line, stream.get()) != nullptr;
}

char *UCTgetpath(char *dst, const char *path) {
  const std::string_view whole = path;
  const size_t separator = whole.find_last_of("\\:/");
  const size_t length = separator == std::string_view::npos ? 0 : separator;
  std::memmove(dst, path, length);
  dst[length] = '\0';
  return dst;
}

char *UCTgetfilename(char *dst, const char *path) {
  const std::string_view whole = path;
  const std::string_view name = whole.substr(whole.find_last_of("\\:/") + 1);  // npos + 1 is 0
  std::memmove(dst, name.data(), name.size() + 1);
  return dst;
}

std::string folder_of(const std::string &path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string beside(const std::string &path, const std::string &name) {
  return path.substr(0, path.rfind('/') + 1) + name;
}

int UCTfileexists() { return 0; }

int read_file(const char *path, std::string &content) {
  const bool read = in_memory([&] {
    const Descriptor file(open(path, O_RDONLY | O_NOCTTY | O_CLOEXEC));
    return file.number >= 0 && read_to_end(file.number, content);
  });
  if (!read) content.clear();
  return read;
}

int replace_file(const char *path, std::string_view content) {
  return in_memory([&] { return replace(path, content); });
}

int lock_for_saving(const char *path, SaveLock &lock, int wait) {
  return in_memory([&] { return lock_file(path, lock, wait); });
}

int is_saved_now(const char *path) {
  return in_memory([&] {
    const std::string target = behind_links(path);
    const Descriptor lock(open(lock_path(target).c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return lock.number >= 0 && flock(lock.number, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  });
}

std::string interrupted_copy(const char *path) {
  std::string found;
  const std::string target = behind_links(path);
  for_each_copy(target, [&](const Copy &copy) {
    if (is_needed(copy, target)) found = copy.path;
  });
  return found;
}

SaveLock::~SaveLock() {
  const int error = errno;
  if (!path.empty()) unlink(path.c_str());  // before the lock goes: who waits for it looks again
  errno = error;
}

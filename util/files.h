// Files: opening, testing, and replacing one safely.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

// A stream that is closed at the end of its scope.
struct StreamCloser {
  void operator()(FILE *stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<FILE, StreamCloser>;

// A descriptor that is closed at the end of its scope.
struct Descriptor {
  int number = -1;
  Descriptor() = default;
  explicit Descriptor(int opened) : number(opened) {}
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor();
};

// Wrap fopen and fclose. CloseAFile returns 1, or 0 when the last bytes could not be written.
[[nodiscard]] FILE *OpenAFile(const char *path, const char *mode);
int CloseAFile(FILE *stream);
// 1 when the file can be opened for reading.
int AFileExists(const char *path);
// 1 when the path exists (or can't be told not to); with mode kDirectoryOnly when it is a directory.
inline constexpr int kAnyFile = 1;
inline constexpr int kDirectoryOnly = 2;
int does_file_exist(const char *path, int mode);
// Makes the file empty (mode "w+"); a new one is readable by its owner and group only, since settings hold passwords.
// 1, or 0 when it can't be opened.
int CreateAFile(const char *path);
// 1 when a first line of up to 255 characters can be read.
int AFileHasAtLeastOneLine(const char *path);

// The part before the last "\", ":" or "/" (empty when there is none or it is the first character), and the part after
// it (the whole path when there is none). `dst` holds as much as `path`. Return `dst`.
char *UCTgetpath(char *dst, const char *path);
char *UCTgetfilename(char *dst, const char *path);
// The folder of a path ("." for a bare name), and the path of `name` in it.
std::string folder_of(const std::string &path);
std::string beside(const std::string &path, const std::string &name);
// Always 0: kept, callers of the library rely on it.
int UCTfileexists();

// The whole content of a file or pipe. 1, or 0 (content empty, errno set) when it can't be read to its end, is a
// directory, finds no memory, or holds more than kLargestFile bytes: no file of ours does, and a device could go on for
// ever.
inline constexpr size_t kLargestFile = size_t{64} << 20;
[[nodiscard]] int read_file(const char *path, std::string &content);

// Gives the file `path` the content `content`, whole or not at all. A symbolic link is followed. Unchanged content is
// not written. Otherwise a complete new file is written beside the old one (owner, group, mode and extended attributes
// kept), flushed to disk and renamed over it, and the directory flushed. Where that can't be done (more than one hard
// link, a directory that can't be written, an owner that can't be kept, a mount point) the content goes into the old
// file in place, after a flushed copy (beside it, in /var/tmp or in /tmp) that is removed when all is on disk. A file
// that is not there yet is created readable by its owner and group only. A file that is not writable for the caller, or
// no regular file, is refused.
// 1; or 0, errno set, when the file could not be replaced: it then holds what it held, and nothing is left beside it.
// Two exceptions that only a broken disk brings: when just the last flush of the directory fails, the complete new
// content stands; and when the old content can't be brought back into a file written in place, its copy
// (".kavsetup-...") is left behind.
[[nodiscard]] int replace_file(const char *path, std::string_view content);

// The lock of a file that is saved, until the end of its scope: an advisory lock on ".NAME.lock" beside it, which only
// those who may write the file can open. A killed process leaves no lock, at most the empty file.
struct SaveLock {
  Descriptor file;
  std::string path;  // "" where the folder takes no new file: the file itself is locked
  SaveLock() = default;
  SaveLock(const SaveLock &) = delete;
  SaveLock &operator=(const SaveLock &) = delete;
  ~SaveLock();
};
// Keeps other programs of the product from saving `path`, and removes copies that killed ones left beside it and that
// nobody needs. Waits at most `wait` milliseconds for another one's save to end.
// 1; or 0, errno set, when the other one takes longer (EWOULDBLOCK) or the file can't be written.
inline constexpr int kSaveWait = 2000;  // ms
[[nodiscard]] int lock_for_saving(const char *path, SaveLock &lock, int wait = kSaveWait);
// 1 while another program holds that lock.
int is_saved_now(const char *path);
// The copy beside `path` of what it held before it was written in place, when that was interrupted; "" for none.
std::string interrupted_copy(const char *path);

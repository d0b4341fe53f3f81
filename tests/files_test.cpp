// Replacing files: on the real file system, with system calls that fail on demand, as another user, on a full disk.
#include "util/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// What the system calls below do: the call number `fail_at` fails with `error`, every write takes at most `longest`.
struct Faults {
  int fail_at = 0, error = EIO;
  size_t longest = SIZE_MAX;
  std::vector<std::string> calls;
} faults;

bool fails(const std::string &call) {
  faults.calls.push_back(call);
  if (static_cast<int>(faults.calls.size()) != faults.fail_at) return false;
  errno = faults.error;
  return true;
}

int made(long number, auto... arguments) { return static_cast<int>(syscall(number, arguments...)); }

}  // namespace

// The program's own definitions go before those of the C library.
extern "C" {
ssize_t pwrite(int file, const void *data, size_t size, off_t offset) {
  return fails("write") ? -1 : syscall(SYS_pwrite64, file, data, std::min(size, faults.longest), offset);
}
int fsync(int file) {
  struct stat state = {};
  fstat(file, &state);
  return fails(S_ISDIR(state.st_mode) ? "flush folder" : "flush") ? -1 : made(SYS_fsync, file);
}
int ftruncate(int file, off_t size) noexcept { return fails("cut") ? -1 : made(SYS_ftruncate, file, size); }
int linkat(int from, const char *old, int to, const char *path, int flags) noexcept {
  return fails("name") ? -1 : made(SYS_linkat, from, old, to, path, flags);
}
int rename(const char *from, const char *to) noexcept { return fails("rename") ? -1 : made(SYS_rename, from, to); }
}

namespace {

constexpr int kSkip = 77;
constexpr uid_t kNobody = 65534;

struct Files : testing::Test {
  std::string folder = (fs::temp_directory_path() / "kavsetup-files-XXXXXX").string();
  std::string file;
  void SetUp() override {
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    chmod(folder.c_str(), 0755);
    file = folder + "/ups.cfg";
    put(file, "old content\n");
    faults = {};
  }
  void TearDown() override { fs::remove_all(folder); }

  static void put(const std::string &path, std::string_view content) {
    const Stream stream(OpenAFile(path.c_str(), "w"));
    ASSERT_EQ(std::fwrite(content.data(), 1, content.size(), stream.get()), content.size());
  }
  static std::string get(const std::string &path) {
    std::string content;
    return read_file(path.c_str(), content) == 1 ? content : "<none>";
  }
  static struct stat state_of(const std::string &path) {
    struct stat state = {};
    lstat(path.c_str(), &state);
    return state;
  }
  // How many entries the folder holds: nothing may be left beside the files.
  [[nodiscard]] long entries() const { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()); }
};

// The result of `work` in a process of its own, as root or as another user.
int in_child(const std::function<int()> &work, uid_t user = 0) {
  const pid_t child = fork();
  if (child == 0) {
    const bool changed = user == 0 || (setegid(user) == 0 && seteuid(user) == 0);
    _exit(changed ? work() : kSkip);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(Files, NewFilesAreForOwnerAndGroup) {
  umask(022);
  const std::string created = folder + "/created";
  const std::string replaced = folder + "/replaced";
  EXPECT_EQ(CreateAFile(created.c_str()), 1);
  EXPECT_EQ(AFileHasAtLeastOneLine(created.c_str()), 0);
  EXPECT_EQ(replace_file(replaced.c_str(), "new"), 1);
  EXPECT_EQ(get(replaced), "new");
  for (const std::string &path : {created, replaced}) EXPECT_EQ(state_of(path).st_mode & 07777, 0640U);
}

TEST_F(Files, LinksStay) {
  fs::create_directory(folder + "/sub");
  fs::create_symlink("sub/real", folder + "/link");
  fs::create_hard_link(file, folder + "/second");
  for (const char *content : {"the target is made, the file grows", "shrinks"}) {
    EXPECT_EQ(replace_file((folder + "/link").c_str(), content), 1);
    EXPECT_EQ(get(folder + "/sub/real"), content);
    EXPECT_EQ(replace_file(file.c_str(), content), 1);
    EXPECT_EQ(get(folder + "/second"), content);
  }
  EXPECT_TRUE(fs::is_symlink(folder + "/link"));
  EXPECT_EQ(entries(), 4);
}

TEST_F(Files, AttributesAreKept) {
  // A list that lets user 7 read: version 2, then (tag, rights, id) for owner, user 7, group, mask and others.
  constexpr std::string_view list(
      "\2\0\0\0\1\0\6\0\377\377\377\377\2\0\4\0\7\0\0\0\4\0\0\0\377\377\377\377\20\0\4\0\377\377\377\377\40\0\0\0"
      "\377\377\377\377",
      44);
  const bool possible = chown(file.c_str(), 1234, 1234) == 0 &&
                        setxattr(folder.c_str(), "system.posix_acl_default", list.data(), list.size(), 0) == 0 &&
                        setxattr(file.c_str(), "user.note", "site", 4, 0) == 0;
  chmod(file.c_str(), 0604);
  char value[64];
  const struct stat before = state_of(file);
  ASSERT_EQ(replace_file(file.c_str(), "new"), 1);
  EXPECT_NE(state_of(file).st_ino, before.st_ino);
  EXPECT_EQ(state_of(file).st_mode, before.st_mode);
  EXPECT_EQ(state_of(file).st_uid, before.st_uid);
  EXPECT_EQ(state_of(file).st_gid, before.st_gid);
  if (!possible) GTEST_SKIP() << "not root, or a file system without attributes and access control lists";
  EXPECT_EQ(getxattr(file.c_str(), "user.note", value, sizeof value), 4);
  EXPECT_EQ(getxattr(file.c_str(), "system.posix_acl_access", value, sizeof value), -1) << "the folder's own was taken";
  ASSERT_EQ(setxattr(file.c_str(), "system.posix_acl_access", list.data(), list.size(), 0), 0);
  ASSERT_EQ(replace_file(file.c_str(), "newer"), 1);
  ASSERT_EQ(getxattr(file.c_str(), "system.posix_acl_access", value, sizeof value), static_cast<long>(list.size()));
  EXPECT_EQ(std::string_view(value, list.size()), list);
}

TEST_F(Files, WhatIsNoRegularFileIsRefused) {
  ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0600), 0);
  fs::create_symlink("loop", folder + "/loop");
  for (const char *name : {"", "/pipe", "/loop", "/none/ups.cfg"}) {
    EXPECT_EQ(replace_file((folder + name).c_str(), "x"), 0) << name;
  }
  std::string content = "x";
  EXPECT_EQ(read_file("/dev/zero", content), 0);  // it never ends
  EXPECT_EQ(read_file(folder.c_str(), content), 0);
  EXPECT_EQ(content, "");
}

TEST_F(Files, WrittenOnlyWhenChangedAndFlushedInOrder) {
  const struct stat before = state_of(file);
  EXPECT_EQ(replace_file(file.c_str(), "old content\n"), 1);
  EXPECT_EQ(state_of(file).st_ino, before.st_ino);
  EXPECT_TRUE(faults.calls.empty());
  EXPECT_EQ(replace_file(file.c_str(), "new"), 1);
  std::erase(faults.calls, "name");  // not every file system has files without names
  EXPECT_EQ(faults.calls, (std::vector<std::string>{"write", "flush", "rename", "flush folder"}));
}

// Every call of a save fails once, in both ways to save, for files that grow and that shrink, with short writes.
TEST_F(Files, AnyFailureLeavesOneCompleteFile) {
  const std::string old(3000, 'o');
  const auto save_failing = [&](bool in_place, const std::string &content, int fail_at, int error) {
    fs::remove(folder + "/second");
    put(file, old);
    if (in_place) fs::create_hard_link(file, folder + "/second");
    faults = {.fail_at = fail_at, .error = error, .longest = 1500, .calls = {}};
    const int saved = replace_file(file.c_str(), content);
    const bool failed_one = static_cast<int>(faults.calls.size()) >= fail_at;
    const bool renamed = !in_place && faults.calls.back() == "flush folder";
    EXPECT_EQ(get(file), saved == 1 || renamed ? content : old);
    EXPECT_EQ(entries(), in_place ? 2 : 1);
    EXPECT_TRUE(saved == 1 || (failed_one && error != EINTR));
    return failed_one;
  };
  for (const bool in_place : {false, true}) {
    for (const size_t size : {0, 2000, 5000}) {
      for (const int error : {EIO, ENOSPC, EINTR, EPERM}) {
        int n = 1;
        while (n < 50 && save_failing(in_place, std::string(size, 'n'), n, error)) ++n;
        EXPECT_TRUE(n > 3 && n < 50) << n;
      }
    }
  }
}

TEST_F(Files, WriteErrorsInTheMiddleLeaveTheOldFile) {
  const std::string old(3000, 'o');
  put(file, old);
  for (const long links : {1, 2}) {
    if (links == 2) fs::create_hard_link(file, folder + "/second");
    for (const rlim_t limit : {4000, 2000}) {  // the second would not even let a copy be made
      const auto save_limited = [&] {
        const struct rlimit size = {.rlim_cur = limit, .rlim_max = limit};
        signal(SIGXFSZ, SIG_IGN);
        return setrlimit(RLIMIT_FSIZE, &size) == 0 ? replace_file(file.c_str(), std::string(limit + 500, 'n')) : kSkip;
      };
      EXPECT_EQ(in_child(save_limited), 0);
      EXPECT_EQ(get(file), old) << links << " " << limit;
      EXPECT_EQ(entries(), links);
    }
  }
}

TEST_F(Files, WithoutRightsOnFolderOrOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
  const ino_t same_file = state_of(file).st_ino;
  const struct {
    mode_t folder, file;
    int saved;
  } cases[] = {
      {0777, 0644, 0},   // the file is not for us
      {0755, 0666, 1},   // no new file can be made
      {0777, 0666, 1},   // the owner could not be kept
      {01777, 0666, 1},  // nor may the file be renamed over
  };
  for (const auto &c : cases) {
    chmod(folder.c_str(), c.folder);
    chmod(file.c_str(), c.file);
    const std::string content = std::to_string(c.folder);
    EXPECT_EQ(in_child([&] { return replace_file(file.c_str(), content); }, kNobody), c.saved) << content;
    EXPECT_EQ(get(file) == content, c.saved == 1) << content;
  }
  EXPECT_EQ(state_of(file).st_uid, 0U);
  EXPECT_EQ(state_of(file).st_ino, same_file);
  EXPECT_EQ(entries(), 1);
}

TEST_F(Files, MountedFilesAndFullDisks) {
  const std::string disk = folder + "/disk";
  const std::string full = disk + "/ups.cfg";
  const std::string old(20000, 'o');
  fs::create_directory(disk);
  put(folder + "/below", "below");
  const int result = in_child([&] {
    if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, "") != 0 ||
        mount((folder + "/below").c_str(), file.c_str(), "", MS_BIND, "") != 0 ||
        mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
      return kSkip;
    }
    const auto refused = [&] { return replace_file(full.c_str(), std::string(100000, 'n')) == 0 && get(full) == old; };
    if (replace_file(file.c_str(), "mounted") != 1 || get(folder + "/below") != "mounted" || entries() != 3) return 1;
    put(full, old);
    if (!refused()) return 2;  // by renaming
    fs::create_hard_link(full, disk + "/second");
    if (!refused()) return 3;  // in place
    return std::distance(fs::directory_iterator(disk), fs::directory_iterator()) == 2 ? 0 : 4;
  });
  if (result == kSkip) GTEST_SKIP() << "mounting is not permitted here";
  EXPECT_EQ(result, 0);
}

TEST(Paths, FolderAndName) {
  const char *const cases[][3] = {{"a/b/c", "a/b", "c"}, {"/c", "", "c"}, {"c", "", "c"}, {"C:\\x:y", "C:\\x", "y"}};
  for (const auto &[path, folder, name] : cases) {
    char out[16];
    EXPECT_STREQ(UCTgetpath(out, path), folder);
    EXPECT_STREQ(UCTgetfilename(out, path), name);
  }
}

}  // namespace

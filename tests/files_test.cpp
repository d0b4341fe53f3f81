// Replacing files: on the real file system, as another user, and where other ways than the usual are needed.
#include "util/files.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <tuple>

#include "tests/run.h"

namespace {

namespace fs = std::filesystem;

constexpr int kSkip = 77;
constexpr uid_t kNobody = 65534;

constexpr char kFile[] = "ups.cfg";

struct Files : testing::Test {
  const WorkingFolder folder;
  Files() {
    chmod(".", 0755);
    put_file(kFile, "old content\n");
    close(STDIN_FILENO);  // a file may get the number 0
  }
  ~Files() override { EXPECT_EQ(open("/", O_RDONLY | O_CLOEXEC), STDIN_FILENO) << "a file was left open"; }
};

struct stat state_of(const char *path) {
  struct stat state = {};
  lstat(path, &state);
  return state;
}

// How many entries a folder holds: nothing may be left beside the files.
long entries(const char *folder = ".") {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST_F(Files, NewFilesAreForOwnerAndGroup) {
  umask(022);
  EXPECT_EQ(CreateAFile("created"), 1);
  EXPECT_EQ(AFileHasAtLeastOneLine("created"), 0);
  std::string content;
  EXPECT_EQ(replace_file("replaced", "n"), 1);
  EXPECT_TRUE(read_file("replaced", content) == 1 && content == "n");
  for (const char *path : {"created", "replaced"}) EXPECT_EQ(state_of(path).st_mode & 07777, 0640U);
}

TEST_F(Files, LinksStay) {
  fs::create_directory("sub");
  fs::create_symlink("sub/real", "link");
  fs::create_hard_link(kFile, "second");
  for (const char *content : {"the target is made, the file grows", "shrinks"}) {
    EXPECT_EQ(replace_file("link", content), 1);
    EXPECT_EQ(get_file("sub/real"), content);
    EXPECT_EQ(replace_file(kFile, content), 1);
    EXPECT_EQ(get_file("second"), content);
  }
  EXPECT_TRUE(fs::is_symlink("link"));
  EXPECT_EQ(entries(), 4);
}

TEST_F(Files, AttributesAreKept) {
  // A list that lets user 7 read: version 2, then (tag, rights, id) for owner, user 7, group, mask and others.
  constexpr std::string_view list(
      "\2\0\0\0\1\0\6\0\377\377\377\377\2\0\4\0\7\0\0\0\4\0\0\0\377\377\377\377\20\0\4\0\377\377\377\377\40\0\0\0"
      "\377\377\377\377",
      44);
  const bool possible = chown(kFile, 1234, 1234) == 0 &&
                        setxattr(".", "system.posix_acl_default", list.data(), list.size(), 0) == 0 &&
                        setxattr(kFile, "user.note", "site", 4, 0) == 0 && setxattr(kFile, "user.empty", "", 0, 0) == 0;
  chmod(kFile, 0604);
  char value[64];
  const struct stat before = state_of(kFile);
  ASSERT_EQ(replace_file(kFile, "old content\n"), 1);
  EXPECT_EQ(state_of(kFile).st_ino, before.st_ino) << "written without a change";
  ASSERT_EQ(replace_file(kFile, "new"), 1);
  EXPECT_NE(state_of(kFile).st_ino, before.st_ino);
  const struct stat after = state_of(kFile);
  EXPECT_EQ(std::tie(after.st_mode, after.st_uid, after.st_gid),
            std::tie(before.st_mode, before.st_uid, before.st_gid));
  if (!possible) GTEST_SKIP() << "not root, or a file system without attributes and access control lists";
  EXPECT_EQ(getxattr(kFile, "user.note", value, sizeof value) + getxattr(kFile, "user.empty", value, 0), 4 + 0);
  EXPECT_EQ(getxattr(kFile, "system.posix_acl_access", value, sizeof value), -1) << "the folder's own was taken";
  ASSERT_EQ(setxattr(kFile, "system.posix_acl_access", list.data(), list.size(), 0), 0);
  ASSERT_EQ(replace_file(kFile, "newer"), 1);
  ASSERT_EQ(getxattr(kFile, "system.posix_acl_access", value, sizeof value), static_cast<long>(list.size()));
  EXPECT_EQ(std::string_view(value, list.size()), list);
}

TEST_F(Files, AreSavedByOneAtATime) {
  fs::create_symlink(kFile, "link");
  for (const mode_t mode : {0644, 0664}) {  // who may write the file may take the lock
    chmod(kFile, mode);
    SaveLock lock, second;
    ASSERT_EQ(lock_for_saving("link", lock), 1);
    EXPECT_EQ(state_of(".ups.cfg.lock").st_mode & 0777, mode == 0664 ? 0660U : 0600U);
    EXPECT_EQ(is_saved_now("link"), 1);
    EXPECT_EQ(lock_for_saving(kFile, second, 30), 0);
    EXPECT_EQ(errno, EWOULDBLOCK);
    EXPECT_EQ(lock_for_saving("none/ups.cfg", second), 0);
    EXPECT_EQ(errno, ENOENT);
    const Descriptor closed(999);
    fs::remove(".ups.cfg.lock");
    errno = EIO;
  }
  EXPECT_EQ(errno, EIO) << "the reason is lost in what the clean-up meets";
  put_file(".ups.cfg.lock", "");  // as a killed process leaves it
  EXPECT_EQ(is_saved_now(kFile), 0);
  EXPECT_EQ(entries(), 3);
}

TEST_F(Files, WhatIsNoRegularFileIsRefused) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  fs::create_symlink("loop", "loop");
  for (const auto &[name, error] : {std::pair(".", EISDIR), {"pipe", EPERM}, {"loop", ELOOP}, {"none/x", ENOENT}}) {
    EXPECT_TRUE(replace_file(name, "x") == 0 && errno == error) << name;
  }
  std::string content = "x";
  EXPECT_TRUE(read_file("/dev/zero", content) == 0 && errno == EFBIG);  // it never ends
  EXPECT_EQ(read_file(".", content), 0);
  EXPECT_EQ(content, "");
  for (const size_t more : {0, 1}) {
    fs::resize_file(kFile, kLargestFile + more);
    EXPECT_EQ(read_file(kFile, content), more == 0);
  }
}

TEST_F(Files, AFileInThePlaceOfTheOpenedOneIsLeftAlone) {
  const Descriptor opened(open(kFile, O_RDWR | O_CLOEXEC));
  fs::remove(kFile);
  put_file("ups.cfg (deleted)", "another's");  // where the link of the descriptor leads then
  EXPECT_EQ(replace_file(("/proc/self/fd/" + std::to_string(opened.number)).c_str(), "x"), 0);
  EXPECT_EQ(errno, ESTALE);
  EXPECT_EQ(get_file("ups.cfg (deleted)"), "another's");
}

TEST_F(Files, WithoutRightsOnFolderOrOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to become another user";
  const ino_t same_file = state_of(kFile).st_ino;
  const std::tuple<mode_t, mode_t, int> cases[] = {
      // folder  file  saved
      {0777, 0644, 0},   // the file is not for us
      {0755, 0666, 1},   // no new file can be made
      {0777, 0666, 1},   // the owner could not be kept
      {01777, 0666, 1},  // nor may the file be renamed over
  };
  for (const auto &[folder_mode, file_mode, saved] : cases) {
    chmod(".", folder_mode);
    chmod(kFile, file_mode);
    const std::string content = std::to_string(folder_mode);
    const auto save = [&] {
      if (setegid(kNobody) != 0 || seteuid(kNobody) != 0) return kSkip;
      SaveLock lock;
      return lock_for_saving(kFile, lock) == 1 ? replace_file(kFile, content) : 2;
    };
    EXPECT_EQ(status_of_child(save), saved) << content;
    EXPECT_EQ(get_file(kFile) == content, saved == 1) << content;
  }
  EXPECT_EQ(state_of(kFile).st_uid, 0U);
  EXPECT_EQ(state_of(kFile).st_ino, same_file);
  EXPECT_EQ(entries(), 1);
}

TEST_F(Files, MountedFilesAndNoProcesses) {
  put_file("below", "below");
  const int result = status_of_child([&] {
    if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, "") != 0 ||
        mount("below", kFile, "", MS_BIND, "") != 0) {
      return kSkip;
    }
    if (replace_file(kFile, "mounted") != 1 || get_file("below") != "mounted") return 1;
    if (umount(kFile) != 0 || mount("tmpfs", "/proc", "tmpfs", 0, "") != 0) return kSkip;
    if (replace_file(kFile, "named at once") != 1 || get_file(kFile) != "named at once") return 2;
    return entries() == 2 ? 0 : 3;
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

// Any bytes as a profile: the first byte chooses the mode, the rest is the file. It is rewritten unchanged, looked
// through, changed in every topic that it holds, and opened again.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corbix/profile_list.h"
#include "corbix/xconfig.h"
#include "util/files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kMostNames = 16;  // of a file, so that long files stay fast

// The file under test, in memory where the system has such a folder.
struct FuzzFile {
  std::string path;
  FuzzFile() : path(access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") {
    path += "/profile_fuzz." + std::to_string(getpid());
  }
  FuzzFile(const FuzzFile &) = delete;
  FuzzFile &operator=(const FuzzFile &) = delete;
  ~FuzzFile() { unlink(path.c_str()); }
};

void check(bool holds) {
  if (!holds) std::abort();
}

using Names = std::vector<std::pair<std::string, std::string>>;

Names topics_and_keys(const ProfileRecord *profile) {
  Names names;
  std::string topic = kTmpTopic;
  for (const ProfileLine *line = &profile->first; line != nullptr && names.size() < kMostNames; line = line->next) {
    char text[1024];
    if (get_topic(text_of(*line), text)) topic = text;
    get_entry(text_of(*line), text, profile->mode);
    names.emplace_back(topic, text);
  }
  return names;
}

// Rewriting what was read gives the same file, but for names that the store itself generates.
void check_rewriting(const char *path, int mode, std::string_view content) {
  ProfileHandle profile = XOpenProfileEx(path, mode);
  check(profile != nullptr);
  profile->modified = 1;
  check(XCloseProfileEx(&profile));
  std::string rewritten;
  check(read_file(path, rewritten));
  const bool comparable = !is_binary(mode) && !content.empty() && content.find("@$") == std::string_view::npos;
  check(!comparable || rewritten == content);
}

void use_every_name(const char *path, int mode) {
  ProfileHandle profile = XOpenProfileEx(path, mode);
  check(profile != nullptr);
  for (const auto &[topic, key] : topics_and_keys(profile)) {
    char value[1024];
    XGetPrivateProfileStringEx(profile, topic.c_str(), key.c_str(), value, sizeof value);
    XGetPrivateProfileStringNoTrimEx(profile, topic.c_str(), key.c_str(), value, sizeof value);
    for (const char *text : {"1", "a longer [value] # note", ""}) {
      const int set = XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), key.c_str(), text, "");
      check(!set || is_write(mode));
    }
    XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), "new", key.c_str(), "");
    if (key.size() % 4 == 0) XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), "", "", "");
  }
  check(XCloseProfileEx(&profile));
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file;
  if (size == 0) return 0;
  const int mode = data[0] % (kModeCount - 1) + 1;
  const std::string content(data + 1, data + size);
  check(replace_file(file.path.c_str(), content));
  check_rewriting(file.path.c_str(), mode, content);
  use_every_name(file.path.c_str(), mode);
  use_every_name(file.path.c_str(), mode);
  return 0;
}

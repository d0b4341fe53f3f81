// Any bytes as a profile: the first byte chooses the mode, the rest is the file. It is rewritten unchanged, looked
// through, changed in every topic that it holds, and opened again; a key amid its lines is set and set back.
#include <string_view>
#include <utility>
#include <vector>

#include "corbix/profile_list.h"
#include "corbix/xconfig.h"
#include "fuzz/fuzz.h"

namespace {

constexpr size_t kMostNames = 16;  // of a file, so that long files stay fast

constexpr char kTopic[] = "\x7F";  // that of the key, and in no file that is tried

using Names = std::vector<std::pair<std::string, std::string>>;

Names topics_and_keys(const ProfileRecord *profile) {
  Names names;
  std::string topic = kTmpTopic;
  for (const ProfileLine *line = &profile->first; line != nullptr && names.size() < kMostNames; line = line->next) {
    char text[kValueBufferSize];
    if (get_topic(text_of(*line), text)) topic = text;
    get_entry(text_of(*line), text, profile->mode);
    names.emplace_back(topic, text);
  }
  return names;
}

// Links, index and flags agree: every flagged line is what the index holds under its key, and the index holds no more.
void expect_consistent(ProfileHandle profile) {
  int flagged = 0;
  int indexed = 0;
  for (ProfileLine *line = &profile->first; line != nullptr; line = line->next) {
    expect(line->next == nullptr || line->next->prev == line);
    expect(line->txt != nullptr || (line == &profile->first && line->next == nullptr));
    expect(line->has_nul == (std::string_view(line->txt, line->length).find('\0') != std::string_view::npos));
    if (!line->hash_flag) continue;
    ++flagged;
    expect(findTopicHashPtr(text_of(*line), profile->hash) == line);
  }
  const HashHandle hash = profile->hash;
  const uint32_t buckets = hash->Tbl == &hash->few ? 1 : hash->TblSize;
  for (uint32_t i = 0; i < buckets; ++i) indexed += XMLGetCount(&hash->Tbl[i]);
  expect(flagged == indexed);
}

// Rewriting what was read gives the same file.
void expect_rewriting(const FuzzFile &file, int mode, const std::string &content) {
  ProfileHandle profile = XOpenProfileEx(file.path.c_str(), mode);
  expect(profile != nullptr);
  profile->modified = 1;
  expect(XCloseProfileEx(&profile));
  expect(is_binary(mode) || content.empty() || file.content() == content);
}

void expect_nothing_else_changed(const FuzzFile &file, const char *topic, const std::string &before,
                                 const std::string &after) {
  file.hold(before + "Probe=0\n" + after);
  for (const std::string value : {"a longer value", "0"}) {
    ProfileHandle profile = XOpenProfileEx(file.path.c_str(), kWriteText);
    expect(profile != nullptr && XSetPrivateProfileStringNoTrimEx(profile, topic, "Probe", value.c_str(), "") == 1);
    expect(XCloseProfileEx(&profile) == 1 && file.content() == before + "Probe=" + value + "\n" + after);
  }
}

void use_every_name(const char *path, int mode) {
  ProfileHandle profile = XOpenProfileEx(path, mode);
  expect(profile != nullptr);
  for (const auto &[topic, key] : topics_and_keys(profile)) {
    expect_consistent(profile);
    char value[kValueBufferSize];
    XGetPrivateProfileStringEx(profile, topic.c_str(), key.c_str(), value, sizeof value);
    XGetPrivateProfileStringNoTrimEx(profile, topic.c_str(), key.c_str(), value, sizeof value);
    for (const char *text : {"1", "a longer [value] # note", ""}) {
      const int set = XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), key.c_str(), text, "");
      expect(!set || is_write(mode));
    }
    XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), "new", key.c_str(), "");
    if (key.size() % 4 == 0) XSetPrivateProfileStringNoTrimEx(profile, topic.c_str(), "", "", "");
  }
  expect(XCloseProfileEx(&profile));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file("profile");
  if (size == 0) return 0;
  const int mode = data[0] % (kModeCount - 1) + 1;
  const std::string content = text_of_bytes(data + 1, size - 1);
  file.hold(content);
  const bool is_usual = content.find("@$") == std::string::npos && content.find(kTopic) == std::string::npos;
  if (is_usual) expect_rewriting(file, mode, content);
  for (int i = 0; i < 2; ++i) use_every_name(file.path.c_str(), mode);
  if (!is_usual) return 0;  // names that the store itself generates are not written
  const size_t half = content.size() / 2;
  expect_nothing_else_changed(file, kTmpTopic, "", content);
  expect_nothing_else_changed(file, kTopic, content.substr(0, half) + "\n[" + kTopic + "]\n", content.substr(half));
  return 0;
}

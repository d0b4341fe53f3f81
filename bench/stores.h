// The libraries for INI-style files that the benchmarks compare, all driven through one table.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct Setting {
  std::string topic, key;
  std::string path;  // "topic:key", as one of the libraries names it
};

// A file of `keys` settings spread over `topics` topics, removed at the end of its scope. Each tenth line is a comment.
// Lines are of random length, the same in each run.
struct SettingsFile {
  std::string path;
  std::vector<Setting> settings;

  SettingsFile(int64_t keys, int64_t topics);
  SettingsFile(const SettingsFile &) = delete;
  SettingsFile &operator=(const SettingsFile &) = delete;
  ~SettingsFile();
};

struct Store {
  const char *name;
  void *(*open)(const char *path, bool for_writing);  // loads a file; null on failure
  bool (*get)(void *file, const Setting &setting);
  bool (*set)(void *file, const Setting &setting, const char *value);  // null: it can't change files
  bool (*save)(void *file, const char *path);  // by replace_file, as all do; null: `close` saves what was set
  bool (*close)(void *file);
  bool keeps;  // false: each `get` reads the file anew
};

// Ours first, then the floor, the bare list of lines, and what the machine has of the others.
std::span<const Store> all_stores();

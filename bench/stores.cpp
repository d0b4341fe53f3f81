#include "bench/stores.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

#include "corbix/xconfig.h"
#include "util/files.h"

#ifdef HAVE_GLIB
#include <glib.h>
#endif
#ifdef HAVE_INIH
#include <ini.h>
#endif
#ifdef HAVE_INIPARSER
#include <iniparser/iniparser.h>
#endif
#ifdef HAVE_SIMPLEINI
#include <SimpleIni.h>
#endif

namespace {

// --- the profile store

void *open_profile(const char *path, bool for_writing) {
  return XOpenProfileEx(path, for_writing ? kWriteText : kReadText);
}

bool get_profile(void *file, const Setting &s) {
  char value[kValueBufferSize];
  return XGetPrivateProfileStringEx(static_cast<ProfileHandle>(file), s.topic.c_str(), s.key.c_str(), value,
                                    sizeof value);
}

bool set_profile(void *file, const Setting &s, const char *value) {
  return XSetPrivateProfileStringNoTrimEx(static_cast<ProfileHandle>(file), s.topic.c_str(), s.key.c_str(), value, "");
}

bool close_profile(void *file) {
  auto handle = static_cast<ProfileHandle>(file);
  return XCloseProfileEx(&handle);
}

// --- the floor: the file is read and its line ends are found, nothing is kept

void *open_floor(const char *path, bool) {
  auto *content = new std::string;
  if (!read_file(path, *content)) std::abort();
  size_t lines = 0;
  for (size_t at = 0; (at = content->find('\n', at)) != std::string::npos; ++at) ++lines;
  return lines > 0 ? content : nullptr;
}

bool get_floor(void *, const Setting &) { return true; }

bool close_floor(void *file) {
  delete static_cast<std::string *>(file);
  return true;
}

// --- a bare list of lines: what every reader that keeps the lines has to do at least

struct BareLine {
  char *text;
  BareLine *next;
};

void *open_lines(const char *path, bool) {
  FILE *stream = std::fopen(path, "r");
  BareLine *first = nullptr;
  BareLine **end = &first;
  char buffer[1024];
  while (std::fgets(buffer, sizeof buffer, stream) != nullptr) {
    const size_t size = std::strlen(buffer) + 1;
    auto *line = static_cast<BareLine *>(std::malloc(sizeof(BareLine)));
    line->text = static_cast<char *>(std::malloc(size));
    std::memcpy(line->text, buffer, size);
    line->next = nullptr;
    *end = line;
    end = &line->next;
  }
  std::fclose(stream);
  return first;
}

bool get_line(void *file, const Setting &s) {
  for (const auto *line = static_cast<BareLine *>(file); line != nullptr; line = line->next) {
    if (std::strncmp(line->text, s.key.c_str(), s.key.size()) == 0 && line->text[s.key.size()] == '=') return true;
  }
  return false;
}

bool close_lines(void *file) {
  for (auto *line = static_cast<BareLine *>(file); line != nullptr;) {
    BareLine *next = line->next;
    std::free(line->text);
    std::free(line);
    line = next;
  }
  return true;
}

// --- inih keeps nothing: it tells each setting to the caller while it reads

#ifdef HAVE_INIH
struct InihQuestion {
  const Setting *setting;
  std::string value;
};

int take_inih_setting(void *user, const char *topic, const char *key, const char *value) {
  auto *question = static_cast<InihQuestion *>(user);
  if (question->setting->key == key && question->setting->topic == topic) question->value = value;
  return 1;
}

void *open_inih(const char *path, bool) { return new std::string(path); }

bool get_inih(void *file, const Setting &s) {
  InihQuestion question = {&s, ""};
  return ini_parse(static_cast<std::string *>(file)->c_str(), take_inih_setting, &question) == 0 &&
         !question.value.empty();
}

bool close_inih(void *file) {
  delete static_cast<std::string *>(file);
  return true;
}
#endif

// --- GKeyFile

#ifdef HAVE_GLIB
void *open_glib(const char *path, bool for_writing) {
  GKeyFile *file = g_key_file_new();
  const GKeyFileFlags flags = for_writing ? G_KEY_FILE_KEEP_COMMENTS : G_KEY_FILE_NONE;
  const bool loaded = g_key_file_load_from_file(file, path, flags, nullptr) != FALSE;
  return loaded ? file : nullptr;
}

bool get_glib(void *file, const Setting &s) {
  gchar *value = g_key_file_get_string(static_cast<GKeyFile *>(file), s.topic.c_str(), s.key.c_str(), nullptr);
  const bool found = value != nullptr;
  g_free(value);
  return found;
}

bool set_glib(void *file, const Setting &s, const char *value) {
  g_key_file_set_string(static_cast<GKeyFile *>(file), s.topic.c_str(), s.key.c_str(), value);
  return true;
}

bool save_glib(void *file, const char *path) {
  gsize length = 0;
  gchar *text = g_key_file_to_data(static_cast<GKeyFile *>(file), &length, nullptr);
  const bool saved = replace_file(path, {text, length});
  g_free(text);
  return saved;
}

bool close_glib(void *file) {
  g_key_file_free(static_cast<GKeyFile *>(file));
  return true;
}
#endif

// --- SimpleIni

#ifdef HAVE_SIMPLEINI
void *open_simpleini(const char *path, bool) {
  auto file = std::make_unique<CSimpleIniA>();
  return file->LoadFile(path) >= 0 ? file.release() : nullptr;
}

bool get_simpleini(void *file, const Setting &s) {
  return static_cast<CSimpleIniA *>(file)->GetValue(s.topic.c_str(), s.key.c_str()) != nullptr;
}

bool set_simpleini(void *file, const Setting &s, const char *value) {
  return static_cast<CSimpleIniA *>(file)->SetValue(s.topic.c_str(), s.key.c_str(), value) >= 0;
}

bool save_simpleini(void *file, const char *path) {
  std::string text;
  return static_cast<CSimpleIniA *>(file)->Save(text) >= 0 && replace_file(path, text);
}

bool close_simpleini(void *file) {
  delete static_cast<CSimpleIniA *>(file);
  return true;
}
#endif

// --- iniparser, which loses the comments

#ifdef HAVE_INIPARSER
void *open_iniparser(const char *path, bool) { return iniparser_load(path); }

bool get_iniparser(void *file, const Setting &s) {
  return iniparser_getstring(static_cast<dictionary *>(file), s.path.c_str(), nullptr) != nullptr;
}

bool set_iniparser(void *file, const Setting &s, const char *value) {
  return iniparser_set(static_cast<dictionary *>(file), s.path.c_str(), value) == 0;
}

bool save_iniparser(void *file, const char *path) {
  char *text = nullptr;
  size_t length = 0;
  FILE *stream = open_memstream(&text, &length);
  iniparser_dump_ini(static_cast<dictionary *>(file), stream);
  std::fclose(stream);
  const bool saved = replace_file(path, {text, length});
  std::free(text);
  return saved;
}

bool close_iniparser(void *file) {
  iniparser_freedict(static_cast<dictionary *>(file));
  return true;
}
#endif

constexpr Store kStores[] = {
    // clang-format off
    // name        open            get            set            save            close            keeps
    {"kavsetup",  open_profile,   get_profile,   set_profile,   nullptr,        close_profile,   true},
    {"floor",     open_floor,     get_floor,     nullptr,       nullptr,        close_floor,     false},
    {"lines",     open_lines,     get_line,      nullptr,       nullptr,        close_lines,     true},
#ifdef HAVE_INIH
    {"inih",      open_inih,      get_inih,      nullptr,       nullptr,        close_inih,      false},
#endif
#ifdef HAVE_GLIB
    {"GKeyFile",  open_glib,      get_glib,      set_glib,      save_glib,      close_glib,      true},
#endif
#ifdef HAVE_SIMPLEINI
    {"SimpleIni", open_simpleini, get_simpleini, set_simpleini, save_simpleini, close_simpleini, true},
#endif
#ifdef HAVE_INIPARSER
    {"iniparser", open_iniparser, get_iniparser, set_iniparser, save_iniparser, close_iniparser, true},
#endif
};  // clang-format on

}  // namespace

std::span<const Store> all_stores() { return kStores; }

SettingsFile::SettingsFile(int64_t keys, int64_t topics) {
  char name[] = "/tmp/profile_bench_XXXXXX";
  close(mkstemp(name));
  path = name;
  std::string text;
  std::mt19937 random;
  for (int64_t i = 0; i < keys; ++i) {
    if (i % (keys / topics) == 0) text += "[topic" + std::to_string(i) + "]\n";
    if (i % 10 == 5) text += "# what the next setting means\n";
    const std::string topic = "topic" + std::to_string(i - i % (keys / topics));
    const std::string key = "setting" + std::to_string(i);
    text += key + "=" + std::string(1 + random() % 40, 'v') + "\n";
    settings.push_back({topic, key, topic + ":" + key});
  }
  if (!replace_file(name, text)) std::abort();
}

SettingsFile::~SettingsFile() { unlink(path.c_str()); }

#include "tools/kavcfg/command.h"

#include <algorithm>
#include <cstring>

#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"
#include "util/converter.h"
#include "util/text.h"

Options options;

constexpr size_t kNotConverted = static_cast<size_t>(-1);

void print_line(FILE *stream, const std::string &text) { print_text(stream, (printable(text) + "\n").c_str()); }

void print_finding(FILE *stream, const std::string &file, const KeyFinding &finding) {
  std::string line = (finding.is_warning ? "warning: " : "") + file;
  if (finding.line > 0) line += ":" + std::to_string(finding.line);
  if (!finding.key.empty()) line += ": " + finding.key;
  print_line(stream, line + ": " + finding.text);
}

int complain(int status, const std::string &text) {
  print_line(stderr, "kavcfg: " + text);
  return status;
}

int misuse(const std::string &text) { return complain(kMisused, text); }

int tell_outcome(Outcome outcome, int error, const char *file) {
  switch (outcome) {
    case Outcome::done:
      return kGood;
    case Outcome::file_unreadable:
      return complain(kFileFailed, filled(unreadable_label, {file, std::strerror(error)}));
    case Outcome::file_unwritable:
      return complain(kFileFailed, filled(unwritable_label, {file, failure_reason(error)}));
    case Outcome::database_unreadable:
      return complain(kFileFailed, filled(database_unreadable_label, {upstypname, std::strerror(error)}));
    default:
      return kRefused;
  }
}

size_t place_of(const Setting &setting) {
  return static_cast<size_t>(std::ranges::find(all_settings(), &setting) - all_settings().begin());
}

const Setting *known_setting(const std::string &key) {
  const Setting *setting = setting_of_key(key);
  if (setting == nullptr) misuse(filled(no_such_key_label, {key}));
  return setting;
}

int known_event(const std::string &word) {
  for (int event = 0; event < kEventCount; ++event) {
    if (stricmp(word, event_key(event)) == 0 || word == std::to_string(event)) return event;
  }
  misuse(filled(no_such_event_label, {word}));
  return -1;
}

std::string utf8_of(const std::string &text) {
  for (const char *charset : {"UTF-8", "EUC-JP"}) {
    const Converter converter("UTF-8", charset);
    std::string input = text;
    std::string output(2 * text.size() + 1, '\0');  // two bytes of EUC-JP become three
    char *from = input.data();
    char *to = output.data();
    size_t left = input.size();
    size_t room = output.size();
    if (!converter.is_open() || iconv(converter.handle, &from, &left, &to, &room) == kNotConverted) continue;
    output.resize(output.size() - room);
    return output;
  }
  std::string ascii = text;
  std::replace_if(
      ascii.begin(), ascii.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
  return ascii;
}

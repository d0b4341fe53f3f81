// The commands that change a configuration.
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>

#include "setup/check/repair.h"
#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"
#include "util/files.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kLongestPassword = 1024;  // of a line that is read; the keys take far less

// --- passwords

// A terminal that does not show what is typed, until the end of the scope. Its keys send no signals, which would leave
// it that way.
struct Unseen {
  termios before = {};
  bool is_terminal = tcgetattr(STDIN_FILENO, &before) == 0;
  Unseen() {
    termios unseen = before;
    unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    if (is_terminal) tcsetattr(STDIN_FILENO, TCSAFLUSH, &unseen);
  }
  Unseen(const Unseen &) = delete;
  Unseen &operator=(const Unseen &) = delete;
  ~Unseen() {
    if (!is_terminal) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    std::fputs("\n", stderr);
  }
};

// A line of standard input, cut when no password is as long; false when there is none.
bool read_password(const std::string &key, std::string &password) {
  const Unseen unseen;
  if (unseen.is_terminal) std::fprintf(stderr, "%s: ", key.c_str());
  password.clear();
  int c = std::fgetc(stdin);
  for (; c != EOF && c != '\n'; c = std::fgetc(stdin)) {
    if (password.size() < kLongestPassword) password += static_cast<char>(c);
  }
  return c != EOF || !password.empty();
}

// --- what is to be changed

// Why the setting of a key can't be changed, or not once more; "" when it can.
std::string refusal(const std::vector<Change> &changes, const std::string &key, const Setting *setting) {
  if (setting == nullptr) return filled(no_such_key_label, {key});
  if (!can_be_set(*setting)) return std::string(setting->key) + ": " + follower_label[language];
  const bool is_there = std::ranges::find(changes, setting, &Change::setting) != changes.end();
  return is_there ? filled(given_twice_label, {setting->key}) : "";
}

// One argument, KEY=VALUE or the key of a password; kGood, or a status after a complaint.
int read_argument(const std::string &argument, std::vector<Change> &changes) {
  const size_t equals = argument.find('=');
  const bool has_value = equals != std::string::npos;
  const std::string key = argument.substr(0, equals);
  const Setting *setting = setting_of_key(key);
  const std::string reason = refusal(changes, key, setting);
  if (!reason.empty()) return misuse(reason);
  if (has_value == (setting->kind == Kind::secret)) {
    return misuse(filled(has_value ? password_given_label : value_missing_label, {setting->key}));
  }
  std::string value;
  if (has_value && !text_from_terminal(argument.substr(equals + 1), value)) {
    return complain(kRefused, filled(not_convertible_label, {setting->key}));
  }
  changes.push_back({setting, value});
  return kGood;
}

int read_arguments(const Arguments &arguments, std::vector<Change> &changes) {
  for (const std::string &argument : arguments) {
    if (const int status = read_argument(argument, changes); status != kGood) return status;
  }
  for (Change &change : changes) {
    if (change.setting->kind != Kind::secret) continue;
    if (!read_password(change.setting->key, change.value)) {
      return complain(kRefused, filled(password_missing_label, {change.setting->key}));
    }
  }
  return kGood;
}

Change default_change(const Setting &setting, int line) {
  return {&setting, default_values()[place_of(setting)], true, line};
}

// What a text to apply has: its changes, and what is wrong with its lines.
struct Reading {
  std::vector<Change> changes;
  std::vector<KeyFinding> faults;
};

void add_fault(Reading &reading, int line, const std::string &text) { reading.faults.push_back({line, "", text}); }

void add_value(Reading &reading, const std::string &key, const std::string &typed, bool is_stored, int line) {
  const Setting *setting = setting_of_key(key);
  const std::string reason = refusal(reading.changes, key, setting);
  if (!reason.empty()) return add_fault(reading, line, reason);
  const bool is_scrambled = is_stored && setting->kind == Kind::secret;
  std::string value = typed;
  if (!is_stored && !text_from_terminal(typed, value)) {
    return add_fault(reading, line, filled(not_convertible_label, {key}));
  }
  reading.changes.push_back({setting, value, is_scrambled, line});
}

void read_lines(const std::string &text, Reading &reading) {
  bool is_stored = false;  // as this product's own file of unsaved settings has them
  int number = 0;
  for (const std::string_view piece : split_lines(text)) {
    const std::string line(piece);
    ++number;
    is_stored = is_stored || line == kStoredMark;
    if (line.find_first_not_of(" \t\r") == std::string::npos || line[0] == '#' || line[0] == ';') continue;
    const size_t equals = line.find('=');
    if (equals == std::string::npos) {
      add_fault(reading, number, filled(value_missing_label, {line}));
    } else {
      add_value(reading, line.substr(0, equals), line.substr(equals + 1), is_stored, number);
    }
  }
}

int line_of(std::string_view text, size_t place) {
  return 1 + static_cast<int>(std::ranges::count(text.substr(0, place), '\n'));
}

void add_json_value(Reading &reading, const std::string &key, const Json &value, int line) {
  if (value.is_structured()) return add_fault(reading, line, filled(not_simple_label, {key}));
  if (!value.is_null()) {
    const std::string yes_or_no = value == true ? "yes" : "no";
    const std::string word = value.is_string() ? value.get<std::string>() : value.dump();
    return add_value(reading, key, value.is_boolean() ? yes_or_no : word, false, line);
  }
  const Setting *setting = setting_of_key(key);
  const std::string reason = refusal(reading.changes, key, setting);
  if (!reason.empty()) return add_fault(reading, line, reason);
  reading.changes.push_back(default_change(*setting, line));
}

void read_json(const std::string &text, Reading &reading) {
  try {
    const Json json = Json::parse(text);
    for (const auto &[key, value] : json.items()) {
      add_json_value(reading, key, value, line_of(text, text.find("\"" + key + "\"")));
    }
  } catch (const Json::parse_error &error) {
    add_fault(reading, line_of(text, error.byte), not_json_label[language]);
  }
}

// --- what came of it

Json text_as_json(const Setting &setting, const std::optional<std::string> &text) {
  if (setting.kind == Kind::secret || !text.has_value()) return nullptr;
  return utf8_of(*text);
}

void print_result_as_json(const ChangeResult &result) {
  Json before = Json::object();
  Json after = Json::object();
  Json faults = Json::array();
  for (const Difference &difference : result.differences) {
    before[difference.setting->key] = text_as_json(*difference.setting, difference.before);
    after[difference.setting->key] = text_as_json(*difference.setting, difference.after);
  }
  for (const KeyFinding &fault : result.faults) {
    faults.push_back({{"line", fault.line}, {"key", fault.key}, {"text", utf8_of(fault.text)}});
  }
  const bool changed = !result.differences.empty();
  const Json json = {{"changed", changed}, {"before", before}, {"after", after}, {"faults", faults}};
  std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

void print_side(const char *sign, const Setting &setting, const std::optional<std::string> &text) {
  if (!text.has_value()) return;
  const std::string shown = setting.kind == Kind::secret ? hidden_label[language] : *text;
  print_line(stdout, std::string(sign) + setting.key + "=" + shown);
}

// The faults of a text have their line in `source`; "" for the command line.
int tell_result(const ChangeResult &result, const std::string &source) {
  if (options.json) {
    print_result_as_json(result);
  } else {
    for (const KeyFinding &fault : result.faults) print_finding(stderr, "kavcfg" + source, fault);
  }
  for (const Difference &difference : result.differences) {
    if (!options.diff || options.json) break;
    print_side("-", *difference.setting, difference.before);
    print_side("+", *difference.setting, difference.after);
  }
  return result.outcome == Outcome::refused ? kRefused : tell_outcome(result.outcome, result.error, options.file);
}

Deed deed() { return options.dry_run ? Deed::try_only : Deed::write; }

}  // namespace

int carry_out(const std::vector<Change> &changes) {
  return tell_result(change_configuration(options.file, changes, deed()), "");
}

int set(const Arguments &arguments) {
  std::vector<Change> changes;
  const int status = read_arguments(arguments, changes);
  return status == kGood ? carry_out(changes) : status;
}

int unset(const Arguments &arguments) {
  std::vector<Change> changes;
  for (const std::string &key : arguments) {
    const Setting *setting = setting_of_key(key);
    const std::string reason = refusal(changes, key, setting);
    if (!reason.empty()) return misuse(reason);
    changes.push_back(default_change(*setting, 0));
  }
  return carry_out(changes);
}

int apply(const Arguments &arguments) {
  const std::string &file = arguments[0];
  std::string text;
  if (!read_file(file == "-" ? "/dev/stdin" : file.c_str(), text)) {
    return tell_outcome(Outcome::file_unreadable, errno, file.c_str());
  }
  Reading reading;
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && text[first] == '{') {
    read_json(text, reading);
  } else {
    read_lines(text, reading);
  }
  const std::string source = ": " + file;
  if (!reading.faults.empty()) return tell_result({.outcome = Outcome::refused, .faults = reading.faults}, source);
  const bool is_missing = options.make_new && !does_file_exist(options.file, kAnyFile);
  const auto change = is_missing ? create_configuration : change_configuration;
  return tell_result(change(options.file, reading.changes, deed()), source);
}

int make_new(const Arguments &arguments) {
  std::vector<Change> changes;
  const int status = read_arguments(arguments, changes);
  return status == kGood ? tell_result(create_configuration(options.file, changes, deed()), "") : status;
}

int fix(const Arguments &arguments) {
  if (options.dry_run == options.write) return misuse(fix_how_label[language]);
  SaveLock lock;
  std::string content;
  if (options.write && !lock_for_saving(options.file, lock)) {
    return tell_outcome(Outcome::file_unwritable, errno, options.file);
  }
  if (!read_file(options.file, content)) return tell_outcome(Outcome::file_unreadable, errno, options.file);
  std::vector<KeyFinding> repairs;
  const std::string text = repaired(content, arguments, repairs);
  for (const std::string &key : arguments) {
    const auto has_key = [&](const KeyFinding &repair) { return stricmp(repair.key, key) == 0; };
    if (std::ranges::none_of(repairs, has_key)) return complain(kRefused, filled(not_misspelt_label, {key}));
  }
  for (const KeyFinding &repair : repairs) print_finding(stdout, options.file, repair);
  const bool done = options.dry_run || replace_file(options.file, text);
  return done ? kGood : tell_outcome(Outcome::file_unwritable, errno, options.file);
}

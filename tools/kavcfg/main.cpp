// kavcfg: the settings of ups.cfg without a screen, for scripts.
#include <getopt.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "setup/check/check.h"
#include "setup/check/faults.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/change.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"
#include "util/text.h"

namespace {

constexpr int kGood = 0;
constexpr int kFailed = 1;
constexpr int kMisused = 2;

constexpr size_t kLongestPassword = 1024;  // of a line that is read; the keys take far less

// --- output

void print_line(FILE *stream, const std::string &text) { print_text(stream, (text + "\n").c_str()); }

int complain(int status, const std::string &text) {
  print_line(stderr, "kavcfg: " + printable(text));
  return status;
}
int fail(const std::string &text) { return complain(kFailed, text); }
int misuse(const std::string &text) { return complain(kMisused, text); }

void print_usage(FILE *stream) {
  std::string text = usage_label[language];
  std::replace(text.begin(), text.end(), '|', '\n');
  print_line(stream, text);
}

void print_finding(FILE *stream, std::string line, const KeyFinding &finding) {
  if (finding.line > 0) line += ":" + std::to_string(finding.line);
  if (!finding.key.empty()) line += ": " + finding.key;
  print_line(stream, printable(line + ": " + finding.text));
}

int tell_outcome(Outcome outcome, const char *file) {
  switch (outcome) {
    case Outcome::done:
      return kGood;
    case Outcome::file_unreadable:
      return fail(filled(unreadable_label, {file}));
    case Outcome::file_unwritable:
      return fail(filled(unwritable_label, {file}));
    case Outcome::database_unreadable:
      return fail(filled(database_unreadable_label, {upstypname}));
    default:
      return kFailed;
  }
}

// --- get

int get(const char *file, char *const *arguments) {
  const Setting *setting = setting_of_key(arguments[0]);
  std::vector<std::string> values;
  if (setting == nullptr) return misuse(filled(no_such_key_label, {arguments[0]}));
  if (setting->kind == Kind::secret) return fail(filled(password_hidden_label, {setting->key}));
  if (!values_of_file(file, values)) return tell_outcome(Outcome::file_unreadable, file);
  const auto place = std::ranges::find(all_settings(), setting) - all_settings().begin();
  const std::string &value = values[static_cast<size_t>(place)];
  if (value.empty() && !can_be_set(*setting)) return fail(filled(no_value_label, {setting->key}));
  print_line(stdout, value);
  return kGood;
}

// --- set

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

// A line of standard input, cut when no password is as long; 0 when there is none.
int read_password(const std::string &key, std::string &password) {
  const Unseen unseen;
  if (unseen.is_terminal) std::fprintf(stderr, "%s: ", key.c_str());
  password.clear();
  int c = 0;
  while ((c = std::fgetc(stdin)) != EOF && c != '\n') {
    if (password.size() < kLongestPassword) password += static_cast<char>(c);
  }
  return c != EOF || !password.empty();
}

// One argument of "set"; kGood, or a status after a complaint.
int read_change(const std::string &argument, std::vector<Change> &changes) {
  const size_t equals = argument.find('=');
  const bool has_value = equals != std::string::npos;
  const std::string key = argument.substr(0, equals);
  const Setting *setting = setting_of_key(key);
  if (setting == nullptr) return misuse(filled(no_such_key_label, {key}));
  if (!can_be_set(*setting)) return misuse(std::string(setting->key) + ": " + follower_label[language]);
  if (std::ranges::find(changes, setting, &Change::setting) != changes.end()) {
    return misuse(filled(given_twice_label, {setting->key}));
  }
  if (has_value == (setting->kind == Kind::secret)) {
    return misuse(filled(has_value ? password_given_label : value_missing_label, {setting->key}));
  }
  std::string value;
  if (has_value && !text_from_terminal(argument.substr(equals + 1), value)) {
    return fail(filled(not_convertible_label, {setting->key}));
  }
  changes.push_back({setting, value});
  return kGood;
}

int read_passwords(std::vector<Change> &changes) {
  for (Change &change : changes) {
    if (change.setting->kind != Kind::secret) continue;
    if (!read_password(change.setting->key, change.value)) {
      return fail(filled(password_missing_label, {change.setting->key}));
    }
  }
  return kGood;
}

int set(const char *file, char *const *arguments) {
  std::vector<Change> changes;
  int status = kGood;
  for (; *arguments != nullptr && status == kGood; ++arguments) status = read_change(*arguments, changes);
  if (status == kGood) status = read_passwords(changes);
  if (status != kGood) return status;
  std::vector<KeyFinding> reasons;
  const Outcome outcome = change_configuration(file, changes, reasons);
  for (const KeyFinding &reason : reasons) print_finding(stderr, "kavcfg", reason);
  return tell_outcome(outcome, file);
}

// --- check, events, diff

int check(const char *file, char *const *) {
  std::vector<KeyFinding> findings;
  const Outcome outcome = check_configuration(file, findings);
  for (const KeyFinding &finding : findings) print_finding(stdout, file, finding);
  return findings.empty() ? tell_outcome(outcome, file) : kFailed;
}

void print_event(int event) {
  print_line(stdout, std::string(event_key(event)) + ": " + eventlist[event].name[language]);
  tail_shutdown_function(event);
  const int jobs = parse_joblist("", event);
  for (int job = 0; job < jobs; ++job) {
    char line[kJobLineLength + 1];
    job_line(*ActEvent[job], line);
    print_line(stdout, "  " + printable(line));
  }
}

int events(const char *file, char *const *) {
  if (!init_config_vals(file)) return tell_outcome(Outcome::file_unreadable, file);
  for (int event = 0; event < DbEventListCnt; ++event) print_event(event);
  free_act_event();
  return kGood;
}

int diff(const char *file, char *const *arguments) {
  std::vector<std::string> now;
  std::vector<std::string> before = default_values();
  if (!values_of_file(file, now)) return tell_outcome(Outcome::file_unreadable, file);
  const char *old_file = arguments[0];
  if (old_file != nullptr && !values_of_file(old_file, before)) return tell_outcome(Outcome::file_unreadable, old_file);
  int status = kGood;
  for (size_t i = 0; i < now.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    if (!can_be_set(setting) || is_same_value(setting, before[i], now[i])) continue;
    const bool hidden = setting.kind == Kind::secret;
    print_line(stdout, std::string("-") + setting.key + "=" + printable(hidden ? hidden_label[language] : before[i]));
    print_line(stdout, std::string("+") + setting.key + "=" + printable(hidden ? hidden_label[language] : now[i]));
    status = kFailed;
  }
  return status;
}

// --- the command line

struct Command {
  const char *name;
  int fewest;  // arguments
  int most;    // -1: any number
  int (*run)(const char *file, char *const *arguments);
};

constexpr Command kCommands[] = {
    // clang-format off
  { "get",    1,  1, get },
  { "set",    1, -1, set },
  { "check",  0,  0, check },
  { "events", 0,  0, events },
  { "diff",   0,  1, diff },
};  // clang-format on

constexpr option kOptions[] = {
    {"japanese", no_argument, nullptr, 'j'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

// The printed text must have arrived.
int finish(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  return fail(filled(unwritable_label, {"standard output"}));
}

int run_command(const char *file, int count, char *const *arguments) {
  for (const Command &command : kCommands) {
    if (count < 1 || std::strcmp(arguments[0], command.name) != 0) continue;
    if (count - 1 < command.fewest || (command.most >= 0 && count - 1 > command.most)) break;
    init_all_tabs();
    return finish(command.run(file, arguments + 1));
  }
  print_usage(stderr);
  return kMisused;
}

}  // namespace

int main(int argc, char **argv) {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");  // the file has decimal points
  const char *file = kConfigurationFile;
  bool help = false;
  bool misused = false;
  opterr = 0;
  for (int option = 0; (option = getopt_long(argc, argv, "+f:u:", kOptions, nullptr)) != -1;) {
    if (option == 'f') {
      file = optarg;
    } else if (option == 'u') {
      cpynstr(upstypname, optarg);
    } else if (option == 'j') {
      language = 1;
    } else {
      (option == 'h' ? help : misused) = true;
    }
  }
  if (!misused && !help) return run_command(file, argc - optind, argv + optind);
  print_usage(misused ? stderr : stdout);
  return finish(misused ? kMisused : kGood);
}

// kavcfg: the settings of ups.cfg without a screen, for scripts.
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstring>

#include "setup/configuration/configuration.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"
#include "util/files.h"
#include "util/text.h"

namespace {

struct Command {
  const char *name;
  int fewest;           // arguments
  int most;             // -1: any number
  bool may_read_input;  // "-" as the configuration
  int (*run)(const Arguments &arguments);
};

constexpr Command kCommands[] = {
    // clang-format off
  // name        fewest most  input  procedure
  { "get",         1,   -1,   true,  get      },
  { "list",        0,    0,   true,  list     },
  { "check",       0,    0,   true,  check    },
  { "events",      0,    0,   true,  events   },
  { "timeline",    1,    1,   true,  timeline },
  { "diff",        0,    1,   true,  diff     },
  { "explain",     1,    1,   true,  explain  },
  { "schema",      0,    0,   false, schema   },
  { "probe",       0,    0,   false, probe    },
  { "set",         1,   -1,   false, set      },
  { "apply",       1,    1,   false, apply    },
  { "unset",       1,   -1,   false, unset    },
  { "new",         0,   -1,   false, make_new },
  { "fix",         0,   -1,   false, fix      },
  { "job",         2,   -1,   false, job      },
};  // clang-format on

enum LongOption { kJapanese = 256, kHelp, kVersion, kJson, kDryRun, kDiff, kKeys, kNew, kStrict, kWrite };
constexpr option kLongOptions[] = {
    // clang-format off
    {"japanese", no_argument, nullptr, kJapanese},
    {"help",     no_argument, nullptr, kHelp},
    {"version",  no_argument, nullptr, kVersion},
    {"json",     no_argument, nullptr, kJson},
    {"dry-run",  no_argument, nullptr, kDryRun},
    {"diff",     no_argument, nullptr, kDiff},
    {"keys",     no_argument, nullptr, kKeys},
    {"new",      no_argument, nullptr, kNew},
    {"strict",   no_argument, nullptr, kStrict},
    {"write",    no_argument, nullptr, kWrite},
    {nullptr,    0,           nullptr, 0},
    // clang-format on
};

bool database_was_given = false;

// The printed text must have arrived.
int finish(int status) {
  errno = EIO;  // of a write before, whose own reason is gone
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  return complain(kFileFailed, filled(unwritable_label, {"standard output", std::strerror(errno)}));
}

int print_usage() {
  std::string text = usage_label[language];
  std::replace(text.begin(), text.end(), '|', '\n');
  print_text(stdout, (text + "\n").c_str());
  return finish(kGood);
}

int print_version() {
  std::puts("kavcfg " KAV_VERSION);
  return finish(kGood);
}

// Beside the configuration, when there is one; else in the working directory.
void find_database() {
  const std::string file = beside(options.file, upstypname);
  if (!database_was_given && file.size() < sizeof upstypname && AFileExists(file.c_str())) cpynstr(upstypname, file);
}

int run_command(const Command &command, const Arguments &arguments) {
  const int count = static_cast<int>(arguments.size());
  if (count < command.fewest) return misuse(filled(too_few_label, {command.name}));
  if (command.most >= 0 && count > command.most) {
    return misuse(filled(too_many_label, {command.name, arguments[static_cast<size_t>(command.most)]}));
  }
  if (std::strcmp(options.file, "-") == 0) {
    if (!command.may_read_input) return misuse(filled(no_input_label, {command.name}));
    options.file = "/dev/stdin";
  }
  find_database();
  init_all_tabs();
  return finish(command.run(arguments));
}

int run(const Arguments &words) {
  if (words.empty()) return misuse(no_command_label[language]);
  const auto named = [&](const Command &command) { return words[0] == command.name; };
  const auto command = std::ranges::find_if(kCommands, named);
  if (command == std::end(kCommands)) return misuse(filled(no_such_command_label, {words[0]}));
  return run_command(*command, Arguments(words.begin() + 1, words.end()));
}

// One option; kGood to go on.
int take_option(int letter, const char *word) {
  switch (letter) {
    case 'f':
      options.file = optarg;
      return kGood;
    case 'u':
      cpynstr(upstypname, optarg);
      database_was_given = true;
      return kGood;
    case 'C':
      if (chdir(optarg) == 0) return kGood;
      return complain(kFileFailed, filled(unreadable_label, {optarg, std::strerror(errno)}));
    case kJapanese:
      language = 1;
      return kGood;
    case kJson:
      options.json = true;
      return kGood;
    case kDryRun:
      options.dry_run = true;
      return kGood;
    case kDiff:
      options.diff = true;
      return kGood;
    case kKeys:
      options.keys = true;
      return kGood;
    case kNew:
      options.make_new = true;
      return kGood;
    case kWrite:
      options.write = true;
      return kGood;
    case kStrict:
      options.strict = true;
      return kGood;
    default:
      return misuse(filled(no_such_option_label, {word}));
  }
}

}  // namespace

int main(int argc, char **argv) {
  std::setlocale(LC_CTYPE, "");
  options.file = kConfigurationFile;
  opterr = 0;
  for (int letter = 0;;) {
    const char *word = argv[optind];
    letter = getopt_long(argc, argv, "f:u:C:", kLongOptions, nullptr);
    if (letter == -1) break;
    if (letter == kHelp) return print_usage();
    if (letter == kVersion) return print_version();
    if (const int status = take_option(letter, word); status != kGood) return status;
  }
  return run(Arguments(argv + optind, argv + argc));
}

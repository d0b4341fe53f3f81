// kavdb: makes, prints and tests UPS type databases.

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "upsdb/db_check.h"
#include "upsdb/db_text.h"
#include "upsdb/records.h"
#include "upsdb/upsdb.h"
#include "util/charset.h"
#include "util/files.h"
#include "util/numbers.h"

namespace {

constexpr int kGood = 0;
constexpr int kFailed = 1;
constexpr int kMisused = 2;

constexpr mode_t kNewDatabaseMode = 0644;
constexpr char kStandardStream[] = "-";

constexpr char kUsage[] =
    "usage: kavdb compile [--force] SOURCE OUTPUT   make a database of its text, if check finds no fault\n"
    "       kavdb dump DATABASE                     print a database's text\n"
    "       kavdb check FILE                        test a database or its text: FILE:LINE: SECTION: FIELD: FAULT\n"
    "       kavdb list FILE                         print the models of a database or its text as a table\n"
    "       kavdb --help | --version\n"
    "\"-\" is standard input, or standard output. --force goes on where check finds faults.\n"
    "Exit status: 0 all is well, 1 faults were found or a file can't be read or written, 2 wrong usage.\n";

// --- Files

bool is_standard_stream(const char *path) { return std::strcmp(path, kStandardStream) == 0; }

const char *name_of_input(const char *path) { return is_standard_stream(path) ? "standard input" : path; }

int complain(const std::string &text) {
  std::fprintf(stderr, "kavdb: %s\n", printable(text).c_str());
  return kFailed;
}

// Call it before anything else can change errno.
int complain_of(const char *action, const std::string &file) {
  const std::string reason = strerror(errno);
  return complain(std::string("can't ") + action + " " + file + ": " + reason);
}

int read_standard_input(std::string &content) {
  char buffer[4096];
  size_t count = 0;
  while ((count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0) content.append(buffer, count);
  return std::ferror(stdin) == 0 ? 1 : 0;
}

int read_input(const char *path, std::string &content) {
  const int read = is_standard_stream(path) ? read_standard_input(content) : read_file(path, content);
  if (!read) complain_of("read", name_of_input(path));
  return read;
}

// Reads a database's text, from a file that has one of these forms. 0 when it has none of them or can't be read.
int read_text(const char *path, std::initializer_list<DbForm> forms, std::string &text) {
  std::string content;
  if (!read_input(path, content)) return 0;
  const DbForm form = text_of_file(content, text);
  if (std::ranges::find(forms, form) != forms.end()) return 1;
  complain(std::string(name_of_input(path)) + " is " + name_of_form(form));
  return 0;
}

int print_all(const std::string &text) {
  const bool printed = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  return printed ? kGood : complain_of("write", "standard output");
}

// A new database is for everyone to read; an old one keeps its mode.
int write_output(const char *path, const std::string &content) {
  if (is_standard_stream(path)) return print_all(content);
  const bool is_new = access(path, F_OK) != 0;
  const bool written = replace_file(path, content) && (!is_new || chmod(path, kNewDatabaseMode) == 0);
  return written ? kGood : complain_of("write", path);
}

bool is_same_file(const char *source, const char *output) {
  struct stat from = {};
  struct stat to = {};
  const int found = is_standard_stream(source) ? fstat(STDIN_FILENO, &from) : stat(source, &from);
  return found == 0 && !is_standard_stream(output) && stat(output, &to) == 0 && from.st_dev == to.st_dev &&
         from.st_ino == to.st_ino;
}

// --- Commands

std::string as_line(const char *file, const Finding &finding) {
  std::string line = file;
  if (finding.line > 0) line += ":" + std::to_string(finding.line);
  for (const std::string *part : {&finding.section, &finding.field, &finding.text}) {
    if (!part->empty()) line += ": " + *part;
  }
  return printable(line) + "\n";
}

void print_findings(FILE *stream, const char *path, const std::vector<Finding> &findings) {
  for (const Finding &finding : findings) std::fputs(as_line(name_of_input(path), finding).c_str(), stream);
}

int compile(const char *const *arguments, bool forced) {
  std::string text;
  std::string coded;
  if (is_same_file(arguments[0], arguments[1])) {
    return complain(std::string(name_of_input(arguments[0])) + " and " + arguments[1] + " are the same file");
  }
  if (!read_text(arguments[0], {DbForm::text}, text)) return kFailed;
  const std::vector<Finding> findings = check_database(text);
  print_findings(stderr, arguments[0], findings);
  std::vector<Finding> uncodable;  // found by the check, too
  const bool can_be_coded = code_text(text, coded, uncodable);
  if (can_be_coded && (findings.empty() || forced)) return write_output(arguments[1], coded);
  return complain(can_be_coded ? "nothing is written; --force goes on all the same" : "nothing is written");
}

int dump(const char *const *arguments, bool) {
  std::string text;
  return read_text(arguments[0], {DbForm::coded}, text) ? print_all(text) : kFailed;
}

int check(const char *const *arguments, bool) {
  std::string text;
  if (!read_text(arguments[0], {DbForm::text, DbForm::coded}, text)) return kFailed;
  const std::vector<Finding> findings = check_database(text);
  print_findings(stdout, arguments[0], findings);
  return findings.empty() ? kGood : kFailed;
}

std::string as_row(size_t number, const UpsData &model) {
  char port[40];
  char row[200];
  std::snprintf(port, sizeof port, "%d,%c,%d,%d", model.baud_rate, model.parity != 0 ? model.parity : '-',
                model.data_bits, model.stop_bits);
  std::snprintf(row, sizeof row, "%3zu  %-31s %-13s 0x%04X %5d %8d %8g %10g", number, model.name, port,
                static_cast<unsigned>(static_cast<uint16_t>(model.code)), model.number, to_int32(model.power),
                model.hold_minutes, model.recharge_hours);
  return printable(row) + "\n";
}

int list(const char *const *arguments, bool) {
  std::string text;
  if (!read_text(arguments[0], {DbForm::text, DbForm::coded}, text)) return kFailed;
  std::vector<Finding> findings;
  const std::vector<DbSection> sections = sections_of(text, findings);
  const DbSection *models = find_section(sections, kModelSection);
  if (models == nullptr) return complain(std::string(name_of_input(arguments[0])) + " has no models");
  std::string table = "No.  Model                           Port          Code   Cable Power VA Hold min Recharge h\n";
  findings.clear();
  size_t number = 0;
  for (const DbLine &line : models->records) {
    UpsData model = {};
    const int filled = fillUpsDataFromUCString(model, line.text.c_str());
    if (!filled) findings.push_back({line.number, models->name, "model", "can't be read, try kavdb check"});
    table += as_row(number++, model);
  }
  print_findings(stderr, arguments[0], findings);
  return print_all(table) == kGood && findings.empty() ? kGood : kFailed;
}

struct Command {
  const char *name;
  int arguments;
  bool can_be_forced;
  int (*run)(const char *const *arguments, bool forced);
};

constexpr Command kCommands[] = {
    // clang-format off
  //  name     arguments  forced  run
  { "compile", 2,         true,   compile },
  { "dump",    1,         false,  dump },
  { "check",   1,         false,  check },
  { "list",    1,         false,  list },
};  // clang-format on

}  // namespace

int main(int argc, char **argv) {
  std::vector<const char *> words(argv + 1, argv + argc);
  const auto is_force = [](const char *word) { return std::strcmp(word, "--force") == 0; };
  const std::string_view first = words.empty() ? "" : words[0];
  if (words.size() == 1 && first == "--help") return print_all(kUsage);
  if (words.size() == 1 && first == "--version") return print_all("kavdb " KAV_VERSION "\n");
  const bool forced = std::erase_if(words, is_force) > 0;
  for (const Command &command : kCommands) {
    if (first != command.name || std::cmp_not_equal(words.size(), command.arguments + 1)) continue;
    if (!forced || command.can_be_forced) return command.run(words.data() + 1, forced);
  }
  std::fputs(kUsage, stderr);
  return kMisused;
}

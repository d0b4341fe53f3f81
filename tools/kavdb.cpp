// kavdb: makes, prints and tests UPS type databases.

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "upsdb/db_check.h"
#include "upsdb/db_text.h"
#include "upsdb/records.h"
#include "upsdb/upsdb.h"
#include "util/files.h"
#include "util/numbers.h"

namespace {

constexpr int kGood = 0;
constexpr int kFailed = 1;
constexpr int kMisused = 2;

constexpr mode_t kNewDatabaseMode = 0644;
constexpr char kStandardStream[] = "-";

constexpr char kUsage[] =
    "usage: kavdb compile SOURCE OUTPUT   make a database of its text\n"
    "       kavdb dump DATABASE           print a database's text\n"
    "       kavdb check FILE              test a database or its text: FILE:LINE: SECTION: FIELD: FAULT\n"
    "       kavdb list FILE               print the models of a database or its text as a table\n"
    "       kavdb --help\n"
    "\"-\" is standard input, or standard output.\n"
    "Exit status: 0 all is well, 1 faults were found or a file can't be read or written, 2 wrong usage.\n";

bool is_standard_stream(const char *path) { return std::strcmp(path, kStandardStream) == 0; }

const char *name_of_input(const char *path) { return is_standard_stream(path) ? "standard input" : path; }

int read_standard_input(std::string &content) {
  char buffer[4096];
  size_t count = 0;
  while ((count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0) content.append(buffer, count);
  return std::ferror(stdin) == 0 ? 1 : 0;
}

int read_input(const char *path, std::string &content) {
  const int read = is_standard_stream(path) ? read_standard_input(content) : read_file(path, content);
  if (read == 0) std::fprintf(stderr, "kavdb: can't read %s\n", name_of_input(path));
  return read;
}

// Control bytes of a file must not reach the terminal.
std::string printable(std::string text) {
  const auto is_control = [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; };
  std::replace_if(text.begin(), text.end(), is_control, '?');
  return text;
}

int print_text(const std::string &text) {
  const bool printed = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (!printed) std::fprintf(stderr, "kavdb: can't write standard output\n");
  return printed ? 1 : 0;
}

// A new database is for everyone to read; an old one keeps its mode.
int write_output(const char *path, const std::string &content) {
  if (is_standard_stream(path)) return print_text(content);
  const bool is_new = AFileExists(path) == 0;
  const int written = replace_file(path, content);
  if (written == 0) std::fprintf(stderr, "kavdb: can't write %s\n", path);
  if (written == 1 && is_new) chmod(path, kNewDatabaseMode);
  return written;
}

// Reads a database's text, from the text itself or from a coded file.
int read_text(const char *path, std::string &text) {
  std::string content;
  if (read_input(path, content) == 0) return 0;
  if (decode_text(content, text) == 0) text = content;
  return 1;
}

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

int compile(const char *const *arguments) {
  std::string source;
  std::string coded;
  std::vector<Finding> findings;
  if (read_input(arguments[0], source) == 0) return kFailed;
  if (code_text(source, coded, findings) == 0) {
    print_findings(stderr, arguments[0], findings);
    return kFailed;
  }
  return write_output(arguments[1], coded) == 1 ? kGood : kFailed;
}

int dump(const char *const *arguments) {
  std::string coded;
  std::string text;
  if (read_input(arguments[0], coded) == 0) return kFailed;
  if (decode_text(coded, text) == 0) {
    std::fprintf(stderr, "kavdb: %s is no database, or not all of one\n", name_of_input(arguments[0]));
    return kFailed;
  }
  return print_text(text) == 1 ? kGood : kFailed;
}

int check(const char *const *arguments) {
  std::string text;
  if (read_text(arguments[0], text) == 0) return kFailed;
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

int list(const char *const *arguments) {
  std::string text;
  if (read_text(arguments[0], text) == 0) return kFailed;
  std::vector<Finding> findings;
  const std::vector<DbSection> sections = sections_of(text, findings);
  const DbSection *models = find_section(sections, kModelSection);
  if (models == nullptr) {
    std::fprintf(stderr, "kavdb: %s has no models\n", name_of_input(arguments[0]));
    return kFailed;
  }
  std::string table = "No.  Model                           Port          Code   Cable Power VA Hold min Recharge h\n";
  findings.clear();
  size_t number = 0;
  for (const DbLine &line : models->records) {
    UpsData model = {};
    const int filled = fillUpsDataFromUCString(model, line.text.c_str());
    if (filled == 0) findings.push_back({line.number, models->name, "model", "can't be read, try kavdb check"});
    table += as_row(number++, model);
  }
  print_findings(stderr, arguments[0], findings);
  return print_text(table) == 1 && findings.empty() ? kGood : kFailed;
}

struct Command {
  const char *name;
  int arguments;
  int (*run)(const char *const *arguments);
};

constexpr Command kCommands[] = {
    // clang-format off
  { "compile", 2, compile },
  { "dump",    1, dump },
  { "check",   1, check },
  { "list",    1, list },
};  // clang-format on

}  // namespace

int main(int argc, char **argv) {
  if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return print_text(kUsage) == 1 ? kGood : kFailed;
  for (const Command &command : kCommands) {
    if (argc == command.arguments + 2 && std::strcmp(argv[1], command.name) == 0) return command.run(argv + 2);
  }
  std::fputs(kUsage, stderr);
  return kMisused;
}

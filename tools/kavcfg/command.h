// What the commands of kavcfg have in common: their options, what they print and how they end.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "setup/check/check.h"
#include "tools/kavcfg/change.h"

// Exit statuses.
inline constexpr int kGood = 0;
inline constexpr int kRefused = 1;  // a value is refused, a fault was found, or there is a difference
inline constexpr int kMisused = 2;
inline constexpr int kFileFailed = 3;  // a file can't be read or written

// The command line. Written by main.
struct Options {
  const char *file = nullptr;  // the configuration
  bool json = false;           // one JSON object on standard output
  bool dry_run = false;        // nothing is written
  bool make_new = false;       // a configuration that is not there is made
  bool write = false;          // the repairs are written
  bool diff = false;           // what changes is printed
  bool keys = false;           // the keys alone
  bool strict = false;         // a warning is a fault
};
extern Options options;

using Arguments = std::vector<std::string>;  // after the command's name

// A text as a line, in the terminal's charset, without control bytes.
void print_line(FILE *stream, const std::string &text);
void print_finding(FILE *stream, const std::string &file, const KeyFinding &finding);
// One line on standard error; the status.
int complain(int status, const std::string &text);
int misuse(const std::string &text);
// The status of an outcome that is no fault of a value, complained of with the system's reason.
int tell_outcome(Outcome outcome, int error, const char *file);
// Its place in all_settings().
size_t place_of(const Setting &setting);
// The setting of a key, or null, complained of.
const Setting *known_setting(const std::string &key);
// The number of an event, given as such or as its key; or -1, complained of.
int known_event(const std::string &word);
// Makes the changes as the options say, and tells what came of them; the status.
int carry_out(const std::vector<Change> &changes);
// UTF-8, for JSON: from EUC-JP where it is not UTF-8 already; bytes that are neither become "?".
std::string utf8_of(const std::string &text);

// --- the commands; each returns its exit status

int get(const Arguments &arguments);
int list(const Arguments &arguments);
int check(const Arguments &arguments);
int events(const Arguments &arguments);
int timeline(const Arguments &arguments);
int diff(const Arguments &arguments);
int explain(const Arguments &arguments);
int probe(const Arguments &arguments);
int schema(const Arguments &arguments);
int set(const Arguments &arguments);
int apply(const Arguments &arguments);
int unset(const Arguments &arguments);
int make_new(const Arguments &arguments);
int fix(const Arguments &arguments);
int job(const Arguments &arguments);

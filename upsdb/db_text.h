// The two forms of a database: the text that people edit, and the coded file that the programs read.
// Each line of the text, its "\n" included, is one coded line, so that the text comes back byte for byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Something wrong in a database's text: where (the line from 1, the section, the field; both may be "") and what.
struct Finding {
  int line;
  std::string section;
  std::string field;
  std::string text;
  bool operator==(const Finding &) const = default;
};

// The lines of a text, each with its "\n" where it has one.
std::vector<std::string_view> lines_of(std::string_view text);

// 1; or 0 when a line would not come back from its coded form: one of more than 1,022 bytes with its end, one that ends
// in "\r\n", and one that holds a NUL. Each of them is appended to `findings`.
[[nodiscard]] int check_lines(std::string_view text, std::vector<Finding> &findings);
// Codes a text. 1; or 0, `coded` untouched, with what check_lines finds.
[[nodiscard]] int code_text(std::string_view text, std::string &coded, std::vector<Finding> &findings);

// Decodes a file. 1; or 0, `text` untouched, when it is no complete coded file. Lines that were coded without their
// "\n" get one, so a file of another maker is readable too.
[[nodiscard]] int decode_text(std::string_view coded, std::string &text);

// What a file can be taken for: a text begins with a section, or has one and no control bytes; all else is a coded
// file, if it can be decoded.
enum class DbForm { text, coded, empty, damaged };
// Takes the text out of a file of either form; `text` is untouched when it is neither.
[[nodiscard]] DbForm text_of_file(std::string_view content, std::string &text);
// What a person reads about a file that is not of the form that is wanted.
const char *name_of_form(DbForm form);

// The lines of a section as the profile store hands them out.
struct DbLine {
  int number;  // in the file, from 1
  std::string text;
};

struct DbSection {
  std::string name;
  int line;
  std::vector<DbLine> records;   // what is read by number
  std::vector<DbLine> settings;  // key=value lines, which no number leads to
};

// Cuts a text into its sections. What the store would never find there is left out and appended to `findings`.
std::vector<DbSection> sections_of(std::string_view text, std::vector<Finding> &findings);
// The section with that name, whatever the case of its letters; null when there is none.
const DbSection *find_section(const std::vector<DbSection> &sections, std::string_view name);
// The first line of a section with that key, its text being the value. False when there is none.
bool find_setting(const DbSection &section, std::string_view key, DbLine &setting);

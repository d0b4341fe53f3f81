// Databases for tests: coded from a text, and the sample of the repository.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tests/folder.h"
#include "upsdb/db_text.h"
#include "upsdb/records.h"

inline std::string sample_text() { return get_file(SAMPLE_TEXT); }

// The database of `text`, open, in a folder of its own; closed and forgotten at the end of its scope.
struct OpenDatabase {
  WorkingFolder folder;
  explicit OpenDatabase(std::string_view text) { open(text); }
  ~OpenDatabase() { reset_upsdb(); }
  void open(std::string_view text) {
    std::string coded;
    std::vector<Finding> findings;
    EXPECT_EQ(code_text(text, coded, findings), 1);
    put_file("upstyp.ups", coded);
    EXPECT_EQ(UpsOpenDb("upstyp.ups"), 1);
  }
};

// The fields of a record as a line has them, with "|" between them.
template <class... Fields>
std::string joined(const Fields &...fields) {
  std::ostringstream line;
  (..., (line << '|' << fields));
  return line.str().substr(1);
}

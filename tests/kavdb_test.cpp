// kavdb: the coded form and back, and the program. What it refuses and the faults that it finds stand in
// docs/transcripts, which kavcfg_test plays.
#include "tests/database_file.h"
#include "tests/run.h"
#include "upsdb/db_check.h"

namespace {

// kavdb by way of the shell, with what the command `input` prints; standard error is in the output.
Result kavdb(const std::string &arguments, const std::string &input = "true") {
  return run_shell(input + " | '" KAVDB_PROGRAM "' " + arguments + " 2>&1");
}

TEST(CodedForm, RefusesWhatWouldNotComeBack) {
  std::string coded = "?";
  std::vector<Finding> findings;
  EXPECT_EQ(code_text("a\nb\r\n", coded, findings) + code_text(std::string(1022, 'x') + "\n", coded, findings), 0);
  EXPECT_EQ(code_text(std::string_view("a\n\nb\0c", 6), coded, findings), 0);
  EXPECT_EQ(findings, (std::vector<Finding>{{2, "", "line", "line ends in a carriage return"},
                                            {1, "", "line", "line is longer than 1022 bytes"},
                                            {3, "", "line", "line holds a NUL"}}));
  EXPECT_EQ(decode_text("[UPS]\n", coded), 0) << "a text is no coded file";
  EXPECT_EQ(coded, "?");
  for (const std::string &source : {std::string(), std::string("\n\n"), std::string("a"), std::string(1022, 'x')}) {
    std::string text = "?";
    EXPECT_EQ(code_text(source, coded, findings) + decode_text(coded, text), 2);
    EXPECT_EQ(text, source);
  }
}

TEST(Check, CountsTheRecordsOfASection) {
  const std::string title = "[BYPASS_LIB]\n";
  std::string text = sample_text(), records;
  const size_t begin = text.find(title) + title.size();
  for (int n = 0; n < 32768; ++n) records += "pop\n";
  const int last = static_cast<int>(lines_of(text.substr(0, begin)).size()) + 32768;
  const std::string fault = "is never read: a section holds at most 32767 records";
  EXPECT_EQ(check_database(text.insert(begin, records)), (std::vector<Finding>{{last, "BYPASS_LIB", "line", fault}}));
}

TEST(Program, CompilesDumpsListsAndChecks) {
  const WorkingFolder folder;
  EXPECT_EQ(kavdb("compile " SAMPLE_TEXT " upstyp.ups"), (Result{0, ""}));
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status("upstyp.ups").permissions()), 0644U);
  const Result refused = kavdb("compile --force - upstyp.ups", "printf '[UPS]\\r\\n' | head -c 7");
  EXPECT_TRUE(refused.output.find("standard input:1: line: line ends in a carriage return\n") != std::string::npos &&
              refused.output.ends_with("kavdb: nothing is written\n"))
      << refused.output;
  EXPECT_EQ(kavdb("dump upstyp.ups"), (Result{0, sample_text()})) << "the old database is whole";
  EXPECT_EQ(kavdb("compile - - | '" KAVDB_PROGRAM "' check -", "cat " SAMPLE_TEXT), (Result{0, ""}));
  const Result list = kavdb("list upstyp.ups");
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(lines_of(list.output)[5],
            "  4  ZELK K-TSN030-200               9600,n,8,1    0x805C     0     3000       10         12\n");
}

}  // namespace

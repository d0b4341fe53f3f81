// kavdb: the coded form and back, and the program itself. The faults that it finds stand in docs/transcripts.
#include <utility>

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

// Each row: what is run, with a database in "whole", its first 9,000 bytes in "part", and its text in "text"; and the
// one line that it prints.
TEST(Program, NamesWhatItCanNotDo) {
  const WorkingFolder folder;
  put_file("text", sample_text());
  put_file("empty", "");
  put_file("faulty", "[UPS]\n");
  ASSERT_EQ(kavdb("compile text whole"), (Result{0, ""}));
  const std::string whole = get_file("whole");
  put_file("part", whole.substr(0, 9000));
  const std::pair<const char *, const char *> cases[] = {
      {"list none", "can't read none: No such file or directory"},
      {"check .", "can't read .: Is a directory"},
      {"compile text .", "can't write .: Is a directory"},
      {"compile text none/out", "can't write none/out: No such file or directory"},
      {"check empty", "empty is empty"},
      {"check part", "part is no database, or not all of one"},
      {"list part", "part is no database, or not all of one"},
      {"dump part", "part is no database, or not all of one"},
      {"check /etc/passwd", "/etc/passwd is no database, or not all of one"},
      {"dump text", "text is the text of a database"},
      {"compile whole out", "whole is a coded database"},
      {"compile text ./text", "text and ./text are the same file"},
      {"compile - text < text", "standard input and text are the same file"},
  };
  for (const auto &[arguments, said] : cases) {
    EXPECT_EQ(kavdb(arguments), (Result{1, std::string("kavdb: ") + said + "\n"})) << arguments;
  }
  const Result refused = kavdb("compile faulty whole");
  EXPECT_TRUE(refused.output.ends_with("kavdb: nothing is written; --force goes on all the same\n")) << refused.output;
  EXPECT_TRUE(get_file("whole") == whole && get_file("text") == sample_text());
  EXPECT_EQ(kavdb("compile faulty --force whole").status, 0);
  EXPECT_EQ(kavdb("dump whole"), (Result{0, "[UPS]\n"}));
}

TEST(Program, TellsWhatIsWrong) {
  const Result check = kavdb("check -", "echo '[UPS]'");
  EXPECT_NE(check.output.find("standard input:1: UPS: section: has no record\n"), std::string::npos) << check.output;
  const Result list = kavdb("list -", "printf '[UPS]\nA\\033|1\n'");
  EXPECT_TRUE(list.output.starts_with("standard input:2: UPS: model: can't be read, try kavdb check\n")) << list.output;
  EXPECT_EQ(list.output.find('\033'), std::string::npos) << "control bytes are not shown";
  EXPECT_EQ(check.status + list.status, 1 + 1);
  for (const char *arguments : {"", "dump", "dump a b", "compile a", "dump --force a", "help"}) {
    const Result misused = kavdb(arguments);
    EXPECT_TRUE(misused.status == 2 && misused.output.starts_with("usage: kavdb compile")) << arguments;
  }
}

}  // namespace

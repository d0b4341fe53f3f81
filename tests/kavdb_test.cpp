// kavdb: the coded form and back, the faults that it finds, and the program itself.
#include <algorithm>
#include <utility>

#include "tests/database_file.h"
#include "tests/run.h"
#include "upsdb/db_check.h"

namespace {

// Runs kavdb by way of the shell, with what the command `input` prints: its exit status, what it printed in `output`.
int run_kavdb(const std::string &arguments, std::string &output, const std::string &input = "true") {
  const Result result = run_shell(input + " | '" KAVDB_PROGRAM "' " + arguments + " 2>&1");
  output = result.output;
  return result.status;
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

// Each row spoils the sample in one place; the finding names the line, the section and the field. Its text may go on.
TEST(Check, NamesTheFault) {
  const char *const cases[][5] = {
      {"Version=2.4.0.7", "Version=2.4", "CUSTOM", "Version", "'2.4' is not understood"},
      {"K-TRN015VQ-110          |2400", "K-TRN015VQ-110|24O0", "UPS", "1 baud rate", "'24O0' is not a whole number"},
      {"ZELK K-TSN030-200 ", "ZELK K-TSN030-200 for many more", "UPS", "0 name", "is longer than 30 characters"},
      {"|0x805C|0|3000|10", "|0x805C|0|3000|", "UPS", "8 hold minutes", "missing"},
      {"VITAL_ZELK|", "NONE|", "UPS", "15 vital section", "section 'NONE' of 'ZELK K-TSN030-200' is missing"},
      {"33|\"%B\"", "33|%B|x", "INFO_ZELK", "get-info entry", "3 fields, not 2 at most"},
      {"|BYPASS|", "|BY|", "EVENTS_ZELK", "3 name of its code", "section 'BY_MAIN' of 'Bypass mode' is missing"},
      {"push HOLD_TIME", "left=HOLD_TIME", "SHARED_LIB", "line", "key=value is no record"},
      {"push HOLD_TIME", "push [HOLD", "SHARED_LIB", "line", "\"[\" hides this line and the rest of the section"},
      {"push HOLD_TIME", "push [HOLD]", "HOLD", "line", "is read as the title of a section"},
      {"[SHARED_MAIN]", "[FUNC_TSN]", "FUNC_TSN", "line", "is never read: the section begins in line"},
      {"[CUSTOM]", "stray\n[CUSTOM]", "", "line", "stands before the first section"},
      {"ZELK K-TSN030-200", "halvoris 500va k-tsn005", "UPS", "0 name", "'halvoris 500va k-tsn005' is in line"},
      {"[BYPASS_LIB]", "[OTHER]\nx\n[BYPASS_LIB]", "OTHER", "section", "nothing leads here"},
  };
  EXPECT_EQ(check_database(sample_text()), std::vector<Finding>{});
  for (const auto &[what, by, section, field, fault] : cases) {
    std::string text = sample_text();
    const size_t at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what;
    const Finding wanted = {static_cast<int>(lines_of(text.substr(0, at + 1)).size()), section, field, fault};
    text.replace(at, std::string_view(what).size(), by);
    const auto is_it = [&wanted](Finding finding) {
      finding.text.resize(std::min(finding.text.size(), wanted.text.size()));
      return finding == wanted;
    };
    const std::vector<Finding> findings = check_database(text);
    EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), is_it)) << by << ", line " << wanted.line;
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
  std::string output;
  EXPECT_EQ(run_kavdb("compile " SAMPLE_TEXT " upstyp.ups", output), 0) << output;
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status("upstyp.ups").permissions()), 0644U);
  EXPECT_EQ(run_kavdb("compile --force - upstyp.ups", output, "printf '[UPS]\\r\\n' | head -c 7"), 1);
  EXPECT_NE(output.find("standard input:1: line: line ends in a carriage return\n"), std::string::npos) << output;
  EXPECT_EQ(run_kavdb("dump upstyp.ups", output), 0) << "the old database is whole";
  EXPECT_EQ(output, sample_text());
  EXPECT_EQ(run_kavdb("compile - - | '" KAVDB_PROGRAM "' check -", output, "cat " SAMPLE_TEXT), 0) << output;
  EXPECT_EQ(run_kavdb("list upstyp.ups", output), 0);
  EXPECT_EQ(lines_of(output)[5],
            "  4  ZELK K-TSN030-200               9600,n,8,1    0x805C     0     3000       10         12\n");
  EXPECT_EQ(run_kavdb("dump " SAMPLE_TEXT, output), 1) << "a text is no database";
}

// Each row: what is run, after "cp SAMPLE_TEXT text" and with the first 9,000 bytes of a database in "part", and the
// one line that it prints.
TEST(Program, NamesWhatItCanNotDo) {
  const WorkingFolder folder;
  std::string output;
  put_file("text", sample_text());
  put_file("empty", "");
  put_file("faulty", "[UPS]\n");
  ASSERT_EQ(run_kavdb("compile text whole", output), 0) << output;
  put_file("part", get_file("whole").substr(0, 9000));
  const std::string whole = get_file("whole");
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
    EXPECT_EQ(run_kavdb(arguments, output), 1) << arguments;
    EXPECT_EQ(output, std::string("kavdb: ") + said + "\n") << arguments;
  }
  EXPECT_EQ(run_kavdb("compile faulty whole", output), 1);
  EXPECT_TRUE(output.ends_with("kavdb: nothing is written; --force goes on all the same\n")) << output;
  EXPECT_TRUE(get_file("whole") == whole && get_file("text") == sample_text());
  EXPECT_EQ(run_kavdb("compile faulty --force whole", output) + run_kavdb("dump whole 2>&1", output), 0);
  EXPECT_EQ(output, "[UPS]\n");
}

TEST(Program, TellsWhatIsWrong) {
  std::string output;
  EXPECT_EQ(run_kavdb("check -", output, "echo '[UPS]'"), 1);
  EXPECT_NE(output.find("standard input:1: UPS: section: has no record\n"), std::string::npos) << output;
  EXPECT_EQ(run_kavdb("list -", output, "printf '[UPS]\nA\\033|1\n'"), 1);
  EXPECT_EQ(lines_of(output)[0], "standard input:2: UPS: model: can't be read, try kavdb check\n");
  EXPECT_EQ(output.find('\033'), std::string::npos) << "control bytes are not shown";
  for (const char *arguments : {"", "dump", "dump a b", "compile a", "dump --force a", "help"}) {
    EXPECT_EQ(run_kavdb(arguments, output), 2) << arguments;
    EXPECT_TRUE(output.starts_with("usage: kavdb compile")) << arguments;
  }
}

}  // namespace

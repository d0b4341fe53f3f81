// kavdb: the coded form and back, the faults that it finds, and the program itself.
#include <algorithm>

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

TEST(Program, CompilesDumpsListsAndChecks) {
  const WorkingFolder folder;
  std::string output;
  EXPECT_EQ(run_kavdb("compile " SAMPLE_TEXT " upstyp.ups", output), 0) << output;
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status("upstyp.ups").permissions()), 0644U);
  EXPECT_EQ(run_kavdb("compile - upstyp.ups", output, "printf 'a\\r\\n'"), 1) << "a line that would not come back";
  EXPECT_EQ(output, "standard input:1: line: line ends in a carriage return\n");
  EXPECT_EQ(run_kavdb("dump upstyp.ups", output), 0) << "the old database is whole";
  EXPECT_EQ(output, sample_text());
  EXPECT_EQ(run_kavdb("compile - - | '" KAVDB_PROGRAM "' check -", output, "cat " SAMPLE_TEXT), 0) << output;
  EXPECT_EQ(run_kavdb("list upstyp.ups", output), 0);
  EXPECT_EQ(lines_of(output)[5],
            "  4  ZELK K-TSN030-200               9600,n,8,1    0x805C     0     3000       10         12\n");
  EXPECT_EQ(run_kavdb("dump " SAMPLE_TEXT, output), 1) << "a text is no database";
  EXPECT_EQ(run_kavdb("list none", output) + run_kavdb("compile . out", output) + run_kavdb("compile - .", output), 3);
}

TEST(Program, TellsWhatIsWrong) {
  std::string output;
  EXPECT_EQ(run_kavdb("check -", output, "echo '[UPS]'"), 1);
  EXPECT_NE(output.find("standard input:1: UPS: section: has no record\n"), std::string::npos) << output;
  EXPECT_EQ(run_kavdb("list -", output, "printf '[UPS]\nA\\033|1\n'"), 1);
  EXPECT_EQ(lines_of(output)[0], "standard input:2: UPS: model: can't be read, try kavdb check\n");
  EXPECT_EQ(output.find('\033'), std::string::npos) << "control bytes are not shown";
  for (const char *arguments : {"", "dump", "dump a b", "compile a", "help"}) {
    EXPECT_EQ(run_kavdb(arguments, output), 2) << arguments;
    EXPECT_TRUE(output.starts_with("usage: kavdb compile")) << arguments;
  }
}

}  // namespace

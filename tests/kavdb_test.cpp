// kavdb: the coded form and back, the faults that it finds, and the program itself.
#include <algorithm>
#include <tuple>
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

// Each row spoils the sample in one place; the finding names the line, the section and the field. Its text may go on;
// so many are found in all.
TEST(Check, NamesTheFault) {
  const std::tuple<const char *, const char *, const char *, const char *, const char *, size_t> cases[] = {
      {"Version=2.4.0.7", "Version=2.4", "CUSTOM", "Version", "'2.4' is not understood", 1},
      {"K-TRN015VQ-110          |2400", "K-TRN015VQ-110|24O0", "UPS", "1 baud rate", "'24O0' is not a whole number", 1},
      {"ZELK K-TSN030-200 ", "ZELK K-TSN030-200 for many more", "UPS", "0 name", "is longer than 30 characters", 1},
      {"|0x805C|0|3000|10", "|0x805C|0|3000|", "UPS", "8 hold minutes", "missing", 1},
      {"|0x805C|0|3000|10", "|0xG05C|0|3000|10", "UPS", "5 code", "'0xG05C' is not a number from 0x0000 to 0xFFFF", 1},
      {"|0x805C|0|3000|10", "|0x805C|0|30o0|10", "UPS", "7 power", "'30o0' is not a number", 1},
      {"33|\"%B\"", "33|", "INFO_ZELK", "1 request", "missing", 1},
      {"2|INPUT_FREQUENCY", "1|INPUT_FREQUENCY", "VARIABLEN", "0 variable", "'1' is in line 68 already", 3},
      {"[VARIABLEN]", "[VARIABLES]", "VARIABLES", "section", "nothing leads here", 2},
      {"VITAL_ZELK|", "NONE|", "UPS", "15 vital section", "section 'NONE' of 'ZELK K-TSN030-200' is missing", 2},
      {"33|\"%B\"", "33|%B|x", "INFO_ZELK", "get-info entry", "3 fields, not 2 at most", 1},
      {"|BYPASS|", "|BY|", "EVENTS_ZELK", "3 name of its code", "section 'BY_MAIN' of 'Bypass mode' is missing", 4},
      {"push HOLD_TIME", "left=HOLD_TIME", "SHARED_LIB", "line", "key=value is no record", 1},
      {"push HOLD_TIME", "push [HOLD", "SHARED_LIB", "line", "\"[\" hides this line and the rest of the section", 1},
      {"push HOLD_TIME", "push [HOLD]", "HOLD", "line", "is read as the title of a section", 2},
      {"[SHARED_MAIN]", "[FUNC_TSN]", "FUNC_TSN", "line", "is never read: the section begins in line", 2},
      {"[CUSTOM]", "stray\n[CUSTOM]", "", "line", "stands before the first section", 1},
      {"ZELK K-TSN030-200", "halvoris 500va k-tsn005", "UPS", "0 name", "'halvoris 500va k-tsn005' is in line", 1},
      {"[BYPASS_LIB]", "[OTHER]\nx\n[BYPASS_LIB]", "OTHER", "section", "nothing leads here", 1},
  };
  EXPECT_EQ(check_database(sample_text()), std::vector<Finding>{});
  for (const auto &[what, by, section, field, fault, count] : cases) {
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
    EXPECT_EQ(findings.size(), count) << by;
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

// kavcfg: what it refuses, finds and changes, by the built program in a folder of its own. What commands print and
// leave in the file stands in docs/transcripts, as a person sees it.
#include <array>
#include <cstdlib>
#include <random>
#include <regex>

#include "setup/configuration/configuration.h"
#include "tests/run.h"
#include "util/tokens.h"

namespace {

// Runs kavcfg with `words` of the shell.
Result kavcfg(const std::string &words) {
  return run_shell("'" KAVCFG_PROGRAM "' -u '" KAVCFG_DATABASE "' " + words + " </dev/null 2>&1");
}

// Runs the commands of a transcript, its lines that begin with "$ ". What they print and a status that is not 0 follow.
constexpr char kPlay[] = R"(
kavcfg() { "$program" -u "$database" "$@"; }
ports() { "$detection" -b "$build" "$@"; }
sed -n 's/^\$ //p' transcript | while IFS= read -r line; do
  printf '$ %s\n' "$line"
  eval "$line" </dev/null || echo "[$?]"
done 2>&1)";

std::string played(const std::string &transcript) {
  put_file("transcript", transcript);
  const std::string places = "build='" BUILD_FOLDER "' models='" SAMPLE_TEXT "' detection='" TRY_DETECTION "' ";
  return run_shell(places + "program='" KAVCFG_PROGRAM "' database='" KAVCFG_DATABASE "' kavdb='" KAVDB_PROGRAM "'" +
                   kPlay)
      .output;
}

constexpr char kSite[] = R"(; ask before changing
UpsModel=K-TRN010VQ-100
 upsdevice = /dev/ttyS1:9600,e,7,2
shift=night ; who
CheckRate=5
Event3=LOGMSG("mine")O;

[log]
CheckRate=7
)";

struct Kavcfg : testing::Test {
  WorkingFolder folder;
  Kavcfg() { put_file("ups.cfg", kSite); }
  static void expect(const std::string &name) {
    const std::string transcript = get_file(TRANSCRIPTS "/" + name + ".txt");
    EXPECT_EQ(played(transcript), transcript);
  }
};

TEST_F(Kavcfg, RefusesInOneLineAndChangesNothing) { expect("refusals"); }

TEST_F(Kavcfg, SetChangesItsKeysAndWhatFollowsThem) { expect("set"); }

TEST_F(Kavcfg, PasswordsComeFromStandardInputAndAreNeverPrinted) { expect("passwords"); }

TEST_F(Kavcfg, KavdbRefusesAndFindsFaults) { expect("database"); }

// A configuration without a finding; `more` follows its lines.
std::string sound(const std::string &more) {
  return "UpsModel=K-TRN010VQ-100\nPASSWORD=_>=o\nSysDownAllowed=no\nLogFileTxt=/tmp/a.csv\n"
         "DataLoggingName=/tmp/b.csv\n" +
         more;
}

// With `attachments` in its blocks.
std::string mail_job(const std::string &attachments) {
  return R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t","me")"
         R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"})" +
         attachments + R"(,"hello")O;)";
}

TEST_F(Kavcfg, CheckNamesLineAndKey) {
  expect("check");
  const std::string warned =
      "UpsModel=K-TRN010VQ-100\nUpsLoad=500\nUpsHoldMins=5\nPASSWORD=SWNL\nLogFileTxt=none/a.csv\n"
      "Event3=" +
      mail_job("${}${}${}${}") + "\nDataLoggingName=/tmp/b.csv\n";
  const std::pair<std::string, const char *> cases[] = {
      // clang-format off
      {sound(""), ""},
      {sound("upslocation\t=\tRack A\t\nTempCaution\t=45.0\n; CheckRate 5\n[log]\nlevel 5\n"), ""},
      {sound("Event25=x\nUnknown=1\nNetTyp=SLAVE\neckRote=5\nEvent20=LOGMSG(\"a\")OX5;\n"), ""},
      {sound("Event3=EXECUTE(\"/bin/page\",\"\")T999999;SHUTDOWN(\"default\")O;\n"), ""},
      {sound("MailEnableFlag=yes\nSmtpHost=h\nMailFromAddr=a\nEvent3=" +
             mail_job(R"(${}${#USETEXT?,"-attach","#LOGFILETXT"}${}${})") + "\n"), ""},
      {sound("shift=[night]\nCheckRate=5\n"),
       "ups.cfg:6: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {sound("SmtpPassword=_][\nCheckRate=5\n"),
       "ups.cfg:6: SmtpPassword: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {sound("CheckRate=5\rshift=1\r"),
       "ups.cfg:6: holds carriage returns that end no line: all of it is one line\n"},
      {sound({"UpsLocation=a\0b\n", 16}), "ups.cfg:6: ends at a byte of value 0\n"},
      {sound("CheckRate=5\r"), "ups.cfg:6: CheckRate: ends in a carriage return\n"},
      {"; \xC6\xFC\n; \xE6\x97\xA5\n" + sound("PASSWORD=\xFF\n; \xE6\n"),
       "ups.cfg:2: is UTF-8, but line 1 is EUC-JP: a file has one encoding\n"
       "ups.cfg:8: PASSWORD: is already in line 4, this line does not count\n"
       "ups.cfg:9: holds bytes that are neither UTF-8 nor EUC-JP\n"},
      {sound("CheckRate=5\r\n"),
       "ups.cfg:6: CheckRate: ends in a carriage return\n"
       "warning: ups.cfg:6: has a Windows line end: with these a save makes 'upsdata..dat' of 'upsdata.csv'\n"},
      {sound("#" + std::string(1100, 'x') + "\n"), "ups.cfg:6: is longer than 1023 bytes and is read in pieces\n"},
      {"\xEF\xBB\xBF" + sound(""),
       "ups.cfg: UpsModel: no UPS model is chosen\n"
       "ups.cfg:1: begins with a byte order mark, which makes another key of its key\n"},
      {warned,
       "warning: ups.cfg: SysDownAllowed: the shutdown is allowed, but no event has a SHUTDOWN job\n"
       "warning: ups.cfg:3: UpsHoldMins: the battery is empty after 10 minutes, but the shutdown is over after 11\n"
       "warning: ups.cfg:4: PASSWORD: is the default password\n"
       "warning: ups.cfg:5: LogFileTxt: there is no directory none\n"
       "warning: ups.cfg:6: Event3: job 1 sends e-mail, but MailEnableFlag is not yes\n"},
      {warned + "MailEnableFlag=yes\nSmtpHost=a\nFixedDownTime=0\nEvent2=SHUTDOWN(\"default\")O;\n",
       "warning: ups.cfg:4: PASSWORD: is the default password\n"
       "warning: ups.cfg:5: LogFileTxt: there is no directory none\n"
       "warning: ups.cfg:6: Event3: job 1 sends e-mail, but MailFromAddr is empty\n"},
      // clang-format on
  };
  for (const auto &[content, findings] : cases) {
    put_file("ups.cfg", content);
    const bool has_fault = std::string(findings).starts_with("ups.cfg");
    EXPECT_EQ(kavcfg("check"), (Result{has_fault ? 1 : 0, findings}));
    const std::string strict = std::regex_replace(findings, std::regex("warning: "), "");
    EXPECT_EQ(kavcfg("check --strict"), (Result{strict.empty() ? 0 : 1, strict}));
  }
}

TEST_F(Kavcfg, FixRepairsWhatIsSafeAndNothingElse) {
  expect("fix");
  const std::pair<std::string, std::string> cases[] = {
      {"UpsLocation=a\rCheckRate=5\r", "UpsLocation=a\nCheckRate=5\n"},
      {"CheckRate=5\nCheckRate=6\n", "CheckRate=5\nCheckRate=6\n"},
      {"a=[\n# [x\nUpsID=1\nUpsID=1\n", "a=[\n# [x\nUpsID=1\nUpsID=1\n"},
      {"SmtpPassword=\t\r\x01\nPASSWORD=\r\n", "SmtpPassword=\t\r\x01\nPASSWORD=\r\n"},
      {"[site]\nUpsID=1\nUpsID=1", "[site]\nUpsID=1\nUpsID=1"},
  };
  for (const auto &[before, after] : cases) {
    put_file("ups.cfg", before);
    EXPECT_EQ(kavcfg("fix --write").status, 0);
    EXPECT_EQ(get_file("ups.cfg"), after);
  }
}

TEST_F(Kavcfg, PrintsValuesJobsAndDifferences) { expect("print"); }

TEST_F(Kavcfg, EditsAndListsOneJobInWords) { expect("job"); }

TEST_F(Kavcfg, DrawsTheJobsOfAnEventOverTime) { expect("timeline"); }

// Schema and list agree with each other, with the standard's own check, and with apply.
TEST_F(Kavcfg, JsonAndSchemaHoldBeforeOtherPrograms) { expect("json"); }

TEST(KavcfgProgram, IsLinkedWithoutCurses) {
  EXPECT_EQ(run_shell("readelf -d '" KAVCFG_PROGRAM "' | grep NEEDED | grep -oE '\\[libc.so|curses|tinfo'").output,
            "[libc.so\n");
}

TEST_F(Kavcfg, ProbeTellsTheModelOrTheReasonOfEachPort) {
  constexpr int kNoNamespace = 77;
  const bool can_simulate = run_shell("'" TRY_DETECTION "' -b '" BUILD_FOLDER "' true").status != kNoNamespace;
  if (!can_simulate && std::getenv("CI") == nullptr) GTEST_SKIP();
  expect("probe");
}

TEST_F(Kavcfg, AppliesWhatItListsAndPredictsWhatItDoes) { expect("apply"); }

TEST_F(Kavcfg, ASessionKeepsWhatOthersChangedMeanwhile) {
  init_all_tabs();
  put_file("ups.cfg", "UpsHoldMins=5\nCheckRate=5\nSysDownMins=5\nUpsDownDelay=60\nFixedDownTime=5\nGarUpTime=5\n");
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  put_file("ups.cfg", "UpsHoldMins=6\nCheckRate=6  \nsysdownmins = 6\nFixedDownTime=6\nGarUpTime=6\nPASSWORD=?\n");
  StdRec.hold_minutes = 7;
  CustomRec.check_rate = 6;
  const std::string kept =
      "ups.cfg: PASSWORD was set by another program meanwhile and is kept\n"
      "ups.cfg: SysDownMins=6 was set by another program meanwhile and is kept\n"
      "ups.cfg: UpsDownDelay was set by another program meanwhile and is kept\n"
      "ups.cfg: FixedDownTime=6 was set by another program meanwhile and is kept";
  for (const char *overwritten :
       {"ups.cfg: UpsHoldMins=6 was set by another program meanwhile and is overwritten\n", ""}) {
    ASSERT_EQ(save_configuration("ups.cfg"), 1);
    EXPECT_EQ(joined(save_report(), "\n"), overwritten + kept);
    EXPECT_EQ(get_file("ups.cfg").substr(0, get_file("ups.cfg").find("UpsLocation")),
              "UpsHoldMins=7\nCheckRate=6\nsysdownmins = 6\nFixedDownTime=6\nGarUpTime=6\nPASSWORD=?\n");
    EXPECT_EQ(get_file("ups.cfg").find("UpsDownDelay"), std::string::npos);
  }
}

// --- two writers of one file

struct Shared {
  const char *key;
  int32_t *number;  // in the records
};
const Shared kShared[] = {{"UpsHoldMins", &StdRec.hold_minutes},
                          {"SysDownMins", &CustomRec.shutdown_minutes},
                          {"FixedDownTime", &CustomRec.fixed_down_time}};
using Numbers = std::array<int32_t, std::size(kShared)>;

Numbers loaded() {
  EXPECT_EQ(init_config_vals("ups.cfg"), 1);
  return {*kShared[0].number, *kShared[1].number, *kShared[2].number};
}

void take(const Numbers &numbers) {
  for (size_t i = 0; i < numbers.size(); ++i) *kShared[i].number = numbers[i];
}

// KEY=NUMBER for each, with `end` after them.
std::string written(const Numbers &numbers, const std::string &end) {
  std::string text;
  for (size_t i = 0; i < numbers.size(); ++i) text += kShared[i].key + ("=" + std::to_string(numbers[i])) + end;
  return text;
}

// What another program does to the file while the session has it open.
constexpr void (*kWriters[])(const Numbers &) = {
    [](const Numbers &numbers) {
      EXPECT_EQ(kavcfg("set " + written(numbers, " ")), (Result{0, ""}));
    },
    [](const Numbers &numbers) { put_file("ups.cfg", "UpsModel=K-TRN010VQ-100\n" + written(numbers, "  \n")); },
    [](const Numbers &numbers) {
      EXPECT_EXIT(take(numbers); std::_Exit(save_configuration("ups.cfg")), testing::ExitedWithCode(1), "");
    }};

TEST_F(Kavcfg, ASessionAndAnyOtherWriterMergeKeyByKey) {
  const WorkingFolder here(kMemoryFolder);
  init_all_tabs();
  std::mt19937 random(11);
  const auto changed = [&](Numbers numbers) {
    for (int32_t &number : numbers) number = random() % 3 == 0 ? static_cast<int32_t>(random() % 90) + 1 : number;
    return numbers;
  };
  for (const auto write : kWriters) {
    put_file("ups.cfg", "UpsModel=K-TRN010VQ-100\n");
    for (int round = 0; round < 200 && !HasFailure(); ++round) {
      const Numbers before = loaded(), mine = changed(before), theirs = changed(before);
      Numbers expected = mine;
      size_t told = 0;
      for (size_t i = 0; i < before.size(); ++i) {
        if (mine[i] == before[i]) expected[i] = theirs[i];
        told += theirs[i] != before[i] && theirs[i] != mine[i];
      }
      write(theirs);
      take(mine);
      ASSERT_EQ(save_configuration("ups.cfg"), 1);
      EXPECT_EQ(save_report().size(), told);
      EXPECT_EQ(loaded(), expected);
    }
  }
}

}  // namespace

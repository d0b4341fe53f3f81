// kavcfg: what it refuses, finds and changes, by the built program in a folder of its own. What its commands print and
// leave in the file stands in docs/transcripts, as a person sees it.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <regex>

#include "setup/configuration/configuration.h"
#include "tests/run.h"
#include "util/tokens.h"

namespace {

// Runs kavcfg with `words` of the shell, with `typed` as its standard input.
Result kavcfg(const std::string &words, const std::string &typed = "") {
  return run_shell("printf '%s' '" + typed + "' | '" KAVCFG_PROGRAM "' -u '" KAVCFG_DATABASE "' " + words + " 2>&1");
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

TEST_F(Kavcfg, RefusesInOneLineAndChangesNothing) {
  const struct {
    const char *words;
    int status;
    const char *says;  // the line begins so after "kavcfg: "
    const char *typed = "";
  } cases[] = {
      // clang-format off
      // one value of many
      {"set LogMaxHours=1 checkrate=601", 1, "CheckRate: is not from 1 to 600"},
      {"set LogMaxHours=1 CheckRate=5s", 1, "CheckRate: 's' is not accepted, it takes only 0-9 . blanks"},
      {"set UpsDownDelay=90", 1, "UpsDownDelay: is not in the usual form, write '60'"},
      {"set TempCaution=60.1", 1, "TempCaution: is not from 40 to 60"},
      {"set UpsID=x", 1, "UpsID: is not in the usual form, write '0'"},
      {"set UseMailSign=YES", 1, "UseMailSign: is neither yes nor no"},
      {"set UpsModel=Unknown", 1, "UpsModel: no UPS model is chosen"},
      {"set UpsModel=TRN010VQ-100", 1, "UpsModel: is not in the database " KAVCFG_DATABASE ", did you mean "
                                                    "K-TRN010VQ-100?"},
      {"set UpsModel=k-trn010vq-100", 1, "UpsModel: is not in the database " KAVCFG_DATABASE ", did you mean "},
      {"set UpsCable=42", 1, "UpsCable: is the code of no cable"},
      {"set UpsLocation='a|b'", 1, "UpsLocation: '|' is not accepted, it takes all but \\ |"},
      {"set UpsLocation=123456789012345678", 1, "UpsLocation: is longer than 17 bytes"},
      {"set UpsLocation='a [b'", 1, "UpsLocation: This value can not be read back: '['"},
      {"--japanese set UpsLocation=$(printf '\\377')", 1, "UpsLocation: "},
      {"set MailSubject=' '", 1, "MailSubject: This value can not be read back: blanks"},
      {"set SmtpUser=me", 1, "SmtpUser: is kept only with MailEnableFlag=yes"},
      {"set SysDownAllowed=no UpTimeSupport=yes", 1, "UpTimeSupport: can be yes only with SysDownAllowed=yes"},
      {"set PASSWORD", 1, "PASSWORD: standard input has no line"},
      {"set PASSWORD", 1, "PASSWORD: This value can not be read back: '[' hides", "ACE"},
      {"set PASSWORD", 1, "PASSWORD: ' ' is not accepted, it takes only 0-9 A-Z a-z", "a b\n"},
      {"set PASSWORD", 1, "PASSWORD: is longer than 16", "12345678901234567"},
      {"set SmtpPassword MailEnableFlag=yes", 1, "SmtpPassword: This value can not be read back: a part of it", ":x\n"},
      // jobs
      {R"(set 'Event3=LOGMSG("a")O;LOGMSG("b")X;')", 1, "Event3: job 2: there is no timing 'X' here: O, A, P60, T60"},
      {R"(set 'Event3=LOGMSG("a)O;')", 1, "Event3: job 1: TEXT: is empty"},
      {R"(set 'Event3=LOGMSG;')", 1, "Event3: job 1: is not of the form"},
      {R"(set 'Event3=FOO("a")O;')", 1, "Event3: job 1: there is no function FOO"},
      {R"(set 'Event3=LOGMSG("a")P;')", 1, "Event3: job 1: there is no timing 'P' here"},
      {R"(set 'Event20=LOGMSG("a")O;')", 1, "Event20: job 1: there is no timing 'O' here: OX5"},
      {R"(set 'Event3=EVENTLOG("warnning",100,"a")O;')", 1, "Event3: job 1: TYPE: there is no level warnning"},
      {R"(set 'Event3=MESSAGEID("a",x)O;')", 1, "Event3: job 1: ID: is not a whole number"},
      {R"(set 'Event3=EXECUTE("send","host","65536")O;')", 1, "Event3: job 1: PORT: is empty or out of its range"},
      {R"(set 'Event3=SHUTDOWN("6000")O;')", 1, R"(Event3: job 1: is not in the usual form, write 'SHUTDOWN("5940)"},
      {R"(set 'Event3=LOGMSG("a","b")O;')", 1, R"(Event3: job 1: is not in the usual form, write 'LOGMSG("a")O;')"},
      {R"(set 'Event3=SHUTDOWN("1")O;LOGMSG("a")O;')", 1, "Event3: SHUTDOWN must be the last job"},
      {"job add 3 FOO", 1, "there is no function FOO: SHUTDOWN, "},
      {"job add 3 LOGMSG TEXT='a;b'", 1, "TEXT: ';' is not accepted"},
      {"job add 3 LOGMSG TXT=a", 1, "LOGMSG has no TXT: TEXT, TIMING"},
      {"job add 3 LOGMSG TXT", 1, "TXT: a value is needed"},
      {"job add 3 LOGMSG", 1, "Event3: job 2: TEXT: is empty"},
      {"job add 3 LOGMSG TEXT=a TIMING=soon", 1, "there is no soon here: once, always, periodic, timed, repeated"},
      {"job add 3 LOGMSG TEXT=a TIMING=timed", 1, "timed: is not a whole number"},
      {"job add 3 LOGMSG TEXT=a TIMING=once:1", 1, "once:1: is not a whole number"},
      {"job add 3 EVENTLOG TYPE=bad TEXT=a", 1, "TYPE: there is no bad here: emergency, "},
      {"job remove 3 2", 1, "Event3 has no job 2"},
      {"job remove 3 0", 1, "Event3 has no job 0"},
      // the words of the command
      {"get PASSWORD", 1, "PASSWORD: a password is not printed"},
      {"get GarUpTime", 1, "GarUpTime: not set, and there is no default"},
      {"", 2, "a command is needed"},
      {"lst", 2, "unknown command 'lst'"},
      {"-x check", 2, "unknown option '-x'"},
      {"get", 2, "'get' needs an argument"},
      {"get UpsID NoKey", 2, "NoKey: no such key"},
      {"set UpsID", 2, "UpsID: a value is needed"},
      {"set GarUpTime=1", 2, "GarUpTime: follows from other keys"},
      {"set UpsID=1 upsid=2", 2, "UpsID: given twice"},
      {"set PASSWORD=x", 2, "PASSWORD: give the key alone"},
      {"check x", 2, "'check' does not take 'x'"},
      {"-f - set UpsID=1", 2, "'set' needs a file"},
      {"unset UpsID GarUpTime", 2, "GarUpTime: follows from other keys"},
      {"explain NoKey", 2, "NoKey: no such key"},
      {"job lst 1", 2, "unknown command 'job lst'"},
      {"job add 1", 2, "'job add' needs an argument"},
      {"job remove 1 1 2", 2, "'job remove' does not take '2'"},
      {"fix", 2, "'fix' needs --dry-run or --write"},
      {"timeline 25", 2, "25: no such event"},
      // files
      {"-f none check", 3, "can't read none: No such file or directory"},
      {"-f none set UpsID=1", 3, "can't read none: No such file or directory"},
      {"-f none job list 3", 3, "can't read none: No such file or directory"},
      {"-f none events", 3, "can't read none: No such file or directory"},
      {"-f none timeline 3", 3, "can't read none: No such file or directory"},
      {"-f none fix --dry-run", 3, "can't read none: No such file or directory"},
      {"-u none set UpsModel=x", 3, "can't read the database none: No such file or directory"},
      {"-u none check", 3, "can't read the database none: No such file or directory"},
      {"diff none", 3, "can't read none: No such file or directory"},
      {"apply none", 3, "can't read none: No such file or directory"},
      {"new", 3, "can't write ups.cfg: File exists"},
      {"-f none/x new", 3, "can't write none/x: No such file or directory"},
      {"-C none check", 3, "can't read none: No such file or directory"},
      // clang-format on
  };
  for (const auto &[words, status, says, typed] : cases) {
    const Result result = kavcfg(words, typed);
    EXPECT_EQ(result.status, status) << words;
    EXPECT_TRUE(result.output.starts_with(std::string("kavcfg: ") + says)) << words << ": " << result.output;
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 1) << result.output;
    EXPECT_EQ(get_file("ups.cfg"), kSite) << words;
  }
  EXPECT_EQ(kavcfg("get UpsID >/dev/full").status, 3);
  EXPECT_FALSE(std::filesystem::exists("none"));
}

TEST_F(Kavcfg, SetChangesItsKeysAndWhatFollowsThem) { expect("set"); }

TEST_F(Kavcfg, PasswordsComeFromStandardInputAndAreNeverPrinted) { expect("passwords"); }

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
  put_file("messages.dat", "m601=x\n");
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
      {sound("CheckRate=0\n"), "ups.cfg:6: CheckRate: is not from 1 to 600\n"},
      {sound("CheckRate=5 ; fast\n"), "ups.cfg:6: CheckRate: ';' is not accepted, it takes only 0-9 . blanks\n"},
      {sound("upsmodel=x\n"), "ups.cfg:6: UpsModel: is already in line 1, this line does not count\n"},
      {sound("shift=[night]\nCheckRate=5\n"),
       "ups.cfg:6: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {sound("SmtpPassword=_][\nCheckRate=5\n"),
       "ups.cfg:6: SmtpPassword: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {sound("GarUpTime=3\n"), "ups.cfg:6: GarUpTime: is not in the usual form, write '1'\n"},
      {sound("UpsLocation=a\tb\n"), "ups.cfg:6: UpsLocation: This value can not be read back: a part of it is lost\n"},
      {sound("UpsLoad: 800\n"), "ups.cfg:6: is neither a setting, a comment nor a topic\n"},
      {sound("export UpsLoad=800\n"), "ups.cfg:6: is neither a setting, a comment nor a topic\n"},
      {sound("sysdwnmin=12\nChekcRate=5\nUpssLooad=1\n"),
       "ups.cfg:6: sysdwnmin: did you mean SysDownMins?\nups.cfg:7: ChekcRate: did you mean CheckRate?\n"
       "ups.cfg:8: UpssLooad: did you mean UpsLoad?\n"},
      {sound("[site]\nCheckRate=5\n"),
       "ups.cfg:7: CheckRate: is not found, since it stands after the topic in line 6\n"},
      {sound("; a\rCheckRate=5\rshift=1\r"),
       "ups.cfg:6: holds carriage returns that end no line: all of it is one line\n"},
      {sound({"UpsLocation=a\0b\n", 16}), "ups.cfg:6: ends at a byte of value 0\n"},
      {sound("CheckRate=5\r"), "ups.cfg:6: CheckRate: ends in a carriage return\n"},
      {"; \xC6\xFC\n; \xE6\x97\xA5\n" + sound("PASSWORD=\xFF\n; \xE6\n"),
       "ups.cfg:2: is UTF-8, but line 1 is EUC-JP: a file has one encoding\n"
       "ups.cfg:8: PASSWORD: is already in line 4, this line does not count\n"
       "ups.cfg:9: holds bytes that are neither UTF-8 nor EUC-JP\n"},
      {sound("Event3=EVENTLOG(\"warn\",100,\"a\")O;\n"),
       "ups.cfg:6: Event3: job 1: TYPE: there is no level warn: emergency, alert, critical, error, warning, notice, "
       "information\n"},
      {sound("CheckRate=5\r\n"),
       "ups.cfg:6: CheckRate: ends in a carriage return\n"
       "warning: ups.cfg:6: has a Windows line end: with these a save makes 'upsdata..dat' of 'upsdata.csv'\n"},
      {sound("Event3=MESSAGEID(\"local\",601)O;MESSAGEID(\"local\",60)O;\n"),
       "warning: ups.cfg:6: Event3: job 2: message 60 is not in messages.dat\n"},
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

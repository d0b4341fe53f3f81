// kavcfg: what it refuses, finds and changes, by the built program in a folder of its own. What commands print and
// leave in the file stands in docs/transcripts, as a person sees it.
#include <array>
#include <cstdlib>
#include <random>

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

TEST_F(Kavcfg, LeavesAFileThatAnotherProgramSaves) { expect("locked"); }

TEST_F(Kavcfg, PasswordsComeFromStandardInputAndAreNeverPrinted) { expect("passwords"); }

TEST_F(Kavcfg, KavdbRefusesAndFindsFaults) { expect("database"); }

TEST_F(Kavcfg, CheckNamesLineAndKey) { expect("check"); }

TEST_F(Kavcfg, FixRepairsWhatIsSafeAndNothingElse) { expect("fix"); }

TEST_F(Kavcfg, PrintsValuesJobsAndDifferences) { expect("print"); }

TEST_F(Kavcfg, EditsAndListsOneJobInWords) { expect("job"); }

TEST_F(Kavcfg, DrawsTheJobsOfAnEventOverTime) { expect("timeline"); }

TEST_F(Kavcfg, JsonAndSchemaHoldBeforeOtherPrograms) { expect("json"); }

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

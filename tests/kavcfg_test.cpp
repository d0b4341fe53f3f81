// kavcfg: what it refuses, finds and changes, by the built program in a folder of its own.
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <random>
#include <span>

#include "setup/check/job_faults.h"
#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/texts.h"
#include "tests/run.h"

namespace {

// Runs kavcfg with `words` of the shell and what `input` prints.
Result kavcfg(const std::string &words, const std::string &input = "true") {
  return run_shell(input + " | '" KAVCFG_PROGRAM "' -u '" KAVCFG_DATABASE "' " + words + " 2>&1");
}

constexpr char kSite[] =
    "; ask before changing\nUpsModel=K-TRN010VQ-100\n upsdevice = /dev/ttyS1:9600,e,7,2\nshift=night ; who\n"
    "CheckRate=5\nEvent3=LOGMSG(\"mine\")O;\n\n[log]\nCheckRate=7\n";

class Kavcfg : public testing::Test {
 protected:
  Kavcfg() { put_file("ups.cfg", kSite); }
  // The site's file with one text replaced by another.
  static std::string site(std::string_view text, std::string_view by) {
    std::string content = kSite;
    return content.replace(content.find(text), text.size(), by);
  }
  WorkingFolder folder;
};

TEST_F(Kavcfg, RefusesWithAReasonAndChangesNothing) {
  const std::pair<const char *, const char *> cases[] = {
      {"checkrate=601", "CheckRate: is not from 1 to 600"},
      {"CheckRate=5s", "CheckRate: 's' is not accepted, it takes only 0-9 . blanks"},
      {"UpsDownDelay=90", "UpsDownDelay: is not in the usual form, write '60'"},
      {"TempCaution=60.1", "TempCaution: is not from 40 to 60"},
      {"UpsID=x", "UpsID: is not in the usual form, write '0'"},
      {"UseMailSign=YES", "UseMailSign: is neither yes nor no"},
      {"UpsModel=Unknown", "UpsModel: no UPS model is chosen"},
      {"UpsModel=TRN010VQ-100", "UpsModel: is not in the database " KAVCFG_DATABASE ", did you mean K-TRN010VQ-100?"},
      {"UpsCable=42", "UpsCable: is the code of no cable"},
      {"UpsLocation='a|b'", "UpsLocation: '|' is not accepted, it takes all but \\ |"},
      {"UpsLocation=123456789012345678", "UpsLocation: is longer than 17 bytes"},
      {"UpsLocation='a [b'", "UpsLocation: This value can not be read back: '['"},
      {"MailSubject=' '", "MailSubject: This value can not be read back: blanks"},
      {"SmtpUser=me", "SmtpUser: is kept only with MailEnableFlag=yes"},
      {"SysDownAllowed=no UpTimeSupport=yes", "UpTimeSupport: can be yes only with SysDownAllowed=yes"},
      {"Event3='LOGMSG(\"a\")O;LOGMSG(\"b\")X;'", "Event3: job 2: there is no timing 'X' here: O, A, P60, T60, R60"},
  };
  for (const auto &[change, reason] : cases) {
    const Result result = kavcfg(std::string("set LogMaxHours=1 ") + change);
    EXPECT_EQ(result.status, 1) << change;
    EXPECT_TRUE(result.output.starts_with(std::string("kavcfg: ") + reason)) << result.output;
    EXPECT_EQ(get_file("ups.cfg"), kSite) << change;
  }
}

TEST_F(Kavcfg, SetChangesItsKeysAndNothingElse) {
  EXPECT_EQ(kavcfg("set CHECKRATE=007 FixedDownTime=4 TempCaution=45 Event3="), (Result{0, ""}));
  EXPECT_EQ(get_file("ups.cfg"),
            "; ask before changing\nUpsModel=K-TRN010VQ-100\n upsdevice = /dev/ttyS1:9600,e,7,2\nshift=night ; who\n"
            "CheckRate=7\nTempCaution=45.0\nFixedDownTime=4\nGarUpTime=4\n\n[log]\nCheckRate=7\n");
  put_file("ups.cfg",
           "UpTimeSupport=yes\nDataLoggingName=/var/data.csv\nLogFileBin=?\nMailEnableFlag=yes\nSmtpUser=a\n");
  EXPECT_EQ(kavcfg("set SysDownAllowed=no MailEnableFlag=no DataLoggingName=/var/data.csv"), (Result{0, ""}));
  EXPECT_EQ(get_file("ups.cfg"),
            "UpTimeSupport=no\nDataLoggingName=/var/data.csv\nLogFileBin=/var/data.dat\nMailEnableFlag=no\n"
            "SysDownAllowed=no\nUpsDownEnabled=no\n");
  put_file("ups.cfg", "UpsLocation=a [b\nUpsID=1\n");
  EXPECT_EQ(kavcfg("set UpsID=2").status, 1) << "behind the \"[\" it would not be found";
  EXPECT_EQ(get_file("ups.cfg"), "UpsLocation=a [b\nUpsID=1\n");
}

TEST_F(Kavcfg, PasswordsComeFromStandardInputAndAreNeverPrinted) {
  EXPECT_EQ(kavcfg("set PASSWORD SmtpPassword MailEnableFlag=yes", "printf 'Abc1\\nhidden x'"), (Result{0, ""}));
  EXPECT_NE(get_file("ups.cfg").find("\nPASSWORD=_>=o\n"), std::string::npos);
  std::string seen;
  for (const char *words : {"get PASSWORD", "get smtpPassword", "diff", "check", "set PASSWORD=Abc1"}) {
    seen += kavcfg(words).output;
  }
  for (const char *secret : {"Abc1", "_>=o", "hidden x"}) EXPECT_EQ(seen.find(secret), std::string::npos) << seen;
  EXPECT_NE(seen.find("+SmtpPassword=(hidden)\n"), std::string::npos);
  const std::tuple<const char *, const char *, const char *> cases[] = {
      {"PASSWORD", "ACE", "'[' hides"},
      {"PASSWORD", "a b", "' ' is not accepted, it takes only 0-9 A-Z a-z"},
      {"PASSWORD", "12345678901234567", "longer than 16"},
      {"SmtpPassword", ":x", "a part of it is lost"},
  };
  for (const auto &[key, typed, reason] : cases) {
    const Result result = kavcfg(std::string("set ") + key, std::string("echo '") + typed + "'");
    EXPECT_EQ(result.status, 1) << typed;
    EXPECT_NE(result.output.find(reason), std::string::npos) << result.output;
  }
  EXPECT_EQ(kavcfg("set PASSWORD", "echo"), (Result{0, ""})) << "no password";
  EXPECT_NE(get_file("ups.cfg").find("\nPASSWORD= \n"), std::string::npos);
  EXPECT_EQ(kavcfg("check").output.find("PASSWORD"), std::string::npos);
}

// A configuration without a finding; `more` follows its lines.
std::string sound(const std::string &more) {
  return "UpsModel=K-TRN010VQ-100\nPASSWORD=_>=o\nSysDownAllowed=no\nLogFileTxt=/tmp/a.csv\n"
         "DataLoggingName=/tmp/b.csv\n" +
         more;
}

TEST_F(Kavcfg, CheckNamesLineAndKey) {
  put_file("messages.dat", "m601=x\n");
  const std::pair<std::string, const char *> cases[] = {
      // clang-format off
      {"", ""},
      {"upslocation\t=\tRack A\t\nTempCaution\t=45.0\n; CheckRate 5\n[log]\nlevel 5\n", ""},
      {"Event25=x\nUnknown=1\nNetTyp=SLAVE\n", ""},
      {"CheckRate=0\n", "ups.cfg:6: CheckRate: is not from 1 to 600\n"},
      {"CheckRate=5 ; fast\n", "ups.cfg:6: CheckRate: ';' is not accepted, it takes only 0-9 . blanks\n"},
      {"upsmodel=x\n", "ups.cfg:6: UpsModel: is already in line 1, this line does not count\n"},
      {"shift=[night]\nCheckRate=5\n",
       "ups.cfg:6: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {"SmtpPassword=_][\nCheckRate=5\n",
       "ups.cfg:6: SmtpPassword: This value can not be read back: '[' hides what follows\n"
       "ups.cfg:7: CheckRate: is hidden by the '[' in line 6\n"},
      {"Event3=LOGMSG(\"a\",\"b\")O;\n", "ups.cfg:6: Event3: job 1: is not in the usual form, write 'LOGMSG(\"a\")O;'\n"},
      {"GarUpTime=3\n", "ups.cfg:6: GarUpTime: is not in the usual form, write '1'\n"},
      {"UpsLocation=a\tb\n", "ups.cfg:6: UpsLocation: This value can not be read back: a part of it is lost\n"},
      {"CheckRate 5\nUpsLoad: 800\nexport UpsLoad=800\n",
       "ups.cfg:6: is neither a setting, a comment nor a topic\n"
       "ups.cfg:7: is neither a setting, a comment nor a topic\n"
       "ups.cfg:8: is neither a setting, a comment nor a topic\n"},
      {"sysdownmin=12\nChekcRate=5\n",
       "ups.cfg:6: sysdownmin: did you mean SysDownMins?\nups.cfg:7: ChekcRate: did you mean CheckRate?\n"},
      {"[site]\nCheckRate=5\n", "ups.cfg:7: CheckRate: is not found, since it stands after the topic in line 6\n"},
      {"; a\rCheckRate=5\rshift=1\r",
       "ups.cfg:6: holds carriage returns that end no line: all of it is one line\n"},
      {"; \xC6\xFC\n; \xE6\x97\xA5\nPASSWORD=\xFF\n; \xE6\n",
       "ups.cfg:7: is UTF-8, but line 6 is EUC-JP: a file has one encoding\n"
       "ups.cfg:8: PASSWORD: is already in line 2, this line does not count\n"
       "ups.cfg:9: holds bytes that are neither UTF-8 nor EUC-JP\n"},
      {"Event3=EVENTLOG(\"warn\",100,\"a\")O;\n",
       "ups.cfg:6: Event3: job 1: TYPE: there is no level warn: emergency, alert, critical, error, warning, notice, "
       "information\n"},
      {"CheckRate=5\r\n",
       "ups.cfg:6: CheckRate: ends in a carriage return\n"
       "warning: ups.cfg:6: has a Windows line end: with these a save makes 'upsdata..dat' of 'upsdata.csv'\n"},
      {"Event3=MESSAGEID(\"local\",601)O;MESSAGEID(\"local\",60)O;\n",
       "warning: ups.cfg:6: Event3: job 2: message 60 is not in messages.dat\n"},
      {"#" + std::string(1100, 'x') + "\n", "ups.cfg:6: is longer than 1023 bytes and is read in pieces\n"},
      // clang-format on
  };
  for (const auto &[more, findings] : cases) {
    put_file("ups.cfg", sound(more));
    const bool has_fault = std::string(findings).starts_with("ups.cfg");
    EXPECT_EQ(kavcfg("check"), (Result{has_fault ? 1 : 0, findings}));
  }
  const std::pair<std::string, const char *> others[] = {
      {"\xEF\xBB\xBF" + sound(""),
       "ups.cfg: UpsModel: no UPS model is chosen\n"
       "ups.cfg:1: begins with a byte order mark, which makes another key of its key\n"},
      {"[x]\n", "ups.cfg: UpsModel: no UPS model is chosen\n"},
  };
  for (const auto &[content, findings] : others) {
    put_file("ups.cfg", content);
    EXPECT_TRUE(kavcfg("check").output.starts_with(findings)) << kavcfg("check").output;
  }
}

TEST_F(Kavcfg, FixRepairsWhatIsSafeAndNothingElse) {
  const std::string wrong =
      "\xEF\xBB\xBF# [old] settings\r\nSysDownMin=5\r\n# no [ here\r\ncheckrate=5\r\n; [\r\nCheckRate=\t5\r\n"
      "UpsLocation\t=\ta\tb\r\nUnknown=1\tx\r\n";
  const std::string right =
      "; [old] settings\nSysDownMin=5\n; no [ here\ncheckrate=5\n; [\nUpsLocation\t=ab\nUnknown=1\tx\n";
  const std::string repairs =
      "ups.cfg:1: the byte order mark goes\n"
      "ups.cfg:1: from here on, carriage returns go or become line ends\n"
      "ups.cfg:1: ';' begins the comment, since '#' lets its '[' hide lines\n"
      "ups.cfg:3: ';' begins the comment, since '#' lets its '[' hide lines\n"
      "ups.cfg:6: CheckRate: goes, since an earlier line says the same\n"
      "ups.cfg:7: UpsLocation: the tabs in its value go\n";
  put_file("ups.cfg", wrong);
  EXPECT_EQ(kavcfg("fix --dry-run"), (Result{0, repairs}));
  EXPECT_EQ(get_file("ups.cfg"), wrong);
  EXPECT_EQ(kavcfg("fix --write"), (Result{0, repairs}));
  EXPECT_EQ(get_file("ups.cfg"), right);
  EXPECT_EQ(kavcfg("fix --write sysdownmin"), (Result{0, "ups.cfg:2: SysDownMin: becomes SysDownMins\n"}));
  EXPECT_EQ(get_file("ups.cfg").substr(right.find("SysDownMin"), 12), "SysDownMins=");
  const std::pair<std::string, std::string> others[] = {
      {"UpsLocation=a\rCheckRate=5\r", "UpsLocation=a\nCheckRate=5\n"},
      {"CheckRate=5\nCheckRate=6\n", "CheckRate=5\nCheckRate=6\n"},
      {"a=[\n# [x\nUpsID=1\nUpsID=1\n", "a=[\n# [x\nUpsID=1\nUpsID=1\n"},
      {"SmtpPassword=\t\r\x01\nPASSWORD=\r\n", "SmtpPassword=\t\r\x01\nPASSWORD=\r\n"},
      {"[site]\nUpsID=1\nUpsID=1", "[site]\nUpsID=1\nUpsID=1"},
  };
  for (const auto &[before, after] : others) {
    put_file("ups.cfg", before);
    EXPECT_EQ(kavcfg("fix --write").status, 0);
    EXPECT_EQ(get_file("ups.cfg"), after);
  }
  put_file("ups.cfg", "SysDownMin=5\nSysDownMins=6\n");
  EXPECT_EQ(kavcfg("fix --write SysDownMin").status, 1) << "the right key is there already";

  // what is repaired is silent, and has nothing left to repair
  put_file("ups.cfg", "\xEF\xBB\xBF" + sound("# a [\r\nUpsLocation=a\tb\r\nCheckRate=5\r\nCheckRate=5\r\n"));
  EXPECT_EQ(kavcfg("fix --write").status, 0);
  EXPECT_EQ(kavcfg("check"), (Result{0, ""}));
  EXPECT_EQ(kavcfg("fix --write"), (Result{0, ""}));
}

TEST_F(Kavcfg, TellsThatAModelStandsAfterTheFirst500) {
  ASSERT_EQ(
      run_shell("awk '/^K-TRN010VQ-100/ {for (i = 0; i < 500; ++i) print \"X\" i substr($0, 6)} {print}' '" SAMPLE_TEXT
                "' >many.txt && '" KAVDB_PROGRAM "' compile --force many.txt many.ups")
          .status,
      0);
  EXPECT_EQ(
      kavcfg("-u many.ups set UpsModel=K-TRN010VQ-105").output,
      "kavcfg: UpsModel: stands after the first 500 models of the database many.ups, which alone can be chosen\n");
}

TEST_F(Kavcfg, WarnsOfWhatMayBeMeantOtherwise) {
  const std::string mail =
      R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t","me")"
      R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${}${}${},"hello")O;)";
  const std::string lines =
      "UpsModel=K-TRN010VQ-100\nUpsLoad=500\nUpsHoldMins=5\nPASSWORD=SWNL\nLogFileTxt=none/a.csv\nEvent3=" + mail +
      "\nDataLoggingName=/tmp/b.csv\n";
  put_file("ups.cfg", lines);
  const std::string warnings =
      "warning: ups.cfg: SysDownAllowed: the shutdown is allowed, but no event has a SHUTDOWN job\n"
      "warning: ups.cfg:3: UpsHoldMins: the battery is empty after 10 minutes, but the shutdown is over after 11\n"
      "warning: ups.cfg:4: PASSWORD: is the default password\n"
      "warning: ups.cfg:5: LogFileTxt: there is no directory none\n"
      "warning: ups.cfg:6: Event3: job 1 sends e-mail, but MailEnableFlag is not yes\n";
  EXPECT_EQ(kavcfg("check"), (Result{0, warnings}));
  const Result strict = kavcfg("check --strict");
  EXPECT_EQ(strict.status, 1);
  EXPECT_EQ(strict.output.find("warning:"), std::string::npos);
  put_file("ups.cfg", lines + "MailEnableFlag=yes\nSmtpHost=a\nFixedDownTime=0\nEvent2=SHUTDOWN(\"default\")O;\n");
  EXPECT_EQ(kavcfg("check"), (Result{0,
                                     "warning: ups.cfg:4: PASSWORD: is the default password\n"
                                     "warning: ups.cfg:5: LogFileTxt: there is no directory none\n"
                                     "warning: ups.cfg:6: Event3: job 1 sends e-mail, but MailFromAddr is empty\n"}));
}

TEST(JobLists, AreTakenWhenTheEditorWouldNotChangeThem) {
  init_all_tabs();
  for (int event = 0; event < kEventCount; event++) {
    for (const char *jobs : eventlist[event].jobs) {
      EXPECT_EQ(faults_of_job_list(event, jobs), std::vector<std::string>()) << jobs;
    }
  }
  const std::string mail =
      R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t","me")"
      R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${#USETEXT?,"-attach","#LOGFILETXT"}${}${},"hello")O;)";
  const std::tuple<int, std::string, const char *> cases[] = {
      {3, mail, ""},
      {3, std::string(mail).replace(mail.find("hello"), 5, "a,b"), "job 1: is not in the usual form, write"},
      {3, R"(EXECUTE("/bin/page","")T999999;SHUTDOWN("default")O;)", ""},
      {3, R"(LOGMSG("a)O;)", "job 1: TEXT: is empty"},
      {3, R"(FOO("a")O;)", "job 1: there is no function FOO"},
      {3, R"(LOGMSG("a")P;)", "job 1: there is no timing 'P' here"},
      {20, R"(LOGMSG("a")OX5;)", ""},
      {20, R"(LOGMSG("a")O;)", "job 1: there is no timing"},
      {3, R"(EVENTLOG("warnning",100,"a")O;)", "job 1: TYPE: there is no level warnning"},
      {3, R"(EXECUTE("send","host","65536")O;)", "job 1: PORT: is empty or out of its range"},
      {3, R"(SHUTDOWN("6000")O;)", "job 1: is not in the usual form, write 'SHUTDOWN(\"5940\")O;'"},
      {3, R"(SHUTDOWN("1")O;LOGMSG("a")O;)", "SHUTDOWN must be the last job"},
      {3, "LOGMSG(\"" + std::string(61, 'x') + "\")O;", "job 1: TEXT: is longer than 60 bytes"},
  };
  for (const auto &[event, list, fault] : cases) {
    const std::vector<std::string> faults = faults_of_job_list(event, list);
    const std::string first = faults.empty() ? "" : faults[0];
    EXPECT_EQ(first.empty(), *fault == '\0') << list << first;
    EXPECT_TRUE(first.starts_with(fault)) << list << first;
  }
}

TEST_F(Kavcfg, PrintsValuesJobsAndDifferences) {
  EXPECT_EQ(kavcfg("get UPSDEVICE").output, "/dev/ttyS1:9600,e,7,2\n");
  EXPECT_EQ(kavcfg("get UpsDownDelay").output, "180\n") << "the default";
  EXPECT_EQ(kavcfg("get GarUpTime").status, 1) << "neither set nor with a default";
  EXPECT_NE(
      kavcfg("events").output.find("\nEvent3: KAVLON has started sucessfully\n  Log Event \"mine\" (Once)\nEvent4: "),
      std::string::npos);
  put_file("new.cfg", site("CheckRate=5", "CheckRate=05\nUpsLocation=x"));
  EXPECT_EQ(kavcfg("-f new.cfg diff ups.cfg"), (Result{1, "-UpsLocation=Unknown\n+UpsLocation=x\n"}));
  EXPECT_EQ(kavcfg("diff ups.cfg"), (Result{0, ""}));
  EXPECT_TRUE(
      kavcfg("diff").output.starts_with("-UpsDevice=/dev/ttyS0:2400,n,8,1\n+UpsDevice=/dev/ttyS1:9600,e,7,2\n"));
  EXPECT_EQ(kavcfg("--japanese set UpsLocation=a\xE6\x97\xA5z", "export LC_ALL=C.UTF-8; true"), (Result{0, ""}));
  EXPECT_NE(get_file("ups.cfg").find("UpsLocation=a\xC6\xFCz\n"), std::string::npos) << "EUC-JP, as the masks store it";
}

TEST_F(Kavcfg, EditsAndListsOneJobInWords) {
  const std::pair<const char *, const char *> jobs[] = {
      {"MESSAGE USER='*' TEXT=\"it's late\" TIMING=timed:90", R"(MESSAGE("*","it's late")T90;)"},
      {"execute:send address=10.0.0.1 PORT=6003 TIMING=Repeated:9", R"(EXECUTE("send","10.0.0.1","6003")R9;)"},
      {"EXECUTE:alarm.bat TEXT=x", R"(EXECUTE("alarm.bat","x")O;)"},
      {"EXECUTE PROGRAM=/bin/page PARAMETER= TIMING=always", R"(EXECUTE("/bin/page","")A;)"},
      {"MESSAGEID USER=local ID=601 TIMING=periodic:60", R"(MESSAGEID("local",601)P60;)"},
      {"EVENTLOG TYPE=warning TEXT=x", R"(EVENTLOG("warning",100,"x")O;)"},
      {"EXECUTEH ADDRESS=a@b TEXT=x TLOG=yes",
       R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t","a@b")"
       R"(${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${#USETEXT?,"-attach","#LOGFILETXT"}${}${},"x")O;)"},
  };
  std::string list = "SHUTDOWN(\"default\")T5;";
  EXPECT_EQ(kavcfg("set 'Event3=" + list + "'").status, 0);
  for (const auto &[words, text] : jobs) {
    EXPECT_EQ(kavcfg(std::string("job add event3 ") + words), (Result{0, ""}));
    list.insert(list.find("SHUTDOWN"), text);
    EXPECT_EQ(kavcfg("get Event3").output, list + "\n") << "a SHUTDOWN stays the last job";
  }
  // what list prints is what add takes
  EXPECT_EQ(kavcfg("job list 3 | while read -r number words; do eval \"'" KAVCFG_PROGRAM
                   "' job add 4 $words\"; done; '" KAVCFG_PROGRAM "' get Event4"),
            (Result{0, list + "\n"}));
  EXPECT_EQ(kavcfg("job add 20 LOGMSG TEXT=x TIMING=before:5 && '" KAVCFG_PROGRAM "' get Event20"),
            (Result{0, "LOGMSG(\"x\")OX5;\n"}));
  EXPECT_EQ(kavcfg("job remove 20 1 --diff"), (Result{0, "-Event20=LOGMSG(\"x\")OX5;\n"}));
  const std::string kept = get_file("ups.cfg");
  for (const auto &[words, reason] : {
           std::pair{"add 3 FOO", "there is no function FOO: SHUTDOWN, "},
           {"add 3 LOGMSG TEXT='a;b'", "TEXT: ';' is not accepted"},
           {"add 3 LOGMSG TXT=a", "LOGMSG has no TXT: TEXT, TIMING"},
           {"add 3 LOGMSG", "Event3: job 8: TEXT: is empty"},
           {"add 3 LOGMSG TEXT=a TIMING=soon", "there is no soon here: once, always, periodic, timed, repeated"},
           {"add 3 LOGMSG TEXT=a TIMING=timed", "timed: is not a whole number"},
           {"add 3 EVENTLOG TYPE=bad TEXT=a", "TYPE: there is no bad here: emergency, "},
           {"remove 3 9", "Event3 has no job 9"},
       }) {
    const Result result = kavcfg(std::string("job ") + words);
    EXPECT_EQ(result.status, 1) << words;
    EXPECT_TRUE(result.output.starts_with(std::string("kavcfg: ") + reason)) << result.output;
  }
  EXPECT_EQ(get_file("ups.cfg"), kept);
}

TEST_F(Kavcfg, DrawsTheJobsOfAnEventOverTime) {
  ASSERT_EQ(kavcfg("set CheckRate=10 'Event0=LOGMSG(\"a\")O;LOGMSG(\"b\")A;LOGMSG(\"c\")P60;LOGMSG(\"d\")T90;LOGMSG("
                   "\"e\")R120;' 'Event20=LOGMSG(\"x\")OX5;'")
                .status,
            0);
  EXPECT_EQ(kavcfg("timeline 0").output,
            "Event0: UPS Alarm - Powerfail has occurred !\n\n"
            "                          min             0     2     4     6     8    10    12\n"
            "                                          |-----|-----|-----|-----|-----|-----|\n"
            "1  Log Event \"a\"          Once            *\n"
            "2  Log Event \"b\"          Always          *========================\n"
            "3  Log Event \"c\"          Periodic 60 s   *  *  *  *  *  *  *  *  *\n"
            "4  Log Event \"d\"          Timed 90 s      .....*\n"
            "5  Log Event \"e\"          Repeated 120 s  ......*     *     *     *\n\n"
            "   The shutdown begins    1 min           ---|\n"
            "   The system is down     8 min           ------------------------|\n"
            "   The UPS is off         11 min          ---------------------------------|\n"
            "   The battery is empty   10 min          ##############################|\n"
            "!  the battery is empty after 10 minutes, but the shutdown is over after 11\n");
  EXPECT_EQ(kavcfg("timeline 20").output,
            "Event20: Shutdown with the scheduler\n\n"
            "                          min            -6    -5    -4    -3    -2    -1     0\n"
            "                                          |-----|-----|-----|-----|-----|-----|\n"
            "1  Log Event \"x\"          Do before 5 min       *\n"
            "   The shutdown begins                    ------------------------------------|\n");
}

// Schema and list agree with each other, with the standard's own check, and with apply.
constexpr char kValidate[] = R"(
import json, jsonschema, sys
schema = json.load(open('schema'))
jsonschema.Draft202012Validator.check_schema(schema)
valid = jsonschema.Draft202012Validator(schema).is_valid
site = dict(line.rstrip('\n').split('=', 1) for line in open('list'))
defaults = {key: rule['default'] for key, rule in schema['properties'].items() if 'default' in rule}
for good in [site, defaults, {'CheckRate': 5, 'UpTimeSupport': True, 'UpsID': None}]:
    assert valid(good), good
for bad in [{'NoKey': 1}, {'CheckRate': 0}, {'UpTimeSupport': 'maybe'}, {'GarUpTime': 1}, {'UpsLocation': []}]:
    assert not valid(bad), bad
json.dump(site, open('site.json', 'w'))
json.dump(defaults, open('defaults.json', 'w'))
)";

TEST_F(Kavcfg, JsonAndSchemaHoldBeforeOtherPrograms) {
  put_file("validate.py", kValidate);
  ASSERT_EQ(kavcfg("-f site.cfg new").status, 0);
  ASSERT_EQ(kavcfg("schema >schema").status + kavcfg("-f site.cfg list >list").status, 0);
  EXPECT_EQ(run_shell("python3 validate.py 2>&1"), (Result{0, ""}));
  EXPECT_EQ(kavcfg("-f site.cfg apply site.json --diff"), (Result{0, ""}));
  EXPECT_EQ(kavcfg("-f site.cfg apply defaults.json"), (Result{0, ""}));
  EXPECT_EQ(
      kavcfg("-f site.cfg unset --json $('" KAVCFG_PROGRAM "' list --keys | grep -v UpsModel) | jq -r .changed").output,
      "false\n");
  EXPECT_EQ(kavcfg("explain CheckRate --json | jq -r '.kind, .minimum, .maximum, .unit, (.help.ja != null)'").output,
            "number\n1\n600\ns\ntrue\n");
  for (const char *words :
       {"schema", "explain PASSWORD --json", "explain Event0 --japanese --json", "set CheckRate=6 --json",
        "set CheckRate=0 --json", "apply list --json --dry-run", "unset PASSWORD --json", "-f new.cfg new --json",
        "job add 3 LOGMSG TEXT=$(printf 'a\\377') --json"}) {
    EXPECT_EQ(kavcfg(std::string(words) + " | jq -e 'type == \"object\"'"), (Result{0, "true\n"})) << words;
  }
}

TEST(KavcfgProgram, IsLinkedWithoutCurses) {
  EXPECT_EQ(run_shell("readelf -d '" KAVCFG_PROGRAM "' | grep -c NEEDED").status, 0);
  EXPECT_EQ(run_shell("readelf -d '" KAVCFG_PROGRAM "' | grep -E 'curses|tinfo'").output, "");
}

// Runs probe where the serial ports are simulated.
Result probe(const std::string &ports, const std::string &options, const std::string &before = "true") {
  return run_shell("'" TRY_DETECTION "' -b '" BUILD_FOLDER "' " + ports + " sh -c \"" + before + "; exec " + options +
                   " '" KAVCFG_PROGRAM "' -u '" KAVCFG_DATABASE "' probe\"");
}

TEST_F(Kavcfg, ProbeTellsTheModelOrTheReasonOfEachPort) {
  constexpr int kNoNamespace = 77;
  const Result found =
      probe("-0 absent -2 '--model K-TRN010VQ12' -3 '--answer XX\\r'", "env", "echo $$ >/var/lock/LCK..ttyS1");
  if (found.status == kNoNamespace && std::getenv("CI") == nullptr) GTEST_SKIP();
  EXPECT_EQ(found.status, 0);
  const std::string pid = found.output.substr(found.output.find("process ") + 8);
  EXPECT_EQ(found.output, "/dev/ttyS0: No such file or directory\n/dev/ttyS1: locked by process " +
                              pid.substr(0, pid.find('\n')) +
                              "\n/dev/ttyS2: K-TRN010VQ-110\n/dev/ttyS3: unknown answer 'XX?'\n");
  EXPECT_EQ(probe("-0 absent -1 absent -2 absent -3 ''", "setpriv --bounding-set=-dac_override", "chmod 0 /dev/ttyS3"),
            (Result{1,
                    "/dev/ttyS0: No such file or directory\n/dev/ttyS1: No such file or directory\n"
                    "/dev/ttyS2: No such file or directory\n/dev/ttyS3: permission denied\n"}));
}

TEST_F(Kavcfg, EndsWithAStatusAndOneLineThatNamesTheWord) {
  const struct {
    const char *words;
    int status;
    const char *says;  // its only line begins so after "kavcfg: "; null: nothing is said
  } cases[] = {
      // clang-format off
      {"--version",                0, nullptr},
      {"",                         2, "a command is needed"},
      {"lst",                      2, "unknown command 'lst'"},
      {"-x check",                 2, "unknown option '-x'"},
      {"get",                      2, "'get' needs an argument"},
      {"get UpsID NoKey",          2, "NoKey: no such key"},
      {"set UpsID",                2, "UpsID: a value is needed"},
      {"set GarUpTime=1",          2, "GarUpTime: follows from other keys"},
      {"set UpsID=1 upsid=2",      2, "UpsID: given twice"},
      {"set PASSWORD=x",           2, "PASSWORD: give the key alone"},
      {"check x",                  2, "'check' does not take 'x'"},
      {"-f - set UpsID=1",         2, "'set' needs a file"},
      {"unset UpsID GarUpTime",    2, "GarUpTime: follows from other keys"},
      {"job lst 1",                2, "unknown command 'job lst'"},
      {"job add 1",                2, "'job add' needs an argument"},
      {"fix",                      2, "'fix' needs --dry-run or --write"},
      {"timeline 25",              2, "25: no such event"},
      {"set PASSWORD",             1, "PASSWORD: standard input has no line"},
      {"get PASSWORD",             1, "PASSWORD: a password is not printed"},
      {"-f none check",            3, "can't read none: No such file or directory"},
      {"-f none set UpsID=1",      3, "can't read none: No such file or directory"},
      {"-u none set UpsModel=x",   3, "can't read the database none: No such file or directory"},
      {"diff none",                3, "can't read none: No such file or directory"},
      {"apply none",               3, "can't read none: No such file or directory"},
      {"new",                      3, "can't write ups.cfg: File exists"},
      {"-C none check",            3, "can't read none: No such file or directory"},
      {"get UpsID >/dev/full",     3, nullptr},
      // clang-format on
  };
  for (const auto &[words, status, says] : cases) {
    const Result result = kavcfg(words);
    EXPECT_EQ(result.status, status) << words;
    if (says == nullptr) continue;
    EXPECT_TRUE(result.output.starts_with(std::string("kavcfg: ") + says)) << result.output;
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 1) << result.output;
  }
  EXPECT_FALSE(std::filesystem::exists("none"));
}

TEST_F(Kavcfg, AppliesWhatItListsAndPredictsWhatItDoes) {
  const WorkingFolder here(kMemoryFolder);
  ASSERT_EQ(kavcfg("new UpsModel=K-TRN010VQ-100 CheckRate=7 'Event3=LOGMSG(\"a\")O;' UpTimeSupport=no"),
            (Result{0, ""}));
  ASSERT_EQ(kavcfg("-f other.cfg new").status, 0);
  const std::string wanted = kavcfg("list").output;
  put_file("wanted", "# a comment\n\n" + wanted);

  const std::string predicted = kavcfg("-f other.cfg apply wanted --dry-run --json").output;
  const std::string before = get_file("other.cfg");
  EXPECT_EQ(kavcfg("-f other.cfg apply wanted --diff --dry-run").output,
            "-UpsModel=Unknown\n+UpsModel=K-TRN010VQ-100\n-UpsHoldMins=10\n+UpsHoldMins=9\n-CheckRate=1\n+CheckRate=7\n"
            "-UpTimeSupport=yes\n+UpTimeSupport=no\n-Event3=" +
                std::string(eventlist[3].jobs[0]) + "\n+Event3=LOGMSG(\"a\")O;\n");
  EXPECT_EQ(get_file("other.cfg"), before);
  EXPECT_EQ(kavcfg("-f other.cfg apply wanted --json"), (Result{0, predicted}));
  EXPECT_EQ(kavcfg("-f other.cfg diff ups.cfg"), (Result{0, ""}));
  EXPECT_EQ(kavcfg("list"), kavcfg("-f other.cfg list"));
  EXPECT_EQ(kavcfg("-f made.cfg apply wanted --new --dry-run && test ! -e made.cfg"), (Result{0, ""}));
  EXPECT_EQ(kavcfg("-f made.cfg apply wanted --new"), (Result{0, ""}));
  EXPECT_EQ(get_file("made.cfg"), get_file("ups.cfg"));
  EXPECT_NE(kavcfg("-f made.cfg apply wanted --new --json").output.find("\"changed\": false"), std::string::npos);
  const auto written = std::filesystem::last_write_time("other.cfg");
  EXPECT_NE(kavcfg("-f other.cfg apply wanted --json").output.find("\"changed\": false"), std::string::npos);
  EXPECT_EQ(std::filesystem::last_write_time("other.cfg"), written);

  put_file("json", "{\n\"CheckRate\": 8, \"UpTimeSupport\": true,\n\"Event3\": null, \"PASSWORD\": \"abc\"}");
  EXPECT_EQ(
      kavcfg("apply json --diff").output,
      "-PASSWORD=(hidden)\n+PASSWORD=(hidden)\n-CheckRate=7\n+CheckRate=8\n-UpTimeSupport=no\n+UpTimeSupport=yes\n"
      "-Event3=LOGMSG(\"a\")O;\n+Event3=" +
          std::string(eventlist[3].jobs[0]) + "\n");
  put_file("unsaved", std::string(kStoredMark) + "\nPASSWORD=SWNL\n");
  EXPECT_EQ(kavcfg("apply unsaved"), (Result{0, ""}));
  EXPECT_NE(get_file("ups.cfg").find("\nPASSWORD=SWNL\n"), std::string::npos);
  EXPECT_EQ(kavcfg("unset CheckRate && '" KAVCFG_PROGRAM "' get CheckRate"), (Result{0, "1\n"}));

  const std::string kept = get_file("ups.cfg");
  for (const auto &[text, fault] :
       {std::pair{"CheckRate=5\nNoKey=1\n", "kavcfg: bad:2: NoKey: no such key\n"},
        {"CheckRate=5\n\nUpsLoad=0\n", "kavcfg: bad:3: UpsLoad: is not from 1 to 100000000\n"},
        {"{\n\"CheckRate\": 5,\n\"UpsLoad\": [1]}", "kavcfg: bad:3: UpsLoad: a text, a number"},
        {"{\"CheckRate\": 5,\n", "kavcfg: bad:2: this is no JSON\n"}}) {
    put_file("bad", text);
    const Result result = kavcfg("apply bad");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.output.starts_with(fault)) << result.output;
    EXPECT_EQ(get_file("ups.cfg"), kept);
  }
}

// --- two writers of one file

// The settings that the rounds change, with numbers as values.
struct Shared {
  const char *key;
  RecordField place;
};
constexpr int kUsual = 50;

std::map<std::string, int> random_changes(std::mt19937 &random, std::span<const Shared> settings) {
  std::map<std::string, int> changes;
  for (const Shared &setting : settings) {
    if (random() % 3 == 0) changes[setting.key] = static_cast<int>(random() % 90) + 1;
  }
  return changes;
}

void change_records(std::span<const Shared> settings, const std::map<std::string, int> &changes) {
  for (const auto &[key, place] : settings) {
    const auto change = changes.find(key);
    if (change == changes.end()) continue;
    put_field(place.record, place.table, place.field, std::to_string(change->second).c_str());
  }
}

std::map<std::string, int> numbers_in_file(std::span<const Shared> settings) {
  std::vector<std::string> values;
  EXPECT_EQ(values_of_file("ups.cfg", values), 1);
  std::map<std::string, int> numbers;
  for (size_t i = 0; i < values.size(); ++i) {
    for (const Shared &setting : settings) {
      if (setting.key == std::string(all_settings()[i]->key)) numbers[setting.key] = std::stoi(values[i]);
    }
  }
  return numbers;
}

// What another program does to the file while the session has it open.
using Writer = void (*)(std::span<const Shared> settings, const std::map<std::string, int> &changes);

void write_by_kavcfg(std::span<const Shared>, const std::map<std::string, int> &changes) {
  std::string words = "set";
  for (const auto &[key, value] : changes) words += " " + key + "=" + std::to_string(value);
  EXPECT_TRUE(changes.empty() || kavcfg(words) == (Result{0, ""}));
}

void write_by_editor(std::span<const Shared>, const std::map<std::string, int> &changes) {
  std::string content = get_file("ups.cfg");
  for (const auto &[key, value] : changes) {
    const size_t line = content.find("\n" + key + "=") + 1;
    content.replace(line, content.find('\n', line) - line, key + "=" + std::to_string(value) + "  ");
  }
  put_file("ups.cfg", content);
}

void write_by_session(std::span<const Shared> settings, const std::map<std::string, int> &changes) {
  const pid_t child = fork();
  if (child == 0) {
    const bool loaded = init_config_vals("ups.cfg") != 0;
    change_records(settings, changes);
    _exit(loaded && save_configuration("ups.cfg") ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(Kavcfg, ASessionKeepsWhatOthersChangedMeanwhile) {
  const WorkingFolder here(kMemoryFolder);
  init_all_tabs();
  const std::vector<Shared> settings = {
      {"LogMaxHours", field_of_mask(kMaskUps, kLogLimit)},
      {"UpsHoldMins", field_of_mask(kMaskUps, kHoldMinutes)},
      {"SysDownMins", field_of_mask(kMaskSystem, kShutdownMinutes)},
      {"FixedDownTime", field_of_mask(kMaskSystem, kFixedDownTime)},
      {"DataLoggingSize", field_of_mask(kMaskPaths, kDataLogSize)},
  };
  std::mt19937 random(11);
  constexpr Writer kWriters[] = {write_by_kavcfg, write_by_editor, write_by_session};
  for (const Writer write : kWriters) {
    std::string content = "UpsModel=K-TRN010VQ-100\n";
    for (const Shared &setting : settings) content += std::string(setting.key) + "=" + std::to_string(kUsual) + "\n";
    put_file("ups.cfg", content);
    for (int round = 0; round < 200 && !HasFailure(); ++round) {
      ASSERT_EQ(init_config_vals("ups.cfg"), 1);
      std::map<std::string, int> expected = numbers_in_file(settings);
      const std::map<std::string, int> mine = random_changes(random, settings);
      const std::map<std::string, int> theirs = random_changes(random, settings);
      size_t told = 0;
      for (auto &[key, number] : expected) {
        const int by_me = mine.contains(key) ? mine.at(key) : number;
        const int by_them = theirs.contains(key) ? theirs.at(key) : number;
        told += by_them != number && (by_me == number || by_me != by_them);
        number = by_me != number ? by_me : by_them;
      }
      write(settings, theirs);
      change_records(settings, mine);
      ASSERT_EQ(save_configuration("ups.cfg"), 1);
      EXPECT_EQ(numbers_in_file(settings), expected);
      EXPECT_EQ(save_report().size(), told);
    }
  }
}

}  // namespace

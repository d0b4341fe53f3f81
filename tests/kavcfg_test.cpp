// kavcfg: what it refuses, finds and changes, by the built program in a folder of its own.
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
  static void expect(const std::string &transcript) { EXPECT_EQ(played(transcript), transcript); }
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

TEST_F(Kavcfg, SetChangesItsKeysAndWhatFollowsThem) {
  expect(R"($ kavcfg set CHECKRATE=007 FixedDownTime=4 TempCaution=45 Event3= UpsModel=K-TRN010VQ-100 && cat ups.cfg
; ask before changing
UpsModel=K-TRN010VQ-100
 upsdevice = /dev/ttyS1:9600,e,7,2
shift=night ; who
CheckRate=7
TempCaution=45.0
FixedDownTime=4
GarUpTime=4

[log]
CheckRate=7
$ model='Halvoris 700VA K-TSN007'; kavcfg set UpsModel="$model" UpsLoad=9 --dry-run --diff | head -n 9
-UpsDevice=/dev/ttyS1:9600,e,7,2
+UpsDevice=/dev/ttyS1:2400,n,8,1
-UpsModel=K-TRN010VQ-100
+UpsModel=Halvoris 700VA K-TSN007
+UpsCable=3
+UpsPower=700
+UpsLoad=9
+UpsHoldMins=6
+UpsRechargeHours=8
$ printf '%s\n' 'PASSWORD= ' UpTimeSupport=yes DataLoggingName=/a.csv LogFileBin=? MailEnableFlag=yes SmtpUser=a >x.cfg
$ kavcfg -f x.cfg set SysDownAllowed=no MailEnableFlag=no DataLoggingName=/a.csv UpsModel='ZELK K-TSN030-200'
$ flock .x.cfg.lock "$program" -f x.cfg set SysDownAllowed=yes --dry-run && grep -E 'PASSWORD|Log|Smtp|Down|UpTime' x.cfg
PASSWORD=SWNL
UpTimeSupport=no
DataLoggingName=/a.csv
LogFileBin=/a.dat
SysDownAllowed=no
UpsDownEnabled=no
$ printf '%s\n' 'UpsLocation=a [b' UpsID=1 >ups.cfg; kavcfg set UpsID=2 || cat ups.cfg # it would not be found
kavcfg: UpsID: This value can not be read back: a part of it is lost
UpsLocation=a [b
UpsID=1
$ : >empty.cfg; kavcfg -f empty.cfg set UpsID=2 --dry-run --diff; cat empty.cfg
+UpsID=2
$ echo '[x]' >ups.cfg; kavcfg set UpsID=2
kavcfg: settings after a topic are not found: put one in front of it
[1]
$ export LC_ALL=C.UTF-8; kavcfg -f new.cfg --japanese new UpsLocation=`printf 'a\346\227\245z'`
$ grep -a UpsLocation new.cfg | LC_ALL=C sed -n l # EUC-JP, as the masks store it
UpsLocation=a\306\374z$
)");
}

TEST_F(Kavcfg, PasswordsComeFromStandardInputAndAreNeverPrinted) {
  expect(R"($ printf 'Abc1\nhidden x' | kavcfg set PASSWORD SmtpPassword MailEnableFlag=yes --diff
+PASSWORD=(hidden)
+MailEnableFlag=yes
+SmtpPassword=(hidden)
$ kavcfg diff | grep -i password; grep -a PASSWORD ups.cfg
-PASSWORD=(hidden)
+PASSWORD=(hidden)
-SmtpPassword=(hidden)
+SmtpPassword=(hidden)
PASSWORD=_>=o
$ kavcfg list | grep -i password; kavcfg explain SmtpPassword | tail -n 1
help: Enter your password for SMTP authentication if necessary.
$ echo | kavcfg set PASSWORD && kavcfg set UpsModel=K-TRN010VQ-105 && grep -a PASSWORD ups.cfg | cat -A
PASSWORD= $
$ kavcfg check | grep PASSWORD
[1]
)");
}

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
  expect(R"($ printf '\357\273\277# [old] settings\r\nSysDownMin=5\r\n# no [ here\r\ncheckrate=5\r\n; [\r\n' >ups.cfg
$ printf 'CheckRate=\t5\r\nUpsLocation\t=\ta\tb\r\nUnknown=1\tx\r\n' >>ups.cfg
$ cp ups.cfg wrong.cfg; kavcfg fix --dry-run && cmp ups.cfg wrong.cfg && kavcfg fix --write >/dev/null
ups.cfg:1: the byte order mark goes
ups.cfg:1: from here on, carriage returns go or become line ends
ups.cfg:1: ';' begins the comment, since '#' lets its '[' hide lines
ups.cfg:3: ';' begins the comment, since '#' lets its '[' hide lines
ups.cfg:6: CheckRate: goes, since an earlier line says the same
ups.cfg:7: UpsLocation: the tabs in its value go
$ cat -A ups.cfg
; [old] settings$
SysDownMin=5$
; no [ here$
checkrate=5$
; [$
UpsLocation^I=ab$
Unknown=1^Ix$
$ kavcfg fix --write sysdownmin && sed -n 2p ups.cfg
ups.cfg:2: SysDownMin: becomes SysDownMins
SysDownMins=5
$ echo SysDownMin=6 >>ups.cfg; kavcfg fix --write SysDownMin # the right key is there already
kavcfg: SysDownMin: is no misspelt key that can be changed
[1]
$ awk '/^K-TRN010VQ-100/ {for (i = 0; i < 500; ++i) print "X" i substr($0, 6)} {print}' "$models" >many.txt
$ "$kavdb" compile --force many.txt many.ups; kavcfg -u many.ups set UpsModel=K-TRN010VQ-105
kavcfg: UpsModel: stands after the first 500 models of the database many.ups, which alone can be chosen
[1]
)");
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

TEST_F(Kavcfg, PrintsValuesJobsAndDifferences) {
  expect(R"($ kavcfg get UPSDEVICE UpsDownDelay && kavcfg -f - get CheckRate <ups.cfg
/dev/ttyS1:9600,e,7,2
180
5
$ sed 's/CheckRate=5/CheckRate=05\nUpsLocation=x/' ups.cfg >new.cfg; kavcfg -f new.cfg diff ups.cfg
-UpsLocation=Unknown
+UpsLocation=x
[1]
$ kavcfg diff ups.cfg && kavcfg diff | head -n 2
-UpsDevice=/dev/ttyS0:2400,n,8,1
+UpsDevice=/dev/ttyS1:9600,e,7,2
$ kavcfg explain UpsDownDelay --json | jq -c 'del(.help, .label)'
{"key":"UpsDownDelay","kind":"number","unit":"s","minimum":0,"maximum":5940,"default":"180","value":"180"}
$ kavcfg explain UpsModel && kavcfg explain UpsModel --json | jq -ac .label
key: UpsModel
kind: model
default: Unknown
label: UPS modelname
help: Choose UPS model from list
value: K-TRN010VQ-100
{"en":"UPS modelname","ja":"UPS \u6a5f\u7a2e\u540d"}
$ mkdir there; cp ups.cfg "$database" there; "$program" -C there check | tail -n 1
ups.cfg:9: CheckRate: is not found, since it stands after the topic in line 8
$ "$program" -f there/ups.cfg check | tail -n 1
there/ups.cfg:9: CheckRate: is not found, since it stands after the topic in line 8
)");
}

TEST_F(Kavcfg, EditsAndListsOneJobInWords) {
  expect(R"($ kavcfg set 'Event3=SHUTDOWN("default")T5;'
$ kavcfg job add event3 MESSAGE USER='*' TEXT="it's late" TIMING=timed:90
$ kavcfg job add 3 execute:send address=10.0.0.1 PORT=6003 TIMING=Repeated:9
$ kavcfg job add 3 EXECUTE:alarm.bat TEXT=x
$ kavcfg job add 3 EXECUTE PROGRAM=/bin/page PARAMETER= TIMING=always
$ kavcfg job add 3 MESSAGEID USER=local ID=601 TIMING=periodic:60
$ kavcfg job add 3 EVENTLOG TYPE=warning TEXT=x
$ kavcfg job add 3 EXECUTEH ADDRESS=a@b TEXT=x TLOG=yes DLOG=yes TREC=yes OINF=yes
$ kavcfg get Event3 | fold -w 112 # a SHUTDOWN stays the last job
MESSAGE("*","it's late")T90;EXECUTE("send","10.0.0.1","6003")R9;EXECUTE("alarm.bat","x")O;EXECUTE("/bin/page",""
)A;MESSAGEID("local",601)P60;EVENTLOG("warning",100,"x")O;EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","ups
ext.cfg","-s","kavlon service","-t","a@b"${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${#USEDATAEX?,"-attach","#LOGFIL
EBINEX"}${#USETEXT?,"-attach","#LOGFILETXT"}${@FUPSFUNC("trouble.dat","Trouble records",2013,"")?,"-attach","tro
uble.dat"}${@FUPSFUNC("opinfo.dat","Operating records",2012,"")?,"-attach","opinfo.dat"},"x")O;SHUTDOWN("default
")T5;
$ kavcfg events | sed -n '/Event3/,/Event4/p' | tail -n 7
  x (Once)
  /bin/page (Always)
  Sends the messageid 601 "local" (Periodic 60 s)
  warning "x" (Once)
  send eMail to a@b "x" (Once)
  Shutdown System/ UPS in default sec. (Timed 5 s)
Event4: UPS RS-232 Communication lost
$ kavcfg job list 3
1 MESSAGE USER='*' TEXT='it'\''s late' TIMING=timed:90
2 EXECUTE:send ADDRESS=10.0.0.1 PORT=6003 TIMING=repeated:9
3 EXECUTE:alarm.bat TEXT=x TIMING=once
4 EXECUTE PROGRAM=/bin/page PARAMETER='' TIMING=always
5 MESSAGEID USER=local ID=601 TIMING=periodic:60
6 EVENTLOG TYPE=warning TEXT=x TIMING=once
7 EXECUTEH ADDRESS=a@b TEXT=x DLOG=yes TLOG=yes TREC=yes OINF=yes TIMING=once
8 SHUTDOWN DELAY=default TIMING=timed:5
$ kavcfg job list 3 | while read -r number words; do eval "kavcfg --japanese job add 4 $words"; done
$ test "`kavcfg get Event3`" = "`kavcfg get Event4`" && kavcfg --japanese job list 4 | sed -n 4p
4 EXECUTE PROGRAM=/bin/page PARAMETER='' TIMING=always
$ kavcfg job add 20 LOGMSG TEXT=x TIMING=before:5 --diff && kavcfg job list 20 && kavcfg job remove 20 1 --diff
+Event20=LOGMSG("x")OX5;
1 LOGMSG TEXT=x TIMING=before:5
-Event20=LOGMSG("x")OX5;
)");
}

TEST_F(Kavcfg, DrawsTheJobsOfAnEventOverTime) {
  expect(R"($ list='LOGMSG("a")O;LOGMSG("b")A;LOGMSG("c")P60;LOGMSG("d")T90;LOGMSG("e")R120;'
$ kavcfg set CheckRate=10 Event0="$list" 'Event20=LOGMSG("x")OX5;' && kavcfg timeline 0
Event0: UPS Alarm - Powerfail has occurred !

                          min             0     2     4     6     8    10    12
                                          |-----|-----|-----|-----|-----|-----|
1  Log Event "a"          Once            *
2  Log Event "b"          Always          *========================
3  Log Event "c"          Periodic 60 s   *  *  *  *  *  *  *  *  *
4  Log Event "d"          Timed 90 s      .....*
5  Log Event "e"          Repeated 120 s  ......*     *     *     *

   The shutdown begins    1 min           ---|
   The system is down     8 min           ------------------------|
   The UPS is off         11 min          ---------------------------------|
   The battery is empty   10 min          ##############################|
!  the battery is empty after 10 minutes, but the shutdown is over after 11
$ kavcfg timeline 20
Event20: Shutdown with the scheduler

                          min            -6    -5    -4    -3    -2    -1     0
                                          |-----|-----|-----|-----|-----|-----|
1  Log Event "x"          Do before 5 min       *
   The shutdown begins                    ------------------------------------|
$ kavcfg set FixedDownTime=0 UpsDownEnabled=no UpsHoldMins=100 'Event0=LOGMSG("a")R1;' && kavcfg timeline 0 | tail -n 7
                          min             0     5    10    15    20    25    30
                                          |-----|-----|-----|-----|-----|-----|
1  Log Event "a"          Repeated 1 s    *========

   The shutdown begins    0 min           |
   The system is down     7 min           --------|
   The battery is empty   100 min         ####################################>
$ kavcfg set UpTimeSupport=no UpsHoldMins=30 UpsLoad=500 && kavcfg timeline 0 | tail -n 3
   The shutdown begins    53 min          --------------------------------|
   The system is down     60 min          ------------------------------------|
   The battery is empty   60 min          ####################################|
$ kavcfg set SysDownAllowed=no && kavcfg timeline 0 | tail -n 3
1  Log Event "a"          Repeated 1 s    *===================================>

   The battery is empty   60 min          ####################################|
)");
}

// Schema and list agree with each other, with the standard's own check, and with apply.
constexpr char kValidate[] = R"(
import json, jsonschema
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
  expect(R"($ kavcfg -f site.cfg new && kavcfg -f site.cfg list >list && kavcfg schema >schema && python3 validate.py
$ kavcfg -f site.cfg apply site.json --diff && kavcfg -f site.cfg apply defaults.json
$ kavcfg -f site.cfg unset --json `kavcfg list --keys | grep -v UpsModel` | jq -c
{"changed":false,"before":{},"after":{},"faults":[]}
$ echo abc | kavcfg set PASSWORD CheckRate=6 --json | jq -c
{"changed":true,"before":{"PASSWORD":null,"CheckRate":"5"},"after":{"PASSWORD":null,"CheckRate":"6"},"faults":[]}
$ kavcfg set CheckRate=0 --json | jq -c
{"changed":false,"before":{},"after":{},"faults":[{"line":0,"key":"CheckRate","text":"is not from 1 to 600"}]}
$ kavcfg job add 3 LOGMSG TEXT=`printf 'a\377'` --json | jq -c .after
{"Event3":"LOGMSG(\"mine\")O;LOGMSG(\"a?\")O;"}
$ jq -c '.properties | .PASSWORD, .UseMailSign, (.UpsDownDelay | del(.description, .default))' schema
{"description":"Password","type":["string","number","null"],"writeOnly":true}
{"description":"Use signature file","default":"no","enum":["yes","no",true,false,null]}
{"type":["number","string","null"],"pattern":"^-?[0-9]+(\\.[0-9]*)?$","minimum":0,"maximum":5940,"x-unit":"s"}
)");
}

TEST(KavcfgProgram, IsLinkedWithoutCurses) {
  EXPECT_EQ(run_shell("readelf -d '" KAVCFG_PROGRAM "' | grep NEEDED | grep -oE '\\[libc.so|curses|tinfo'").output,
            "[libc.so\n");
}

TEST_F(Kavcfg, ProbeTellsTheModelOrTheReasonOfEachPort) {
  constexpr int kNoNamespace = 77;
  const bool can_simulate = run_shell("'" TRY_DETECTION "' -b '" BUILD_FOLDER "' true").status != kNoNamespace;
  if (!can_simulate && std::getenv("CI") == nullptr) GTEST_SKIP();
  expect(R"($ probe="exec setpriv --bounding-set=-dac_override '$program' -u '$database' probe"
$ ports -0 absent -2 '--model K-TRN010VQ12' -3 '--answer XX\r' sh -c "echo 1 >/var/lock/LCK..ttyS1; $probe"
/dev/ttyS0: No such file or directory
/dev/ttyS1: locked by process 1
/dev/ttyS2: K-TRN010VQ-110
/dev/ttyS3: unknown answer 'XX?'
$ ports -0 absent -1 absent -2 --silent -3 '' sh -c "chmod 0 /dev/ttyS3; $probe --json" | jq -c .ports[2,3]
{"port":"/dev/ttyS2","state":"silent","model":null,"reason":"no answer"}
{"port":"/dev/ttyS3","state":"denied","model":null,"reason":"permission denied"}
)");
}

TEST_F(Kavcfg, AppliesWhatItListsAndPredictsWhatItDoes) {
  expect(R"($ rm ups.cfg; kavcfg new UpsModel=K-TRN010VQ-100 CheckRate=7 'Event3=LOGMSG("a")O;' UpTimeSupport=no
$ kavcfg list | sed '1i # a comment\n' >wanted; kavcfg -f made.cfg apply wanted --new --dry-run; ls made.cfg 2>/dev/null
[2]
$ kavcfg -f made.cfg apply wanted --new && cmp made.cfg ups.cfg && touch -r wanted made.cfg
$ kavcfg -f made.cfg apply wanted --new --json | jq -c; find made.cfg -newer wanted
{"changed":false,"before":{},"after":{},"faults":[]}
$ printf '{\n"CheckRate": 8, "UpTimeSupport": true,\n"Event3": null, "PASSWORD": "abc", "UpsID": 2}' >json
$ kavcfg apply json --diff
-UpsID=0
+UpsID=2
-PASSWORD=(hidden)
+PASSWORD=(hidden)
-CheckRate=7
+CheckRate=8
-UpTimeSupport=no
+UpTimeSupport=yes
-Event3=LOGMSG("a")O;
+Event3=LOGMSG("Connected to UPS.")O;
$ printf '; settings that were not saved, passwords as stored\nPASSWORD=SWNL\n' | kavcfg apply -; grep PASS ups.cfg
PASSWORD=SWNL
$ kavcfg unset CheckRate && kavcfg get CheckRate
1
$ printf 'CheckRate=5\nNoKey=1\nGarUpTime=1\ncheckrate=2\nwhat\n' | kavcfg apply -
kavcfg: -:2: NoKey: no such key
kavcfg: -:3: GarUpTime: follows from other keys, it can't be set
kavcfg: -:4: CheckRate: given twice
kavcfg: -:5: what: a value is needed, KEY=VALUE
[1]
$ printf 'CheckRate=5\n\nUpsLoad=0\n' | kavcfg apply -
kavcfg: -:3: UpsLoad: is not from 1 to 100000000
[1]
$ printf '{\n"CheckRate": 5,\n"UpsLoad": [1],\n"NoKey": null}' | kavcfg apply -
kavcfg: -:3: UpsLoad: a text, a number, true, false or null is needed
kavcfg: -:4: NoKey: no such key
[1]
$ printf '{"CheckRate": 5,\n' | kavcfg apply -
kavcfg: -:2: this is no JSON
[1]
$ kavcfg get CheckRate
1
)");
}

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

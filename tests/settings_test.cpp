#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "corbix/xconfig.h"
#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/settings/checks.h"
#include "setup/settings/settings.h"
#include "tests/folder.h"
#include "util/trace.h"

namespace {

// Every test in an empty directory of its own, with the settings of a new configuration.
struct Settings : testing::Test {
  WorkingFolder folder;
  Settings() {
    create_new_cfg = 1;
    leave_to_file({});
    init_all_tabs();
    init_new_config_vals();
  }
};

std::string text(const char *key) { return text_of_field(*setting_of_key(key)); }

void put(const char *key, const char *text) {
  const RecordField place = field_of(*setting_of_key(key));
  put_field(place.record, place.table, place.field, text);
}

TEST_F(Settings, ANewFileIsWrittenByteForByteAndStaysUntouched) {
  const std::string place = folder.path.string();
  const std::string expected =
      "#\n#  KAVLON Pro Configuration\n#\n\n\n"
      "UpsLocation=Unknown\nUpsDevice=/dev/ttyS0:2400,n,8,1\nUpsID=0\nDataLoggingRate=300\nLogMaxHours=200\n"
      "TempCaution=50.0\nTempWarning=70.0\nUpsModel=Unknown\nUpsCable=0\nUpsPower=1000\nUpsLoad=1000\nUpsHoldMins=10\n"
      "UpsRechargeHours=10\nNetTyp=MASTER\nPASSWORD=SWNL\nNetBroadcastRate=30\nCheckRate=1\nSysDownAllowed=yes\n"
      "SysDownMins=7\nUpsDownEnabled=yes\nUpsDownDelay=180\nUpsRestEnabled=yes\nUpTimeSupport=yes\nFixedDownTime=1\n"
      "GarUpTime=1\nLogFileTxt=" +
      place + "/upslog.csv\nDataLoggingName=" + place + "/upsdata.csv\nLogFileBin=" + place +
      "/upsdata.dat\nLoggingData=1\nDataLoggingSize=1000\n"
      "MailSubject=UPS event\nUseMailSign=no\nMailSignFile=mailsign.txt\nMailEnableFlag=no\nSmtpHost= \n"
      "Event0=MESSAGEID(\"local\",601)O;";
  ASSERT_EQ(save_configuration("ups.cfg"), 1);
  const std::string written = get_file("ups.cfg");
  EXPECT_EQ(written.substr(0, expected.size()), expected);

  struct stat first, second;
  ASSERT_EQ(stat("ups.cfg", &first), 0);
  EXPECT_EQ(first.st_mode & 07777, 0640u);
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  ASSERT_EQ(save_configuration("ups.cfg"), 1);
  ASSERT_EQ(stat("ups.cfg", &second), 0);
  EXPECT_EQ(first.st_ino, second.st_ino);
  EXPECT_EQ(get_file("ups.cfg"), written);
}

TEST_F(Settings, TraceTellsTheDefaultsTheChecksAndHowEachSectionIsSaved) {
  for (const int32_t level : {kTraceDetails + 1, kTraceDetails, kTraceResults}) {
    debugLevel = level;
    init_new_config_vals();
    for (const char *key : {"TempCaution", "LogMaxHours", "SysDownMins", "CheckRate"}) {
      value_check(setting_of_key(key)->field, setting_of_key(key)->mask);
    }
    save_configuration("ups.cfg");
  }
  debugLevel = 0;
  std::string expected;
  for (const char *value :
       {"appl_name = |Unknown|", "device_str = |/dev/ttyS0:2400,n,8,1|", "ups_id = |0|", "log_rate = |300|",
        "log_min = |24|", "log_max = |200|", "ups_name = |Unknown|", "cable_type = |serial|", "ups_power = |1000|",
        "ups_load = |1000|", "ups_maxholdtime = |10|", "ups_rechargetime = |10|"}) {
    expected += std::string("cfgmask: init_new_config_vals: ") + value + "\n";
  }
  expected += "value_check_tempcaution: dval=50.000000 lval=50\nvalue_check: log_max=200\n";
  expected += "value_check down_time(9): 0 <= 7 7 <= 1000\nCustomRec.password=MIRT!4\n";  // kept, for scripts
  const std::string saved =
      "save_std_cfg() ok\nsave_custom_cfg() ok\nsave_path_cfg() ok\nsave_mail_cfg() ok\nsave_new_event_cfg() ok\n";
  EXPECT_EQ(get_file("setup.dbg"), expected + saved + saved);
}

TEST_F(Settings, ValuesThatStandOtherwiseInTheFile) {
  put_file("ups.cfg",
           "PASSWORD= \nUpsDownDelay=59\nUpsCable=42\nLoggingData=0\nUpsPower=99999999999\nCheckRate=fast\n");
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  EXPECT_EQ(text("PASSWORD") + "," + text("UpsCable") + "," + text("LoggingData"), ",LAST,no");
  EXPECT_EQ(number_in(field_of(*setting_of_key("UpsPower"))), INT32_MAX);
  const RecordField none = field_of_mask(kMaskUps, kStdFieldCount);
  char nothing[512] = "before";
  EXPECT_EQ(number_in(field_of(*setting_of_key("UpsDevice"))) + number_in(none) + *text_in(none, nothing), 0);
  get_hlp_txt(nothing, kMaskUps, kStdFieldCount);
  EXPECT_STREQ(nothing, help_missing[language]);
  EXPECT_EQ(CustomRec.ups_shutdown_delay, 0);
  EXPECT_EQ(CustomRec.check_rate, 0);

  put_file("ups.cfg", "PASSWORD=SWNL\n");
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  EXPECT_EQ(text("PASSWORD"), "MIRT");
  EXPECT_EQ(CustomRec.ups_shutdown_delay, 3);
  EXPECT_EQ(init_config_vals("missing.cfg"), 0);
  EXPECT_EQ(CustomRec.ups_shutdown_delay, 3) << "a file that can't be read changes nothing";

  put("ExtraJob1", "/mine");
  create_new_cfg = 0;
  init_new_config_vals();
  EXPECT_EQ(StdRec.logging_rate_copy, 300);
  EXPECT_EQ(save_special_cfg("none/ups.cfg") + save_special_cfg("ups.cfg"), 1);
  EXPECT_EQ(get_file("ups.cfg"),
            "PASSWORD=SWNL\nNetTyp=MASTER\nEnableExtra1=no\nExtraTime1=0\nExtraJob1=/mine\nEnableExtra2=no\n"
            "ExtraTime2=0\nExtraJob2=/usr/ups/ups_exe2\nEnableExtra3=no\nExtraTime3=0\nExtraJob3=/usr/ups/ups_exe3\n")
      << "the jobs of a session that had a file stay";
}

TEST_F(Settings, NumbersOutOfRangeLeaveTheFileAsItIs) {
  put_file("ups.cfg", "CheckRate=5\nUpsDownDelay=60\nFixedDownTime=4\nGarUpTime=3\nNetBroadcastRate=99\n");
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  CustomRec.check_rate = 601;
  CustomRec.ups_shutdown_delay = 99;
  CustomRec.fixed_down_time = -1;
  put("PASSWORD", "");
  EXPECT_EQ(value_check(kPassword, kMaskSystem), 1) << "without a range";
  ASSERT_EQ(save_custom_cfg("ups.cfg"), 1);
  EXPECT_EQ(
      get_file("ups.cfg"),
      "CheckRate=5\nUpsDownDelay=5940\nFixedDownTime=4\nGarUpTime=3\nNetBroadcastRate=30\nNetTyp=MASTER\n"
      "PASSWORD= \nSysDownAllowed=yes\nSysDownMins=7\nUpsDownEnabled=yes\nUpsRestEnabled=yes\nUpTimeSupport=yes\n");
}

TEST_F(Settings, ARefusedKeyEndsItsSectionOnly) {
  put("UpsDevice", "");  // an empty value of a key that the file lacks can't be stored
  put("UpsLocation", "here");
  CustomRec.check_rate = 2;
  EXPECT_EQ(save_configuration("ups.cfg"), 0);
  const std::string written = get_file("ups.cfg");
  EXPECT_TRUE(written.starts_with("#\n#  KAVLON Pro Configuration\n#\n\n\nUpsLocation=here\nNetTyp=MASTER\n"))
      << written;
  EXPECT_NE(written.find("\nEvent24="), std::string::npos);
  StdRec.ups_id = 7;
  init_cstr_array();  // as when memory ran out
  put_file("ups.cfg.unsaved", "; earlier\nUpsID=3\nUpsLoad=5\n");
  umask(027);
  EXPECT_TRUE(keep_unsaved("ups.cfg") == 1 && umask(022) == 027);
  EXPECT_EQ(get_file("ups.cfg.unsaved"), std::string(kStoredMark) + "\nUpsID=7\nUpsLoad=5\n")
      << "the others were written";
}

TEST_F(Settings, TwoThatSaveAtTheSameTimeDoNotMix) {
  const pid_t child = fork();
  put("UpsLocation", child == 0 ? "left" : "right");
  put("MailSubject", child == 0 ? "left" : "right");
  int saved = 1;
  for (int i = 0; i < 20; ++i) saved &= save_configuration("ups.cfg");
  if (child == 0) _exit(saved);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(saved && WEXITSTATUS(status) == 1);
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  EXPECT_EQ(text("UpsLocation"), text("MailSubject"));
}

TEST_F(Settings, MailKeysAndDefaults) {
  put_file("ups.cfg", "MailEnableFlag=YES\nSmtpUser=kav\nSmtpHost=mail\n");
  ASSERT_EQ(XOpenProfile("ups.cfg", kReadText), 1);
  read_mail_cfg("ignored");
  ASSERT_EQ(XCloseProfile(), 1);
  put("SmtpPassword", "secret");
  put("MailFromAddr", "ups@site");
  ASSERT_EQ(save_mail_cfg("ups.cfg"), 1);
  EXPECT_EQ(get_file("ups.cfg"),
            "MailEnableFlag=YES\nSmtpUser=kav\nSmtpHost=mail\nMailSubject=UPS event\nUseMailSign=no\n"
            "MailSignFile=mailsign.txt\nMailFromAddr=ups@site\nSmtpPassword=" +
                encrypted("secret") + "\n");
  ASSERT_EQ(init_config_vals("ups.cfg"), 1);
  EXPECT_EQ(text("SmtpPassword"), "secret");

  put("MailEnableFlag", "no");
  put("SmtpHost", "");
  for (int save = 0; save < 2; ++save) ASSERT_EQ(save_mail_cfg("ups.cfg"), 1) << "what is gone can't be erased again";
  EXPECT_EQ(get_file("ups.cfg"),
            "MailEnableFlag=no\nSmtpHost= \nMailSubject=UPS event\nUseMailSign=no\n"
            "MailSignFile=mailsign.txt\nMailFromAddr=ups@site\n");
}

}  // namespace

// kavcfg on random configurations of the masks' own making: check, list, apply and diff agree.
#include <cstdlib>
#include <random>
#include <regex>

#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "setup/settings/models.h"
#include "tests/folder.h"
#include "tests/random_text.h"
#include "tools/kavcfg/command.h"
#include "util/text.h"

namespace {

struct Configurations : testing::Test {
  WorkingFolder folder{kMemoryFolder};
  std::mt19937 random{5};
  Configurations() {
    cpynstr(upstypname, KAVCFG_DATABASE);
    init_all_tabs();
    EXPECT_EQ(InitUpsTypeArray(), 1);
  }

  int up_to(int most) { return std::uniform_int_distribution<int>(0, most)(random); }
  const auto &one_of(const auto &all) { return all[static_cast<size_t>(up_to(static_cast<int>(std::size(all)) - 1))]; }

  // --- what a person could have entered

  std::string random_job(int event) {
    auto job = std::make_unique<JobRec>();
    fill_function_rec(*job, up_to(kFunctionCount - 1), event);
    for (int k = 0; k < job->param_count; ++k) {
      const FieldDescriptor &field = job_mask(job->function).fields[k];
      std::string value = random_text(random, field);
      if (is_read_only_field(field.type)) value = up_to(1) == 0 ? "yes" : "no";
      if (job->function == kShutdownFunction) value = std::to_string(up_to(5940));
      if (job->function == kNimbroFunction && k == 1) value = std::to_string(up_to(65534) + 1);
      if (job->function == kSyslogFunction && k == 0) value = one_of(funcframe_label07)[0];
      if (job->function == kSyslogFunction && k == 1) value = "100";
      const bool is_mail = job->function == kEmailFunction;
      std::erase_if(value, [&](char c) { return is_mail && (c == ',' || c == '$'); });
      cpynstr(job->params[k].value, value.empty() ? "1" : value);
    }
    const std::string number = std::to_string(up_to(9999999));
    EXPECT_EQ(set_repeat_value(job->timing, one_of(funcframe_label02)[language], number.c_str(), event), 1);
    std::string text;
    EXPECT_EQ(build_func_string(*job, text), 1);
    return text.substr(0, text.size() - 1);
  }

  std::string random_jobs(int event) {
    std::vector<std::string> jobs;
    for (int count = up_to(4); count > 0; --count) jobs.push_back(random_job(event));
    put_shutdown_last(jobs);
    return join_joblist(jobs);
  }

  std::string random_value(const Setting &setting) {
    const RecordField place = field_of(setting);
    const std::string number = std::to_string(std::uniform_int_distribution<int32_t>(setting.min, setting.max)(random));
    if (setting.kind == Kind::number) return number;
    if (setting.kind == Kind::decimal) return number + ".0";
    if (setting.kind == Kind::yes_no || setting.kind == Kind::flag) return up_to(1) == 0 ? "yes" : "no";
    if (setting.kind == Kind::cable) return UpsCableArr[up_to(static_cast<int>(std::size(UpsCableArr)) - 2)].name;
    if (setting.kind == Kind::job_list) return random_jobs(setting.field);
    return random_text(random, place.table[place.field]);
  }

  // As the masks take it; what they announce as lost is entered again.
  void enter(const Setting &setting) {
    const RecordField place = field_of(setting);
    do {
      const std::string value = random_value(setting);
      if (setting.kind == Kind::job_list) take_value(setting, value.c_str(), true);
      if (place.record != nullptr) put_field(place.record, place.table, place.field, value.c_str());
    } while (loss_of(setting) != ProfileFault::none);
  }

  // Saves a new configuration, and finds no fault in it. All have one password and none for mail, which no list holds.
  void make_configuration(const char *file) {
    std::filesystem::remove(file);
    init_new_config_vals();
    choose_model(UpsTypeArr[up_to(get_max_ups_list(UpsTypeArr) - 1)].ups_name);
    for (const Setting *setting : all_settings()) {
      const bool is_free = setting->kind != Kind::model && setting->kind != Kind::secret && can_be_set(*setting);
      if (is_free && setting->field != kNoField) enter(*setting);
    }
    if (!may_shut_down()) {
      for (const int field : {kUpsShutdown, kUpTimeSupport}) put_field(&CustomRec, CustomTabArr, field, "no");
    }
    if (!keeps_smtp_user()) put_field(&MailRec, MailTabArr, kSmtpUser, "");
    ASSERT_EQ(save_configuration(file), 1);
    ASSERT_EQ(init_config_vals(file), 1);
    std::vector<KeyFinding> faults;
    check_loaded(faults);
    for (const KeyFinding &fault : faults) ADD_FAILURE() << fault.key << ": " << fault.text << get_file(file);
  }
};

std::string output_of(int (*command)(const Arguments &), const Arguments &arguments, const char *file,
                      Options how = {}) {
  options = how;
  options.file = file;
  testing::internal::CaptureStdout();
  command(arguments);
  return testing::internal::GetCapturedStdout();
}

TEST_F(Configurations, ListOfOneAppliedToAnotherMakesThemTheSame) {
  const std::string above = "; note\nsite7 = a\t;b \n", below = "\n[site]\nCheckRate=999\n";
  const char *wanted = std::getenv("KAV_CONFIGURATIONS");  // a short run by default; the long one sets 2000
  for (int pair = 0; pair < (wanted == nullptr ? 200 : std::atoi(wanted)) && !HasFailure(); ++pair) {
    make_configuration("a.cfg");
    make_configuration("b.cfg");
    const std::regex missing(pair % 2 == 0 ? "\n(UpsL|UpT|Event1)[^\n]*" : "\n(Log|Mail)[^\n]*");
    const std::string before = above + std::regex_replace(get_file("b.cfg"), missing, "") + below;
    put_file("b.cfg", before);
    put_file("wanted", output_of(list, {}, "a.cfg"));

    const std::string predicted = output_of(apply, {"wanted"}, "b.cfg", {.json = true, .dry_run = true});
    EXPECT_EQ(get_file("b.cfg"), before);
    EXPECT_EQ(output_of(apply, {"wanted"}, "b.cfg", {.json = true}), predicted);
    EXPECT_EQ(output_of(diff, {"a.cfg"}, "b.cfg"), "");
    const std::string after = get_file("b.cfg");
    EXPECT_TRUE(after.starts_with(above) && after.ends_with(below)) << after;
    EXPECT_EQ(output_of(apply, {"wanted"}, "b.cfg", {.diff = true}), "");
    EXPECT_EQ(get_file("b.cfg"), after);
  }
}

TEST_F(Configurations, TakeTheLineSettingsOfTheirModel) {
  fill_port("/dev/ttyS7", get_ups_list_id(UpsTypeArr, "K-TRN010VQ-100"));
  EXPECT_EQ(text_of_field(*setting_of_key("UpsDevice")), "/dev/ttyS7:2400,n,8,1");
  EXPECT_EQ(oemid, 1);
  const ModelEntry *none = get_ups_by_name(UpsTypeArr, "none");
  EXPECT_EQ(none->cable + none->kind + none->power + none->load + none->hold_minutes + none->recharge_hours, 0);
}

TEST_F(Configurations, AreNotChangedByTheirCheck) {
  put_file("a.cfg", "TempCaution=50\n");
  std::vector<KeyFinding> faults;
  ASSERT_EQ(init_config_vals("a.cfg"), 1);
  check_loaded(faults);
  EXPECT_FALSE(has_changes());
  EXPECT_EQ(keep_unsaved("a.cfg"), 1);
  EXPECT_FALSE(std::filesystem::exists("a.cfg.unsaved"));
}

}  // namespace

// kavcfg on random configurations of the masks' own making: list, apply, diff and check agree.
#include <sys/stat.h>

#include <random>
#include <sstream>

#include "setup/configuration/changes.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "setup/settings/models.h"
#include "tests/folder.h"
#include "tools/kavcfg/command.h"
#include "util/text.h"

namespace {

using Random = std::mt19937;

int up_to(Random &random, int most) { return std::uniform_int_distribution<int>(0, most)(random); }

// --- what a person could have entered

std::string random_text(Random &random, const FieldDescriptor &field) {
  constexpr std::string_view kWords[] = {"\xE3\x82\xB5", "\xC3\xA9"};
  const int type = is_read_only_field(field.type) ? kFieldText : field.type;  // until another field opens it
  std::string text;
  for (int length = up_to(random, field.length - 1) + 1; length > 0; --length) {
    const bool is_word = type == kFieldText && up_to(random, 20) == 0;
    const std::string next =
        is_word ? std::string(kWords[up_to(random, 1)]) : std::string(1, static_cast<char>(33 + up_to(random, 93)));
    const auto fits = accepts_character(type, static_cast<int>(text.size()), static_cast<unsigned char>(next[0]));
    if (fits && text.size() + next.size() <= field.length) text += next;
  }
  return text;
}

std::string random_jobs(Random &random, int event) {
  std::vector<std::string> jobs;
  for (int count = up_to(random, 4); count > 0; --count) {
    const int other = event == kSchedulerEvent ? event : up_to(random, kEventCount - 1);
    const std::vector<std::string> all = split_joblist(eventlist[other].jobs[0]);
    if (other == event || other != kSchedulerEvent)
      jobs.push_back(all[static_cast<size_t>(up_to(random, static_cast<int>(all.size()) - 1))]);
  }
  put_shutdown_last(jobs);
  return join_joblist(jobs);
}

std::string random_value(Random &random, const Setting &setting) {
  const RecordField place = field_of(setting);
  switch (setting.kind) {
    case Kind::number:
    case Kind::decimal:
      return std::to_string(std::uniform_int_distribution<int32_t>(setting.min, setting.max)(random)) +
             (setting.kind == Kind::decimal ? ".0" : "");
    case Kind::yes_no:
    case Kind::flag:
      return up_to(random, 1) == 0 ? "yes" : "no";
    case Kind::cable:
      return UpsCableArr[up_to(random, static_cast<int>(std::size(UpsCableArr)) - 2)].name;
    case Kind::job_list:
      return random_jobs(random, setting.field);
    default:
      return random_text(random, place.table[place.field]);
  }
}

// As the masks take it; what they announce as lost is entered again.
void enter(Random &random, const Setting &setting) {
  const RecordField place = field_of(setting);
  do {
    const std::string value = random_value(random, setting);
    if (setting.kind == Kind::job_list) {
      ASSERT_EQ(store_event_jobs(setting.field, value.c_str()), 1);
    } else {
      put_field(place.record, place.table, place.field, value.c_str());
    }
  } while (loss_of(setting) != ProfileFault::none && setting.kind != Kind::job_list);
}

// Saves a new configuration. All have one password and none for mail, which no list holds.
void make_configuration(Random &random, const char *file) {
  std::filesystem::remove(file);
  init_new_config_vals();
  choose_model(UpsTypeArr[up_to(random, get_max_ups_list(UpsTypeArr) - 1)].ups_name);
  for (const Setting *setting : all_settings()) {
    const bool is_free = setting->kind != Kind::model && setting->kind != Kind::secret && can_be_set(*setting);
    const bool stays = setting->kind == Kind::job_list && up_to(random, 2) > 0;
    if (is_free && !stays && setting->field != kNoField) enter(random, *setting);
  }
  StdRec.ups_id = up_to(random, 999);
  if (!may_shut_down()) {
    for (const int field : {kUpsShutdown, kUpTimeSupport}) put_field(&CustomRec, CustomTabArr, field, "no");
  }
  if (!keeps_smtp_user()) put_field(&MailRec, MailTabArr, kSmtpUser, "");
  ASSERT_EQ(save_configuration(file), 1);
}

// Lines that a person or the monitor has put there, and settings that are missing.
void mix_in_other_lines(Random &random, const char *file) {
  std::istringstream lines(get_file(file));
  std::string content;
  for (std::string line; std::getline(lines, line);) {
    const bool is_setting = line.find('=') != std::string::npos;
    if (is_setting && line.starts_with("Up") && up_to(random, 9) == 0 && line.find("Model") == std::string::npos)
      continue;
    if (up_to(random, 9) == 0) content += "; note\n";
    if (up_to(random, 9) == 0) content += "site" + std::to_string(up_to(random, 999)) + " = a\t;b \n";
    content += line + "\n";
  }
  put_file(file, content + "\n[site]\nCheckRate=999\n");
}

std::string lines_of_others(const std::string &content) {
  std::istringstream lines(content.substr(0, content.find("\n[")));
  std::string others;
  for (std::string line; std::getline(lines, line);) {
    if (setting_of_key(line.substr(0, line.find('='))) == nullptr) others += line + "\n";
  }
  return others + content.substr(content.find("\n["));
}

// --- the commands

std::string output_of(int (*command)(const Arguments &), const Arguments &arguments, const char *file,
                      Options how = {}) {
  options = how;
  options.file = file;
  testing::internal::CaptureStdout();
  command(arguments);
  return testing::internal::GetCapturedStdout();
}

struct Configurations : testing::Test {
  WorkingFolder folder{kMemoryFolder};
  Random random{5};
  Configurations() {
    cpynstr(upstypname, KAVCFG_DATABASE);
    init_all_tabs();
    EXPECT_EQ(InitUpsTypeArray(), 1);
  }
};

TEST_F(Configurations, ListOfOneAppliedToAnotherMakesThemTheSame) {
  for (int pair = 0; pair < 1000 && !HasFailure(); ++pair) {
    make_configuration(random, "a.cfg");
    make_configuration(random, "b.cfg");
    mix_in_other_lines(random, "b.cfg");
    const std::string before = get_file("b.cfg");
    put_file("wanted", output_of(list, {}, "a.cfg"));

    const std::string predicted = output_of(apply, {"wanted"}, "b.cfg", {.json = true, .dry_run = true});
    EXPECT_EQ(get_file("b.cfg"), before);
    EXPECT_EQ(output_of(apply, {"wanted"}, "b.cfg", {.json = true}), predicted);
    EXPECT_EQ(output_of(diff, {"a.cfg"}, "b.cfg"), "");
    EXPECT_EQ(lines_of_others(get_file("b.cfg")), lines_of_others(before));

    struct stat once, twice;
    ASSERT_EQ(stat("b.cfg", &once), 0);
    EXPECT_NE(output_of(apply, {"wanted"}, "b.cfg", {.json = true}).find("\"changed\": false"), std::string::npos);
    ASSERT_EQ(stat("b.cfg", &twice), 0);
    EXPECT_EQ(once.st_ino, twice.st_ino);
    EXPECT_EQ(once.st_mtim.tv_nsec, twice.st_mtim.tv_nsec);
  }
}

TEST_F(Configurations, OfTheMasksOwnMakingHaveNoFault) {
  for (int file = 0; file < 200 && !HasFailure(); ++file) {
    make_configuration(random, "a.cfg");
    std::vector<KeyFinding> faults;
    ASSERT_EQ(init_config_vals("a.cfg"), 1);
    check_loaded(faults);
    for (const KeyFinding &fault : faults)
      ADD_FAILURE() << fault.line << ": " << fault.key << ": " << fault.text << get_file("a.cfg");
  }
}

TEST_F(Configurations, AreNotChangedByTheirCheck) {
  put_file("a.cfg", "TempCaution=50\n");
  std::vector<KeyFinding> faults;
  ASSERT_EQ(init_config_vals("a.cfg"), 1);
  check_loaded(faults);
  EXPECT_FALSE(has_changes());
}

}  // namespace

// The man pages tell of everything that the programs have. Texts of the pages are compared, not their layout.
#include <gtest/gtest.h>

#include <cstdio>

#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/settings.h"
#include "setup/cfgmask/writers.h"
#include "setup/events_cfg/catalogue.h"
#include "setup/events_cfg/job_language.h"
#include "setup/mail/mail.h"
#include "setup/options.h"
#include "setup/session.h"
#include "tests/folder.h"
#include "upsdb/families.h"
#include "upsdb/records.h"

namespace {

// A page without the marks that stand in its texts.
std::string page(const std::string &name) {
  std::string text = get_file(MAN_FOLDER "/" + name);
  for (const auto &[mark, character] : {std::pair{"\\&", ""}, {"\\(dq", "\""}, {" Ns Ar ", ""}, {" Ns Li ", ""}}) {
    for (size_t at = 0; (at = text.find(mark, at)) != std::string::npos;)
      text.replace(at, std::string_view(mark).size(), character);
  }
  return text;
}

// What a page says of a key of the list, up to the next one; empty when it does not name it.
std::string item(const std::string &text, const std::string &key) {
  for (size_t at = 0; (at = text.find("\n.It Ic ", at)) != std::string::npos; ++at) {
    const std::string words = text.substr(at + 7, text.find('\n', at + 1) - at - 7) + " ";
    if (words.find(" " + key + " ") != std::string::npos) return text.substr(at, text.find("\n.It Ic ", at + 1) - at);
  }
  return "";
}

std::string run(const std::string &command, int &status) {
  std::string output;
  FILE *program = popen((command + " 2>&1").c_str(), "r");
  char buffer[4096];
  for (size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, program)) > 0;) output.append(buffer, count);
  status = pclose(program);
  return output;
}

// A file with every key that is written.
std::vector<std::string> lines_of_a_whole_file() {
  const WorkingFolder folder;
  create_new_cfg = 1;
  init_tab();
  init_mail_tab();
  init_new_config_vals();
  EXPECT_EQ(save_configuration("ups.cfg"), 1);
  for (const int field : {kMailFromAddr, kSmtpHost, kMailEnableFlag, kSmtpUser, kSmtpPassword}) {
    put_field(&MailRec, MailTabArr, field, "yes");
  }
  EXPECT_EQ(save_special_cfg("ups.cfg") + save_mail_cfg("ups.cfg"), 2);
  std::vector<std::string> lines;
  const std::string content = get_file("ups.cfg");
  for (size_t at = 0; at < content.size(); at = content.find('\n', at) + 1) {
    lines.push_back(content.substr(at, content.find('\n', at) - at));
  }
  return lines;
}

TEST(ManPages, TellEveryKeyItsDefaultAndItsRange) {
  const std::string text = page("ups.cfg.5");
  int keys = 0;
  for (const std::string &line : lines_of_a_whole_file()) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    ++keys;
    const std::string key = line.substr(0, equals);
    const std::string described = item(text, key);
    EXPECT_NE(described, "") << key;
    const std::string value = line.substr(equals + 1);
    const bool is_list = key.starts_with("Event");
    const bool is_default = !is_list && value[0] != '/' && key != "MailFromAddr" && !key.starts_with("Smtp");
    EXPECT_TRUE(!is_default || described.find(value) != std::string::npos) << line;
  }
  EXPECT_EQ(keys, 72);
  for (const ValueCheck &row : ValueCheckArr) {
    const std::string range = std::to_string(row.min) + " to " + std::to_string(row.max);
    EXPECT_TRUE(row.field < 0 || text.find(range) != std::string::npos) << range;
  }
}

TEST(ManPages, TellEveryEventJobFunctionTimingAndLevel) {
  const std::string text = page("ups.cfg.5");
  for (int event = 0; event < kEventCount; ++event) {
    const std::string described = item(text, "Event" + std::to_string(event));
    EXPECT_NE(described.find(std::string(" No ") + eventlist[event].name[0]), std::string::npos) << event;
    for (const std::string &job : split_joblist(eventlist[event].jobs[0])) {
      EXPECT_NE(described.find("\n" + job + ";\n"), std::string::npos) << event << ": " << job;
    }
  }
  for (const FuncListRec &function : function_catalogue()) {
    const std::string prefix = function.fixed_prefix;
    const std::string start = std::string(function.name) + "(" + prefix.substr(0, prefix.find(',') + 1) + "\"";
    const bool is_mail = std::string_view(function.name) == "EXECUTEH";
    EXPECT_NE(text.find(is_mail ? start.substr(0, start.size() - 1) : start), std::string::npos) << start;
  }
  for (const Label &timing : funcframe_label02) {
    const std::string label = std::string(timing[0]).substr(0, std::string_view(timing[0]).find(' '));
    EXPECT_NE(text.find(" Ta " + label + " Ta "), std::string::npos) << label;
  }
  for (const Label &level : funcframe_label07) EXPECT_NE(text.find(level[0]), std::string::npos) << level[0];
}

TEST(ManPages, TellEveryFieldOfTheDatabase) {
  const std::string text = page("upstyp.ups.5");
  const auto tells = [&text](int position, const char *meaning) {
    const std::string field = "\n.It " + std::to_string(position) + " Ta " + meaning + " Ta ";
    EXPECT_NE(text.find(field), std::string::npos) << field;
  };
  std::vector<const RecordForm *> forms = {&kModelForm, &kVariableForm, &kFunctionForm, &kFunctionParamForm};
  for (const SectionField &section : kSectionFields) {
    tells(section.position, section.meaning);
    if (section.form != nullptr) forms.push_back(section.form);
  }
  for (const RecordForm *form : forms) {
    for (const FieldRow &field : form->fields) tells(field.position, field.meaning);
  }
  tells(kGetInfoRequest.position, kGetInfoRequest.meaning);
  for (const char *section : {kAboutSection, kVendorSection, kModelSection, kVariableSection, kFunctionSection,
                              kSharedMainSection, kSharedLibSection}) {
    EXPECT_NE(text.find(std::string(" ") + section), std::string::npos) << section;
  }
}

TEST(ManPages, TellEveryCommandOfKavdb) {
  int status = 0;
  const std::string usage = run(KAVDB_PROGRAM " --help", status);
  EXPECT_EQ(status, 0);
  const std::string text = page("kavdb.1");
  int commands = 0;
  for (size_t at = 0; (at = usage.find("kavdb ", at)) != std::string::npos; ++commands) {
    at += 6;
    const std::string command = usage.substr(at, usage.find_first_of(" \n", at) - at);
    const std::string mark = command.starts_with("-") ? ".Fl " + command.substr(1) : ".Cm " + command + " ";
    EXPECT_NE(text.find(mark), std::string::npos) << command;
  }
  EXPECT_EQ(commands, 5);
}

TEST(ManPages, AreCleanMdoc) {
  int status = 0;
  if (run("command -v mandoc", status).empty()) GTEST_SKIP() << "mandoc is not installed";
  for (const char *name : {"kavsetup.8", "kavdb.1", "ups.cfg.5", "upstyp.ups.5"}) {
    const std::string warnings = run(std::string("mandoc -Tlint -Wwarning " MAN_FOLDER "/") + name, status);
    EXPECT_EQ(status, 0) << warnings;
  }
}

}  // namespace

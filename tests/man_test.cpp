// The man pages tell of everything that the programs have. Texts of the pages are compared, not their layout.
#include <cstdlib>
#include <sstream>

#include "setup/configuration/configuration.h"
#include "setup/jobs/catalogue.h"
#include "setup/jobs/job_language.h"
#include "setup/options.h"
#include "setup/session.h"
#include "setup/settings/checks.h"
#include "setup/settings/mail.h"
#include "setup/settings/settings.h"
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

void expect_in(const std::string &text, const std::string &part) {
  EXPECT_NE(text.find(part), std::string::npos) << part;
}

// A file with every key that is written.
std::string whole_file() {
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
  return get_file("ups.cfg");
}

TEST(ManPages, TellEveryKeyItsDefaultAndItsRange) {
  const std::string text = page("ups.cfg.5");
  std::istringstream file(whole_file());
  int keys = 0;
  for (std::string line; std::getline(file, line);) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    ++keys;
    const std::string key = line.substr(0, equals), value = line.substr(equals + 1), described = item(text, key);
    EXPECT_NE(described, "") << key;
    const bool own = key.starts_with("Event") || value[0] == '/' || key == "MailFromAddr" || key.starts_with("Smtp");
    EXPECT_TRUE(own || described.find(value) != std::string::npos) << line;
  }
  EXPECT_EQ(keys, 72);
  for (const ValueCheck &row : ValueCheckArr) {
    if (row.field >= 0) expect_in(text, std::to_string(row.min) + " to " + std::to_string(row.max));
  }
}

TEST(ManPages, TellEveryEventJobFunctionTimingAndLevel) {
  const std::string text = page("ups.cfg.5");
  for (int event = 0; event < kEventCount; ++event) {
    const std::string described = item(text, "Event" + std::to_string(event));
    expect_in(described, std::string(" No ") + eventlist[event].name[0]);
    for (const std::string &job : split_joblist(eventlist[event].jobs[0])) expect_in(described, "\n" + job + ";\n");
  }
  for (const FuncListRec &function : function_catalogue()) {
    const std::string prefix = function.fixed_prefix;
    const std::string start = std::string(function.name) + "(" + prefix.substr(0, prefix.find(',') + 1) + "\"";
    const bool is_mail = std::string_view(function.name) == "EXECUTEH";
    expect_in(text, is_mail ? start.substr(0, start.size() - 1) : start);
  }
  for (const Label &timing : funcframe_label02) {
    const std::string label = std::string(timing[0]).substr(0, std::string_view(timing[0]).find(' '));
    expect_in(text, " Ta " + label + " Ta ");
  }
  for (const Label &level : funcframe_label07) expect_in(text, level[0]);
}

TEST(ManPages, TellEveryFieldOfTheDatabase) {
  const std::string text = page("upstyp.ups.5");
  const auto tells = [&text](int position, const char *meaning) {
    expect_in(text, "\n.It " + std::to_string(position) + " Ta " + meaning + " Ta ");
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
    expect_in(text, std::string(" ") + section);
  }
}

TEST(ManPages, TellEveryCommandOfKavdb) {
  const WorkingFolder folder;
  EXPECT_EQ(std::system(KAVDB_PROGRAM " --help > usage"), 0);  // NOLINT(cert-env33-c)
  const std::string text = page("kavdb.1"), usage = get_file("usage");
  int commands = 0;
  for (size_t at = 0; (at = usage.find("kavdb ", at)) != std::string::npos; ++commands) {
    at += 6;
    const std::string command = usage.substr(at, usage.find_first_of(" \n", at) - at);
    expect_in(text, command.starts_with("-") ? ".Fl " + command.substr(1) : ".Cm " + command + " ");
  }
  EXPECT_EQ(commands, 5);
}

// A page refers to all others.
TEST(ManPages, NameEachOther) {
  const std::vector<std::string> pages = {"kavcfg 1", "kavdb 1", "ups.cfg 5", "upstyp.ups 5", "kavsetup 8"};
  for (const std::string &from : pages) {
    std::string name = from;
    name.replace(name.find(' '), 1, ".");
    const std::string text = page(name), others = text.substr(text.find(".Sh SEE ALSO"));
    for (const std::string &to : pages) EXPECT_EQ(others.find(".Xr " + to) != std::string::npos, to != from) << to;
  }
}

TEST(ManPages, AreCleanMdoc) {
  // NOLINTBEGIN(cert-env33-c): constant commands
  if (std::system("command -v mandoc > /dev/null") != 0) GTEST_SKIP() << "mandoc is not installed";
  EXPECT_EQ(std::system("cd " MAN_FOLDER " && mandoc -Tlint -Wwarning *.[158]"), 0);
  // NOLINTEND(cert-env33-c)
}

}  // namespace

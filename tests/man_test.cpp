// The man pages tell of everything that the programs have. Texts of the pages are compared, not their layout.
#include <regex>
#include <set>
#include <sstream>

#include "setup/configuration/configuration.h"
#include "setup/jobs/catalogue.h"
#include "setup/jobs/job_language.h"
#include "setup/settings/settings.h"
#include "tests/run.h"
#include "upsdb/families.h"
#include "upsdb/records.h"

namespace {

// A page as it stands, the Japanese one in the encoding of the program's texts.
std::string source(const std::string &name, int of_language) {
  return of_language == 0 ? get_file(MAN_FOLDER "/" + name)
                          : run_shell("iconv -f UTF-8 -t EUC-JP " MAN_FOLDER "/ja/" + name).output;
}

// A page without the marks that stand in its texts.
std::string page(const std::string &name, int of_language = 0) {
  std::string text = std::regex_replace(source(name, of_language), std::regex(R"(\\&)"), "");
  text = std::regex_replace(text, std::regex(R"(\\\(dq)"), "\"");
  return std::regex_replace(text, std::regex(" Ns (Ar|Li) "), "");
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

TEST(ManPages, TellEveryKeyItsDefaultAndItsRange) {
  const std::string text = page("ups.cfg.5");
  const std::vector<std::string> defaults = default_values();
  for (size_t i = 0; i < defaults.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    const std::string described = item(text, setting.key);
    EXPECT_NE(described, "") << setting.key;
    const bool has_own = setting.kind == Kind::job_list || setting.kind == Kind::path;
    EXPECT_TRUE(has_own || described.find(defaults[i]) != std::string::npos) << setting.key << defaults[i];
    if (has_range(setting)) expect_in(described, std::to_string(setting.min) + " to " + std::to_string(setting.max));
  }
}

TEST(ManPages, TellEveryEventJobFunctionTimingAndLevel) {
  for (const int of_language : {0, 1}) {
    const std::string text = page("ups.cfg.5", of_language);
    for (int event = 0; event < kEventCount; ++event) {
      const std::string described = item(text, "Event" + std::to_string(event));
      expect_in(described, std::string(" No ") + eventlist[event].name[of_language]);
      for (const std::string &job : split_joblist(eventlist[event].jobs[of_language])) {
        expect_in(described, "\n" + job + ";\n");
      }
    }
    for (const FuncListRec &function : function_catalogue()) {
      const std::string prefix = function.fixed_prefix;
      const std::string start = std::string(function.name) + "(" + prefix.substr(0, prefix.find(',') + 1) + "\"";
      const bool is_mail = std::string_view(function.name) == "EXECUTEH";
      expect_in(text, is_mail ? start.substr(0, start.size() - 1) : start);
    }
    for (const Label &timing : funcframe_label02) {
      const std::string label = timing[of_language];
      expect_in(text, " Ta " + label.substr(0, label.find(' ')) + " Ta ");
    }
    for (const Label &level : funcframe_label07) expect_in(text, level[0]);
  }
}

TEST(ManPages, TellEveryLabelOfTheMasks) {
  for (const int of_language : {0, 1}) {
    const std::string text = page("kavsetup.8", of_language);
    for (const int mask : {kMaskUps, kMaskSystem, kMaskPaths, kMaskMail}) {
      for (const Setting &setting : settings_of(mask)) {
        if (setting.label.row == 0) continue;
        const std::string padded = setting.label.text.text[of_language];
        const std::string label = std::regex_replace(padded, std::regex(" +:?$|:$|( ) +"), "$1");
        expect_in(text, "\n.It " + label + " Ta Ic " + setting.key);
      }
    }
  }
}

TEST(ManPages, TellEveryFieldOfTheDatabase) {
  const std::string text = page("upstyp.ups.5");
  std::vector<std::pair<int, std::string>> fields = {{kGetInfoRequest.position, kGetInfoRequest.meaning}};
  std::vector<const RecordForm *> forms = {&kModelForm, &kVariableForm, &kFunctionForm, &kFunctionParamForm};
  for (const SectionField &section : kSectionFields) {
    fields.emplace_back(section.position, section.meaning);
    if (section.form != nullptr) forms.push_back(section.form);
  }
  for (const RecordForm *form : forms) {
    for (const FieldRow &field : form->fields) fields.emplace_back(field.position, field.meaning);
  }
  for (const auto &[position, meaning] : fields) {
    expect_in(text, "\n.It " + std::to_string(position) + " Ta " + meaning + " Ta ");
  }
  for (const char *section : {kAboutSection, kVendorSection, kModelSection, kVariableSection, kFunctionSection,
                              kSharedMainSection, kSharedLibSection}) {
    expect_in(text, std::string(" ") + section);
  }
}

TEST(ManPages, TellEveryWordOfTheHelps) {
  struct Row {
    const char *program, *page, *pattern, *start;
  };
  const Row rows[] = {
      // clang-format off
    //  help of            page          pattern of a word                  its start in the page
    { KAVSETUP_PROGRAM,  "kavsetup.8",  R"(\n +-([a-z]+) )",                 "\n.It Fl " },
    { KAVCFG_PROGRAM,    "kavcfg.1",    R"(\n  ([a-z]+(?: [a-z]+)?) +)",     "\n.It Cm " },
    { KAVCFG_PROGRAM,    "kavcfg.1",    R"(\n-([A-Za-z]) )",                 "\n.It Fl " },
    { KAVCFG_PROGRAM,    "kavcfg.1",    R"(-(-[a-z-]+))",                    " " },
    { KAVCFG_PROGRAM,    "kavcfg.1",    R"((?::|,) ?\n?([0-9]) )",           "\n.It " },
    { KAVDB_PROGRAM,     "kavdb.1",     R"(kavdb ([a-z]+) )",                "\n.It Cm " },
    { KAVDB_PROGRAM,     "kavdb.1",     R"(-(-[a-z-]+))",                    " " },
    { KAVDB_PROGRAM,     "kavdb.1",     R"((?::|,) ?\n?([0-9]) )",           "\n.It " },
    { UPSSIM_PROGRAM,    "upssim.1",    R"(\n  -([A-Za-z]), )",              "\n.It Fl " },
    { UPSSIM_PROGRAM,    "upssim.1",    R"(-(-[a-z-]+))",                    " " },
    { UPSSIM_PROGRAM,    "upssim.1",    R"((?::|,) ?\n?([0-9]) )",           "\n.It " },
  };  // clang-format on
  for (const Row &row : rows) {
    const std::string help = run_shell(std::string(row.program) + " --help").output, text = page(row.page);
    const std::regex pattern(row.pattern);
    const std::sregex_iterator first(help.begin(), help.end(), pattern), none;
    EXPECT_NE(first, none) << row.page << " " << row.pattern;
    for (auto word = first; word != none; ++word) expect_in(text, row.start + word->str(1));
  }
}

// What does not depend on the language in a part of a page: numbers, and words that are marked as keys, options and so
// on.
std::set<std::string> facts(const std::string &part) {
  static const std::regex fact("(?:Ar|Cm|Ev|Fl|Ic|Li|Pa|Xr) \\S*[A-Za-z0-9]\\S*|[0-9]+");
  std::set<std::string> found;
  for (std::sregex_iterator at(part.begin(), part.end(), fact), end; at != end; ++at) found.insert(at->str());
  return found;
}

// A page by its headings and the entries of its lists.
std::vector<std::string> parts(const std::string &text) {
  static const std::regex start("\n(?=\\.Sh |\\.Ss |\\.It)");
  return {std::sregex_token_iterator(text.begin(), text.end(), start, -1), {}};
}

TEST(ManPages, SayTheSameInJapanese) {
  for (const char *name : {"kavcfg.1", "ups.cfg.5", "kavsetup.8"}) {
    const std::vector<std::string> english = parts(source(name, 0)), japanese = parts(source(name, 1));
    ASSERT_EQ(english.size(), japanese.size()) << name;
    for (size_t at = 0; at < english.size(); ++at) {
      const std::set<std::string> told = facts(japanese[at]);
      for (const std::string &fact : facts(english[at])) {
        EXPECT_TRUE(told.contains(fact)) << name << ": " << fact << " in\n" << english[at];
      }
    }
  }
}

TEST(ManPages, NameEachOther) {
  const std::vector<std::string> names = {"kavcfg.1", "kavdb.1", "upssim.1", "ups.cfg.5", "upstyp.ups.5", "kavsetup.8"};
  for (const std::string &from : names) {
    const std::string text = page(from), others = text.substr(text.find(".Sh SEE ALSO"));
    for (const std::string &to : names) {
      const std::string reference = ".Xr " + to.substr(0, to.size() - 2) + " " + to.back();
      EXPECT_EQ(others.find(reference) != std::string::npos, to != from) << from << ": " << reference;
    }
  }
}

TEST(ManPages, AreCleanMdoc) {
  if (run_shell("command -v mandoc").status != 0) GTEST_SKIP() << "mandoc is not installed";
  EXPECT_EQ(run_shell("cd " MAN_FOLDER " && mandoc -Tlint -Wwarning *.[158] ja/* 2>&1"), (Result{0, ""}));
}

}  // namespace

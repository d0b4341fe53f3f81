// What bash makes of a word that is begun, in a real bash.
#include <gtest/gtest.h>

#include "tools/terminal/terminal.h"

TEST(Completion, OfWordsThatOnlyTheProgramsKnow) {
  const std::pair<const char *, const char *> kCases[] = {
      // clang-format off
      {"kavcfg tim",                              "kavcfg timeline "},
      {"kavcfg set UpsMo",                        "kavcfg set UpsModel="},
      {"kavcfg set UpsModel=Halvoris\\ 7",        "kavcfg set UpsModel=Halvoris\\ 700VA\\ K-TSN007 "},
      {"kavcfg set UpTimeSupport=y",              "kavcfg set UpTimeSupport=yes "},
      {"kavcfg -u upstyp.ups get MailSu",         "kavcfg -u upstyp.ups get MailSubject "},
      {"kavcfg job add Event3 EVENTL",            "kavcfg job add Event3 EVENTLOG "},
      {"kavcfg job add 3 LOGMSG TIMING=per",      "kavcfg job add 3 LOGMSG TIMING=periodic "},
      {"kavcfg set --dr",                         "kavcfg set --dry-run "},
      {"kavdb comp",                              "kavdb compile "},
      {"kavdb check upst",                        "kavdb check upstyp.ups "},
      {"kavsetup -jap",                           "kavsetup -japanese "},
      {"upssim --gar",                            "upssim --garbage "},
      // clang-format on
  };
  Terminal t;
  t.start({.options = {"--norc", "--noprofile", "-i"}, .program = "/bin/bash"});
  t.type("PATH='" BUILD_FOLDER "':$PATH; source '" COMPLETION "'; PS1='$ '; clear\r");
  for (const auto &[typed, completed] : kCases) {
    t.type(typed + std::string("\t."));  // the dot shows where the word ends
    t.see(completed + std::string("."));
    t.type("\025");
  }
}

// The program in Japanese: every screen, in terminals of either charset, and Japanese typed into its fields.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "screen/menu.h"
#include "screen/texts.h"
#include "setup/cfgmask/texts.h"
#include "setup/events_cfg/texts.h"
#include "setup/forms/texts.h"
#include "setup/jobs/texts.h"
#include "setup/mail/texts.h"
#include "setup/settings/checks.h"
#include "setup/texts.h"
#include "tests/terminal/session.h"
#include "util/conversion.h"
#include "util/converter.h"
#include "util/tokens.h"

namespace {

// A job of each function, in list order; -1 is none of them.
constexpr int kFunctions[] = {1, 2, 3, 4, 5, 6, 7, 8, -1, 0};
constexpr char kConfiguration[] =
    "Event6=MESSAGE(\"local\",\"hello\")A;EXECUTE(\"send\",\"host\",\"6003\")P5;EXECUTEH(\"sendvik.exe\",\"-ini\","
    "\"upsext.cfg\",\"-ofi\",\"upsext.cfg\",\"-s\",\"kavlon service\",\"-t\",\"me@site\"${}${}${}${}${},\"down\")O;"
    "EXECUTE(\"alarm.bat\",\"Alarm\")O;EXECUTE(\"/bin/x\",\"-a\")T15;LOGMSG(\"note\")O;MESSAGEID(\"local\",601)R60;"
    "EVENTLOG(\"warning\",100,\"text\")O;FROB(1,2)X9;SHUTDOWN(\"60\")O;\nEvent20=LOGMSG(\"soon\")OX5;\n";

std::string utf8(std::string text) {
  const Converter converter("UTF-8", "EUC-JP");
  std::string result(2 * text.size() + 1, '\0');
  char *in = text.data(), *out = result.data();
  size_t in_left = text.size(), out_left = result.size();
  const bool valid = iconv(converter.handle, &in, &in_left, &out, &out_left) == 0;
  return valid ? result.substr(0, result.size() - out_left) : "(not EUC-JP)";
}
std::string piece(const char *text, int n) { return text_piece(text, "|", n); }
bool is_one_of(const std::string &cell, std::string_view pieces) {
  return cell.size() > 1 && pieces.find(cell) != std::string::npos;
}

// Every character is whole and the right one, and every vertical edge of a frame goes on in its column, or below the
// edge of another frame.
void check_screen(Terminal &t) {
  std::string shown = t.screen();
  for (const std::string question : {"'?'", "か?"}) {
    for (size_t at; (at = shown.find(question)) != std::string::npos;) shown.erase(at, question.size());
  }
  EXPECT_EQ(shown.find('?'), std::string::npos) << shown;
  EXPECT_EQ(shown.find("\uFFFD"), std::string::npos) << shown;
  for (int row = 0; row < 23; ++row) {
    for (int column = 0; column < 80; ++column) {
      const std::string above = t.cell(row, column).text, below = t.cell(row + 1, column).text;
      EXPECT_TRUE(!is_one_of(above, "│┤├┌┐") || is_one_of(below, "│┤├└┘─┌┐")) << row << "," << column << t.dump();
      EXPECT_TRUE(!is_one_of(below, "│┤├└┘") || is_one_of(above, "│┤├┌┐─└┘")) << row << "," << column << t.dump();
    }
  }
}

// A way through the screens.
struct Walk {
  Terminal &t;
  Start how;
  std::vector<std::string> screens;

  void start(std::vector<std::string> options = {"-japanese"}) {
    how.options = std::move(options);
    t.start(how);
  }
  // Each piece of each text must stand on the screen, whole.
  void look(std::initializer_list<std::string> texts) {
    for (const std::string &text : texts) {
      for (int n = 1; n <= cnumtoken(text.c_str(), "|"); ++n) EXPECT_TRUE(t.see(utf8(piece(text.c_str(), n))));
    }
    t.settle();
    check_screen(t);
    screens.push_back(t.screen());
  }
  // Where the first text stands then.
  Position opens(Key key, std::initializer_list<std::string> texts) {
    const std::string before = t.screen();
    t.press({key});
    look(texts);
    EXPECT_NE(screens.back(), before);
    const Position place = t.find(utf8(*texts.begin()));
    t.press({Escape});
    EXPECT_EQ(t.screen(), before);
    return place;
  }
  void help(std::initializer_list<std::string> texts) { opens(ShiftQuestion, texts); }
};

// `lists`: the fields that open one.
void see_mask(Walk &walk, int entry, int number, int fields, const std::string &lists) {
  choose(walk.t, entry);
  walk.look({keyline_label[1]});
  for (int field = 0; field < fields; ++field) {
    const auto is_field = [&](const HelpText &help) { return help.mask == number && help.field == field; };
    walk.help({std::find_if(HlpTxtArr.begin(), HlpTxtArr.end(), is_field)->text[1]});
    const bool has_list = lists.find(static_cast<char>('0' + field)) != std::string::npos;
    if (has_list) walk.opens(Enter, {entry == kUps ? model_list_title[1] : kYesNoEntries});
    if (!has_list) walk.t.press({Down});
  }
  walk.t.press({Escape});
}

void see_job(Walk &walk, int place, int function) {
  walk.t.press(std::vector(static_cast<size_t>(place - 1), Down));
  if (function < 0) return void(walk.opens(Enter, {unknown_function_label[1]}));
  walk.t.press({Enter});
  walk.look({piece(func_list[function][1], 2), funcframe_label01[1], funcframe_label04[1]});
  for (int k = 0; k < std::stoi(piece(func_list[function][1], 5)); ++k) {
    if (function == kSyslogFunction && k == 1) continue;  // never edited
    const char *const parameter = funcpar_list[function][k][1];
    walk.look({piece(parameter, 1)});
    walk.help({parameter_help_title[1], piece(parameter, 3), piece(parameter, 4)});
    if (function == kSyslogFunction && k == 0) walk.opens(Enter, {syslog_list_title[1]});
    if (function == kEmailFunction && k >= 2) {
      EXPECT_EQ(walk.opens(Enter, {attach_questions[k - 2][1], kYesNoEntries}), (Position{11, 48}));
    }
    walk.t.press({Down});
  }
  walk.help({timer_help_title[1], timing_help_label[1]});
  walk.opens(Enter, {funcframe_label03[1]});
  walk.t.press({Down});
  walk.help({repeat_time_help_label[1]});
  walk.t.press({F10});
}

void see_events(Walk &walk) {
  choose(walk.t, kEvents);
  walk.help({hlptxt_label07[1], hlptxt_label06[1]});
  walk.t.press({End});
  walk.look({MENU_EVENT_TITLE[1], eventlist[24].name[1]});
  walk.t.press({Home});
  choose(walk.t, 7);
  walk.help({hlptxt_label08[1], hlptxt_label09[1]});
  for (int i = 0; i < 10; ++i) see_job(walk, i + 1, kFunctions[i]);
  choose(walk.t, 12);
  for (const Label &function : func_list) {
    walk.help({piece(function[1], 2), piece(function[1], 3)});
    walk.t.press({Down});
  }
  walk.t.press({Escape});
  choose(walk.t, 7);
  choose(walk.t, 13);
  walk.help({hlptxt_label15[1], hlptxt_label14[1]});
  walk.t.press({Escape});
  choose(walk.t, 21);
  walk.t.press({Enter, Down});
  walk.look({funcframe_label05[1], funcframe_label06[1]});
  walk.help({scheduler_timing_help_label[1]});
  walk.t.press({F10, Escape, Escape});
}

std::vector<std::string> see_everything(Terminal &t, const Start &how) {
  Walk walk{t, how, {}};
  walk.how.columns = 79;
  walk.start();
  EXPECT_EQ(t.wait_exit(), 1);
  EXPECT_NE(t.dump().find(utf8(err_start[1])), std::string::npos) << t.dump();
  EXPECT_TRUE(t.written().ends_with("\n"));
  walk.how.columns = 80;
  walk.start();
  walk.look({first_menu_title[1], first_menu_create[1], first_menu_exit[1]});
  t.press({Enter});
  walk.look({probe_menu_automatic[1], probe_menu_skip[1]});
  t.press({Escape});
  walk.look({background_label[1], session_title[1]});
  t.write_file("ups.cfg", kConfiguration);
  walk.start();
  see_mask(walk, kUps, 1, 12, "6");
  see_mask(walk, kSystem, 2, 9, "2467");
  see_mask(walk, kPaths, 4, 4, "2");
  see_mask(walk, kMail, 6, 8, "15");
  see_events(walk);
  choose(t, kUps);
  walk.opens(F10, {model_missing_label[1]});
  t.press({Down, Down});
  t.type("99999");
  walk.opens(Down, {value_error_title[1]});
  EXPECT_NE(walk.screens.back().find("30 <= 値 <= 9999"), std::string::npos);
  walk.start({"-japanese", "-unone.ups"});
  walk.look({piece(database_error_label[1], 2)});
  std::filesystem::remove(t.path("ups.cfg"));
  std::filesystem::create_directory(t.path("ups.cfg"));
  walk.start();
  walk.look({"ups.cfg" + std::string(file_missing_label[1] + 2)});
  EXPECT_EQ(t.text(10, 46, 5), "   │#");
  return walk.screens;
}

// A terminal in EUC-JP, in a locale made for this one.
Start in_locale(const Terminal &t, const std::string &place, const std::string &charset) {
  const std::string name = place + "." + charset;
  EXPECT_EQ(std::system(("localedef -i " + place + " -f " + charset + " " + t.path(name)).c_str()), 0);
  return {.options = {"-japanese"}, .environment = {"LOCPATH=" + t.directory(), "LC_ALL=" + name}, .charset = "EUC-JP"};
}

TEST(Japanese, EveryScreenIsWholeAndTheSameInBothCharsets) {
  Terminal unicode, euc, other;
  const auto screens = see_everything(unicode, {});
  EXPECT_GT(screens.size(), 100u);
  const auto others = see_everything(euc, in_locale(euc, "ja_JP", "EUC-JP"));
  ASSERT_EQ(others.size(), screens.size());
  for (size_t i = 0; i < screens.size(); ++i) EXPECT_EQ(others[i], screens[i]);
  EXPECT_NE(euc.written().find(background_label[1]), std::string::npos) << "EUC-JP bytes";
  other.start(in_locale(other, "he_IL", "ISO-8859-8"));
  EXPECT_EQ(other.screen(), screens[0]) << "bytes go out as they are where the locale has no Japanese";
}

// --- typing

// A text of `length` bytes, another one for each `number`.
std::string some_text(size_t length, size_t number) {
  const std::string characters = first_menu_create[1];
  std::string text(length % 2, 'x');
  while (text.size() < length) text += characters.substr(2 * (number++ % (characters.size() / 2)), 2);
  return text;
}

TEST(Japanese, WhatIsTypedComesBackAfterSaveRestartAndView) {
  constexpr struct {
    const char *key;
    int entry, row, column, width;
  } kFields[] = {
      {"UpsLocation", kUps, 7, 26, 17}, {"LogFileTxt", kPaths, 9, 12, 30}, {"MailSubject", kMail, 8, 27, 48},
      {"SmtpUser", kMail, 18, 27, 48},  {"Event0", kEvents, 10, 14, 60},
  };
  Terminal t;
  t.write_file("ups.cfg", "MailEnableFlag=yes\nEvent0=LOGMSG(\"x\")O;\n");
  Start terminals[] = {Start{}, in_locale(t, "ja_JP", "EUC-JP")};
  std::string cells[std::size(kFields)];
  for (size_t round = 0; round <= 12; ++round) {
    terminals[round % 2].options = {"-japanese"};
    t.start(terminals[round % 2]);
    std::vector<std::string> typed;
    for (size_t i = 0; i < std::size(kFields); ++i) {
      const auto &[key, entry, row, column, width] = kFields[i];
      const std::string text = some_text(1 + (round * 7 + i * 3) % static_cast<size_t>(width), round + i);
      const bool is_job = entry == kEvents;
      choose(t, entry);
      if (is_job) t.press({Enter, Enter});
      while (t.cursor().row < row) t.press({Down});
      EXPECT_TRUE(round == 0 || t.text(row, column, width) == cells[i]) << t.dump();
      cells[i] = utf8(text) + std::string(static_cast<size_t>(width) - text.size(), ' ');
      t.type(cells[i]);
      t.press(is_job ? std::vector{F10, Escape, Escape} : std::vector{Escape});
      typed.push_back(is_job ? "LOGMSG(\"" + text + "\")O;" : text);
    }
    save_and_exit(t);
    for (size_t i = 0; i < std::size(kFields); ++i) EXPECT_EQ(setting(t, kFields[i].key), typed[i]);
  }
  const std::string file = t.file("ups.cfg");
  saveEUC2UTF(t.path("ups.cfg").c_str(), t.path("unicode").c_str());
  EXPECT_EQ(t.file("unicode"), utf8(file)) << "valid throughout";
  t.start();  // in English
  for (const int entry : {kUps, kPaths, kMail}) {
    choose(t, entry);
    t.press({Down, Down, Down, Down, Down, Down, Down, Down, Escape});
  }
  save_and_exit(t);
  EXPECT_EQ(t.file("ups.cfg"), file);
}

}  // namespace

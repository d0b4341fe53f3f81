// The program in Japanese: every screen, in terminals of either charset, and Japanese typed into its fields.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>

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
std::string piece(const std::string &text, int n) {
  char buffer[1024];
  return ctoken(buffer, sizeof buffer, text.c_str(), "|", n);
}
std::string trimmed(const std::string &text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}
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
  for (int row = 0; row < 23; row++) {
    for (int column = 0; column < 80; column++) {
      const std::string above = t.cell(row, column).text, below = t.cell(row + 1, column).text;
      EXPECT_TRUE(!is_one_of(above, "│┤├┌┐") || is_one_of(below, "│┤├└┘─┌┐")) << row << "," << column << t.dump();
      EXPECT_TRUE(!is_one_of(below, "│┤├└┘") || is_one_of(above, "│┤├┌┐─└┘")) << row << "," << column << t.dump();
    }
  }
}

std::string highlighted(Terminal &t, int row) {
  std::string text;
  for (int column = 0; column < 80; column++) {
    const ScreenCell cell = t.cell(row, column);
    if (cell.bold && cell.foreground == kRed) text += cell.text;
  }
  return trimmed(text);
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
      for (int n = 1; n <= cnumtoken(text.c_str(), "|"); n++) EXPECT_TRUE(t.see(utf8(trimmed(piece(text, n)))));
    }
    t.settle();
    check_screen(t);
    screens.push_back(t.screen());
  }
  void opens(Key key, std::initializer_list<std::string> texts) {
    const std::string before = t.screen();
    t.press({key});
    look(texts);
    EXPECT_NE(screens.back(), before);
    t.press({Escape});
    EXPECT_EQ(t.screen(), before);
  }
  void help(std::initializer_list<std::string> texts) { opens(ShiftQuestion, texts); }
};

// `lists`: the fields that open one.
void see_mask(Walk &walk, int entry, int number, int fields, const std::string &lists) {
  choose(walk.t, entry);
  walk.look({keyline_label[1]});
  for (int field = 0; field < fields; field++) {
    const auto is_field = [&](const HelpText &help) { return help.mask == number && help.field == field; };
    walk.help({std::find_if(HlpTxtArr.begin(), HlpTxtArr.end(), is_field)->text[1]});
    const bool list = lists.find(static_cast<char>('0' + field)) != std::string::npos;
    list ? walk.opens(Enter, {entry == kUps ? model_list_title[1] : kYesNoEntries}) : walk.t.press({Down});
  }
  walk.t.press({Escape});
}

void see_job(Walk &walk, int place, int function) {
  walk.t.press(std::vector(static_cast<size_t>(place - 1), Down));
  if (function < 0) return walk.opens(Enter, {unknown_function_label[1]});
  walk.t.press({Enter});
  walk.look({piece(func_list[function][1], 2), funcframe_label01[1], funcframe_label04[1]});
  for (int k = 0; k < std::stoi(piece(func_list[function][1], 5)); k++) {
    if (function == kSyslogFunction && k == 1) continue;  // never edited
    const std::string parameter = funcpar_list[function][k][1];
    walk.look({piece(parameter, 1)});
    walk.help({parameter_help_title[1], piece(parameter, 3), piece(parameter, 4)});
    if (function == kSyslogFunction && k == 0) walk.opens(Enter, {syslog_list_title[1]});
    if (function == kEmailFunction && k >= 2) walk.opens(Enter, {attach_questions[k - 2][1], kYesNoEntries});
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
  for (int i = 0; i < 10; i++) see_job(walk, i + 1, kFunctions[i]);
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
  for (int i = 0; i < 8; i++) {
    EXPECT_EQ(highlighted(t, 10 + i), utf8(trimmed(session_entries[i][1])));
    t.press({Down});
  }
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
  return walk.screens;
}

// A terminal in EUC-JP, in a locale made for this one.
Start euc_jp(const Terminal &t) {
  EXPECT_EQ(std::system(("localedef -i ja_JP -f EUC-JP " + t.path("ja_JP.eucJP")).c_str()), 0);
  return {.environment = {"LOCPATH=" + t.directory(), "LC_ALL=ja_JP.eucJP"}, .charset = "EUC-JP"};
}

TEST(Japanese, EveryScreenIsWholeAndTheSameInBothCharsets) {
  Terminal unicode, euc, other;
  const auto screens = see_everything(unicode, {});
  EXPECT_GT(screens.size(), 100u);
  const auto others = see_everything(euc, euc_jp(euc));
  ASSERT_EQ(others.size(), screens.size());
  for (size_t i = 0; i < screens.size(); i++) EXPECT_EQ(others[i], screens[i]);
  EXPECT_NE(euc.written().find(background_label[1]), std::string::npos) << "EUC-JP bytes";
  other.start({.options = {"-japanese"}, .environment = {"LC_ALL=C"}, .charset = "EUC-JP"});
  EXPECT_EQ(other.screen(), screens[0]) << "bytes go out as they are where the locale has no Japanese";
}

// --- typing

// A text of `length` bytes that every text field takes: kana, kanji and letters, no blank at an end.
std::string random_text(std::mt19937 &random, size_t length) {
  const auto pick = [&](int from, int to) {
    return static_cast<char>(std::uniform_int_distribution(from, to)(random));
  };
  std::string text;
  while (text.size() < length) {
    const int kind = length - text.size() < 2 ? 3 : pick(0, text.empty() ? 3 : 4);
    if (kind == 0) text += {pick(0xA4, 0xA5), pick(0xA1, 0xF3)};
    if (kind == 1 || kind == 2) text += {pick(0xB0, 0xCE), pick(0xA1, 0xFE)};
    if (kind == 3) text += pick('a', 'z');
    if (kind == 4) text += ' ';
  }
  return text;
}

std::string filled(const std::string &text, int length) {
  return utf8(text) + std::string(static_cast<size_t>(length) - text.size(), ' ');
}

TEST(Japanese, WhatIsTypedComesBackAfterSaveRestartAndView) {
  const char *kKeys[] = {"UpsLocation", "LogFileTxt", "MailSubject", "MailFromAddr", "SmtpHost", "SmtpUser"};
  std::mt19937 random(6);
  Terminal t;
  t.write_file("ups.cfg", "MailEnableFlag=yes\nEvent0=LOGMSG(\"x\")O;\n");
  Start terminals[] = {Start{}, euc_jp(t)};
  std::vector<std::string> typed, saved;
  // The field with the cursor holds what was saved; it is overwritten with a text of `length`.
  const auto view_and_fill = [&](int row, int column, int width, size_t length) {
    for (int i = 0; i < 8 && t.cursor().row != row; i++) t.press({Down});
    EXPECT_TRUE(saved.empty() || t.text(row, column, width) == filled(saved[typed.size()], width));
    typed.push_back(random_text(random, length));
    t.type(filled(typed.back(), width));
    EXPECT_EQ(t.text(row, column, width), filled(typed.back(), width));
  };
  for (size_t round = 0; round <= 12; round++, saved = std::exchange(typed, {})) {
    terminals[round % 2].options = {"-japanese"};
    t.start(terminals[round % 2]);
    choose(t, kUps);
    view_and_fill(7, 26, 17, 1 + random() % 17);
    t.press({Escape});
    choose(t, kPaths);
    view_and_fill(9, 12, 30, 1 + random() % 30);
    t.press({Escape});
    choose(t, kMail);
    for (size_t i = 0; i < 4; i++)
      view_and_fill(i < 3 ? std::array{8, 12, 13}[i] : 18, 27, 48, 1 + (4 * round + i) % 48);
    t.press({Escape});
    choose(t, kEvents);
    t.press({Enter, Enter});
    view_and_fill(10, 14, 60, 1 + random() % 60);
    t.press({F10, Escape, Escape});
    save_and_exit(t);
    for (size_t i = 0; i < std::size(kKeys); i++) EXPECT_EQ(setting(t, kKeys[i]), typed[i]);
    EXPECT_EQ(setting(t, "Event0"), "LOGMSG(\"" + typed.back() + "\")O;");
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

TEST(Japanese, IsEditedByCellsAndAHalfIsStoredAsABlank) {
  Terminal t;
  const std::string full(29, 'x');  // one byte less than the field has
  t.start({.options = {"-japanese"},
           .files = {{"ups.cfg", "UpsLocation=Unknown\nDataLoggingName=" + full + "\xC0\xDF\n"}}});
  choose(t, kUps);
  const struct {
    std::vector<Key> keys;
    const char *typed, *field;
    int cursor, beeps;
  } kSteps[] = {
      {{}, "あいう", "あいうn", 6, 0},
      {{Left}, "x", "あい?xn", 6, 0},
      {{Left, Left}, "か", "あいかn", 6, 0},
      {{}, "\u00E9", "あいかn", 6, 1},    // no character of EUC-JP's two bytes: e acute,
      {{}, "\uFF71", "あいかn", 6, 1},    // half-width kana,
      {{}, "\u20AC", "あいかn", 6, 1},    // none at all
      {{}, "\xF0\x80", "あいかn", 6, 1},  // broken
      {{Backspace}, "", "あい?n ", 5, 0},
      {{Left, Left}, "電", "あ?電n ", 5, 0},
      {{}, "123456789ABい", "あ?電12", 16, 1},  // only half of it would fit
      {{F10}, "東z", "z? 電12", 1, 0},          // the character closes the box that the unknown model brings
  };
  int bells = 0;
  for (const auto &step : kSteps) {
    t.press(step.keys);
    t.type(step.typed);
    EXPECT_EQ(t.text(7, 26, 7), step.field);
    EXPECT_EQ(t.cursor(), (Position{7, 26 + step.cursor}));
    EXPECT_EQ(t.bells(), bells += step.beeps) << step.typed;
  }
  t.press({Escape});
  save_and_exit(t);
  EXPECT_EQ(utf8(setting(t, "UpsLocation")), "z  電123456789AB");
  EXPECT_EQ(setting(t, "DataLoggingName"), full);
}

}  // namespace

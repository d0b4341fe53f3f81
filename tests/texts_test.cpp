// All texts of the program: each Japanese text does the work of its English twin and fits its place.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "screen/texts.h"
#include "setup/cfgmask/texts.h"
#include "setup/events_cfg/job_language.h"
#include "setup/mail/texts.h"
#include "setup/texts.h"
#include "setup/upsprobe_texts.h"
#include "util/tokens.h"

namespace {

// The pairs in a source file: braces around two strings, each of one literal and more.
std::vector<std::pair<std::string, std::string>> pairs_in(const std::string &source) {
  std::vector<std::pair<std::string, std::string>> pairs;
  std::vector<std::string> strings;
  bool continues = false;  // the next literal belongs to the string before
  for (size_t at = 0; at < source.size(); ++at) {
    const bool raw = source.compare(at, 3, "R\"(") == 0;
    if (source.compare(at, 2, "//") == 0) at = source.find('\n', at);
    if (raw || source[at] == '"') {
      if (!continues) strings.emplace_back();
      continues = true;
      const size_t end = raw ? source.find(")\"", at) : 0;
      if (raw) strings.back() += source.substr(at + 3, end - at - 3);
      for (++at; !raw && source[at] != '"'; ++at) strings.back() += source[at += source[at] == '\\'];
      if (raw) at = end + 1;
    }
    if (source[at] == '}' && strings.size() == 2) pairs.emplace_back(strings[0], strings[1]);
    if (source[at] == '{' || source[at] == '}') strings.clear();
    if (source[at] == ',' || source[at] == '{') continues = false;
  }
  return pairs;
}

// The "|" pieces of a text; its placeholders: "%s", "%ld", "#1", "#SHUTDOWNTIME".
std::vector<std::string> pieces(const char *text) {
  std::vector<std::string> found;
  char piece[1024];
  for (int n = 1; n <= cnumtoken(text, "|"); ++n) found.emplace_back(ctoken(piece, sizeof(piece), text, "|", n));
  return found;
}
std::vector<std::string> placeholders(std::string_view text) {
  std::vector<std::string> found;
  for (size_t at = text.find_first_of("%#"); at != std::string::npos; at = text.find_first_of("%#", at + 1)) {
    const size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", at + 1);
    found.emplace_back(text.substr(at, end - at));
  }
  return found;
}

// Two-byte kana and kanji and three marks, which every terminal shows two columns wide (East Asian width W); beside
// them only ASCII.
bool is_plain_euc_jp(std::string_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) continue;
    const std::string_view character = text.substr(i++, 2);
    const bool mark = character == "\xA1\xA2" || character == "\xA1\xA3" || character == "\xA1\xBC";
    if (!mark && lead != 0xA4 && lead != 0xA5 && (lead < 0xB0 || lead > 0xF4)) return false;
    if (character.size() < 2 || static_cast<unsigned char>(character[1]) < 0xA1) return false;
  }
  return true;
}
bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void fit(const Label &label, size_t widest) {
  for (const char *text : label) {
    for (const std::string &piece : pieces(text)) EXPECT_LE(piece.size(), widest) << text;
  }
}

// The widest line in bytes, and the labels that have that room.
struct Room {
  size_t widest;
  std::vector<const Label *> labels;
};
const Room kRooms[] = {
    {79, {&err_start}},
    {70, {&background_label,       &first_menu_title,
          &first_menu_create,      &first_menu_exit,
          &probe_menu_automatic,   &probe_menu_skip,
          &session_title,          &MENU_EVENT_TITLE,
          &MENU_EVENT_ADD,         &MENU_EVENT_DEL,
          &MENU_EVENT_EXIT,        &hlptxt_label06,
          &hlptxt_label07,         &hlptxt_label08,
          &hlptxt_label09,         &hlptxt_label14,
          &hlptxt_label15,         &probeframe_label02,
          &probeframe_label05,     &probeframe_label06,
          &probeframe_label07,     &fault_bracket_label,
          &fault_blank_label,      &fault_empty_label,
          &fault_cut_label,        &model_missing_label,
          &unknown_function_label, &value_error_title,
          &value_error_label,      &empty_field_label,
          &parameter_help_title,   &timer_help_title,
          &timing_help_label,      &scheduler_timing_help_label,
          &repeat_time_help_label, &scheduler_time_help_label}},
    {56, {&database_error_label, &file_exists_label, &file_open_label, &no_events_label, &probeframe_label01}},
    {33, {&file_missing_label}},
    {34,
     {&model_list_title, &mailframe_label09, &mailframe_label10, &mailframe_label11, &pathframe_label01,
      &pathframe_label02}},
    {31,
     {&shutdown_list_title, &ups_shutdown_list_title, &ups_restore_list_title, &fixed_shutdown_list_title,
      &logging_list_title, &extra_job_list_title, &attach_questions[0], &attach_questions[1], &attach_questions[2],
      &attach_questions[3]}},
    {20,
     {&probe_cancel_label, &probe_ok_label, &probeframe_label03, &probeframe_label04, &funcframe_label01,
      &funcframe_label03, &syslog_list_title}},
    {18, {&list_hint_label, &pathframe_label03}},
    {14, {&error_label}},
    {9, {&funcframe_label04, &funcframe_label05}},
};

// As long as the English ones: the colons, and what stands behind, keep their columns.
const Label *const kLikeEnglish[] = {
    &keyline_label,        &stdframe_label01,     &stdframe_label02,     &stdframe_label03,     &stdframe_label04,
    &stdframe_label05,     &stdframe_label06,     &stdframe_label07,     &stdframe_label08,     &stdframe_label09,
    &stdframe_label10,     &stdframe_label11,     &stdframe_label12,     &stdframe_label13,     &customframe_label01,
    &customframe_label02,  &customframe_label03,  &customframe_label04,  &customframe_label05,  &customframe_label06,
    &customframe_label07,  &customframe_label08,  &customframe_label09,  &pathframe_label04,    &specialframe_label01,
    &specialframe_label02, &specialframe_label03, &specialframe_label04, &specialframe_label05, &mailframe_label01,
    &mailframe_label02,    &mailframe_label03,    &mailframe_label04,    &mailframe_label05,    &mailframe_label06,
    &mailframe_label07,    &mailframe_label08,    &funcframe_label06,
};

}  // namespace

TEST(Texts, JapaneseFollowsEnglish) {
  namespace fs = std::filesystem;
  size_t count = 0;
  for (const auto &entry : fs::recursive_directory_iterator(CONVERTED_TEXTS)) {
    if (entry.path().extension() != ".cpp") continue;
    std::ifstream file(entry.path());
    for (const auto &[english, japanese] : pairs_in({std::istreambuf_iterator<char>(file), {}})) {
      EXPECT_TRUE(is_ascii(english)) << english;
      EXPECT_TRUE(is_plain_euc_jp(japanese)) << english;
      EXPECT_EQ(english.empty(), japanese.empty()) << english;
      EXPECT_EQ(placeholders(english), placeholders(japanese)) << english;
      EXPECT_EQ(pieces(english.c_str()).size(), pieces(japanese.c_str()).size()) << english;
      ++count;
    }
  }
  EXPECT_GT(count, 250u);
}

TEST(Texts, FitTheirPlaces) {
  for (const Room &room : kRooms) {
    for (const Label *label : room.labels) fit(*label, room.widest);
  }
  for (const Label *label : kLikeEnglish) {
    const std::string_view english = (*label)[0], japanese = (*label)[1];
    EXPECT_EQ(english.size(), japanese.size()) << english;
    EXPECT_EQ(english.ends_with(':'), japanese.ends_with(':')) << english;
  }
  for (const Label &entry : session_entries) fit(entry, 72);
  for (const Label &timing : funcframe_label02) EXPECT_EQ(std::string_view(timing[1]).size(), 9U);
  for (const Label &level : funcframe_label07) EXPECT_STREQ(level[0], level[1]);
  fit(yes_no_label, 13);  // below the shortest question
  for (const HelpText &help : HlpTxtArr) {
    fit(help.text, 74);
    EXPECT_LT(std::string_view(help.text[1]).size(), 512U);
  }
  for (const EventTexts &event : eventlist) {
    fit(event.name, 64);
    fit(event.jobs, 1016);
    const size_t more = &event == &eventlist[18] ? 1 : 0;
    EXPECT_EQ(split_joblist(event.jobs[0]).size() + more, split_joblist(event.jobs[1]).size()) << event.name[0];
  }
}

TEST(Texts, CatalogueSaysTheSameToTheMonitorInBothLanguages) {
  constexpr size_t kLongest[] = {127, 64, 70, 50, 1};  // name, title, description, summary, count
  for (int i = 0; i < kFunctionCount; ++i) {
    const auto english = pieces(func_list[i][0]), japanese = pieces(func_list[i][1]);
    EXPECT_EQ(english[0] + english[4], japanese[0] + japanese[4]);
    for (size_t k = 0; k < std::size(kLongest); ++k) EXPECT_LE(japanese[k].size(), kLongest[k]);
    for (int k = 0; k < std::stoi(english[4]); ++k) {
      const auto parameter = pieces(funcpar_list[i][k][0]), twin = pieces(funcpar_list[i][k][1]);
      EXPECT_EQ(parameter[1], twin[1]);
      EXPECT_LE(twin[0].size(), 9U);
      EXPECT_LE(std::max(twin[2].size(), twin[3].size()), 74U) << parameter[0];  // inside the help box
    }
  }
}

TEST(Texts, DefaultValuesFitTheMasks) {
  init_function_tab();
  for (const EventTexts &event : eventlist) {
    for (const std::string &text : split_joblist((event.jobs[0] + std::string(event.jobs[1])).c_str())) {
      JobRec job;
      parse_job(text.c_str(), 0, job);
      for (int k = 0; k < job.param_count; ++k) {
        EXPECT_LE(std::string_view(job.params[k].value).size(), job_mask(job.function).fields[k].length) << text;
      }
    }
  }
}

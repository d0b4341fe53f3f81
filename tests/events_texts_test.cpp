// The texts of the event and job editor: each Japanese text does the work of its English twin and fits its place.
#include <gtest/gtest.h>

#include "setup/events_cfg/job_language.h"
#include "util/tokens.h"

namespace {

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

// Two-byte kana, kanji and the three marks in use, which every terminal shows two columns wide; beside them only ASCII.
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

// `longest`: bytes of each piece.
void compare(std::span<const Label> labels, size_t longest) {
  for (const auto &[english, japanese] : labels) {
    EXPECT_EQ(placeholders(english), placeholders(japanese)) << english;
    EXPECT_TRUE(is_plain_euc_jp(japanese)) << english;
    EXPECT_EQ(pieces(english).size(), pieces(japanese).size()) << english;
    for (const char *text : {english, japanese}) {
      for (const std::string &piece : pieces(text)) EXPECT_LE(piece.size(), longest) << english;
    }
  }
}

}  // namespace

TEST(EventTexts, JapaneseFollowsEnglishAndFits) {
  for (const Label *menu_text : {&MENU_EVENT_TITLE, &MENU_EVENT_ADD, &MENU_EVENT_DEL, &MENU_EVENT_EXIT,
                                 &no_events_label, &unknown_function_label, &hlptxt_label06, &hlptxt_label07,
                                 &hlptxt_label08, &hlptxt_label09, &hlptxt_label14, &hlptxt_label15}) {
    compare({menu_text, 1}, 68);
  }
  for (const Label *mask_text :
       {&funcframe_label01, &empty_field_label, &parameter_help_title, &timer_help_title, &timing_help_label,
        &scheduler_timing_help_label, &repeat_time_help_label, &scheduler_time_help_label}) {
    compare({mask_text, 1}, 73);
  }
  for (const Label *title : {&funcframe_label03, &syslog_list_title}) compare({title, 1}, 16);
  for (const Label *word : {&funcframe_label04, &funcframe_label05, &funcframe_label06}) compare({word, 1}, 9);
  compare(funcframe_label02, 9);
  compare(attach_questions, 31);
  for (const EventTexts &event : eventlist) {
    compare({&event.name, 1}, 64);
    compare({&event.jobs, 1}, 1016);
  }
  for (const Label &label : funcframe_label02) EXPECT_EQ(std::string_view(label[1]).size(), 9U);
}

TEST(EventTexts, CatalogueSaysTheSameToTheMonitorInBothLanguages) {
  constexpr size_t kLongest[] = {127, 64, 70, 50, 1};  // name, title, description, summary, count
  for (int i = 0; i < kFunctionCount; ++i) {
    compare({&func_list[i], 1}, 127);
    compare(funcpar_list[i], 76);
    const auto english = pieces(func_list[i][0]), japanese = pieces(func_list[i][1]);
    EXPECT_EQ(english[0] + english[4], japanese[0] + japanese[4]);
    for (size_t k = 0; k < std::size(kLongest); ++k) EXPECT_LE(japanese[k].size(), kLongest[k]);
    for (int k = 0; k < std::stoi(english[4]); ++k) {
      const auto parameter = pieces(funcpar_list[i][k][0]), twin = pieces(funcpar_list[i][k][1]);
      EXPECT_EQ(parameter[1], twin[1]);
      EXPECT_LE(twin[0].size(), 9U);
      EXPECT_LE(std::max(twin[2].size(), twin[3].size()), 73U) << parameter[0];  // inside the help box
    }
  }
}

TEST(EventTexts, DefaultValuesFitTheMasks) {
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

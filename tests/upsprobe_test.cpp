#include <gtest/gtest.h>

#include <tuple>

#include "screen/image.h"
#include "screen/keys.h"
#include "setup/cfgmask/masks.h"
#include "setup/configuration/configuration.h"
#include "setup/detection/detection.h"
#include "setup/settings/extra_jobs.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "setup/upsprobe.h"
#include "tests/curses_screen.h"
#include "util/text.h"

namespace {

TEST(Detection, TakesTheCodeOutOfAnAnswer) {
  const std::tuple<const char *, int, const char *> cases[] = {
      {"%MK-TRN010VQ12\r", 1, "K-TRN010VQ12"},
      {"%MK-TRN07VQ21 \rtail", 1, "K-TRN07VQ21"},
      {"", 1, ""},
      {"%mK", kNoModelAnswer, ""},
      {" %MK", kNoModelAnswer, ""},
      {"%", kNoModelAnswer, ""},
      {"%MK-TRN010VQ12-and-much-more\r", 1, "K-TRN010VQ12-an"},
  };
  for (const auto &[answer, result, expected] : cases) {
    char code[16] = "?";
    EXPECT_EQ(prepare_string(code, sizeof code, answer), result) << answer;
    EXPECT_STREQ(code, expected);
  }
  char code[] = "code";
  EXPECT_EQ(prepare_string(nullptr, 5, "%MK") + prepare_string(code, 5, nullptr) + prepare_string(code, 0, "%MK"), 0);
  EXPECT_STREQ(code, "code");
  EXPECT_EQ(prepare_string(code, 1, "%MK"), 1);
}

TEST(Detection, FindsTheModelOfACode) {
  int row = 0;  // an unreadable record, then names as the database has them
  for (const char *name :
       {"", "Halvoris 3000VA K-TSN030", "ZELK K-TSN030-200", "K-TRN010VQ-110", "K-TRN007VQ-208", "LAST"}) {
    UpsTypeArr[row] = {};
    cpynstr(UpsTypeArr[row++].ups_name, name);
  }
  const std::tuple<const char *, const char *, const char *> cases[] = {
      {"K-TSN030", "Halvoris 3000VA K-TSN030", "Halvoris 3000VA"},
      {"K-TSN030-200", "ZELK K-TSN030-200", "ZELK K-TSN030-200"},
      {"K-TRN010VQ12", "K-TRN010VQ-110", "K-TRN010VQ-110"},
      {"K-TRN07VQ21", "K-TRN007VQ-208", "K-TRN007VQ-208"},  // its code in the table ends with a blank
      {"K-TRN07VQ20", nullptr, "K-TRN007VQ-200"},           // known, but not in this database
      {"X-1", nullptr, "X-1"},
      {"", "Halvoris 3000VA K-TSN030", "Halvoris 500VA"},  // kept: an answer without a code is the first of everything
  };
  for (const auto &[text, model, shown] : cases) {
    char name[64] = "", display[64];
    const int size = model == nullptr ? 64 : lenstr(model) + 1;
    EXPECT_STREQ(check_model_list(name, size, text), model) << text;
    EXPECT_EQ(check_model_list(name, size - 1, text), nullptr);
    EXPECT_STREQ(get_model_string(display, sizeof display, text), shown);
  }
}

// No key closes the frame: the program leaves when the input is at its end.
void leave_at_found_frame() {
  const CursesScreen screen;
  keep_work = [] { std::fputs(rows_of(curscr, 9, 12).c_str(), stderr); };
  if (dup2(fileno(screen.device), STDIN_FILENO) == 0) draw_found_frame(stdscr, 0, "", "", "/dev/ttyS1", "Model");
}

TEST(Detection, ShowsWhatItFound) {
  EXPECT_EXIT(leave_at_found_frame(), testing::ExitedWithCode(EXIT_FAILURE),
              "   lq{72}k\\|   x  The following UPS models and the communication ports were detected.   x\\|"
              "   x {23}Is this configuration OK .{24}x\\|   x {72}x\\|"
              "   x    UPS Type: {50}Model    x\\|   x    Comport: {46}/dev/ttyS1    x\\|   x {72}x\\|   x {72}x\\|"
              "   tq{72}u\\|   x    <ENTER>=OK {41}<ESC>=CANCEL     x\\|   mq{72}j\\|");
}

TEST(Masks, AreFilledFromAModelAndShown) {
  const CursesScreen screen;
  initscrio();
  init_all_tabs();
  EXPECT_EQ(init_masklib(), 0);
  UpsTypeArr[0] = {"K-TRN010VQ-110", 0, 1, 1100, 700, 9, 8};
  draw_std_frame(stdscr, kAttrNormal);
  fill_ups_rec(stdscr, &UpsTypeArr[0]);
  fill_baudrate(stdscr, 0);
  std::string values;
  for (int row = 7; row < 13; ++row) values += row_of(stdscr, row, 24, 15);
  EXPECT_EQ(values, "K-TRN010VQ-110 serial              1100            700           9              8         ");
  clear();
  show_cfg_maske(stdscr, &StdRec, StdTabArr, kAttrNormal);
  EXPECT_NE(rows_of(stdscr).find("K-TRN010VQ-110"), std::string::npos) << rows_of(stdscr);
  type_ahead({kKeyReturn, kKeyReturn, kKeyF10});
  EXPECT_TRUE(edit_special_cfg(stdscr, "", kAttrNormal) == 0 && SpecialRec.job[0].enabled == std::string("yes"));
}

}  // namespace

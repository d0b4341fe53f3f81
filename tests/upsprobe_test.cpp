#include <gtest/gtest.h>

#include "screen/maskloop.h"
#include "setup/cfgmask/settings.h"
#include "setup/upsprobe.h"
#include "util/text.h"

namespace {

TEST(Detection, TakesTheCodeOutOfAnAnswer) {
  const struct {
    const char *answer;
    int result;
    const char *code;
  } cases[] = {
      {"%MK-TRN010VQ12\r", 1, "K-TRN010VQ12"},
      {"%MK-TRN010VQ12", 1, "K-TRN010VQ12"},
      {"%MK-TRN07VQ21 \rtail", 1, "K-TRN07VQ21"},
      {"%M\r", 1, ""},
      {"", 1, ""},
      {"K-TRN010VQ12\r", kNoModelAnswer, ""},
      {"%mK", kNoModelAnswer, ""},
      {"%", kNoModelAnswer, ""},
      {" %MK", kNoModelAnswer, ""},
      {"%MK-TRN010VQ12-and-much-more\r", 1, "K-TRN010VQ12-an"},
  };
  for (const auto &c : cases) {
    char code[16] = "?";
    EXPECT_EQ(prepare_string(code, sizeof code, c.answer), c.result) << c.answer;
    EXPECT_STREQ(code, c.code);
  }
  EXPECT_EQ(prepare_string(nullptr, 4, "%M"), 0);
}

// The list of models: an unreadable record, then names as the database has them.
void set_models(std::initializer_list<const char *> names) {
  int row = 0;
  for (const char *name : names) {
    UpsTypeArr[row] = {};
    cpynstr(UpsTypeArr[row++].ups_name, name);
  }
  UpsTypeArr[row] = {"LAST", 0, 0, 0, 0, 0, 0};
}

TEST(Detection, FindsTheModelOfACode) {
  set_models({"", "Halvoris 3000VA K-TSN030", "ZELK K-TSN030-200", "K-TRN010VQ-110", "K-TRN007VQ-208"});
  const struct {
    const char *text;
    const char *model;    // null: none
    const char *display;  // the name that a person sees
  } cases[] = {
      {"K-TSN030", "Halvoris 3000VA K-TSN030", "Halvoris 3000VA"},
      {"K-TSN030-200", "ZELK K-TSN030-200", "ZELK K-TSN030-200"},
      {"K-TRN010VQ12", "K-TRN010VQ-110", "K-TRN010VQ-110"},
      {"K-TRN07VQ21", "K-TRN007VQ-208", "K-TRN007VQ-208"},  // its code in the table ends with a blank
      {"K-TRN07VQ20", nullptr, "K-TRN007VQ-200"},           // known, but not in this database
      {"X-1", nullptr, "X-1"},
      {"", "Halvoris 3000VA K-TSN030", "Halvoris 500VA"},  // kept: an answer without a code is the first of everything
  };
  for (const auto &c : cases) {
    char name[64] = "";
    const char *model = check_model_list(name, sizeof name, c.text);
    if (c.model == nullptr) {
      EXPECT_EQ(model, nullptr) << c.text;
    } else {
      EXPECT_STREQ(model, c.model) << c.text;
    }
    char display[64];
    EXPECT_STREQ(get_model_string(display, sizeof display, c.text), c.display);
  }
  char small[10];
  EXPECT_EQ(check_model_list(small, sizeof small, "K-TSN030"), nullptr);
  EXPECT_STREQ(get_model_string(small, sizeof small, "K-TSN030"), "K-TSN030");
}

TEST(MaskStep, KeysMoveLeaveAndAreChecked) {
  constexpr unsigned kJob = kFinishKeys | kPickStays | kCheckEveryKey | kRefuseAtEnd;
  const struct {
    int field, key;
    unsigned rules;
    int next;
    bool finish, leaving, check;
  } cases[] = {
      {0, kKeyDown, kFinishKeys, 1, false, false, true},
      {3, kKeyDown, kFinishKeys, 3, false, false, false},
      {0, kKeyUp, kFinishKeys, 0, false, false, false},
      {1, kKeyEnd, kFinishKeys, 3, false, false, true},
      {1, kKeyEscape, kFinishKeys, 1, false, true, true},
      {3, kKeyTab, kFinishKeys, 4, false, true, true},
      {1, kKeyF10, kFinishKeys, 1, true, true, false},
      {3, kKeyReturn, kFinishKeys, 3, true, true, true},
      {1, kKeyF10, 0, 1, false, false, false},
      {3, kKeyReturn, 0, 3, false, false, false},
      {1, kKeyF10, kJob, 1, true, true, true},
      {3, kKeyDown, kJob, 3, false, false, true},
  };
  for (const auto &c : cases) {
    const MaskStep step = mask_step(c.field, c.key, 4, c.rules);
    EXPECT_EQ(step.next, c.next) << c.field << " " << c.key;
    EXPECT_EQ(step.finish, c.finish) << c.field << " " << c.key;
    EXPECT_EQ(step.leaving, c.leaving) << c.field << " " << c.key;
    EXPECT_EQ(step.check, c.check) << c.field << " " << c.key;
  }
}

}  // namespace

#include "upstools/cfg_obj.h"

#include <gtest/gtest.h>

#include <string>

TEST(CStrArr, AddsRemovesAndCopies) {
  CStr text;
  CStr_Init(&text);
  ASSERT_EQ(CStr_AddN(&text, "abcdef", 3) + CStr_Add(&text, std::string(129, 'x').c_str()), 2);
  EXPECT_EQ(text.nSize, 132 + 139);  // a margin, and eleven bytes spare
  EXPECT_EQ(text.Str, "abc" + std::string(129, 'x'));
  CStr_Empty(&text);
  EXPECT_EQ(CStr_AddN(&text, "abc", 0), 1);
  EXPECT_EQ(text.Str, nullptr);
  CStrArr names;
  CStrArr_Init(&names);
  CStrArr_Del(&names, -7, 0);  // nothing is asked of an empty array
  for (int i = 0; i < 11; ++i) ASSERT_EQ(CStrArr_Add(&names, std::to_string(i).c_str()), 1);
  EXPECT_EQ(names.nMaxCount, 13);
  ASSERT_EQ(CStrArr_AddN(&names, "xyz", 0), 1);
  EXPECT_EQ(names.nMaxCount, 24);
  EXPECT_STREQ(CStrArr_GetStr(&names, 11), "");

  CStrArr_Del(&names, 2, 8);
  CStrArr copy = {};
  ASSERT_EQ(CStrArr_Add(&copy, "old"), 1);
  ASSERT_EQ(CStrArr_Copy(&copy, &names), 1);
  CStrArr_Del(&names, 1, -1);
  EXPECT_EQ(names.nCount, 1);
  ASSERT_EQ(copy.nCount, 4);
  EXPECT_EQ(std::string(CStrArr_GetStr(&copy, 1)) + CStrArr_GetStr(&copy, 2), "110");
  CStrArr_Del(&copy, 1, 3);
  CStrArr_Empty(&names);
  CStrArr_Empty(&copy);
  EXPECT_EQ(copy.Arr, nullptr);
}

TEST(CStrArrDeathTest, BrokenPreconditionsStopTheProgram) {
  static CStr text = {};
  static CStrArr one = {};
  ASSERT_EQ(CStrArr_Add(&one, "a"), 1);
  const std::pair<void (*)(), const char *> cases[] = {
      // clang-format off
      {[] { (void)CStr_AddN(&text, "ab", 3); },           "nMax<=slen"},
      {[] { (void)CStr_AddN(&text, "ab", -2); },          "nMax>=0 .. nMax==-1"},
      {[] { CStrArr_GetStr(&one, -1); },                  "nIndex>=0"},
      {[] { CStrArr_GetStr(&one, 1); },                   "nIndex<Obj->nCount"},
      {[] { CStrArr_Del(&one, -1, 1); },                  "nIndex>=0"},
      {[] { CStrArr_Del(&one, 1, 1); },                   "nIndex<Obj->nCount"},
      {[] { CStrArr_Del(&one, 0, 0); },                   "nDelCount>0 .. nDelCount==-1"},
      {[] { CStrArr_Del(&one, 0, 2); },                   "nDelCount==-1 .. Obj->nCount-nDelCount-nIndex>=0"},
      {[] { (void)CStrArr_Copy(&one, &one); },            "Dest!=Src"},
      // clang-format on
  };
  for (const auto &[breaks, condition] : cases) {
    EXPECT_DEATH(breaks(), std::string("Assertion failed: ") + condition + ", upstools/cfg_obj");
  }
  CStrArr_Empty(&one);
}

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
  CStrArr_Empty(&names);
  CStrArr_Empty(&copy);
  EXPECT_EQ(copy.Arr, nullptr);
}

TEST(CStrArrDeathTest, BrokenPreconditionsStopTheProgram) {
  CStr text = {};
  CStrArr names = {};
  EXPECT_DEATH((void)CStr_AddN(&text, "ab", 3), "Assertion failed: nMax<=slen, upstools/cfg_obj");
  EXPECT_DEATH(CStrArr_GetStr(&names, 0), "nIndex<Obj->nCount");
  EXPECT_DEATH((void)CStrArr_Copy(&names, &names), "Dest!=Src");
}

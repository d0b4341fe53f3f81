// Dates and times as text, and the time zone.
#include "util/times.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

namespace {

constexpr time_t kMorning = 1710144305;  // 11 March 2024, 08:05:05 UTC

struct Times : testing::Test {
  void SetUp() override { ASSERT_EQ(UCTSetTimeZone("UTC0"), 1); }
  void TearDown() override { UCTResetTimeZone(); }
};

TEST_F(Times, TextsThereAndBack) {
  char out[32], date[32], clock[32];
  EXPECT_STREQ(UCTlogtime_to_str(out, kMorning), "11/03/2024,08:05:05");
  EXPECT_EQ(UCTstr_to_logtime("11/03/2024,08:05:05"), kMorning);
  EXPECT_EQ(UCTstr_to_time("11.03.2024 08:05"), kMorning - 5);
  EXPECT_EQ(UCTstr_to_time("11.03.2024") + UCTstr_to_logtime("noon"), -2);
  EXPECT_LE(std::time(nullptr) - UCTstr_to_time(UCTtime_to_str(out)), 60 + 5);
  EXPECT_EQ(std::string(UCTtime_to_date(date)) + " " + UCTtime_to_hour(clock), UCTtime_to_str(out));
  EXPECT_EQ(timem(clock) + datem(date), 2);
  EXPECT_EQ(std::string(date).substr(11, 8), clock);
  EXPECT_EQ(XBuildDateTimeStr(kMorning, date, clock, 0), 1);
  EXPECT_EQ(std::string(date) + clock, "11.03.202408:05");
  EXPECT_EQ(XBuildDateTimeStr(kMorning, date, clock, 1), 1);
  EXPECT_EQ(std::string(date) + clock, "11.03.2408:05");
  EXPECT_EQ(XBuildDateTimeStr(kMorning, nullptr, clock, 2), 1);
  EXPECT_STREQ(clock, "08:05:05");
  EXPECT_EQ(XBuildDateTimeStr(INT64_MAX, date, clock, 0), 0);
  ASSERT_EQ(UCTSetTimeZone("CET-1CEST"), 1);  // in summer
  EXPECT_STREQ(UCTlogtime_to_str(out, UCTstr_to_logtime("11/07/2024,08:05:05")), "11/07/2024,08:05:05");
}

TEST(Waiting, TakesItsTime) {
  const clock_t begin = std::clock();
  sleep10Sec(1);
  EXPECT_GE(std::clock() - begin, CLOCKS_PER_SEC / 10);
  const auto start = std::chrono::steady_clock::now();
  UCTSleep(1030);
  EXPECT_EQ(Xsleep(0) + Xsleep(-1), 2);
  const std::chrono::duration<double> slept = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(slept.count() >= 1.029 && slept.count() < 1.9) << slept.count();
}

TEST(LogTimes, AugustHas30DaysAndSeptember31) {
  for (const char *text : {"29/02/2023,10:00:00", "31/09/2024,00:00:00", "01/01/2024,23:59:59"}) {
    EXPECT_EQ(UCTvalidate_logtime(text), 1) << text;
  }
  for (const char *text : {"30/02/2024,10:00:00", "31/08/2024,10:00:00", "00/01/2024,10:00:00", "01/13/2024,10:00:00",
                           "01/01/2024,24:00:00", "01/01/2024,23:60:00", "01/01/2024,23:59:60", "01/01/2024,23:59"}) {
    EXPECT_EQ(UCTvalidate_logtime(text), 0) << text;
  }
}

TEST(TimeZone, ComesBackAsItWas) {
  for (const char *before : {"UTC0", static_cast<const char *>(nullptr)}) {
    before == nullptr ? unsetenv("TZ") : setenv("TZ", before, 1);
    char out[32];
    ASSERT_TRUE(UCTSetTimeZone("AAA-2") == 1 && timezone == -2 * 60 * 60);
    EXPECT_STREQ(UCTlogtime_to_str(out, kMorning), "11/03/2024,10:05:05");
    UCTResetTimeZone();
    EXPECT_STREQ(std::getenv("TZ"), before);
    EXPECT_TRUE(before == nullptr || timezone == 0);
    EXPECT_TRUE(before == nullptr || UCTlogtime_to_str(out, kMorning) == std::string("11/03/2024,08:05:05")) << out;
    UCTResetTimeZone();  // nothing is remembered any more
    EXPECT_STREQ(std::getenv("TZ"), before);
  }
  EXPECT_EQ(UCTSetTimeZone(nullptr), 0);
}

}  // namespace

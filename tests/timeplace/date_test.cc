#include "timeplace/date.h"

#include <chrono>
#include <cstdint>

#include <gtest/gtest.h>

namespace {

// Year since 1900, and month from 0, as a broken time has them.
WMBrokenTime Broken(std::int32_t year, std::int32_t mon, std::int32_t mday, std::int32_t hour = 0,
                    std::int32_t min = 0, std::int32_t sec = 0) {
  WMBrokenTime broken;
  broken.year = year;
  broken.mon = mon;
  broken.mday = mday;
  broken.hour = hour;
  broken.min = min;
  broken.sec = sec;
  return broken;
}

TEST(DateTest, EveryDayBothWays) {
  using std::chrono::days;
  using std::chrono::sys_days;
  const sys_days last = std::chrono::year(2037) / 12 / 31;
  for (sys_days day{}; day <= last; day += days(1)) {
    const std::chrono::year_month_day date(day);
    const auto year = static_cast<int>(date.year());
    const auto month = static_cast<std::int32_t>(static_cast<unsigned>(date.month()));
    const auto mday = static_cast<std::int32_t>(static_cast<unsigned>(date.day()));
    const auto firstOfYear = sys_days(date.year() / 1 / 1);
    const auto midnight = static_cast<std::int32_t>(day.time_since_epoch().count() * 86400);
    ASSERT_EQ(PlainSeconds(year, month, mday, 0, 0, 0), midnight);
    for (const std::int32_t ofDay : {0, 1, 3599, 3600, 45296, 86399}) {
      WMBrokenTime expected =
          Broken(year - 1900, month - 1, mday, ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
      expected.wday = static_cast<std::int32_t>(std::chrono::weekday(day).c_encoding());
      expected.yday = static_cast<std::int32_t>((day - firstOfYear).count());
      expected.isdst = -1;
      ASSERT_EQ(BrokenTimeOf(midnight + ofDay), expected) << midnight + ofDay;
      ASSERT_EQ(YearOf(midnight + ofDay), year);
    }
  }
}

TEST(DateTest, FieldsCarryOver) {
  const struct {
    std::int32_t fields[6];
    std::int32_t seconds;
  } plain[] = {
      {{1970, 1, 1, 0, 0, 0}, 0},
      {{1980, 1, 1, 0, 0, 0}, 315532800},
      {{2029, 12, 31, 23, 59, 59}, 1893455999},
      {{2000, 2, 30, 24, 60, 60}, PlainSeconds(2000, 3, 2, 1, 1, 0)},
      {{2000, 3, 0, 0, 0, 0}, PlainSeconds(2000, 2, 29, 0, 0, 0)},
      {{2000, 1, 1, -1, 0, 0}, PlainSeconds(1999, 12, 31, 23, 0, 0)},
      // Months outside the year don't carry here.
      {{2000, 0, 1, 0, 0, 0}, PlainSeconds(2000, 1, 1, 0, 0, 0)},
      {{2000, 13, 1, 0, 0, 0}, PlainSeconds(2001, 1, 1, 0, 0, 0)},
      {{2000, 99, 1, 0, 0, 0}, PlainSeconds(2001, 1, 1, 0, 0, 0)},
      // The day of the year has 16 bits, the seconds 32.
      {{1970, 1, 32768, 0, 0, 0}, static_cast<std::int32_t>(-32769LL * 86400)},
      {{1969, 12, 31, 23, 59, 59}, -1},
      {{2038, 1, 19, 3, 14, 8}, INT32_MIN},
  };
  for (const auto& each : plain) {
    const auto& f = each.fields;
    EXPECT_EQ(PlainSeconds(f[0], f[1], f[2], f[3], f[4], f[5]), each.seconds)
        << f[0] << "-" << f[1] << "-" << f[2];
  }
}

TEST(DateTest, ACenturyYearIsLeapOnlyByFourHundred) {
  for (const std::int32_t year : {1900, 2100, 2200}) EXPECT_FALSE(IsLeapYear(year)) << year;
  for (const std::int32_t year : {1600, 2000, 2400, 1904}) EXPECT_TRUE(IsLeapYear(year)) << year;
  EXPECT_EQ(DaysInMonth(2100, 2), 28);
  EXPECT_EQ(DayOfYear(2100, 3, 1), 60);
  EXPECT_EQ(LeapDaysThrough(1970), 477);
  EXPECT_EQ(LeapDaysThrough(2101) - LeapDaysThrough(2001), 24);
  EXPECT_EQ(LeapDaysThrough(2001) - LeapDaysThrough(1601), 97);
  EXPECT_EQ(WMTime(2000, 2, 29, 0, 0, 1).seconds, 951782401);
}

TEST(DateTest, NormalisingBringsTheMonthIntoItsYear) {
  const struct {
    WMBrokenTime given;
    std::int32_t year, mon;
    WMBrokenTime meant;
  } cases[] = {
      {Broken(99, 12, 1), 100, 0, Broken(100, 0, 1)},
      {Broken(100, 2, 0), 100, 2, Broken(100, 1, 29)},
      {Broken(100, 0, 33, 25, 61, 61), 100, 0, Broken(100, 1, 3, 2, 2, 1)},
      {Broken(100, -1, 1), 99, 11, Broken(99, 11, 1)},
      {Broken(100, -25, 31, -1), 97, 11, Broken(97, 11, 30, 23)},
      {Broken(70, 36, -364), 73, 0, Broken(72, 0, 2)},
  };
  for (const auto& each : cases) {
    WMBrokenTime changed = each.given;
    const WMTime time = Normalise(changed);
    EXPECT_EQ(changed.year, each.year);
    EXPECT_EQ(changed.mon, each.mon);
    EXPECT_EQ(changed.mday, each.given.mday);
    const WMBrokenTime& is = time.broken;
    EXPECT_EQ(Broken(is.year, is.mon, is.mday, is.hour, is.min, is.sec), each.meant);
    EXPECT_EQ(PlainSeconds(is.year + 1900, is.mon + 1, is.mday, is.hour, is.min, is.sec),
              time.seconds);
  }
  // As far out as the fields go, which no loop should have to walk.
  WMBrokenTime extreme = Broken(INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MIN);
  Normalise(extreme);
  EXPECT_EQ(extreme.mon, 7);
}

TEST(DateTest, BeforeTheEpochTheYearStaysAndTheRestIsNegative) {
  WMBrokenTime expected = Broken(70, 0, 1, 0, 0, -1);
  expected.wday = 4;
  expected.isdst = -1;
  EXPECT_EQ(BrokenTimeOf(-1), expected);
  expected = Broken(66, 0, 0, 0, 0, 0);
  expected.wday = 5;
  expected.yday = -1;
  expected.isdst = -1;
  EXPECT_EQ(BrokenTimeOf(-kSecondsPerFourYears - kSecondsPerDay), expected);
}

TEST(DateTest, StampsAreCutToTheirWidths) {
  EXPECT_EQ(StampToSeconds({2000, 2, 29, 23, 59, 60}), PlainSeconds(2000, 3, 1, 0, 0, 0));
  EXPECT_EQ(StampOf(BrokenTimeOf(951782400)), PWDateTimeStamp(2000, 2, 29, 0, 0, 0));
  EXPECT_EQ(StampOf(Broken(65636, 255, 256, 257, -1, 0)), PWDateTimeStamp(2000, 0, 0, 1, 255, 0));
}

}  // namespace

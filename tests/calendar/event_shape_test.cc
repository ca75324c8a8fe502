#include "calendar/mapping/event_shape.h"

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "framework/recurrence.h"
#include "tests/support/zone_files.h"

namespace {

using Stamp = PWDateTimeStamp;

TEST(EventShapeTest, StampsAreBroughtIntoTheCalendar) {
  const struct {
    Stamp given, clamped;
  } cases[] = {
      {{1979, 0, 0, 24, 60, 99}, {1980, 1, 1, 24, 60, 99}},
      {{2030, 13, 32, 25, 61, 255}, {2029, 12, 31, 23, 59, 255}},
      {{2000, 12, 31, 23, 59, 60}, {2000, 12, 31, 23, 59, 60}},
      {{0, 255, 255, 255, 255, 0}, {1980, 12, 31, 23, 59, 0}},
  };
  for (const auto& each : cases) {
    Stamp stamp = each.given;
    Stamp other = each.given;
    ClampStampRange(stamp, other);
    EXPECT_EQ(stamp, each.clamped);
    EXPECT_EQ(other, each.clamped);
  }
}

class EventShapeOfTest : public testing::Test {
 protected:
  // Stamps are UTC; the clocks are those of a city ten hours ahead.
  EventShapeOfTest() { pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "Sydney"); }

  pw::TestPlatform platform;
};

TEST_F(EventShapeOfTest, AnEventHangsOnItsLocalDates) {
  enum Kind { kTimed, kAllDay, kSeries, kEndlessAllDay, kEndingAllDay };
  const struct {
    const char* what;
    Stamp start, end;
    Kind kind;
    const char* shapes;
  } cases[] = {
      {"within a day", {2000, 7, 1, 1, 0, 0}, {2000, 7, 1, 2, 0, 0}, kTimed, "plain single "},
      {"minutes", {2000, 7, 1, 1, 0, 0}, {2000, 7, 1, 1, 1, 0}, kTimed, "plain single "},
      {"no length", {2000, 7, 1, 1, 0, 0}, {2000, 7, 1, 1, 0, 59}, kTimed, ""},
      {"over UTC's", {2000, 7, 1, 23, 0, 0}, {2000, 7, 2, 1, 0, 0}, kTimed, "plain single "},
      {"over midnight", {2000, 7, 1, 13, 0, 0}, {2000, 7, 1, 15, 0, 0}, kTimed, "multi "},
      {"a month on", {2000, 6, 1, 1, 0, 0}, {2000, 7, 1, 2, 0, 0}, kTimed, "multi "},
      {"a year on", {2000, 7, 1, 1, 0, 0}, {2001, 7, 1, 2, 0, 0}, kTimed, "multi "},
      {"all of a month", {2000, 6, 1, 1, 0, 0}, {2000, 7, 1, 1, 0, 0}, kAllDay, "multi "},
      {"long ago", {1970, 1, 1, 1, 0, 0}, {1979, 1, 1, 2, 0, 0}, kTimed, "plain single "},
      {"all day", {2000, 7, 1, 13, 0, 0}, {2000, 7, 1, 15, 0, 0}, kAllDay, "single special "},
      {"all of two days", {2000, 7, 1, 1, 0, 0}, {2000, 7, 2, 1, 0, 0}, kAllDay, "multi "},
      {"all day long ago", {1970, 1, 1, 0, 0, 0}, {1971, 1, 1, 0, 0, 0}, kAllDay, "multi "},
      {"series", {2000, 7, 1, 1, 0, 0}, {2000, 7, 1, 2, 0, 0}, kSeries, "single "},
      {"endless", {2000, 7, 1, 1, 0, 0}, {2000, 7, 2, 1, 0, 0}, kEndlessAllDay, "multi special "},
      {"ending", {2000, 7, 1, 1, 0, 0}, {2000, 7, 1, 1, 0, 0}, kEndingAllDay, "single "},
  };
  for (const auto& each : cases) {
    PWRecord record;
    PWEventRecord event(&record);
    Stamp start = each.start;
    Stamp end = each.end;
    event.StartDate(start);
    event.EndDate(end);
    event.AllDay(each.kind != kTimed && each.kind != kSeries);
    if (each.kind >= kSeries) {
      event.Recurring(true, kRecurranceDaily);
      event.RecurrancePattern()->Options.Bit(0, each.kind != kEndingAllDay);
    }
    std::string shapes;
    if (IsPlainDay(event)) shapes += "plain ";
    if (IsSingleDay(event)) shapes += "single ";
    if (IsMultiDay(event)) shapes += "multi ";
    if (IsSpecialDayShape(event)) shapes += "special ";
    EXPECT_EQ(shapes, each.shapes) << each.what;
    EXPECT_EQ(event.StartDate(), each.start) << "the event itself isn't clamped";
  }
}

TEST_F(EventShapeOfTest, AChangedOccurrenceHangsOnItsNewDatesOrItsBit) {
  PWRecurranceException exception;
  exception.StartDate = Stamp(2000, 7, 1, 23, 0, 0);
  exception.EndDate = Stamp(2000, 7, 2, 1, 0, 0);
  EXPECT_FALSE(ChangedOccurrenceIsMultiDay(exception));
  exception.Changes.bits = 1U << 5;
  EXPECT_TRUE(ChangedOccurrenceIsMultiDay(exception));
  exception.Changes.bits = ~(1U << 5);
  EXPECT_FALSE(ChangedOccurrenceIsMultiDay(exception));
  exception.EndDate = Stamp(2000, 7, 2, 15, 0, 0);
  EXPECT_TRUE(ChangedOccurrenceIsMultiDay(exception));
}

}  // namespace

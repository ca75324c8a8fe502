#include "calendar/mapping/event_gate.h"

#include <string>

#include "framework/event_record.h"
#include "tests/calendar/mapping_fixture.h"
#include "tests/support/test_log.h"
#include "timeplace/engine_zone.h"

namespace pw::test {
namespace {

constexpr const char* kRefusedSeries =
    "9 PWDesktop-W2001: The event 'E' is an all day recurring event and is not supported.";
constexpr const char* kMovedUp =
    "9 PWDesktop-W2002: The event 'E' occurs earlier than 1980, and will be moved up to 1980.";
constexpr const char* kTooEarly =
    "9 PWDesktop-W2003: The event 'E' occurs earlier than 1980, and is not supported.";
constexpr const char* kMovedBack =
    "9 PWDesktop-W2004: The event 'E' occurs later than 2029, and will be moved back to 2029.";
constexpr const char* kTooLate =
    "9 PWDesktop-W2005: The event 'E' occurs later than 2029, and is not supported.";
constexpr const char* kChanged =
    "9 PWDesktop-W2009: The event 'E' has a recurring pattern which contains a changed occurrence "
    "which is not supported.";
constexpr const char* kYearlyWithEnd =
    "9 PWDesktop-W2014: The event 'E' is a yearly all day recurring event with the ending date and "
    "is not supported.";

class EventGateTest : public CalendarTest {
 protected:
  EventGateTest() {
    LoadHomeZone();
    OrganiserVersion() = 50;
  }

  // An hour in Lima, where no clocks change.
  static void Lasts(PWEventRecord& event, std::uint16_t startYear, std::uint16_t endYear,
                    std::uint8_t endDay = 5) {
    event.Subject("E");
    event.StartDate(PWDateTimeStamp(startYear, 5, 5, 15, 0, 0));
    event.EndDate(PWDateTimeStamp(endYear, 5, endDay, 16, 0, 0));
  }

  static PWRecurrancePattern& Recurs(PWEventRecord& event, ERecurranceType type,
                                     std::uint16_t lastYear) {
    event.Recurring(true, type);
    PWRecurrancePattern& pattern = *event.RecurrancePattern();
    pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, lastYear == 0);
    pattern.EndDate = PWDateTimeStamp(lastYear, 1, 1, 0, 0, 0);
    return pattern;
  }

  // One that is changed or deleted, on one date or over several.
  struct ExceptionCase {
    bool deleted;
    std::uint8_t days;  // behind its first one
    const char* subject = "";
  };
  static PWRecurranceException* Exception(const ExceptionCase& its) {
    auto* exception = new PWRecurranceException;
    exception->Changes.Bit(PWRecurranceException::kDeleted, its.deleted);
    exception->Changes.Bit(PWRecurranceException::kSubjectChanged, *its.subject != '\0');
    exception->Subject = its.subject;
    exception->StartDate = PWDateTimeStamp(1999, 5, 6, 15, 0, 0);
    exception->EndDate =
        PWDateTimeStamp(1999, 5, static_cast<std::uint8_t>(6 + its.days), 16, 0, 0);
    return exception;
  }

  TestLog log;
};

TEST_F(EventGateTest, RulesInTheirOrder) {
  using Lines = std::vector<std::string>;
  using Exceptions = std::vector<ExceptionCase>;
  const Lines refusedTwice = {kRefusedSeries, kYearlyWithEnd};
  const Lines refusedAndMoved = {kRefusedSeries, kMovedUp};
  const Lines changedToo = {kChanged, kRefusedSeries};
  const Exceptions subject = {{false, 0, "own"}};
  const Exceptions longer(2, {false, 1});
  const Exceptions gone = {{true, 1}};
  const Exceptions usual = {{false, 0}, {true, 0}};
  constexpr auto kNone = static_cast<ERecurranceType>(0);
  constexpr auto kDaily = kRecurranceDaily;
  constexpr auto kWeekly = kRecurranceWeekly;
  constexpr auto kYearly = kRecurranceYearlyByDate;
  const struct {
    const char* what;
    bool isStorable;
    Lines lines;
    std::uint16_t startYear, endYear;
    std::uint8_t endDay;  // it begins on the 5th
    ERecurranceType type = kNone;
    std::uint16_t lastYear = 0;
    bool allDay = false;
    Exceptions exceptions = {};
  } cases[] = {
      {"a plain hour", true, {}, 1999, 1999, 5},
      {"several days", true, {}, 1999, 1999, 9},
      {"before the first year", false, {kTooEarly}, 1979, 1979, 5},
      {"over the first year's begin", false, {kTooEarly}, 1979, 1980, 5},
      {"the first and the last year", true, {}, 1980, 2029, 5},
      {"over the last year's end", false, {kTooLate}, 2029, 2030, 5},
      {"a series of an hour", true, {}, 1999, 1999, 5, kDaily, 2000},
      {"of days", false, {kRefusedSeries}, 1999, 1999, 6, kDaily, 2000},
      {"of days, moved up", true, refusedAndMoved, 1979, 1979, 6, kDaily, 1981},
      {"of days, moved back", true, {kRefusedSeries, kMovedBack}, 2029, 2030, 6, kDaily, 2031},
      {"an early one that ends in the first year", false, {kTooEarly}, 1979, 1979, 5, kDaily, 1980},
      {"an early one without end", true, {kMovedUp}, 1979, 1979, 5, kDaily},
      {"a late one", false, {kTooLate}, 2030, 2030, 5, kDaily, 2031},
      {"a birthday of any year", true, {}, 1950, 1950, 5, kYearly, 0, true},
      {"with an end", false, {kYearlyWithEnd}, 1999, 1999, 5, kRecurranceYearlyByDay, 2005, true},
      {"a weekly all-day series", false, {kRefusedSeries}, 1999, 1999, 5, kWeekly, 0, true},
      {"two dates, with an end", false, refusedTwice, 1999, 1999, 6, kYearly, 2005, true},
      {"two without end", false, {kRefusedSeries}, 1999, 1999, 6, kYearly, 0, true},
      {"two, not yearly", false, Lines(2, kRefusedSeries), 1999, 1999, 6, kWeekly, 2005, true},
      {"a weekly one, changed", false, changedToo, 1999, 1999, 5, kWeekly, 0, true, subject},
      {"changed and over days", false, {kChanged}, 1999, 1999, 5, kWeekly, 2005, true, longer},
      {"a moved series, as is", true, refusedAndMoved, 1979, 1979, 6, kDaily, 1981, false, longer},
      {"a deletion over two days", false, {kChanged}, 1999, 1999, 5, kDaily, 2000, false, gone},
      {"a birthday with one", false, {kChanged}, 1999, 1999, 5, kYearly, 0, true, {{true, 0}}},
      {"changed occurrences", true, {}, 1999, 1999, 5, kDaily, 2000, false, usual},
      {"two over two days", false, {kChanged}, 1979, 1979, 5, kDaily, 1999, false, longer},
  };
  for (const auto& each : cases) {
    PWRecord record;
    PWEventRecord event(&record);
    Lasts(event, each.startYear, each.endYear, each.endDay);
    event.AllDay(each.allDay);
    if (each.type != kNone) {
      PWRecurrancePattern& pattern = Recurs(event, each.type, each.lastYear);
      for (const ExceptionCase& its : each.exceptions) pattern.AddException(Exception(its));
    }
    log.lines.clear();
    EXPECT_EQ(CheckEventStorable(record, &log), each.isStorable) << each.what;
    EXPECT_EQ(log.lines, each.lines) << each.what;
    EXPECT_EQ(CheckEventStorable(record, nullptr), each.isStorable);
  }
}

TEST_F(EventGateTest, AnHourOfOneDayThereMayBeOfTwoAtHome) {
  PWRecord record;
  PWEventRecord event(&record);
  Lasts(event, 1999, 1999);
  event.StartDate(PWDateTimeStamp(1999, 5, 6, 4, 30, 0));
  event.EndDate(PWDateTimeStamp(1999, 5, 6, 5, 30, 0));
  Recurs(event, kRecurranceDaily, 2000).TimeZone =
      PWTimeZone(EngineZoneOf(CityNamed("Sydney"), 1999));
  EXPECT_FALSE(CheckEventStorable(record, &log));
  EXPECT_EQ(log.lines, std::vector<std::string>{kRefusedSeries});
}

TEST_F(EventGateTest, AnAlarmIsLimitedInTheRecord) {
  for (const std::int32_t lead : {0, 1439, 1440, -1}) {
    PWRecord record;
    PWEventRecord event(&record);
    Lasts(event, 1999, 1999);
    event.Subject("100%s");
    event.AlarmAdvance(lead);
    log.lines.clear();
    EXPECT_TRUE(CheckEventStorable(record, &log));
    const bool isLimited = lead < 0 || lead > 1439;
    EXPECT_EQ(event.AlarmAdvance(), isLimited ? 1439 : lead);
    if (!isLimited) continue;
    EXPECT_EQ(log.lines,
              std::vector<std::string>{
                  "9 PWDesktop-W2015: The event '100%s' has an alarm '" + std::to_string(lead) +
                  "' minutes is not supported on the PWDesktop and the alarm is set to "
                  "'1439' minutes."});
  }
}

TEST_F(EventGateTest, AnAlarmIsLimitedWhateverComesOfTheEvent) {
  PWRecord record;
  PWEventRecord event(&record);
  Lasts(event, 1979, 1979);
  event.AlarmAdvance(1440);
  EXPECT_FALSE(CheckEventStorable(record, &log));
  ASSERT_EQ(log.lines.size(), 2U);
  EXPECT_EQ(log.lines[0].substr(0, 17), "9 PWDesktop-W2015");
  EXPECT_EQ(log.lines[1], kTooEarly);
  EXPECT_EQ(event.AlarmAdvance(), 1439);
}

TEST_F(EventGateTest, OlderFilesHoldDeletedOccurrencesOnly) {
  OrganiserVersion() = 40;
  for (const bool deleted : {true, false}) {
    PWRecord record;
    PWEventRecord event(&record);
    Lasts(event, 1999, 1999);
    const std::uint8_t days = deleted ? 1 : 0;
    Recurs(event, kRecurranceDaily, 2000).AddException(Exception({deleted, days, "100%s"}));
    log.lines.clear();
    EXPECT_EQ(CheckEventStorable(record, &log), deleted);
    if (deleted) continue;
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_NE(log.lines[0].find("The event '100%s' has"), std::string::npos);
  }
}

}  // namespace
}  // namespace pw::test

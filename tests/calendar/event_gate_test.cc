#include "calendar/mapping/event_gate.h"

#include <functional>
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

  // One that is changed on one date, deleted or over several days.
  static PWRecurranceException* Exception(bool deleted, std::uint8_t days) {
    auto* exception = new PWRecurranceException;
    exception->Changes.Bit(PWRecurranceException::kDeleted, deleted);
    exception->StartDate = PWDateTimeStamp(1999, 5, 6, 15, 0, 0);
    exception->EndDate = PWDateTimeStamp(1999, 5, static_cast<std::uint8_t>(6 + days), 16, 0, 0);
    return exception;
  }

  TestLog log;
};

TEST_F(EventGateTest, RulesInTheirOrder) {
  using Fill = std::function<void(PWEventRecord&)>;
  const struct {
    const char* what;
    bool isStorable;
    std::vector<std::string> lines;
    Fill fill;
  } cases[] = {
      {"a plain hour", true, {}, [](PWEventRecord& e) { Lasts(e, 1999, 1999); }},
      {"several days", true, {}, [](PWEventRecord& e) { Lasts(e, 1999, 1999, 9); }},
      {"before the first year", false, {kTooEarly}, [](PWEventRecord& e) { Lasts(e, 1979, 1979); }},
      {"over the first year's begin",
       false,
       {kTooEarly},
       [](PWEventRecord& e) { Lasts(e, 1979, 1980); }},
      {"the first and the last year", true, {}, [](PWEventRecord& e) { Lasts(e, 1980, 2029); }},
      {"over the last year's end",
       false,
       {kTooLate},
       [](PWEventRecord& e) { Lasts(e, 2029, 2030); }},
      {"a series of an hour",
       true,
       {},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         Recurs(e, kRecurranceDaily, 2000);
       }},
      {"a series of days",
       false,
       {kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999, 6);
         Recurs(e, kRecurranceDaily, 2000);
       }},
      {"a series of days that is moved up",
       true,
       {kRefusedSeries, kMovedUp},
       [](PWEventRecord& e) {
         Lasts(e, 1979, 1979, 6);
         Recurs(e, kRecurranceDaily, 1981);
       }},
      {"a series of days that is moved back",
       true,
       {kRefusedSeries, kMovedBack},
       [](PWEventRecord& e) {
         Lasts(e, 2029, 2030, 6);
         Recurs(e, kRecurranceDaily, 2031);
       }},
      {"an early series that ends in the first year",
       false,
       {kTooEarly},
       [](PWEventRecord& e) {
         Lasts(e, 1979, 1979);
         Recurs(e, kRecurranceDaily, 1980);
       }},
      {"an early series without end",
       true,
       {kMovedUp},
       [](PWEventRecord& e) {
         Lasts(e, 1979, 1979);
         Recurs(e, kRecurranceDaily, 0);
       }},
      {"a late series",
       false,
       {kTooLate},
       [](PWEventRecord& e) {
         Lasts(e, 2030, 2030);
         Recurs(e, kRecurranceDaily, 2031);
       }},
      {"a birthday of any year",
       true,
       {},
       [](PWEventRecord& e) {
         Lasts(e, 1950, 1950);
         e.AllDay(true);
         Recurs(e, kRecurranceYearlyByDate, 0);
       }},
      {"a birthday with an end",
       false,
       {kYearlyWithEnd},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.AllDay(true);
         Recurs(e, kRecurranceYearlyByDay, 2005);
       }},
      {"a weekly all-day series",
       false,
       {kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.AllDay(true);
         Recurs(e, kRecurranceWeekly, 0);
       }},
      {"two all-day dates a year, with an end",
       false,
       {kRefusedSeries, kYearlyWithEnd},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999, 6);
         e.AllDay(true);
         Recurs(e, kRecurranceYearlyByDate, 2005);
       }},
      {"an all-day series of days without end",
       false,
       {kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999, 6);
         e.AllDay(true);
         Recurs(e, kRecurranceYearlyByDate, 0);
       }},
      {"an all-day series of days, not yearly",
       false,
       {kRefusedSeries, kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999, 6);
         e.AllDay(true);
         Recurs(e, kRecurranceWeekly, 2005);
       }},
      {"a weekly all-day series with an exception",
       false,
       {kChanged, kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.AllDay(true);
         PWRecurranceException* exception = Exception(false, 0);
         exception->Changes.Bit(PWRecurranceException::kSubjectChanged, true);
         exception->Subject = "own";
         Recurs(e, kRecurranceWeekly, 0).AddException(exception);
       }},
      {"an all-day series whose exception ends all",
       false,
       {kChanged},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.AllDay(true);
         Recurs(e, kRecurranceWeekly, 2005).AddException(Exception(false, 1));
       }},
      {"a moved series of days, whose exceptions don't count",
       true,
       {kRefusedSeries, kMovedUp},
       [](PWEventRecord& e) {
         Lasts(e, 1979, 1979, 6);
         Recurs(e, kRecurranceDaily, 1981).AddException(Exception(false, 1));
       }},
      {"an hour of one day there, and of two at home",
       false,
       {kRefusedSeries},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.StartDate(PWDateTimeStamp(1999, 5, 6, 4, 30, 0));
         e.EndDate(PWDateTimeStamp(1999, 5, 6, 5, 30, 0));
         Recurs(e, kRecurranceDaily, 2000).TimeZone =
             PWTimeZone(EngineZoneOf(CityNamed("Sydney"), 1999));
       }},
      {"a deletion over two days",
       false,
       {kChanged},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         Recurs(e, kRecurranceDaily, 2000).AddException(Exception(true, 1));
       }},
      {"a birthday with an exception",
       false,
       {kChanged},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         e.AllDay(true);
         Recurs(e, kRecurranceYearlyByDate, 0).AddException(Exception(true, 0));
       }},
      {"changed occurrences",
       true,
       {},
       [](PWEventRecord& e) {
         Lasts(e, 1999, 1999);
         PWRecurrancePattern& pattern = Recurs(e, kRecurranceDaily, 2000);
         pattern.AddException(Exception(false, 0));
         pattern.AddException(Exception(true, 0));
       }},
      {"an occurrence over two days ends all",
       false,
       {kChanged},
       [](PWEventRecord& e) {
         Lasts(e, 1979, 1979);
         PWRecurrancePattern& pattern = Recurs(e, kRecurranceDaily, 1999);
         pattern.AddException(Exception(false, 1));
         pattern.AddException(Exception(false, 1));
       }},
  };
  for (const auto& each : cases) {
    PWRecord record;
    PWEventRecord event(&record);
    each.fill(event);
    log.lines.clear();
    EXPECT_EQ(CheckEventStorable(record, &log), each.isStorable) << each.what;
    EXPECT_EQ(log.lines, each.lines) << each.what;
    EXPECT_EQ(CheckEventStorable(record, nullptr), each.isStorable);
  }
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
    PWRecurranceException* exception = Exception(deleted, deleted ? 1 : 0);
    exception->Changes.Bit(PWRecurranceException::kSubjectChanged, true);
    exception->Subject = "100%s";
    Recurs(event, kRecurranceDaily, 2000).AddException(exception);
    log.lines.clear();
    EXPECT_EQ(CheckEventStorable(record, &log), deleted);
    if (deleted) continue;
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_NE(log.lines[0].find("The event '100%s' has"), std::string::npos);
  }
}

}  // namespace
}  // namespace pw::test

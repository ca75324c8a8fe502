#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "host/event_records.h"
#include "host/import/calendar_records.h"
#include "host/import/rule_dates.h"
#include "platform/testing/test_platform.h"
#include "tests/support/zone_files.h"

namespace pw {
namespace {

CityClocks Clocks() {
  std::vector<WMCityRecord> cities = test::SomeCities();
  cities.push_back(test::City("London", "Britain", 8, 0, kDaylightByWeekday,
                              test::Change(1, 4, 0, 2), test::Change(2, 4, 0, 9)));
  return {std::move(cities), "London"};
}

// The events of what stands in a calendar, each as a person sees it, and behind them the problems.
std::vector<std::string> Brought(const std::string& components) {
  const TestPlatform platform;
  const CityClocks clocks = Clocks();
  Incoming incoming = EventsOfCalendar(
      ReadCalendarFile("BEGIN:VCALENDAR\n" + components + "END:VCALENDAR\n"), clocks);
  std::vector<std::string> seen;
  for (IncomingRecord& each : incoming.records) {
    const std::vector<std::string> columns = EventColumns(each.record, clocks);
    std::string text = columns[0] + "|" + columns[1] + "|" + columns[2];
    for (const std::size_t column : {3, 7, 8}) {
      if (!columns[column].empty()) text += "|" + columns[column];
    }
    for (const std::string& remark : each.remarks) text += "|! " + remark;
    seen.push_back(text);
  }
  seen.insert(seen.end(), incoming.problems.begin(), incoming.problems.end());
  return seen;
}

std::string Event(const std::string& lines) {
  return "BEGIN:VEVENT\nUID:1\n" + lines + "\nEND:VEVENT\n";
}

TEST(CalendarImport, TakesTheTimesOfOtherPrograms) {
  const struct {
    const char* lines;
    const char* seen;
  } cases[] = {
      {"DTSTART:19980701T100000Z\nDURATION:PT90M", "|1998-07-01 11:00|1998-07-01 12:30"},
      {"DTSTART:19980701T100000\nDTEND:19980701T110000", "|1998-07-01 10:00|1998-07-01 11:00"},
      {"DTSTART;TZID=America/New_York:19980701T100000", "|1998-07-01 15:00|1998-07-01 15:00"},
      {"DTSTART;VALUE=DATE:19980701\nDTEND;VALUE=DATE:19980704", "|1998-07-01|1998-07-03"},
      {"DTSTART;VALUE=DATE:19980701\nDURATION:P2D", "|1998-07-01|1998-07-02"},
      {"DTSTART;VALUE=DATE:19980701\nSUMMARY:a\\, b\\nc", "a, b\r\nc|1998-07-01|1998-07-01"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Brought(Event(each.lines)), std::vector<std::string>{each.seen}) << each.lines;
  }
  const std::string zone =
      "BEGIN:VTIMEZONE\nTZID:Eastern\nBEGIN:STANDARD\nTZOFFSETTO:-0500\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nTZOFFSETTO:-0400\nEND:DAYLIGHT\nEND:VTIMEZONE\n";
  EXPECT_EQ(Brought(zone + Event("DTSTART;TZID=Eastern:19980701T100000")),
            std::vector<std::string>{"|1998-07-01 15:00|1998-07-01 15:00"});
  EXPECT_EQ(Brought(Event("DTSTART;TZID=Mars:19980701T100000")),
            (std::vector<std::string>{
                "|1998-07-01 10:00|1998-07-01 10:00",
                "zone \"Mars\": no city has it, so that its times are those of the home city"}));
}

TEST(CalendarImport, BringsASeriesInByTheOrganisersOwnRuleOrByItsDates) {
  const std::string at = "DTSTART;TZID=London:19980304T100000\nRRULE:";
  const std::string begin = "|1998-03-04 10:00|1998-03-04 10:00|";
  const struct {
    const char* rule;
    const char* words;  // of the one record
  } series[] = {
      {"FREQ=DAILY;COUNT=3", "every day until 1998-03-06"},
      {"FREQ=WEEKLY;INTERVAL=2;UNTIL=19980401T090000Z", "every 2 weeks on Wed until 1998-04-01"},
      {"FREQ=DAILY;BYDAY=MO,WE;COUNT=4", "every week on Mon, Wed until 1998-03-16"},
      {"FREQ=MONTHLY;BYDAY=WE;BYSETPOS=1", "every month on the 1st Wed"},
      {"FREQ=MONTHLY;BYMONTHDAY=4,-1;COUNT=2", "every month on 4, last day until 1998-03-31"},
      {"FREQ=YEARLY", "every year on 4 Mar"},
      {"FREQ=YEARLY;BYDAY=1WE;BYMONTH=3", "every year on the 1st Wed of Mar"},
  };
  for (const auto& each : series) {
    EXPECT_EQ(Brought(Event(at + each.rule)), std::vector<std::string>{begin + each.words})
        << each.rule;
  }
  const std::string remark =
      "|! the organiser hasn't got its rule, and each is an event of its own";
  EXPECT_EQ(Brought(Event(at + "FREQ=YEARLY;INTERVAL=2;COUNT=2")),
            (std::vector<std::string>{"|1998-03-04 10:00|1998-03-04 10:00" + remark,
                                      "|2000-03-04 10:00|2000-03-04 10:00"}));
  for (const char* refused :
       {"FREQ=YEARLY;INTERVAL=2", "FREQ=HOURLY", "nonsense", "FREQ=DAILY;INTERVAL=0"}) {
    const auto seen = Brought(Event(at + refused));
    ASSERT_EQ(seen.size(), 1U) << refused;
    EXPECT_EQ(seen[0].substr(0, 8), "line 2: ") << seen[0];
  }
}

TEST(CalendarImport, KeepsWhatIsOtherwiseInASeries) {
  const std::string series = Event(
      "DTSTART;TZID=London:19980304T100000\nRRULE:FREQ=WEEKLY;COUNT=4\nSUMMARY:Choir\n"
      "EXDATE;TZID=London:19980311T100000");
  const auto changed = [](const std::string& lines) {
    return Event("RECURRENCE-ID;TZID=London:19980318T100000\n" + lines);
  };
  const std::string seen =
      "Choir|1998-03-04 10:00|1998-03-04 10:00|every week on Wed until "
      "1998-03-25|1998-03-11";
  EXPECT_EQ(Brought(series + changed("DTSTART;TZID=London:19980319T180000\nSUMMARY:Concert")),
            std::vector<std::string>{
                seen + "|1998-03-18: now 1998-03-19 18:00 to 1998-03-19 18:00, Concert"});
  // Told though nothing is otherwise, as for an occurrence of another length in seconds alone.
  EXPECT_EQ(Brought(series + changed("DTSTART;TZID=London:19980318T100000\nSUMMARY:Choir")),
            std::vector<std::string>{seen});
  const auto alone = Brought(changed("DTSTART;TZID=London:19980318T110000"));
  ASSERT_EQ(alone.size(), 1U);
  EXPECT_NE(alone[0].find("an occurrence whose series isn't there"), std::string::npos);
  EXPECT_EQ(Brought(Event("DTSTART;TZID=London:19980304T100000\n"
                          "RDATE;TZID=London:19980310T100000,19980312T100000\n"
                          "EXDATE;TZID=London:19980312T100000"))
                .size(),
            2U);
}

TEST(CalendarImport, SaysWhatIsDamaged) {
  EXPECT_EQ(Brought("BEGIN:VEVENT\nSUMMARY:no start\nEND:VEVENT\n"),
            std::vector<std::string>{"line 2: the event has no start, and is left out"});
  EXPECT_EQ(Brought("BEGIN:VEVENT\nDTSTART:19980230T100000Z\nEND:VEVENT\nBEGIN:VEVENT\n"),
            (std::vector<std::string>{"line 5: \"VEVENT\" doesn't end, and is left out",
                                      "line 2: its times can't be read, and it is left out"}));
}

}  // namespace
}  // namespace pw

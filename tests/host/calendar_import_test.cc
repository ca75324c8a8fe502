#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "host/event_records.h"
#include "host/import/calendar_records.h"
#include "host/import/rule_dates.h"
#include "host/import/typed_csv.h"
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
std::vector<std::string> Brought(const std::string& components, bool update = false) {
  const TestPlatform platform;
  const CityClocks clocks = Clocks();
  Incoming incoming = EventsOfCalendar(
      ReadCalendarFile("BEGIN:VCALENDAR\n" + components + "END:VCALENDAR\n"), clocks, update);
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
      {"DTSTART;TZID=America/New_York:19980701T100000\nDURATION:PT1H",
       "|1998-07-01 15:00|1998-07-01 16:00"},
      {"DTSTART;VALUE=DATE:19980701\nDTEND;VALUE=DATE:19980704", "|1998-07-01|1998-07-03"},
      {"DTSTART;VALUE=DATE:19980701\nDURATION:P2D", "|1998-07-01|1998-07-02"},
      {"DTSTART:19980701T100000",
       "|1998-07-01 10:00|1998-07-01 10:01|! it has no length, and is a minute long now"},
      {"DTSTART:19980701T235910\nDTEND:19980701T235950",
       "|1998-07-01 23:58:10|1998-07-01 23:59:10|! it has no length, and is a minute long now"},
      {"DTSTART;VALUE=DATE:19980701\nSUMMARY:a\\, b\\nc", "a, b\r\nc|1998-07-01|1998-07-01"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Brought(Event(each.lines)), std::vector<std::string>{each.seen}) << each.lines;
  }
  const std::string zone =
      "BEGIN:VTIMEZONE\nTZID:Eastern\nBEGIN:STANDARD\nTZOFFSETTO:-0500\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nTZOFFSETTO:-0400\nEND:DAYLIGHT\nEND:VTIMEZONE\n";
  EXPECT_EQ(Brought(zone + Event("DTSTART;TZID=Eastern:19980701T100000\nDURATION:PT1H")),
            std::vector<std::string>{"|1998-07-01 15:00|1998-07-01 16:00"});
  EXPECT_EQ(Brought(Event("DTSTART;TZID=Mars:19980701T100000\nDURATION:PT1H")),
            (std::vector<std::string>{
                "|1998-07-01 10:00|1998-07-01 11:00",
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
      {"FREQ=MONTHLY;INTERVAL=12", "every year on 4 Mar"},
      {"FREQ=DAILY;BYHOUR=10;BYMINUTE=0;COUNT=3", "every day until 1998-03-06"},
      {"FREQ=WEEKLY;UNTIL=99991231T000000Z", "every week on Wed until 9999-12-31"},
      {"FREQ=YEARLY;BYDAY=1WE;BYMONTH=3", "every year on the 1st Wed of Mar"},
  };
  for (const auto& each : series) {
    EXPECT_EQ(Brought(Event(at + each.rule)), std::vector<std::string>{begin + each.words})
        << each.rule;
  }
  const std::string remark =
      "|! the organiser hasn't got its rule, and each date is an event of its own";
  EXPECT_EQ(Brought(Event(at + "FREQ=YEARLY;INTERVAL=2;COUNT=2\nDURATION:PT1H")),
            (std::vector<std::string>{"|1998-03-04 10:00|1998-03-04 11:00" + remark,
                                      "|2000-03-04 10:00|2000-03-04 11:00"}));
  // Intervals at which the organiser gives no dates, or which it reads as another.
  for (const char* interval : {"DAILY;INTERVAL=367", "WEEKLY;INTERVAL=53", "MONTHLY;INTERVAL=24",
                               "MONTHLY;BYDAY=1WE;INTERVAL=13"}) {
    EXPECT_EQ(Brought(Event(at + "FREQ=" + interval + ";COUNT=2")).size(), 2U) << interval;
  }
  for (const char* refused : {"FREQ=YEARLY;INTERVAL=2", "FREQ=HOURLY", "nonsense",
                              "FREQ=DAILY;INTERVAL=0", "FREQ=DAILY;BYHOUR=10,15;COUNT=4",
                              "FREQ=DAILY;BYMINUTE=30;COUNT=4", "FREQ=DAILY;UNTIL=nonsense"}) {
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

TEST(CalendarImport, LosesNoDateOfASeriesInSilence) {
  const std::string at = "SUMMARY:S\nDURATION:PT1H\nDTSTART:";
  const std::string weekly = at + "19980304T100000\nRRULE:FREQ=WEEKLY;COUNT=2";
  const std::string begin = "S|1998-03-04 10:00|1998-03-04 11:00";
  const std::string series = begin + "|every week on Wed until 1998-03-11";
  const std::string each = ", and each date is an event of its own";
  const std::string beside =
      "|! the rule of its series doesn't give its date, and it is an event of its own now";
  const struct {
    std::string lines;
    std::vector<std::string> seen;
  } cases[] = {
      // What can't be read is told.
      {weekly + "\nEXDATE:x,19980311T100000\nRDATE:y,z",
       {series + "|1998-03-11|! 2 dates of RDATE can't be read, and left out|! 1 date of EXDATE "
                 "can't be read, and left out"}},
      {weekly + "\nRRULE:FREQ=DAILY\nEXRULE:FREQ=DAILY",
       {series + "|! EXRULE, a second RRULE are left out"}},
      // Other times of day, two on one of them.
      {at + "19980304T100000\nRDATE:19980304T150000,19980305T180000,19980305T100000",
       {begin + "|! its dates follow no rule" + each, "S|1998-03-04 15:00|1998-03-04 16:00",
        "S|1998-03-05 10:00|1998-03-05 11:00", "S|1998-03-05 18:00|1998-03-05 19:00"}},
      {weekly + "\nRDATE;VALUE=PERIOD:19980304T150000/PT5H",
       {series + "|! the lengths of its dates in RDATE are left out, and are its own",
        "S|1998-03-04 15:00|1998-03-04 16:00" + beside +
            "|! the lengths of its dates in RDATE are left out, and are its own"}},
      // The first date counts although the rule doesn't give it.
      {at + "19980304T100000\nRRULE:FREQ=WEEKLY;BYDAY=FR;COUNT=3",
       {"S|1998-03-06 10:00|1998-03-06 11:00|every week on Fri until 1998-03-13", begin + beside}},
      {at + "19980304T100000\nRRULE:FREQ=WEEKLY;BYDAY=FR;COUNT=1",
       {begin + "|! its rule gives no date but the first" + each}},
      {at + "19980304T100000\nEXDATE:19980304T100000",
       {"line 2: all its dates are deleted, and it is left out"}},
      // What the organiser has no series of.
      {"SUMMARY:S\nDTSTART;VALUE=DATE:19980304\nRRULE:FREQ=WEEKLY;COUNT=2",
       {"S|1998-03-04|1998-03-04|! the organiser has series that last all day only on one day each "
        "year, without an end" +
            each,
        "S|1998-03-11|1998-03-11"}},
      {"SUMMARY:S\nDTSTART;VALUE=DATE:19500304\nRRULE:FREQ=YEARLY",
       {"S|1950-03-04|1950-03-04|every year on 4 Mar"}},
      {"SUMMARY:S\nDTSTART;VALUE=DATE:19980304\nRRULE:FREQ=DAILY",
       {"line 2: the organiser has series that last all day only on one day each year, without an "
        "end, and it has no end, and it is left out"}},
      {at + "19980304T233000\nRRULE:FREQ=DAILY;COUNT=2",
       {"S|1998-03-04 23:30|1998-03-05 00:30|! the organiser hasn't got series that go over "
        "midnight" +
            each,
        "S|1998-03-05 23:30|1998-03-06 00:30"}},
      // Outside of the years.
      {at + "21340702T100000Z",
       {"line 2: it lies outside of the years that the organiser has, and it is left out"}},
      {at + "19980304T100000Z\nRDATE:21340702T100000Z",
       {begin + "|! its dates follow no rule" + each,
        "line 2: 1 of its dates lies outside of the years that the organiser has, and it is left "
        "out"}},
  };
  for (const auto& one : cases) EXPECT_EQ(Brought(Event(one.lines)), one.seen) << one.lines;
}

TEST(CalendarImport, TakesOccurrencesThatAreOtherwise) {
  const std::string series =
      Event("SUMMARY:S\nDURATION:PT1H\nDTSTART:19980304T100000\nRRULE:FREQ=WEEKLY;COUNT=2");
  const std::string begin = "S|1998-03-04 10:00|1998-03-04 11:00|";
  const std::string weekly = begin + "every week on Wed until 1998-03-11";
  const struct {
    const char* lines;
    std::vector<std::string> seen;
  } cases[] = {
      {"RECURRENCE-ID:19980311T100000\nDTSTART:19980311T100000\nSTATUS:CANCELLED",
       {weekly + "|1998-03-11"}},
      {"RECURRENCE-ID;RANGE=THISANDFUTURE:19980311T100000\nDTSTART:19980311T120000\nURL:u",
       {weekly + "|1998-03-11: now 1998-03-11 12:00 to 1998-03-11 12:00|! line 9: its RANGE is "
                 "left out, so that the change is one of 19980311T100000 alone|! line 9: URL is "
                 "left out"}},
      {"RECURRENCE-ID:x\nDTSTART:19980311T120000\nDURATION:PT1H",
       {"|1998-03-11 12:00|1998-03-11 13:00|! the date of its series that it takes the place of "
        "can't be read, and it is an event of its own now",
        weekly}},
      {"RECURRENCE-ID:19980311T100000\nDTSTART:19980311T220000\nDURATION:PT4H",
       {begin + "! the organiser hasn't got series with a changed date that isn't within one day, "
                "and each date is an event of its own",
        "|1998-03-11 22:00|1998-03-12 02:00"}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Brought(series + Event(each.lines)), each.seen) << each.lines;
  }
  EXPECT_EQ(Brought(Event("DTSTART:19980311T100000\nSTATUS:CANCELLED")),
            std::vector<std::string>{"line 2: it was cancelled, and it is left out"});
}

// The series would stay beside its dates, and another run would add them again.
TEST(CalendarImport, DoesNotUpdateASeriesByItsDates) {
  const auto own = [](const std::string& lines) {
    return "BEGIN:VEVENT\nUID:pairwise-0123456789abcdef-Recurring:5\nDURATION:PT1H\n" + lines +
           "\nEND:VEVENT\n";
  };
  const std::string at = "DTSTART:19980304T100000\nRRULE:";
  const std::string dates = own(at + "FREQ=YEARLY;INTERVAL=2;COUNT=2");
  EXPECT_EQ(Brought(dates).size(), 2U);
  EXPECT_EQ(Brought(dates, true),
            std::vector<std::string>{"line 2: the organiser hasn't got its rule, so that it can't "
                                     "take the place of the one that is there, and it is left "
                                     "out"});
  EXPECT_EQ(Brought(own(at + "FREQ=DAILY;COUNT=2\nRDATE:19980310T100000"), true),
            std::vector<std::string>{"|1998-03-04 10:00|1998-03-04 11:00|every day until "
                                     "1998-03-05|! 1 date beside its rule can't come along, left "
                                     "out"});
  EXPECT_EQ(Brought(own("RECURRENCE-ID:19980304T100000\nDTSTART:19980304T110000"), true),
            std::vector<std::string>{"line 2: it is a date of a series that the file doesn't hold "
                                     "as one, and it is left out"});
}

// Each date has all texts, so that a small file could fill the memory.
TEST(CalendarImport, KeepsTheDatesOfSeriesWithinBounds) {
  const std::string daily = "DTSTART:19850101T080000Z\nDURATION:PT1H\nRRULE:FREQ=DAILY;BYMONTH=1,2";
  const auto counted = [&](const std::string& lines, std::size_t count) {
    const TestPlatform platform;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += "BEGIN:VEVENT\n" + lines + "\nEND:VEVENT\n";
    const Incoming incoming = EventsOfCalendar(ReadCalendarFile(text), Clocks(), false);
    const std::string problem = incoming.problems.empty() ? "" : incoming.problems.front();
    return std::to_string(incoming.records.size()) + " " + problem;
  };
  EXPECT_EQ(counted(daily + ";COUNT=1000", 1), "1000 ");
  EXPECT_EQ(counted(daily + ";COUNT=1001", 1),
            "0 line 1: 1001 dates of it would be an event each, and 1000 are the most, and it is "
            "left out");
  const std::string text(60'000, 'x');
  EXPECT_EQ(
      counted(daily + ";COUNT=1000\nDESCRIPTION:" + text, 2),
      "1000 line 7: its dates would be an event each, of which the file has too many already, "
      "and it is left out");
  EXPECT_EQ(counted(daily + ";COUNT=70\nDESCRIPTION:" + text + text, 1).substr(0, 9), "0 line 1:");
}

TEST(CalendarImport, TellsOfPropertiesThatNoRecordHasAPlaceFor) {
  const std::string at = "DTSTART:19980304T100000\n";
  const std::string begin = "|1998-03-04 10:00|1998-03-04 11:00";
  const auto alarm = [](const std::string& trigger) {
    return "BEGIN:VALARM\nTRIGGER" + trigger + "\nEND:VALARM";
  };
  const std::string leftOut = " of its alarms left out, as the organiser has one, before the start";
  const struct {
    std::string lines;
    std::string said;
  } cases[] = {
      {"DTSTAMP:x\nSEQUENCE:1\nTRANSP:OPAQUE\nX-OTHER:y\nSTATUS:CONFIRMED\nURL:", ""},
      {"URL:u\nattendee:a\nATTENDEE:b\nTRANSP:TRANSPARENT\nLOCATION:\nLOCATION:x\nSTATUS:TENTATIVE",
       "|! ATTENDEE, STATUS, TRANSP, URL are left out"},
      {"DESCRIPTION:a\nDESCRIPTION:b\nURL:u", "|! URL, a second DESCRIPTION are left out"},
      {"X-PAIRWISE-LOCATION:!\nLOCATION:l",
       "|! X-PAIRWISE-LOCATION is damaged, and LOCATION is taken in its place"},
      {alarm(":-PT5M"), ""},
      {alarm(";VALUE=DATE-TIME:19980304T090000Z"), "|! 1" + leftOut},
      {alarm(";RELATED=END:-PT5M") + "\n" + alarm(":-PT5M") + "\n" + alarm(":-PT9M"),
       "|! 2" + leftOut},
      {alarm(":x"), "|! 1" + leftOut},
      {alarm(":PT5M"), "|! 1" + leftOut},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Brought(Event(at + "DURATION:PT1H\n" + each.lines)),
              std::vector<std::string>{begin + each.said})
        << each.lines;
  }
  EXPECT_EQ(
      Brought(Event(at + "DURATION:1 hour")),
      std::vector<std::string>{"|1998-03-04 10:00|1998-03-04 10:01|! it has no length, and is "
                               "a minute long now|! DURATION can't be read, and is left "
                               "out"});
  // Of the organiser's code page.
  EXPECT_EQ(Brought(Event(at + "DURATION:PT1H\nSUMMARY:caf\xE9")),
            std::vector<std::string>{"caf\xC3\xA9" + begin});
}

TEST(CalendarImport, TellsOfToDoItemsWhatNoRecordHasAPlaceFor) {
  const auto told = [](const std::string& lines) {
    const Incoming incoming =
        TodosOfCalendar(ReadCalendarFile("BEGIN:VTODO\n" + lines + "\nEND:VTODO\n"));
    std::vector<std::string> all;
    for (const IncomingRecord& each : incoming.records) all = each.remarks;
    all.insert(all.end(), incoming.problems.begin(), incoming.problems.end());
    return all;
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(told("DUE;VALUE=DATE:19980304\nSTATUS:NEEDS-ACTION\nPERCENT-COMPLETE:0\nPRIORITY:5"),
            Lines());
  EXPECT_EQ(told("DUE:soon\nDTSTART:19980304T100000"),
            (Lines{"the time of DTSTART is left out", "DUE can't be read, and is left out"}));
  EXPECT_EQ(told("RRULE:FREQ=DAILY\nLOCATION:l\nDURATION:PT1H\nPERCENT-COMPLETE:50\n"
                 "BEGIN:VALARM\nTRIGGER:-PT5M\nEND:VALARM"),
            (Lines{"a to-do item has no alarm",
                   "DURATION, LOCATION, PERCENT-COMPLETE, RRULE are left out"}));
  EXPECT_EQ(told("STATUS:CANCELLED"), Lines{"line 1: it was cancelled, and it is left out"});
}

TEST(CalendarImport, SaysWhatIsDamaged) {
  EXPECT_EQ(Brought("BEGIN:VEVENT\nSUMMARY:no start\nEND:VEVENT\n"),
            (std::vector<std::string>{"line 2: the event has no start, and is left out",
                                      "the file holds no events"}));
  EXPECT_EQ(Brought("BEGIN:VEVENT\nDTSTART:19980230T100000Z\nEND:VEVENT\nBEGIN:VEVENT\n"),
            (std::vector<std::string>{"line 5: \"VEVENT\" doesn't end, and is left out",
                                      "line 2: its times can't be read, and it is left out"}));
}

TEST(CalendarImport, SaysThatTheFileIsAnother) {
  const CalendarFile file = ReadCalendarFile("BEGIN:VTODO\nEND:VTODO\n");
  EXPECT_EQ(
      EventsOfCalendar(file, Clocks(), false).problems,
      std::vector<std::string>{"the file holds no events, but 1 to-do item: import it as todo"});
  EXPECT_EQ(TodosOfCalendar(ReadCalendarFile("BEGIN:VCARD\nFN:x\nEND:VCARD\n")).problems,
            std::vector<std::string>{"the file holds no to-do items"});
  std::string damaged;
  for (int i = 0; i < 103; ++i) damaged += "?\n";
  EXPECT_EQ(Brought(damaged).at(100), "and 3 more of this kind");
}

// Such seconds would be those of another year.
TEST(CalendarImport, TakesNoCsvRowOutsideOfTheYearsThatHaveSeconds) {
  const Incoming incoming = ReadTypedCsv(
      "Subject,Start,End\r\na,2134-07-02 10:00,2134-07-02 11:00\r\n"
      "b,2029-07-02 10:00,2029-07-02 11:00\r\n",
      "calendar", Clocks());
  EXPECT_EQ(incoming.records.size(), 1U);
  EXPECT_EQ(incoming.problems,
            std::vector<std::string>{"record 1: it lies outside of the years that the organiser "
                                     "has, and it is left out"});
}

}  // namespace
}  // namespace pw

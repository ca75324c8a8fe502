#include "calendar/mapping/all_day_mapping.h"
#include "tests/calendar/mapping_fixture.h"
#include "tests/support/pattern_numbers.h"

namespace pw::test {
namespace {

PWDateTimeStamp Date(std::uint16_t year, std::uint8_t month, std::uint8_t day) {
  return {year, month, day, 0, 0, 0};
}

PWRecord YearlyByDate(std::uint8_t month, std::uint8_t day) {
  PWRecord record = DatesRecord("E", Date(1950, 1, 1), Date(1950, 1, 1));
  *Recur(record, kRecurranceYearlyByDate).YearlyByDate() = {month, day};
  return record;
}

PWRecord YearlyByDay(std::uint8_t month, std::uint8_t week, std::uint8_t day) {
  PWRecord record = DatesRecord("E", Date(1950, 1, 1), Date(1950, 1, 1));
  *Recur(record, kRecurranceYearlyByDay).YearlyByDay() = {month, week, day};
  return record;
}

class AllDayTest : public MappingTest {
 protected:
  // Adds the event as the first special day, and reads it from the file.
  PWRecord AddedAndRead(const PWRecord& record) {
    DeleteByIndex(*store, 0);
    EXPECT_EQ(Add(record), 0);
    EXPECT_EQ(message, "");
    Reopen();
    PWRecord read;
    EXPECT_EQ(Read(0, read), 0);
    return read;
  }
  const WMSpecialDay& Day() const { return *store->data.SpecialDay(0); }
};

TEST_F(AllDayTest, SpecialDaysOfEveryShape) {
  const struct {
    const char* what;
    PWRecord record;
    WMSpecialDay fields;
    const char* start;
  } cases[] = {
      {"of one year",
       DatesRecord("E", Date(1999, 4, 6), Date(1999, 4, 6)),
       {0, 0, 0, 1, 99, 3, 6, 1, 0},
       "1999-04-06 00:00"},
      {"of the last year",
       DatesRecord("E", Date(2029, 12, 31), Date(2029, 12, 31)),
       {0, 0, 0, 1, 129, 11, 31, 1, 0},
       "2029-12-31 00:00"},
      {"on a date", YearlyByDate(5, 20), {0, 0, 0, 1, 0, 5, 21, 1, 0}, "1980-06-21 00:00"},
      {"on the leap day", YearlyByDate(1, 28), {0, 0, 0, 1, 0, 1, 29, 1, 0}, "1980-02-29 00:00"},
      {"on the 2nd Sunday", YearlyByDay(4, 1, 1), {0, 0, 0, 0, 0, 4, 0, 2, 0}, "1980-05-11 00:00"},
      {"on the 1st Saturday",
       YearlyByDay(4, 0, 0),
       {0, 0, 0, 0, 0, 4, 0, 1, 6},
       "1980-05-03 00:00"},
      {"on the last Friday", YearlyByDay(4, 4, 6), {0, 0, 0, 0, 0, 4, 0, 5, 5}, "1980-05-30 00:00"},
      {"on the last Monday, the 4th",
       YearlyByDay(1, 4, 2),
       {0, 0, 0, 0, 0, 1, 0, 5, 1},
       "1980-02-25 00:00"},
      {"on the last Thursday, the 4th",
       YearlyByDay(11, 4, 5),
       {0, 0, 0, 0, 0, 11, 0, 5, 4},
       "1980-12-25 00:00"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    PWRecord read = AddedAndRead(each.record);
    WMSpecialDay stored = Day();
    EXPECT_EQ(stored.created, platform.clock.now);
    stored.created = 0;
    stored.id = 0;
    stored.subject = {};
    EXPECT_EQ(stored, each.fields);
    const PWEventRecord event(&read);
    EXPECT_EQ(Shown(event.StartDate()), each.start);
    EXPECT_EQ(event.EndDate(), event.StartDate());
    EXPECT_TRUE(event.AllDay());
    EXPECT_EQ(event.Subject().Str(), "E");
    PWRecord before = each.record;
    PWRecurrancePattern* expected = PWEventRecord(&before).RecurrancePattern();
    PWRecurrancePattern* pattern = event.RecurrancePattern();
    ASSERT_EQ(pattern == nullptr, expected == nullptr);
    if (pattern == nullptr) continue;
    EXPECT_EQ(pattern->Options.bits, 1U);
    ASSERT_EQ(pattern->Type, expected->Type);
    EXPECT_EQ(NumbersOf(*pattern), NumbersOf(*expected));
  }
}

TEST_F(AllDayTest, AlarmsCountInWholeDaysFromHalfADayOn) {
  const struct {
    std::int32_t lead;
    bool isOn;
    std::int32_t readLead;
  } cases[] = {{0, false, 0},      {719, false, 0},    {720, true, 1440}, {1439, true, 1440},
               {2159, true, 1440}, {2160, true, 2880}, {-720, false, 0}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.lead);
    PWRecord record = YearlyByDate(5, 20);
    PWEventRecord event(&record);
    event.Alarm(true);
    event.AlarmAdvance(each.lead);
    PWRecord read = AddedAndRead(record);
    EXPECT_EQ(PWEventRecord(&read).Alarm(), each.isOn);
    EXPECT_EQ(PWEventRecord(&read).AlarmAdvance(), each.readLead);
  }
}

TEST_F(AllDayTest, AnUpdateKeepsTheKeyAndAnAlarmThatItHasNotGot) {
  PWRecord record = YearlyByDate(5, 20);
  PWEventRecord event(&record);
  event.Alarm(true);
  event.AlarmAdvance(1440);
  Add(record);
  const WMSpecialDay before = Day();
  platform.clock.now += 1000;
  PWRecord later = YearlyByDay(4, 4, 2);
  PWEventRecord(&later).AlarmAdvance(719);
  EXPECT_EQ(Update(0, later), 0);
  EXPECT_EQ(Day().created, before.created);
  EXPECT_EQ(Day().id, before.id);
  EXPECT_EQ(Day().byDate, 0);
  EXPECT_EQ(Day().alarm, 1);
  EXPECT_EQ(Day().alarmDays, 1);
  PWEventRecord(&later).AlarmAdvance(720);
  Update(0, later);
  EXPECT_EQ(Day().alarm, 0) << "an alarm that is off, a day before";
  EXPECT_EQ(Day().alarmDays, 1);
}

// As only the organiser makes them.
TEST_F(AllDayTest, DaysThatTheEngineCannotSayAreReadAsDates) {
  const struct {
    const char* what;
    WMSpecialDay day;
    const char* start;
  } cases[] = {
      {"the 4th Thursday of one year", {0, 0, 0, 0, 99, 10, 0, 4, 4}, "1999-11-25 00:00"},
      {"its last Thursday", {0, 0, 0, 0, 99, 10, 0, 5, 4}, "1999-11-25 00:00"},
      {"a thirteenth month", {0, 0, 0, 1, 99, 12, 3, 1, 0}, "2000-01-03 00:00"},
      {"that of every year", {0, 0, 0, 1, 0, 12, 3, 1, 0}, "1981-01-03 00:00"},
      {"a last weekday in it", {0, 0, 0, 0, 99, 12, 0, 5, 1}, "2000-01-24 00:00"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    WMSpecialDay day = each.day;
    day.subject.fill('x');
    store->data.AddSpecialDay(day);
    store->RecountSections();
    PWRecord read;
    ASSERT_EQ(Read(0, read), 0);
    const PWEventRecord event(&read);
    EXPECT_EQ(Shown(event.StartDate()), each.start);
    EXPECT_EQ(event.Recurring(), day.year == 0);
    EXPECT_EQ(event.Subject().Str(), std::string(49, 'x')) << "the whole field";
    DeleteByIndex(*store, 0);
  }
}

TEST_F(AllDayTest, AnUpdateOfASpanKeepsAllButItsDatesAndItsText) {
  WMMultiDay span{1, 2, 880000000, 926000000, 927000000, 7, 9};
  span.subject.fill('x');
  store->data.AddMultiDay(span);
  store->RecountSections();
  PWRecord read;
  ASSERT_EQ(Read(0, read), 0);
  EXPECT_EQ(PWEventRecord(&read).Subject().Str(), std::string(48, 'x'));
  ASSERT_EQ(Update(0, DatesRecord("E", Date(1999, 5, 18), Date(1999, 5, 24))), 0);
  span.start = PlainSeconds(1999, 5, 18, 5, 0, 0);
  span.end = PlainSeconds(1999, 5, 24, 5, 0, 0);
  span.subject = {'E'};
  EXPECT_EQ(*store->data.MultiDay(0), span);
}

TEST_F(AllDayTest, ADayOfNoYearOrMonthIsNotReadAndStays) {
  const struct {
    std::uint8_t year;
    std::uint8_t month;
    std::int32_t result;
  } cases[] = {{79, 0, 1},  {80, 0, 0}, {130, 11, 0}, {131, 0, 1},
               {255, 0, 1}, {0, 12, 0}, {0, 13, 1},   {99, 13, 1}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.year * 100 + each.month);
    WMSpecialDay day;
    day.year = each.year;
    day.month = each.month;
    day.day = 6;
    store->data.AddSpecialDay(day);
    Reopen();
    PWRecord read;
    EXPECT_EQ(Read(0, read), each.result);
    EXPECT_EQ(message, "");
    EXPECT_EQ(Day().year, each.year);
    DeleteByIndex(*store, 0);
  }
}

TEST_F(AllDayTest, EventsOverSeveralDaysBecomeDates) {
  PWRecord timed = EventRecord("E", PlainSeconds(1999, 5, 19, 3, 0, 0),  // 18 May in Lima
                               PlainSeconds(1999, 5, 20, 15, 0, 0));
  const struct {
    PWRecord record;
    const char* date;
    const char* first;
    const char* last;
    std::int32_t start;
  } cases[] = {
      {timed, "5/19/1999", "1999-05-18 00:00", "1999-05-20 00:00",
       PlainSeconds(1999, 5, 19, 3, 0, 0)},
      {DatesRecord("E", Date(1999, 5, 18), Date(1999, 5, 24)), "5/18/1999", "1999-05-18 00:00",
       "1999-05-24 00:00", PlainSeconds(1999, 5, 18, 5, 0, 0)},
      {DatesRecord("E", Date(1979, 12, 1), Date(2031, 2, 3)), "12/1/1979", "1980-12-01 00:00",
       "2029-02-03 00:00", PlainSeconds(1980, 12, 1, 5, 0, 0)},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.date);
    EXPECT_EQ(Add(each.record), 0);
    EXPECT_EQ(message, Format("PWDesktop-W2016: The event 'E' spans to multiple days on PWDesktop "
                              "and the event is stored as untimed event. Start date '%s'.",
                              each.date));
    const WMMultiDay& span = *store->data.MultiDay(0);
    EXPECT_EQ(span.start, each.start);
    EXPECT_EQ(span.kind, 5);
    EXPECT_EQ(span.stamp, 0);
    PWRecord read;
    ASSERT_EQ(Read(0, read), 0);
    const PWEventRecord event(&read);
    EXPECT_EQ(Shown(event.StartDate()), each.first);
    EXPECT_EQ(Shown(event.EndDate()), each.last);
    EXPECT_TRUE(event.AllDay());
    DeleteByIndex(*store, 0);
  }
}

TEST_F(AllDayTest, SubjectsAreKeptToA47thCharacter) {
  const std::string subject = "~\t" + std::string(46, 's');
  PWRecord record = YearlyByDate(5, 20);
  PWEventRecord(&record).Subject(subject.c_str());
  Add(record);
  record = DatesRecord(subject, Date(1999, 5, 18), Date(1999, 5, 24));
  Add(record);
  Reopen();
  for (const std::uint32_t index : {0U, 1U}) {
    PWRecord read;
    ASSERT_EQ(Read(index, read), 0);
    EXPECT_EQ(PWEventRecord(&read).Subject().Str(), subject.substr(0, 47));
  }
}

TEST_F(AllDayTest, OnlyWhatHasTheShapeIsTaken) {
  PWRecord ends = YearlyByDate(5, 20);
  PWEventRecord(&ends).RecurrancePattern()->Options.bits = 0;
  PWRecord monthly = DatesRecord("E", Date(1999, 5, 1), Date(1999, 5, 1));
  Recur(monthly, kRecurranceMonthlyByDate);
  PWRecord timed =
      EventRecord("E", PlainSeconds(1999, 5, 18, 14, 0, 0), PlainSeconds(1999, 5, 18, 15, 0, 0));
  for (PWRecord* record : {&ends, &monthly, &timed}) {
    PWEventRecord event(record);
    EXPECT_FALSE(AddSpecialFromRecurring(store->data, event));
  }
  PWEventRecord event(&timed);
  EXPECT_EQ(AddMultiDayOrSpecial(store->data, event), 1);
  EXPECT_EQ(store->data.Count(), 0U);
  EXPECT_EQ(Add(monthly), 1) << "no yearly one";
  Add(YearlyByDate(1, 1));
  EXPECT_FALSE(UpdateMultiDayOrSpecial(store->data, 0, event));
  EXPECT_FALSE(UpdateMultiDayOrSpecial(store->data, 1, event));
}

}  // namespace
}  // namespace pw::test

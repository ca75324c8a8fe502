#include <algorithm>
#include <string>
#include <vector>

#include "calendar/mapping/series_mapping.h"
#include "tests/calendar/mapping_fixture.h"
#include "tests/support/pattern_numbers.h"
#include "timeplace/engine_zone.h"

namespace pw::test {
namespace {

constexpr const char* kCut =
    "PWDesktop-W2012: The date range for the recurring event \"E\" is too long and has been "
    "truncated by Wingmate/PairWise Desktop.";

// A pattern whose first date is that one of 1999.
struct PatternCase {
  ERecurranceType type;
  Numbers numbers;
  int month;
  int day;
  int years;  // that it is cut to without an end
};

const PatternCase kPatterns[] = {
    {kRecurranceDaily, {3}, 3, 20, 1},
    {kRecurranceWeekly, {2, 0x7F & ~0x12}, 3, 1, 1},  // neither Sunday nor Wednesday, but Saturday
    {kRecurranceMonthlyByDate, {5, 0x80004000}, 3, 15, 2},  // the 15th and the last
    {kRecurranceMonthlyByDay, {2, 1, 0}, 3, 13, 2},         // Saturday
    {kRecurranceYearlyByDate, {2, 14}, 3, 15, 10},
    {kRecurranceYearlyByDay, {2, 4, 1}, 3, 28, 10},  // the last Sunday
};

class SeriesTest : public MappingTest {
 protected:
  // A series from 9:30 to 10:15 by the clocks of a city.
  static PWRecord SeriesIn(const WMCityRecord& city, const PatternCase& its, bool ends) {
    PWRecord record =
        EventRecord("E", LocalToUtc(city, PlainSeconds(1999, its.month, its.day, 9, 30, 0)),
                    LocalToUtc(city, PlainSeconds(1999, its.month, its.day, 10, 15, 0)));
    PWRecurrancePattern& pattern = Recur(record, its.type, ends ? 2001 : 0);
    Fill(pattern, its.numbers);
    pattern.TimeZone = PWTimeZone(EngineZoneOf(city, 1999));
    return record;
  }
};

TEST_F(SeriesTest, ComeBackAsTheyWere) {
  for (const char* name : {"Lima", "New York, NY", "Sydney"}) {
    const WMCityRecord city = CityNamed(name);
    for (const PatternCase& its : kPatterns) {
      for (const bool ends : {true, false}) {
        SCOPED_TRACE(std::string(name) + " " + std::to_string(its.type) + (ends ? " ends" : ""));
        DeleteByIndex(*store, 0);
        PWRecord added = SeriesIn(city, its, ends);
        ASSERT_EQ(Add(added), 0);
        EXPECT_EQ(message, ends ? "" : kCut);
        EXPECT_EQ(store->currentRecord, 0U);
        Reopen();

        PWRecord record;
        ASSERT_EQ(Read(0, record), 0);
        const PWEventRecord event(&record);
        const PWEventRecord before(&added);
        EXPECT_EQ(event.StartDate(), before.StartDate());
        EXPECT_EQ(event.EndDate(), before.EndDate());
        EXPECT_FALSE(event.AllDay());
        PWRecurrancePattern& pattern = *event.RecurrancePattern();
        EXPECT_EQ(pattern.Type, its.type);
        EXPECT_EQ(NumbersOf(pattern), its.numbers);
        EXPECT_EQ(pattern.Options.bits, 0U);
        EXPECT_TRUE(pattern.TimeZone == EngineZoneOf(city, 1999));
        EXPECT_EQ(pattern.Exceptions().Count(), 0U);
        const std::string last =
            ends ? "2001-12-31" : Format("%d-%02d-%02d", 1999 + its.years, its.month, its.day);
        const std::int32_t lastDay = store->recurring.Item(0).rule.lastDay;
        EXPECT_EQ(ShownIn(city, lastDay).substr(0, 10), last);
        // The end of a yearly one is told by the machine's clock, which is that of Greenwich here.
        const bool isYearly = its.years == 10;
        EXPECT_EQ(Shown(pattern.EndDate()),
                  (isYearly ? Shown(UtcStamp(lastDay)).substr(0, 10) : last) + " 00:00");

        const std::size_t count = store->occurrenceItems.Count();
        EXPECT_GT(count, 2U);
        EXPECT_EQ(count, store->recurring.Item(0).Occurrences().size());
        for (std::size_t rank = 0; rank < count; ++rank) {
          const WMEventItem& item = store->occurrenceItems.Item(rank);
          EXPECT_EQ(ShownIn(city, item.Start()).substr(11), "09:30");
          EXPECT_EQ(item.End() - item.Start(), 45 * 60);
          EXPECT_EQ(item.Zone(), city.zone);
          EXPECT_EQ(item.Created(), store->recurring.Key(0));
          EXPECT_TRUE(item.IsOccurrence());
        }
      }
    }
  }
  EXPECT_EQ(WorkingZoneId(), HomeZoneId());
}

TEST_F(SeriesTest, ASpanOfSixYearsIsCutToWhatItsTypeAllows) {
  const struct {
    std::size_t pattern;
    int lastYear;
    const char* last;  // the rule's last moment in Lima
  } cases[] = {
      // Five years are kept, whatever the type.
      {0, 2004, "2004-12-31 10:16"}, {4, 2004, "2004-12-31 10:16"}, {0, 2005, "2000-12-31 10:16"},
      {1, 2005, "2000-12-31 10:16"}, {2, 2005, "2001-12-31 10:16"}, {3, 2006, "2001-12-31 10:16"},
      {4, 2005, "2009-12-31 10:16"}, {5, 2029, "2009-12-31 10:16"}, {0, 3000, "2000-12-31 10:16"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.lastYear);
    DeleteByIndex(*store, 0);
    PWRecord record = SeriesIn(CityNamed("Lima"), kPatterns[each.pattern], true);
    PWEventRecord(&record).RecurrancePattern()->EndDate =
        PWDateTimeStamp(static_cast<std::uint16_t>(each.lastYear), 12, 31, 24, 60, 0);
    ASSERT_EQ(Add(record), 0);
    EXPECT_EQ(message, each.lastYear == 2004 ? "" : kCut);
    EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(0).rule.lastDay), each.last);
  }
}

TEST_F(SeriesTest, OneWithoutEndThatBeganInAnEarlierYearBeginsInThisOne) {
  const struct {
    std::int64_t now;
    const char* first;
    const char* last;
  } cases[] = {
      {PlainSeconds(1999, 12, 31, 12, 0, 0), "1999-03-15 09:30", "2009-03-15 10:16"},
      {PlainSeconds(2001, 6, 1, 12, 0, 0), "2001-03-15 09:30", "2011-03-15 10:16"},
      {PlainSeconds(1998, 6, 1, 12, 0, 0), "1999-03-15 09:30", "2009-03-15 10:16"},
  };
  for (const auto& each : cases) {
    platform.clock.now = each.now;
    DeleteByIndex(*store, 0);
    ASSERT_EQ(Add(SeriesIn(CityNamed("Lima"), kPatterns[4], false)), 0);
    EXPECT_EQ(message, kCut);
    const WMRecurrenceRule& rule = store->recurring.Item(0).rule;
    EXPECT_EQ(ShownIn(CityNamed("Lima"), rule.firstDay), each.first);
    EXPECT_EQ(ShownIn(CityNamed("Lima"), rule.lastDay), each.last);
  }
}

// Which year this is the clocks of the series tell.
TEST_F(SeriesTest, OneWithoutEndIsOfTheYearThatItsZoneHas) {
  platform.clock.now = PlainSeconds(2000, 1, 1, 3, 0, 0);
  for (const auto& [name, year] : {std::pair("Lima", "1999"), {"Sydney", "2000"}}) {
    DeleteByIndex(*store, 0);
    ASSERT_EQ(Add(SeriesIn(CityNamed(name), kPatterns[4], false)), 0);
    EXPECT_EQ(ShownIn(CityNamed(name), store->recurring.Item(0).rule.firstDay).substr(0, 4), year);
  }
}

// The organiser has it so.
TEST_F(SeriesTest, ALeapDayBroughtForwardIsThe29thOfMarch) {
  PWRecord record =
      EventRecord("E", PlainSeconds(1996, 2, 29, 14, 30, 0), PlainSeconds(1996, 2, 29, 15, 0, 0));
  *Recur(record, kRecurranceYearlyByDate).YearlyByDate() = {1, 28};
  ASSERT_EQ(Add(record), 0);
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(0).rule.firstDay), "1999-03-01 09:30");
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->occurrenceItems.Item(0).Start()), "1999-03-29 09:30");
}

// Within a day at home, as it must be, but over midnight by the clocks of the series.
TEST_F(SeriesTest, OneOverMidnightEndsOnTheDateOfItsStart) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 13, 30, 0);
  PWRecord record = Daily("E", start, start + 3600, PWDateTimeStamp(1999, 5, 8, 0, 0, 0));
  PWEventRecord(&record).RecurrancePattern()->TimeZone =
      PWTimeZone(EngineZoneOf(CityNamed("Sydney"), 1999));
  ASSERT_EQ(Add(record), 0);
  const WMEventItem& item = store->occurrenceItems.Item(0);
  EXPECT_EQ(item.End() - item.Start(), -23 * 3600);
  PWRecord read;
  ASSERT_EQ(Read(0, read), 0);
  EXPECT_EQ(PWEventRecord(&read).StartDate(), UtcStamp(start));
  EXPECT_EQ(PWEventRecord(&read).EndDate(), UtcStamp(start + 1));
}

// The organiser's range ends a minute behind an occurrence, but not behind one that ends at :59.
TEST_F(SeriesTest, TimesOfTheRange) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 20, 0);  // 9:20 in Lima
  const PWDateTimeStamp lastDate(1999, 5, 8, 0, 0, 0);
  Add(Daily("E", start, start + 3600 + 39 * 60, lastDate));
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(0).rule.lastDay), "1999-05-08 10:00");
  EXPECT_EQ(store->recurring.Item(0).rule.startSlot, 9 * 4 + 1);
  EXPECT_EQ(store->recurring.Item(0).detail.EndHour(), 10);
  EXPECT_EQ(store->recurring.Item(0).detail.EndMinute(), 59);
  // The range only grows: an early end leaves it at ten o'clock.
  Add(Daily("E", start - 4 * 3600, start - 3 * 3600, lastDate));
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(1).rule.lastDay), "1999-05-08 10:00");
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(1).rule.firstDay), "1999-05-06 05:20");
}

TEST_F(SeriesTest, YearsOutOfTheCalendarAreBroughtIntoIt) {
  PWRecord record = Daily("E", 0, 0, PWDateTimeStamp(1981, 1, 2, 0, 0, 0));
  PWEventRecord event(&record);
  event.StartDate(PWDateTimeStamp(1979, 12, 30, 15, 0, 0));
  event.EndDate(PWDateTimeStamp(1979, 12, 30, 16, 0, 0));
  Add(record);
  EXPECT_EQ(ShownIn(CityNamed("Lima"), store->recurring.Item(0).rule.firstDay), "1980-12-30 10:00");
  EXPECT_EQ(store->occurrenceItems.Count(), 4U);
}

TEST_F(SeriesTest, AZoneThatNoCityHasIsTheHomeZone) {
  PWRecord record = SeriesIn(CityNamed("Lima"), kPatterns[0], true);
  PWEventRecord(&record).RecurrancePattern()->TimeZone.zone.Bias = 17;
  ASSERT_EQ(Add(record), 0);
  EXPECT_EQ(store->recurring.Item(0).zone, CityNamed("Lima").zone);
}

TEST_F(SeriesTest, APatternOfNoTypeIsNotStored) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 0, 0);
  PWRecord record = EventRecord("E", start, start + 3600);
  Recur(record, static_cast<ERecurranceType>(7), 2001);
  store->currentRecord = 17;
  EXPECT_EQ(Add(record), 0) << "as the organiser's makers have it";
  EXPECT_EQ(message, "");
  EXPECT_EQ(store->recordEnd, 0U);
  EXPECT_EQ(store->currentRecord, 17U);
  EXPECT_EQ(WorkingZoneId(), HomeZoneId());
  Add(SeriesIn(CityNamed("Lima"), kPatterns[0], true));
  EXPECT_EQ(Update(0, record), 0);
  EXPECT_EQ(store->RecordCount(), 0U) << "an update has removed the old one by then";
  EXPECT_EQ(store->occurrenceItems.Count(), 0U);
}

// What the engine can't say, or says in another way.
TEST_F(SeriesTest, RulesThatNoPatternSays) {
  const std::int32_t first = PlainSeconds(1999, 5, 6, 14, 0, 0);
  const std::string manifold =
      "PWDesktop-W2401: The monthly by day recurring 'E' contains more than one instance and is "
      "ignored by PairWise.";
  const struct {
    const char* what;
    WMRecurrenceRule rule;
    std::int32_t result;
    std::string message;
    int type;
  } cases[] = {
      {"two weeks", {first, first, 0, 1, 1, 3, 0, 2}, 1, manifold, 0},
      {"two weekdays", {first, first, 0, 1, 3, 2, 0, 6}, 1, manifold, 0},
      {"two weekdays a year", {first, first, 0, 1, 12, 1, 0, 3}, 1, manifold, 0},
      {"no kind", {first, first, 0, 5, 1, 1, 1, 1}, 1, "", 0},
      {"kind 0", {first, first, 0, 0, 1, 1, 1, 1}, 1, "", 0},
      {"every two years", {first, first, 0, 2, 24, 0, 0x20, 0}, 0, "", kRecurranceYearlyByDate},
      {"by weekday too", {first, first, 0, 1, 36, 1, 0, 16}, 0, "", kRecurranceYearlyByDay},
      {"every thirteen months", {first, first, 0, 1, 13, 1, 0, 16}, 0, "", kRecurranceMonthlyByDay},
      {"no interval", {first, first, 0, 2, 0, 0, 0x20, 0}, 0, "", kRecurranceYearlyByDate},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    auto item = std::make_unique<WMRecurringItem>();
    item->rule = each.rule;
    item->detail.SetSubject("E");
    item->zone = CityNamed("Sydney").zone;
    item->detail.SetAlarmHours(1);
    item->detail.SetAlarmMinutes(15);
    const auto index = static_cast<std::uint32_t>(store->recurring.Append(std::move(item)));
    store->RecountSections();
    PWRecord record;
    EXPECT_EQ(Read(index, record), each.result);
    EXPECT_EQ(message, each.message);
    EXPECT_EQ(WorkingZoneId(), CityNamed("Lima").zone);
    if (each.result != 0) continue;
    const PWEventRecord event(&record);
    EXPECT_EQ(event.RecurrancePattern()->Type, each.type);
    EXPECT_FALSE(event.Alarm());
    EXPECT_EQ(event.AlarmAdvance(), 75) << "of an alarm that is off";
    const bool hasDates = !store->recurring.Item(index).Occurrences().empty();
    EXPECT_EQ(event.StartDate() == PWDateTimeStamp(), !hasDates);
  }
}

TEST_F(SeriesTest, TheEndIsBehindTheStartByASecondAtLeast) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 0, 0);
  Add(Daily("E", start, start + 30, PWDateTimeStamp(1999, 5, 8, 0, 0, 0)));
  PWRecord record;
  ASSERT_EQ(Read(0, record), 0);
  EXPECT_EQ(PWEventRecord(&record).EndDate(), UtcStamp(start + 1));
}

TEST_F(SeriesTest, ItsTextsAndAlarm) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 0, 0);
  PWRecord record = Daily("a\tb~", start, start + 3600, PWDateTimeStamp(1999, 5, 8, 0, 0, 0));
  PWEventRecord event(&record);
  event.Notes(std::string(5000, 'n').c_str(), PWRecord::kWholeText);
  event.Location("Hall");
  event.Alarm(true);
  event.AlarmAdvance(23 * 60 + 59);
  Add(record);
  EXPECT_FALSE(NotesShortened());
  Reopen();
  PWRecord read;
  ASSERT_EQ(Read(0, read), 0);
  const PWEventRecord found(&read);
  EXPECT_EQ(found.Subject().Str(), "a b~");
  EXPECT_EQ(found.Notes().View().size(), 5000U) << "a series' notes aren't cut";
  EXPECT_EQ(found.Location().Str(), "") << "the organiser has no place for it";
  EXPECT_TRUE(found.Alarm());
  EXPECT_EQ(found.AlarmAdvance(), 23 * 60 + 59);
  EXPECT_EQ(store->occurrenceItems.Item(0).Notes().size(), 5000U);
}

TEST_F(SeriesTest, AnUpdateKeepsTheKeyAndReplacesAllElse) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 0, 0);
  Add(Daily("first", start, start + 3600, PWDateTimeStamp(1999, 5, 8, 0, 0, 0)));
  Add(Daily("second", start, start + 3600, PWDateTimeStamp(1999, 5, 9, 0, 0, 0)));
  const std::int32_t key = store->recurring.Key(0);
  EXPECT_NE(key, store->recurring.Key(1));
  EXPECT_EQ(Update(0, Daily("third", start, start + 60, PWDateTimeStamp(1999, 5, 7, 0, 0, 0))), 0);
  EXPECT_EQ(store->currentRecord, 1U) << "it is the last one now";
  EXPECT_EQ(store->recurring.Key(1), key);
  EXPECT_EQ(store->recurring.Item(1).detail.subject, "third");
  EXPECT_EQ(store->occurrenceItems.Count(), 4U + 2U);
  EXPECT_EQ(store->occurrenceItems.WithCreated(key).size(), 2U);
}

// As a damaged file may have it.
TEST_F(SeriesTest, OneOfTheKey0GetsAKeyWithAnUpdate) {
  store->recurring.Append(std::make_unique<WMRecurringItem>());
  store->RecountSections();
  ASSERT_EQ(Update(0, SeriesIn(CityNamed("Lima"), kPatterns[0], true)), 0);
  EXPECT_NE(store->recurring.Key(0), 0);
  EXPECT_GT(store->occurrenceItems.Count(), 0U);
  DeleteByIndex(*store, 0);
  EXPECT_EQ(store->occurrenceItems.Count(), 0U);
}

TEST_F(SeriesTest, ADeletedOneLeavesNothingBehind) {
  const std::int32_t start = PlainSeconds(1999, 5, 6, 14, 0, 0);
  Add(EventRecord("plain", start, start + 3600));
  store->Save();
  const std::string before = Saved(kEventPath) + Saved(kDataPath) + Saved(kRecurringPath);
  PWRecord series = Daily("gone", start, start + 3600, PWDateTimeStamp(1999, 5, 8, 0, 0, 0));
  auto* changed = new PWRecurranceException;
  changed->Date = PWDateTimeStamp(1999, 5, 7, 0, 0, 0);
  changed->StartDate = UtcStamp(start + 90000);
  changed->EndDate = UtcStamp(start + 93600);
  PWEventRecord(&series).RecurrancePattern()->AddException(changed);
  Add(series);
  Reopen();
  EXPECT_NE(Saved(kEventPath) + Saved(kDataPath) + Saved(kRecurringPath), before);
  EXPECT_EQ(DeleteByIndex(*store, 1), 0);
  store->Save();
  EXPECT_EQ(Saved(kEventPath) + Saved(kDataPath) + Saved(kRecurringPath), before);
}

}  // namespace
}  // namespace pw::test

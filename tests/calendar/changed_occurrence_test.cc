#include "calendar/calendar_state.h"
#include "calendar/mapping/series_mapping.h"
#include "tests/calendar/mapping_fixture.h"
#include "timeplace/engine_zone.h"

namespace pw::test {
namespace {

constexpr std::int32_t kMay6 = 925999200;  // 1999, 14:00, which is 9:00 in Lima
constexpr std::int32_t kDay = kSecondsPerDay;

// An hour a day in Lima on 6 to 10 May 1999, and what is otherwise on single days.
class ChangedOccurrenceTest : public MappingTest {
 protected:
  ChangedOccurrenceTest() {
    PWEventRecord event(&record);
    event.Notes("notes", PWRecord::kWholeText);
    event.Location("Hall");
    event.Sensitivity(kSensitivityConfidential);
  }

  PWRecurranceException& Except(std::uint8_t day, std::uint32_t changes) {
    auto* exception = new PWRecurranceException;
    exception->Date = PWDateTimeStamp(1999, 5, day, 0, 0, 0);
    exception->Changes.bits = changes;
    PWEventRecord(&record).RecurrancePattern()->AddException(exception);
    return *exception;
  }

  // Moved to six in the evening of its day.
  PWRecurranceException& Move(std::uint8_t day, std::uint32_t changes) {
    PWRecurranceException& exception = Except(day, changes);
    exception.StartDate = PWDateTimeStamp(1999, 5, day, 23, 0, 0);
    exception.EndDate = PWDateTimeStamp(1999, 5, day, 23, 30, 0);
    return exception;
  }

  // Of the record that is the only one.
  PWRecurranceExceptionVector& ReadExceptions() {
    EXPECT_EQ(Read(0, read), 0);
    return PWEventRecord(&read).RecurrancePattern()->Exceptions();
  }

  PWRecord record = Daily("E", kMay6, kMay6 + 3600, PWDateTimeStamp(1999, 5, 10, 0, 0, 0));
  PWRecord read;
};

TEST_F(ChangedOccurrenceTest, TakesTheTextsThatItSaysAndLeavesTheOthers) {
  PWRecurranceException& moved = Move(7, 0x06);  // subject and location
  moved.Subject = "its own";
  moved.Location = "elsewhere";
  moved.Notes = "not said";
  moved.AlarmAdvance.value = 30;
  Move(8, 0x09).AlarmAdvance.value = 61;  // alarm and notes
  Except(9, 0x10);
  ASSERT_EQ(Add(record), 0);
  ASSERT_EQ(store->occurrenceItems.Count(), 2U + 2U);

  const WMEventItem& first = store->occurrenceItems.Item(2);
  EXPECT_EQ(first.Subject(), "its own");
  EXPECT_EQ(first.Notes(), "notes");
  EXPECT_EQ(first.header.place.first.text, "elsewhere");
  EXPECT_FALSE(first.detail.HasAlarm());
  EXPECT_TRUE(first.IsChanged());
  EXPECT_FALSE(first.IsOccurrence());
  EXPECT_EQ(first.Sensitivity(), 2);
  EXPECT_EQ(first.Created(), store->recurring.Key(0));
  EXPECT_EQ(first.Start(), kMay6 + kDay + 9 * 3600);
  const WMEventItem& second = store->occurrenceItems.Item(3);
  EXPECT_EQ(second.Subject(), "E");
  EXPECT_EQ(second.Notes(), "");
  EXPECT_EQ(second.header.place.first.text, "Hall");
  EXPECT_TRUE(second.detail.HasAlarm());
  EXPECT_EQ(second.detail.AlarmHours(), 1);
  EXPECT_EQ(second.detail.AlarmMinutes(), 1);
  EXPECT_EQ(store->occurrenceItems.Item(0).header.place.first.text, "")
      << "an occurrence has no location";
  EXPECT_EQ(store->occurrenceItems.Item(0).Sensitivity(), 0);
}

TEST_F(ChangedOccurrenceTest, IsReadWithItsChangesOnceTheFileWasOpenedAgain) {
  PWRecurranceException& moved = Move(7, 0x03);
  moved.Subject = "its own";
  moved.AlarmAdvance.value = 61;
  Except(9, 0x10);
  Except(6, 0x10);  // the first date, which still begins the series
  Add(record);
  {
    PWRecurranceExceptionVector& exceptions = ReadExceptions();
    ASSERT_EQ(exceptions.Count(), 3U);
    EXPECT_EQ(exceptions.At(0)->Changes.bits, 0U);
    EXPECT_EQ(exceptions.At(0)->StartDate, PWDateTimeStamp());
  }
  Reopen();
  PWRecurranceExceptionVector& exceptions = ReadExceptions();
  ASSERT_EQ(exceptions.Count(), 3U);
  EXPECT_EQ(PWEventRecord(&read).StartDate(), UtcStamp(kMay6));
  const PWRecurranceException& changed = *exceptions.At(0);
  EXPECT_EQ(changed.Date, PWDateTimeStamp(1999, 5, 7, 0, 0, 0));
  EXPECT_EQ(changed.Changes.bits, 0x0FU) << "all is told as changed";
  EXPECT_EQ(changed.AlarmAdvance.value, 61);
  EXPECT_EQ(changed.Subject.Str(), "its own");
  EXPECT_EQ(changed.Notes.Str(), "notes");
  EXPECT_EQ(changed.Location.Str(), "Hall");
  EXPECT_EQ(changed.StartDate, PWDateTimeStamp(1999, 5, 7, 23, 0, 0));
  EXPECT_EQ(changed.EndDate, PWDateTimeStamp(1999, 5, 7, 23, 30, 0));
  for (const std::uint32_t i : {1U, 2U}) {
    EXPECT_EQ(exceptions.At(i)->Changes.bits, 0x10U);
    EXPECT_EQ(exceptions.At(i)->Date, PWDateTimeStamp(1999, 5, i == 1 ? 9 : 6, 0, 0, 0));
    EXPECT_EQ(exceptions.At(i)->Subject.Str(), "");
  }
}

TEST_F(ChangedOccurrenceTest, OfOneDateEachFindsItsOwn) {
  Move(7, 0x02).Subject = "early";
  PWRecurranceException& late = Move(7, 0x02);
  late.Subject = "late";
  late.StartDate.minute = 10;
  Move(7, 0x02).Subject = "early too";
  Add(record);
  EXPECT_EQ(store->occurrenceItems.Count(), 4U + 3U) << "the date is taken out once";
  Reopen();
  PWRecurranceExceptionVector& exceptions = ReadExceptions();
  ASSERT_EQ(exceptions.Count(), 3U);
  EXPECT_EQ(exceptions.At(0)->Subject.Str(), "early");
  EXPECT_EQ(exceptions.At(1)->Subject.Str(), "late");
  EXPECT_EQ(exceptions.At(2)->Subject.Str(), "early") << "the first of the same date and start";
}

// A date that the rule hasn't got is an exception all the same, and so is one without any stamps.
TEST_F(ChangedOccurrenceTest, OfADateThatTheSeriesHasNot) {
  Except(3, 0x10);
  PWEventRecord(&record).RecurrancePattern()->AddException(new PWRecurranceException);
  Add(record);
  EXPECT_EQ(store->occurrenceItems.Count(), 5U + 1U);
  EXPECT_EQ(store->recurring.Item(0).exceptions.size(), 2U);
  Reopen();
  EXPECT_EQ(ReadExceptions().Count(), 2U);
}

TEST_F(ChangedOccurrenceTest, ItsNotesAreCutAndASeriesAreNot) {
  Move(7, 0x08).Notes = std::string(2049, 'n');
  Add(record);
  EXPECT_TRUE(NotesShortened());
  EXPECT_EQ(store->occurrenceItems.Item(4).Notes().size(), 2048U);
}

TEST_F(ChangedOccurrenceTest, WithEveryDateDeletedASeriesIsReadAsBefore) {
  for (std::uint8_t day = 6; day <= 10; ++day) Except(day, 0x10);
  Add(record);
  EXPECT_EQ(store->occurrenceItems.Count(), 0U);
  Reopen();
  EXPECT_EQ(ReadExceptions().Count(), 5U);
  EXPECT_EQ(PWEventRecord(&read).StartDate(), UtcStamp(kMay6));
}

TEST_F(ChangedOccurrenceTest, ItsDatesAreThoseOfTheZoneOfTheSeries) {
  const WMCityRecord sydney = CityNamed("Sydney");
  const std::int32_t start = LocalToUtc(sydney, PlainSeconds(1999, 5, 6, 9, 0, 0));
  PWEventRecord event(&record);
  event.StartDate(UtcStamp(start));  // still 5 May in Greenwich
  event.EndDate(UtcStamp(start + 3600));
  event.RecurrancePattern()->TimeZone = PWTimeZone(EngineZoneOf(sydney, 1999));
  Except(6, 0x10);
  PWRecurranceException& moved = Except(8, 0x00);
  moved.StartDate = UtcStamp(start + 2 * kDay + 60);
  moved.EndDate = UtcStamp(start + 2 * kDay + 120);
  Add(record);
  EXPECT_EQ(ShownIn(sydney, store->occurrenceItems.Item(0).Start()), "1999-05-07 09:00");
  EXPECT_EQ(store->occurrenceItems.Item(3).Zone(), CityNamed("Lima").zone)
      << "a changed one is of the home zone";
  const auto& stored = store->recurring.Item(0).exceptions;
  EXPECT_EQ(stored.at(0).date, LocalToUtc(sydney, PlainSeconds(1999, 5, 6, 0, 0, 0)));
  Reopen();
  PWRecurranceExceptionVector& exceptions = ReadExceptions();
  EXPECT_EQ(exceptions.At(0)->Date, PWDateTimeStamp(1999, 5, 6, 0, 0, 0));
  EXPECT_EQ(exceptions.At(1)->Date, PWDateTimeStamp(1999, 5, 8, 0, 0, 0));
  EXPECT_EQ(exceptions.At(1)->StartDate, UtcStamp(start + 2 * kDay + 60));
}

}  // namespace
}  // namespace pw::test

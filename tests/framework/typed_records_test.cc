#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/task_record.h"
#include "framework/timezone_record.h"

namespace {

const PWDateTimeStamp kStamp(1999, 12, 31, 23, 58, 59);

// All properties of a record at once, so that no two share a place in it.
TEST(TypedRecordsTest, PropertiesHaveAPlaceEachInTheRecord) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject("a");
  event.Location("b");
  event.Notes("c", PWRecord::kWholeText);
  event.StartDate(kStamp);
  event.EndDate(PWDateTimeStamp(2000, 1, 2, 3, 4, 5));
  event.AllDay(true);
  event.Alarm(false);
  event.AlarmAdvance(INT32_MIN);
  event.Sensitivity(kSensitivityPrivate);
  EXPECT_EQ(event.Subject().Str() + event.Location().Str() + event.Notes().Str(), "abc");
  EXPECT_EQ(event.StartDate(), kStamp);
  EXPECT_EQ(event.EndDate(), PWDateTimeStamp(2000, 1, 2, 3, 4, 5));
  EXPECT_TRUE(event.AllDay() && !event.Alarm());
  event.AllDay(false);
  event.Alarm(true);
  EXPECT_TRUE(!event.AllDay() && event.Alarm());
  EXPECT_EQ(event.AlarmAdvance(), INT32_MIN);
  EXPECT_EQ(event.Sensitivity(), kSensitivityPrivate);
  event.Subject() = "set through what is read";
  EXPECT_EQ(PWEventRecord(&record).Subject().Str(), "set through what is read");
}

// The flags of a task or clock, of which each set one must be the only one.
template <class Typed>
void ExpectApart(
    const std::vector<std::pair<bool (Typed::*)() const, void (Typed::*)(bool)>>& flags) {
  for (const auto& [ignored, set] : flags) {
    PWRecord record;
    (Typed(&record).*set)(true);
    int count = 0;
    for (const auto& [get, alsoIgnored] : flags) count += (Typed(&record).*get)() ? 1 : 0;
    EXPECT_EQ(count, 1);
  }
}

TEST(TypedRecordsTest, SoHaveThoseOfTheOtherTypes) {
  using Task = PWTaskRecord;
  using Zone = PWTimezoneRecord;
  ExpectApart<Task>({{&Task::NoStartDate, &Task::NoStartDate},
                     {&Task::NoDueDate, &Task::NoDueDate},
                     {&Task::Completed, &Task::Completed},
                     {&Task::Call, &Task::Call}});
  ExpectApart<Zone>(
      {{&Zone::Home, &Zone::Home}, {&Zone::World, &Zone::World}, {&Zone::Active, &Zone::Active}});
  PWRecord record;
  Task task(&record);
  task.Subject("a");
  task.Note("b");
  task.StartDate(kStamp);
  task.DueDate(PWDateTimeStamp());
  task.Priority(kPriorityHigh);
  EXPECT_EQ(task.Subject().Str() + task.Note().Str(), "ab");
  EXPECT_EQ(task.StartDate(), kStamp);
  EXPECT_EQ(task.Priority(), kPriorityHigh);
  Zone zone(&record);
  zone.City("c");
  zone.State("d");
  zone.Country("e");
  zone.Bias(0xFFFFFE20);
  zone.StandardBias(2);
  zone.DaylightBias(3);
  zone.StandardSwitch(4);
  zone.DaylightSwitch(5);
  EXPECT_EQ(zone.City().Str() + zone.State().Str() + zone.Country().Str(), "cde");
  const std::vector<std::uint32_t> numbers = {zone.Bias(), zone.StandardBias(), zone.DaylightBias(),
                                              zone.StandardSwitch(), zone.DaylightSwitch()};
  EXPECT_EQ(numbers, (std::vector<std::uint32_t>{0xFFFFFE20, 2, 3, 4, 5}));
}

TEST(TypedRecordsTest, ATextIsTakenUpToTheSizeGivenOrItsEnd) {
  const char unterminated[] = {'a', 'b', 'c'};
  const struct {
    const char* text;
    std::uint32_t size;
    const char* taken;
  } cases[] = {{"abc", 3, "abc"},        {"abc", 2, "ab"}, {"abc", 0, ""},
               {"abc", 500, "abc"},      {"", 5, ""},      {"abc", PWRecord::kWholeText, "abc"},
               {unterminated, 3, "abc"}, {nullptr, 5, ""}, {nullptr, PWRecord::kWholeText, ""}};
  for (const auto& c : cases) {
    PWRecord eventRecord;
    PWRecord memoRecord;
    PWEventRecord event(&eventRecord);
    PWMemoRecord memo(&memoRecord);
    event.Notes() = memo.Subject() = memo.Body() = "before";
    event.Notes(c.text, c.size);
    memo.Subject(c.text, c.size);
    memo.Body(c.text, c.size);
    EXPECT_EQ(event.Notes().Str(), c.taken) << c.size;
    EXPECT_EQ(memo.Subject().Str(), c.taken) << c.size;
    EXPECT_EQ(memo.Body().Str(), c.taken) << c.size;
  }
}

TEST(TypedRecordsTest, ATextMayBeSetFromItselfAndFromNull) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject("subject");
  event.Subject(event.Subject());
  EXPECT_EQ(event.Subject().Str(), "subject");
  event.Notes("notes", 5);
  event.Notes(event.Notes() + 2, 2);
  EXPECT_EQ(event.Notes().Str(), "te");
  event.Subject(nullptr);
  EXPECT_TRUE(event.Subject().IsEmpty());
}

TEST(TypedRecordsTest, ValuesOutsideTheirEnumerationPassThrough) {
  PWRecord record;
  PWEventRecord event(&record);
  PWTaskRecord task(&record);
  for (const std::int32_t value : {7, 255, INT32_MAX, -1, INT32_MIN}) {
    event.Sensitivity(static_cast<EPWEventRecordSensitivity>(value));
    EXPECT_EQ(event.Sensitivity(), value);
    task.Priority(static_cast<EPWTaskRecordPriority>(value));
    EXPECT_EQ(task.Priority(), value);
    event.Recurring(true, static_cast<ERecurranceType>(value));
    EXPECT_EQ(event.RecurrancePattern()->Type(), value);
  }
}

TEST(RecurranceTest, OnlyTheVariantOfTheTypeIsThere) {
  PWRecurrancePattern pattern;
  for (const std::int32_t type : {-1, 0, 1, 2, 3, 4, 5, 6, 7}) {
    pattern.Type(static_cast<ERecurranceType>(type));
    EXPECT_EQ(pattern.Daily() != nullptr, type == 1);
    EXPECT_EQ(pattern.Weekly() != nullptr, type == 2);
    EXPECT_EQ(pattern.MonthlyByDate() != nullptr, type == 3);
    EXPECT_EQ(pattern.MonthlyByDay() != nullptr, type == 4);
    EXPECT_EQ(pattern.YearlyByDate() != nullptr, type == 5);
    EXPECT_EQ(pattern.YearlyByDay() != nullptr, type == 6);
  }
}

TEST(RecurranceTest, APatternThatIsRetypedKeepsAllElse) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Recurring(true, kRecurranceWeekly);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.Weekly()->Interval = -2;
  pattern.EndDate(kStamp);
  pattern.TimeZone.zone.Bias = 300;
  pattern.AddException(new PWRecurranceException);

  event.Recurring(true, kRecurranceYearlyByDay);
  ASSERT_EQ(event.RecurrancePattern(), &pattern);
  pattern.YearlyByDay()->Month = 11;
  EXPECT_EQ(pattern.EndDate(), kStamp);
  EXPECT_EQ(pattern.TimeZone.zone.Bias, 300);
  EXPECT_EQ(pattern.Exceptions().Count(), 1U);
  pattern.Type(kRecurranceWeekly);
  EXPECT_EQ(pattern.Weekly()->Interval, -2);
}

TEST(RecurranceTest, SwitchedOffThePatternIsGoneAndOnItStartsAfresh) {
  PWRecord record;
  PWEventRecord event(&record);
  EXPECT_EQ(event.RecurrancePattern(), nullptr);
  event.Recurring(false, kRecurranceYearlyByDate);
  EXPECT_EQ(event.RecurrancePattern(), nullptr) << "off before it ever was on";
  record.SetPattern(std::make_unique<PWNumber>(1));
  EXPECT_FALSE(event.Recurring()) << "an object that is no pattern";

  event.Recurring(true, kRecurranceDaily);
  event.RecurrancePattern()->Daily()->Interval = 3;
  event.RecurrancePattern()->Options.bits = ~0U;
  EXPECT_TRUE(event.RecurrancePattern()->NeverEnds());
  event.RecurrancePattern()->Options.Bit(PWRecurrancePattern::kNeverEnds, false);
  EXPECT_EQ(event.RecurrancePattern()->Options.bits, 0xFFFFFFFEU);
  EXPECT_FALSE(event.RecurrancePattern()->NeverEnds());
  event.Recurring(false, kRecurranceYearlyByDate);
  EXPECT_FALSE(event.Recurring());
  EXPECT_EQ(event.RecurrancePattern(), nullptr);

  event.Recurring(true, kRecurranceDaily);
  EXPECT_EQ(event.RecurrancePattern()->Type(), kRecurranceDaily);
  EXPECT_EQ(event.RecurrancePattern()->Daily()->Interval, 0);
}

// Counts itself, so that a leak or a second deletion shows.
class CountedException : public PWRecurranceException {
 public:
  explicit CountedException(int& live) : live(live) { ++live; }
  ~CountedException() override { --live; }

 private:
  int& live;
};

TEST(RecurranceTest, APatternOwnsItsExceptions) {
  int live = 0;
  PWRecord record;
  PWEventRecord event(&record);
  event.Recurring(true, kRecurranceDaily);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.AddException(nullptr);
  EXPECT_EQ(pattern.Exceptions().Count(), 0U);
  auto* first = new CountedException(live);
  pattern.AddException(first);
  pattern.AddException(new CountedException(live));
  EXPECT_EQ(pattern.Exceptions().At(0), first);
  EXPECT_EQ(live, 2);
  pattern.ClearExceptions();
  EXPECT_EQ(live, 0);
  EXPECT_EQ(pattern.Exceptions().First(), nullptr);
  pattern.AddException(new CountedException(live));
  event.Recurring(false, kRecurranceDaily);
  EXPECT_EQ(live, 0);
}

TEST(RecurranceTest, ACopiedRecordHasAPatternOfItsOwn) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Recurring(true, kRecurranceMonthlyByDate);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.EndDate(kStamp);
  pattern.TimeZone.zone.Bias = 300;
  pattern.Options.bits = 5;
  pattern.MonthlyByDate()->Interval = 7;
  pattern.MonthlyByDate()->Days.Bit(31, true);
  auto* exception = new PWRecurranceException;
  exception->Subject = "changed";
  pattern.AddException(exception);

  PWRecord copy(record);
  pattern.EndDate(PWDateTimeStamp());
  pattern.TimeZone = PWTimeZone();
  pattern.Options.bits = 0;
  *pattern.MonthlyByDate() = PWMonthlyByDateRecurrance();
  exception->Subject = "later";
  pattern.ClearExceptions();
  event.Recurring(false, kRecurranceDaily);

  ASSERT_TRUE(PWEventRecord(&copy).Recurring());
  PWRecurrancePattern& copied = *PWEventRecord(&copy).RecurrancePattern();
  EXPECT_EQ(copied.EndDate(), kStamp);
  EXPECT_EQ(copied.TimeZone.zone.Bias, 300);
  EXPECT_EQ(copied.Options.bits, 5U);
  ASSERT_EQ(copied.Type(), kRecurranceMonthlyByDate);
  EXPECT_EQ(copied.MonthlyByDate()->Interval, 7);
  EXPECT_EQ(copied.MonthlyByDate()->Days.bits, 0x80000000U);
  ASSERT_EQ(copied.Exceptions().Count(), 1U);
  EXPECT_EQ(copied.Exceptions().At(0)->Subject.Str(), "changed");
}

TEST(RecurranceTest, ExceptionsComeWholeThroughCopiesAndArchives) {
  auto* exception = new PWRecurranceException;
  exception->Date = PWDateTimeStamp(65535, 1, 2, 3, 4, 5);
  exception->StartDate = PWDateTimeStamp(2001, 255, 254, 253, 252, 251);
  exception->EndDate = PWDateTimeStamp(2002, 12, 13, 14, 15, 16);
  exception->Changes.bits = 0x80000021;
  exception->Subject = "subject";
  exception->Location = "location";
  exception->Notes = "notes\r\nof two lines";
  exception->AlarmAdvance.value = -15;
  PWRecurranceExceptionVector exceptions;
  exceptions.Append(exception, false);
  PWArchive archive;
  exceptions.Serialize(archive);
  PWRecurranceExceptionVector loaded;
  PWArchive stored(archive.Bytes());
  loaded.Serialize(stored);
  const std::unique_ptr<PWObject> clone(exceptions.Clone());
  for (PWObject* const vector : {static_cast<PWObject*>(&loaded), clone.get()}) {
    const auto& read = *dynamic_cast<PWRecurranceExceptionVector&>(*vector).At(0);
    EXPECT_EQ(read.Date, exception->Date);
    EXPECT_EQ(read.StartDate, exception->StartDate);
    EXPECT_EQ(read.EndDate, exception->EndDate);
    EXPECT_EQ(read.Changes.bits, exception->Changes.bits);
    EXPECT_EQ(read.Subject.Str() + read.Location.Str() + read.Notes.Str(),
              "subjectlocationnotes\r\nof two lines");
    EXPECT_EQ(read.AlarmAdvance.value, -15);
  }
}

}  // namespace

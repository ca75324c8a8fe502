#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/task_record.h"
#include "framework/timezone_record.h"

namespace {

std::string Show(const PWString& text) {
  return text.Str();
}

std::string Show(const char* text) {
  return text;
}

std::string Show(const PWDateTimeStamp& stamp) {
  std::string shown = std::to_string(stamp.year);
  for (const int part : {stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second}) {
    shown += " " + std::to_string(part);
  }
  return shown;
}

template <class Value>
std::string Show(Value value) {
  return std::to_string(value);
}

const PWDateTimeStamp kStamp(1999, 12, 31, 23, 58, 59);

// A property of a typed record: the ways to set it, and what it reads as before and after any one.
struct Property {
  std::string name;
  std::function<std::string(PWRecord*)> read;
  std::string after;
  std::vector<std::function<void(PWRecord*)>> ways;
};

// What is read as a reference can be set through it too; a setter of two takes a text and its size.
template <class Typed, class Got, class... Args, class Value>
Property Of(const char* name, Got (Typed::*get)() const, void (Typed::*set)(Args...), Value value) {
  const auto read = [get](PWRecord* record) { return Show((Typed(record).*get)()); };
  Property made{name, read, Show(value), {}};
  made.ways.push_back([set, value](PWRecord* record) {
    if constexpr (sizeof...(Args) == 2) (Typed(record).*set)(value, 4);
    if constexpr (sizeof...(Args) == 1) (Typed(record).*set)(value);
  });
  if constexpr (std::is_reference_v<Got>) {
    made.ways.push_back([get, value](PWRecord* record) { (Typed(record).*get)() = value; });
  }
  return made;
}

std::vector<Property> EventProperties() {
  using Event = PWEventRecord;
  Property recurring{
      "Recurring", [](PWRecord* record) { return Show(Event(record).Recurring()); }, "1", {}};
  recurring.ways = {[](PWRecord* record) { Event(record).Recurring(true, kRecurranceWeekly); }};
  return {Of("Subject", &Event::Subject, &Event::Subject, "text"),
          Of("Location", &Event::Location, &Event::Location, "text"),
          Of("Notes", &Event::Notes, &Event::Notes, "text"),
          Of("StartDate", &Event::StartDate, &Event::StartDate, kStamp),
          Of("EndDate", &Event::EndDate, &Event::EndDate, kStamp),
          Of("AllDay", &Event::AllDay, &Event::AllDay, true),
          Of("Alarm", &Event::Alarm, &Event::Alarm, true),
          Of("AlarmAdvance", &Event::AlarmAdvance, &Event::AlarmAdvance, INT32_MIN),
          Of("Sensitivity", &Event::Sensitivity, &Event::Sensitivity, kSensitivityPrivate),
          recurring};
}

std::vector<Property> TaskProperties() {
  using Task = PWTaskRecord;
  return {Of("Subject", &Task::Subject, &Task::Subject, "text"),
          Of("Note", &Task::Note, &Task::Note, "text"),
          Of("StartDate", &Task::StartDate, &Task::StartDate, kStamp),
          Of("DueDate", &Task::DueDate, &Task::DueDate, kStamp),
          Of("NoStartDate", &Task::NoStartDate, &Task::NoStartDate, true),
          Of("NoDueDate", &Task::NoDueDate, &Task::NoDueDate, true),
          Of("Priority", &Task::Priority, &Task::Priority, kPriorityHigh),
          Of("Completed", &Task::Completed, &Task::Completed, true),
          Of("Call", &Task::Call, &Task::Call, true)};
}

std::vector<Property> MemoProperties() {
  return {Of("Subject", &PWMemoRecord::Subject, &PWMemoRecord::Subject, "text"),
          Of("Body", &PWMemoRecord::Body, &PWMemoRecord::Body, "text")};
}

std::vector<Property> TimezoneProperties() {
  using Zone = PWTimezoneRecord;
  constexpr std::uint32_t kWest = 0xFFFFFE20;
  return {Of("City", &Zone::City, &Zone::City, "text"),
          Of("State", &Zone::State, &Zone::State, "text"),
          Of("Country", &Zone::Country, &Zone::Country, "text"),
          Of("Home", &Zone::Home, &Zone::Home, true),
          Of("World", &Zone::World, &Zone::World, true),
          Of("Active", &Zone::Active, &Zone::Active, true),
          Of("Bias", &Zone::Bias, &Zone::Bias, kWest),
          Of("StandardBias", &Zone::StandardBias, &Zone::StandardBias, kWest),
          Of("DaylightBias", &Zone::DaylightBias, &Zone::DaylightBias, kWest),
          Of("StandardSwitch", &Zone::StandardSwitch, &Zone::StandardSwitch, kWest),
          Of("DaylightSwitch", &Zone::DaylightSwitch, &Zone::DaylightSwitch, kWest)};
}

TEST(TypedRecordsTest, EachPropertyIsSetInTheRecordAndDisturbsNoOther) {
  for (const auto& properties :
       {EventProperties(), TaskProperties(), MemoProperties(), TimezoneProperties()}) {
    for (const Property& one : properties) {
      for (const auto& set : one.ways) {
        PWRecord fresh;
        PWRecord record;
        set(&record);
        for (const Property& other : properties) {
          const bool isSame = &other == &one;
          EXPECT_NE(one.after, one.read(&fresh)) << one.name;
          EXPECT_EQ(other.read(&record), isSame ? one.after : other.read(&fresh))
              << other.name << " after " << one.name << " was set";
        }
      }
    }
  }
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

PWRecurranceExceptionVector OneException() {
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
  return exceptions;
}

void ExpectTheOneException(PWObject& vector) {
  auto& exceptions = dynamic_cast<PWRecurranceExceptionVector&>(vector);
  ASSERT_EQ(exceptions.Count(), 1U);
  const PWRecurranceException& exception = *exceptions.At(0);
  EXPECT_EQ(exception.Date, PWDateTimeStamp(65535, 1, 2, 3, 4, 5));
  EXPECT_EQ(exception.StartDate, PWDateTimeStamp(2001, 255, 254, 253, 252, 251));
  EXPECT_EQ(exception.EndDate, PWDateTimeStamp(2002, 12, 13, 14, 15, 16));
  EXPECT_EQ(exception.Changes.bits, 0x80000021U);
  EXPECT_EQ(exception.Subject.Str(), "subject");
  EXPECT_EQ(exception.Location.Str(), "location");
  EXPECT_EQ(exception.Notes.Str(), "notes\r\nof two lines");
  EXPECT_EQ(exception.AlarmAdvance.value, -15);
}

TEST(RecurranceTest, ExceptionsComeWholeThroughCopiesAndArchives) {
  std::unique_ptr<PWObject> clone;
  PWArchive archive;
  {
    PWRecurranceExceptionVector exceptions = OneException();
    clone.reset(exceptions.Clone());
    exceptions.Serialize(archive);
    EXPECT_EQ(exceptions.At(0)->Compare(exceptions.At(0)), -1);
  }
  ExpectTheOneException(*clone);
  PWArchive stored(archive.Bytes());
  PWRecurranceExceptionVector loaded;
  loaded.Serialize(stored);
  ExpectTheOneException(loaded);
}

TEST(RecurranceTest, AnExceptionFromAnArchiveThatIsCutHasNothingBeyondTheCut) {
  PWArchive archive;
  OneException().At(0)->Serialize(archive);
  for (std::size_t size = 0; size < archive.Bytes().size(); ++size) {
    PWArchive stored(archive.Bytes().substr(0, size));
    PWRecurranceException loaded;
    loaded.AlarmAdvance.value = 1;
    loaded.Serialize(stored);
    EXPECT_EQ(loaded.AlarmAdvance.value, 0) << size;
  }
}

}  // namespace

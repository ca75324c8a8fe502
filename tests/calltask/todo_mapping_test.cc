#include "tests/calltask/todo_fixture.h"

namespace pw::test {
namespace {

TEST_F(TodoSourceTest, WhatIsAddedReadsBackAndComesBackWithTheFile) {
  UseVersion50();
  ASSERT_EQ(source->Open(0), 0);
  for (const bool call : {true, false, true, false}) {
    Todo added("tab\there \x7F ~", call);
    added.Note("line\r\n\tnext");
    added.Completed(true);
    added.Due(PWDateTimeStamp(2004, 2, 29, 9, 9, 9));
    added.Priority(kPriorityHigh);
    ASSERT_EQ(source->AddRecord(added.record), 0);
    Todo todo;
    Read(todo);
    EXPECT_EQ(todo.Call(), call) << "the cursor is on the new record";
  }
  const Lines ids = Ids();
  Reopen();
  EXPECT_EQ(Ids(), ids);
  for (std::uint32_t i = 0; i < 4; ++i) {
    Todo todo;
    todo.StartDate(PWDateTimeStamp(1, 1, 1, 7, 8, 9));
    ReadAt(i, todo);
    EXPECT_EQ(todo.Call(), i >= 2);
    EXPECT_EQ(todo.Subject(), "tab here   ~");
    EXPECT_EQ(todo.Note(), "line\r\n next");
    EXPECT_TRUE(todo.Completed());
    EXPECT_EQ(todo.StartDate(), PWDateTimeStamp(1999, 3, 4, 7, 8, 9)) << "the time is left alone";
    EXPECT_EQ(todo.Due(), "2004-2-29");
    EXPECT_EQ(todo.Priority(), kPriorityHigh);
  }
}

TEST_F(TodoSourceTest, DueDatesAreHeldAsFarAsTheFilesReach) {
  const struct {
    PWDateTimeStamp set;
    const char *call, *task;
  } cases[] = {
      {{2029, 12, 31, 0, 0, 0}, "2029-12-31", "2005-12-31"},
      {{2031, 1, 2, 0, 0, 0}, "2029-1-2", "2005-1-2"},
      {{1989, 5, 6, 0, 0, 0}, "1990-5-6", "1990-5-6"},
      {{2005, 12, 31, 23, 59, 59}, "2005-12-31", "2005-12-31"},
      {{0, 1, 0, 0, 0, 0}, "none", "none"},
      {{0, 0, 0, 0, 0, 0}, "none", "none"},
  };
  for (const bool is50 : {false, true}) {
    Put({}, {}, is50);
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
    for (const auto& each : cases) {
      for (const bool call : {true, false}) {
        Todo added("s", call);
        added.Due(each.set);
        ASSERT_EQ(source->AddRecord(added.record), 0);
        const std::string id = Id();
        Todo todo;
        Read(todo);
        EXPECT_EQ(todo.Due(), call ? each.call : each.task);
        if (!is50 && !call) continue;  // its id has the date
        Reopen();
        ASSERT_EQ(source->FindRecord(id.c_str()), 0);
        Read(todo);
        EXPECT_EQ(todo.Due(), !call ? each.task : is50 ? each.call : "none");
      }
    }
  }
}

// The flag for no due date: a task's follows, a call's is only ever cleared.
TEST_F(TodoSourceTest, DueDatesAndTheirFlag) {
  const std::uint32_t flagged = kNewWord | 1U << 21;
  const PWDateTimeStamp date(2000, 1, 2, 0, 0, 0);
  const PWDateTimeStamp noCallDate(0, 1, 0, 0, 0, 0);
  const PWDateTimeStamp noTaskDate;
  const struct {
    std::optional<PWDateTimeStamp> due;
    std::uint32_t before, call, task;
  } cases[] = {
      {date, flagged, kNewWord, kNewWord},         {std::nullopt, flagged, flagged, flagged},
      {std::nullopt, kNewWord, kNewWord, flagged}, {noCallDate, flagged, flagged, kNewWord},
      {noTaskDate, flagged, kNewWord, kNewWord},
  };
  for (const auto& each : cases) {
    Todo todo("s");
    if (each.due) todo.Due(*each.due);
    const auto [task, call] = WordsAfterUpdate(each.before, each.before, todo);
    EXPECT_EQ(task, each.task | 0x6E000000) << "a priority is set beside it";
    EXPECT_EQ(call, each.call);
  }
}

TEST_F(TodoSourceTest, PrioritiesAreReadFromDigitAndLevel) {
  const auto task = [](std::uint32_t digit, std::uint32_t level) {
    return Task30("t", "", kNewWord | digit << 25 | level << 28);
  };
  Put({task(7, 0), task(7, 1), task(7, 2), task(7, 3), task(0, 0), task(0, 1), task(3, 0),
       task(6, 3)},
      {Call30("c", "long enough"), Call30("c", "long enough", kNewWord | 0x100000)}, false);
  ASSERT_EQ(source->Open(0), 0);
  const int expected[] = {1, 0, 1, 2, 1, 2, 2, 2, 1, 2};
  for (std::uint32_t i = 0; i < std::size(expected); ++i) {
    Todo todo;
    ReadAt(i, todo);
    EXPECT_EQ(todo.Priority(), expected[i]) << i;
  }
}

TEST_F(TodoSourceTest, PrioritiesAreSetOverWhatWasThere) {
  const std::uint32_t has = 1U << 30;
  const struct {
    int priority;
    std::uint32_t before, task;
    bool highCall;
  } cases[] = {
      {0, has | 3U << 25, 7U << 25 | 1U << 28, false},
      {1, 0, has | 7U << 25 | 2U << 28, false},
      {2, 0, has | 7U << 25 | 3U << 28, true},
      {2, 7U << 25 | 1U << 28, has | 7U << 25 | 3U << 28, true},
      {2, 4U << 25, has | 4U << 25, true},  // what the organiser said stays
      {2, 2U << 28, has | 2U << 28, true},
      {3, 4U << 25, has | 7U << 25 | 2U << 28, false},  // what isn't known is normal
      {-1, 0, has | 7U << 25 | 2U << 28, false},
  };
  for (const auto& each : cases) {
    const std::uint32_t carried = kNewWord | 0x000F5555;
    Todo todo("s");
    todo.Due(PWDateTimeStamp(2000, 1, 2, 0, 0, 0));
    todo.Priority(static_cast<EPWTaskRecordPriority>(each.priority));
    const auto [task, call] = WordsAfterUpdate(carried | each.before, carried | 0x100000, todo);
    EXPECT_EQ(task, carried | each.task);
    EXPECT_EQ(call, carried | (each.highCall ? 0x100000U : 0U));
  }
}

TEST_F(TodoSourceTest, StartDatesReadBackInEveryZone) {
  for (const auto& city : pw::test::SomeCities()) {
    const std::string name(city.Name());
    source.reset();
    pw::ResetProcessWideState();
    pw::test::PutZoneFiles(platform, pw::test::SomeCities(), name);
    const bool isSouth = name == "Sydney" || name == "Adelaide";
    for (const bool call : {true, false}) {
      for (const std::uint8_t month : {1, 7, 12}) {
        for (const std::uint8_t hour : {0, 2, 12, 23}) {
          StartAfresh();
          Todo added("s", call);
          added.StartDate(PWDateTimeStamp(1999, month, 31, hour, 30, 0));
          ASSERT_EQ(source->AddRecord(added.record), 0);
          const std::string expected = "1999-" + std::to_string(month) + "-31";
          Todo todo;
          Read(todo);
          EXPECT_EQ(todo.Start(), expected) << name;
          Reopen();
          ReadAt(0, todo);
          const bool isEarly = isSouth && month == 7;
          EXPECT_EQ(todo.Start(), isEarly ? "1999-7-30" : expected) << name;
          source->CloseSource();
        }
      }
    }
  }
}

TEST_F(TodoSourceTest, StartDatesBeyondTheFilesComeBackWithinThem) {
  const struct {
    PWDateTimeStamp set;
    const char *read, *call, *task;  // at once, and from the files
  } cases[] = {
      {{2010, 5, 17, 0, 0, 0}, "2010-5-17", "1990-1-1", "2005-5-17"},
      {{2040, 5, 17, 0, 0, 0}, "2037-5-17", "1990-1-1", "2005-5-17"},
      {{1960, 5, 17, 0, 0, 0}, "1970-5-17", "1990-1-1", "1990-5-17"},
  };
  for (const auto& each : cases) {
    for (const bool call : {true, false}) {
      StartAfresh();
      Todo added("s", call);
      added.StartDate(each.set);
      ASSERT_EQ(source->AddRecord(added.record), 0);
      Todo todo;
      Read(todo);
      EXPECT_EQ(todo.Start(), each.read);
      Reopen();
      ReadAt(0, todo);
      EXPECT_EQ(todo.Start(), call ? each.call : each.task);
      source->CloseSource();
    }
  }
}

TEST_F(TodoSourceTest, WithoutAStartDateItIsToday) {
  for (const bool call : {true, false}) {
    platform.clock.now = PlainSeconds(2003, 7, 15, 12, 0, 0);
    StartAfresh();
    Todo todo("s", call);
    todo.NoStartDate(true);
    ASSERT_EQ(source->AddRecord(todo.record), 0);
    Reopen();
    ReadAt(0, todo);
    EXPECT_EQ(todo.Start(), "2003-7-15");
    // An update too, though the day of the file stays. A start at 0 seconds is none.
    platform.clock.Advance(kSecondsPerDay);
    todo.NoStartDate(true);
    ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    Read(todo);
    EXPECT_EQ(todo.Start(), "2003-7-16");
    todo.StartDate(PWDateTimeStamp(1970, 1, 1, 0, 0, 0));
    ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    Read(todo);
    EXPECT_EQ(todo.Start(), "none");
    Reopen();
    ReadAt(0, todo);
    EXPECT_EQ(todo.Start(), "2003-7-15");
    source->CloseSource();
  }
}

TEST_F(TodoSourceTest, WhatIsDoneCanBeUndone) {
  const std::uint32_t done = kNewWord | 1U << 22;
  Put({Task50(1, 1, "t", "", done)}, {Call50(2, 2, "c", "", done)});
  ASSERT_EQ(source->Open(0), 0);
  for (const std::uint32_t index : {0, 1}) {
    Todo todo;
    ReadAt(index, todo);
    EXPECT_TRUE(todo.Completed());
    todo.Completed(false);
    ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    Read(todo);
    EXPECT_FALSE(todo.Completed());
  }
  source->CloseSource();
  for (const char* path : {kTasks, kCalls}) EXPECT_EQ(FirstWord(path) & 1U << 22, 0U);
}

}  // namespace
}  // namespace pw::test

#include "calltask/todo_source.h"

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/crc.h"
#include "framework/engine_context.h"
#include "framework/task_record.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"

namespace {

using pw::test::Call30;
using pw::test::Call50;
using pw::test::CallTaskBytes;
using pw::test::kNewWord;
using pw::test::Task30;
using pw::test::Task50;
using pw::test::WordB;
using Lines = std::vector<std::string>;
using Steps = std::vector<std::uint32_t>;

constexpr const char* kTasks = "C:\\Data\\Home TASK.WMW";
constexpr const char* kCalls = "C:\\Data\\Home CALL.WMW";
constexpr std::uint32_t kRecurring = kNewWord | 1U << 24;

class TestLog : public PWLog {
 public:
  void Add(const char* text, ELogItemImage image) override {
    lines.push_back(std::to_string(image) + " " + text);
  }
  Lines lines;
};

std::string Text(const PWDateTimeStamp& stamp) {
  return std::to_string(stamp.year) + "-" + std::to_string(stamp.month) + "-" +
         std::to_string(stamp.day);
}

// A record of the engine's.
class Todo : public PWTaskRecord {
 public:
  explicit Todo(const std::string& subject = "", bool call = false) : PWTaskRecord(&record) {
    Subject(subject.c_str());
    Call(call);
    StartDate(PWDateTimeStamp(1999, 3, 4, 0, 0, 0));
    NoDueDate(true);
    Priority(kPriorityNormal);
  }
  Todo(const Todo&) = delete;
  Todo& operator=(const Todo&) = delete;

  std::string Start() const { return NoStartDate() ? "none" : Text(StartDate()); }
  std::string Due() const { return NoDueDate() ? "none" : Text(DueDate()); }
  void Due(const PWDateTimeStamp& stamp) {
    NoDueDate(false);
    DueDate(stamp);
  }

  PWRecord record;
};

class TodoSourceTest : public testing::Test {
 protected:
  TodoSourceTest() {
    manager.Config = &config;
    manager.Log = log;
    config.String(PWConfig::kProductKey, "SOFTWARE\\Main");
    platform.registry.Set("SOFTWARE\\Main", "PRODUCT", pw::NumberValue(3));
    platform.files.PutFolder("C:\\Data");
    platform.clock.now = PlainSeconds(2003, 7, 15, 12, 0, 0);
    category.Location = "C:\\Data\\Home ";
    MakeSource();
  }

  void MakeSource() {
    source.reset(manager.CreateSource("todo"));
    source->Category = &category;
  }
  void UseVersion50() {
    platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                          pw::NumberValue(50));
  }
  void Put(const Lines& tasks, const Lines& calls, bool is50 = true) {
    const std::string version = is50 ? "50" : "20";
    CallTaskBytes file;
    file.magic = "WMWTASK" + version;
    if (!tasks.empty()) file.days = {{1998, 40, tasks}};
    platform.files.Put(kTasks, file.Build());
    file.magic = "WMWCALL" + version;
    file.days.clear();
    if (!calls.empty()) file.days = {{1998, 40, calls}};
    platform.files.Put(kCalls, file.Build());
  }
  void Reopen() {
    ASSERT_EQ(source->CloseSource(), 0);
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
  }
  PWRESULT Add(const std::string& subject, bool call) {
    Todo todo(subject, call);
    return source->AddRecord(todo.record);
  }
  void Read(Todo& todo) { EXPECT_EQ(source->ReadRecord(&todo.record), 0); }
  void ReadAt(std::uint32_t index, Todo& todo) {
    EXPECT_EQ(source->FirstRecord(), 0);
    while (index-- > 0) EXPECT_EQ(source->NextRecord(), 0);
    Read(todo);
  }
  std::string Id() { return source->RecordID().Str(); }
  Lines Ids() {
    Lines ids;
    for (PWRESULT at = source->FirstRecord(); at == 0; at = source->NextRecord()) {
      ids.push_back(Id());
    }
    return ids;
  }
  Steps Sent() {
    Steps steps;
    for (const auto& sent : platform.windows.sent) steps.push_back(sent.wParam);
    return steps;
  }

  pw::TestPlatform platform;
  PWConfig config;
  TestLog* log = new TestLog;  // the manager's
  WMSourceManager manager{0};
  PWSourceCategory category;
  std::unique_ptr<PWSource> source;
};

TEST_F(TodoSourceTest, MissingFilesAreMadeBeforeTheOrganiserIsAsked) {
  UseVersion50();
  const pw::WindowId organiser = platform.windows.Add("Wingmate_95");
  Lines seen;
  platform.windows.SetAnswer(organiser, [&](const pw::WindowMessage&) {
    seen.push_back(platform.files.Get(kTasks).value_or("none").substr(0, 9));
    seen.push_back(platform.files.Get(kCalls).value_or("none").substr(0, 9));
    return 1;
  });
  ASSERT_EQ(source->Open(0), 0) << "whatever the organiser answers";
  EXPECT_EQ(seen, (Lines{"WMWTASK50", "WMWCALL50", "WMWTASK50", "WMWCALL50"}));
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(source->FirstRecord(), 1);
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(Sent(), (Steps{0, 1, 2}));
  const char* notes = "SOFTWARE\\Gullwing\\Pairwise 1.0\\Common";
  EXPECT_EQ(platform.registry.Get(notes, "To Do")->data, kTasks);
  EXPECT_EQ(platform.registry.Get(notes, "Calls")->data, "C:\\Data\\Home call.wmw");
}

TEST_F(TodoSourceTest, AnOrganiserWithADialogOpenStopsTheOpen) {
  platform.windows.Add("Wingmate_95", false);
  const pw::WindowId grandparent = platform.windows.Add("Frame");
  const pw::WindowId parent = platform.windows.Add("Child", true, grandparent);
  pw::Engine().mainWindow = PWWindow(platform.windows.Add("Engine", true, parent));
  EXPECT_EQ(source->Open(0), 1);
  EXPECT_EQ(log->lines, Lines{"1 PWDesktop-E0001: All dialogs in Wingmate 99 must be closed before "
                              "PairWise can synchronize its data."});
  EXPECT_TRUE(platform.windows.sent.empty());
  EXPECT_EQ(source->RecordCount(), 0U);
}

TEST_F(TodoSourceTest, OneFileIsEnough) {
  platform.windows.Add("Wingmate_95");
  Put({Task50(1, 1, "t", "")}, {Call50(2, 2, "c", "")});
  const std::string whole = *platform.files.Get(kTasks);
  platform.files.Put(kTasks, "cut");
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), Lines{"2+2"});
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(*platform.files.Get(kTasks), "cut");
  platform.files.Put(kTasks, whole);
  platform.files.Put(kCalls, "cut");
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), Lines{"1+1"});
  EXPECT_EQ(source->CloseSource(), 0);

  platform.files.Put(kTasks, "cut");
  platform.windows.sent.clear();
  MakeSource();
  EXPECT_EQ(source->Open(0), 1);
  EXPECT_EQ(Sent(), (Steps{0, 1, 3}));
  EXPECT_EQ(source->RecordCount(), 0U);
  EXPECT_EQ(source->FindRecord("1+1"), 1);
  EXPECT_EQ(Add("x", false), 1);
}

TEST_F(TodoSourceTest, TasksComeBeforeCallsUnderTheirIds) {
  Put({Task50(5, 0xFFFFFFFF, "t1", ""), Task50(0x80000000, 6, "t2", "")},
      {Call50(1, 2, "c1", ""), Call50(1, 2, "c2", "")});
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->RecordCount(), 4U);
  EXPECT_EQ(Ids(), (Lines{"5+-1", "-2147483648+6", "1+2", "1+2"}));
  EXPECT_EQ(Id(), "");
  EXPECT_EQ(source->NextRecord(), 1) << "at the end the cursor stays";
  Todo todo;
  EXPECT_EQ(source->FindRecord("1+2"), 0);
  Read(todo);
  EXPECT_EQ(todo.Subject(), "c1");
  EXPECT_TRUE(todo.Call());
  EXPECT_EQ(source->NextRecord(), 0);
  Read(todo);
  EXPECT_EQ(todo.Subject(), "c2");
  for (const char* id : {"1+3", "1+2 ", "", "5"}) {
    EXPECT_EQ(source->FindRecord(id), 1) << id;
    EXPECT_EQ(Id(), "5+-1") << "the cursor is then on the first record";
  }
  EXPECT_EQ(source->FindRecord(nullptr), 1);
}

TEST_F(TodoSourceTest, TheOldVersionsIdsAreMadeOfTheContent) {
  Put({Task30("Tea", "", kNewWord, WordB({8, 0, 1}, {13, 1, 3})),
       Task30("No date", "", kNewWord | 1U << 21, WordB({8, 0, 1}, {13, 1, 3})), Task30("None", ""),
       Task30("Dec", "", kNewWord, WordB({8, 0, 1}, {0, 11, 31})),
       Task30("Tea", "another", kNewWord, WordB({8, 0, 1}, {13, 1, 3}))},
      {Call30("WMTodo and so on", ""), Call30(std::string("zero\0behind", 11), "")}, false);
  pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "New York, NY");
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), (Lines{" 2 32003TeaWMTodo", " 1 11970No dateWMTodo", " 1 11970NoneWMTodo",
                          "12311990DecWMTodo", " 2 32003TeaWMTodo", "WMTodo and so onWMCall",
                          "zeroWMCall"}));
  EXPECT_EQ(source->FindRecord(" 2 32003TeaWMTodo"), 0);
  Todo todo;
  Read(todo);
  EXPECT_EQ(todo.Note(), "") << "the first of its id";
  todo.Subject("Coffee");
  EXPECT_EQ(source->UpdateRecord(todo.record), 0);
  EXPECT_EQ(Id(), " 2 32003CoffeeWMTodo");
  EXPECT_EQ(source->FindRecord(" 2 32003TeaWMTodo"), 0);
  Read(todo);
  EXPECT_EQ(todo.Note(), "another");
  EXPECT_EQ(source->FindRecord("zeroWMCall"), 0);
}

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
  UseVersion50();
  ASSERT_EQ(source->Open(0), 0);
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
  for (const auto& each : cases) {
    for (const bool call : {true, false}) {
      Todo added("s", call);
      added.Due(each.set);
      ASSERT_EQ(source->AddRecord(added.record), 0);
      const std::string id = Id();
      Todo todo;
      Read(todo);
      EXPECT_EQ(todo.Due(), call ? each.call : each.task);
      Reopen();
      ASSERT_EQ(source->FindRecord(id.c_str()), 0);
      Read(todo);
      EXPECT_EQ(todo.Due(), call ? each.call : each.task);
    }
  }
}

TEST_F(TodoSourceTest, AnOldCallFileHasNoDueDates) {
  ASSERT_EQ(source->Open(0), 0);
  Todo added("c", true);
  added.Due(PWDateTimeStamp(2000, 1, 2, 0, 0, 0));
  ASSERT_EQ(source->AddRecord(added.record), 0);
  Reopen();
  Todo todo;
  ReadAt(0, todo);
  EXPECT_EQ(todo.Due(), "none");
}

// The flag for no due date: a task's follows, a call's is only ever cleared.
TEST_F(TodoSourceTest, DueDatesAndTheirFlag) {
  const std::uint32_t flagged = kNewWord | 1U << 21;
  const std::uint32_t b = WordB({8, 1, 10}, {0, 0, 0});
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
    Put({Task50(1, 1, "t", "", each.before, b)}, {Call50(2, 2, "c", "", each.before)});
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
    for (const char* id : {"1+1", "2+2"}) {
      Todo todo("s");
      if (each.due) todo.Due(*each.due);
      todo.Priority(static_cast<EPWTaskRecordPriority>(1));
      ASSERT_EQ(source->FindRecord(id), 0);
      ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    }
    source->CloseSource();
    const std::size_t block = 626 + 6222;
    // A priority is set beside it.
    EXPECT_EQ(pw::test::NumberAt(*platform.files.Get(kTasks), block + 20, 4),
              each.task | 0x6E000000);
    EXPECT_EQ(pw::test::NumberAt(*platform.files.Get(kCalls), block + 20, 4), each.call);
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
    Put({Task50(1, 1, "t", "", carried | each.before)},
        {Call50(2, 2, "c", "", carried | 0x100000)});
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
    for (const char* id : {"1+1", "2+2"}) {
      Todo todo("s");
      todo.Due(PWDateTimeStamp(2000, 1, 2, 0, 0, 0));
      todo.Priority(static_cast<EPWTaskRecordPriority>(each.priority));
      ASSERT_EQ(source->FindRecord(id), 0);
      ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    }
    source->CloseSource();
    EXPECT_EQ(pw::test::NumberAt(*platform.files.Get(kTasks), 6848 + 20, 4), carried | each.task);
    EXPECT_EQ(pw::test::NumberAt(*platform.files.Get(kCalls), 6848 + 20, 4),
              carried | (each.highCall ? 0x100000U : 0U));
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
          platform.files.Delete(kTasks);
          platform.files.Delete(kCalls);
          MakeSource();
          ASSERT_EQ(source->Open(0), 0);
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

TEST_F(TodoSourceTest, WithoutAStartDateItIsToday) {
  ASSERT_EQ(source->Open(0), 0);
  for (const bool call : {true, false}) {
    Todo added("s", call);
    added.NoStartDate(true);
    ASSERT_EQ(source->AddRecord(added.record), 0);
  }
  Reopen();
  for (const std::uint32_t index : {0, 1}) {
    Todo todo;
    ReadAt(index, todo);
    EXPECT_EQ(todo.Start(), "2003-7-15");
  }
  // An update too, though the day of the file stays. A start at 0 seconds is none.
  platform.clock.Advance(kSecondsPerDay);
  Todo todo("t");
  todo.NoStartDate(true);
  source->FirstRecord();
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
}

TEST_F(TodoSourceTest, AnUpdateMovesNoRecord) {
  Put({Task50(1, 1, "t", "", kNewWord, WordB({8, 1, 10}, {0, 0, 0}), 0x81828384)},
      {Call50(2, 2, "c", "")});
  ASSERT_EQ(source->Open(0), 0);
  for (const char* id : {"1+1", "2+2"}) {
    Todo todo("other kind", id[0] == '1');
    todo.StartDate(PWDateTimeStamp(2000, 2, 29, 0, 0, 0));
    ASSERT_EQ(source->FindRecord(id), 0);
    ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    Read(todo);
    EXPECT_EQ(todo.Call(), id[0] == '2') << "whatever the engine's record says";
    EXPECT_EQ(todo.Start(), "2000-2-29");
    EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp(2003, 7, 15, 12, 0, 0));
  }
  EXPECT_EQ(source->RecordCount(), 2U);
  Reopen();
  for (const char* id : {"1+1", "2+2"}) {
    Todo todo;
    ASSERT_EQ(source->FindRecord(id), 0);
    Read(todo);
    EXPECT_EQ(todo.Subject(), "other kind");
    EXPECT_EQ(todo.Start(), "1998-2-10") << "the day of the block";
  }
  const std::string task = platform.files.Get(kTasks)->substr(6848 + 24, 8);
  EXPECT_EQ(task.substr(0, 2), "\xA1\xDD") << "word B has the new date";
  EXPECT_EQ(task.substr(4), "\x84\x83\x82\x81") << "word C is carried";
}

TEST_F(TodoSourceTest, LongNotesAreCutAndToldOf) {
  UseVersion50();
  ASSERT_EQ(source->Open(0), 0);
  for (const bool call : {true, false}) {
    Todo todo("50%s \t%n", call);
    todo.Note(std::string(2048, 'n').c_str());
    ASSERT_EQ(source->AddRecord(todo.record), 0);
    EXPECT_TRUE(log->lines.empty());
    todo.Note(std::string(2049, 'n').c_str());
    ASSERT_EQ(source->AddRecord(todo.record), 0);
    const std::string kind = call ? "call" : "todo";
    const std::string line = "9 The notes for the " + kind +
                             " '50%s \t%n' were shortened and will not appear in their entirety in "
                             "Wingmate 99.";
    EXPECT_EQ(log->lines, Lines{line});
    todo.Call(!call);
    ASSERT_EQ(source->UpdateRecord(todo.record), 0);
    EXPECT_EQ(log->lines, (Lines{line, line})) << "the store's kind counts";
    Todo read;
    Read(read);
    EXPECT_EQ(read.Note().View(), std::string(2048, 'n'));
    log->lines.clear();
  }
}

TEST_F(TodoSourceTest, The97thOfADayIsDroppedAndToldOf) {
  ASSERT_EQ(source->Open(0), 0);
  for (const bool call : {true, false}) {
    for (int i = 0; i < 96; ++i) {
      ASSERT_EQ(Add("s" + std::to_string(i), call), 0);
    }
    const std::uint32_t count = source->RecordCount();
    const std::string id = Id();
    EXPECT_EQ(Add("100%", call), 1);
    EXPECT_EQ(log->lines,
              Lines{call ? "9 Wingmate/PairWise Desktop can not hold more than 96 calls within one "
                           "day and the call '100%' was dropped."
                         : "9 Wingmate/PairWise Desktop can not hold more than 96 todos within one "
                           "day and the todo '100%' was dropped."});
    EXPECT_EQ(source->RecordCount(), count);
    EXPECT_EQ(Id(), id);
    log->lines.clear();
  }
}

TEST_F(TodoSourceTest, RecurringRecordsAreToldOfOnceForEachSubject) {
  Put({Task50(1, 1, "weekly", "", kRecurring), Task50(2, 2, "weekly", "", kRecurring),
       Task50(3, 3, "t%d", "", kRecurring)},
      {Call50(4, 4, "weekly", "", kRecurring), Call50(5, 5, "weekly", "", kRecurring)});
  ASSERT_EQ(source->Open(0), 0);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Ids().size(), 5U);
    for (PWRESULT at = source->FirstRecord(); at == 0; at = source->NextRecord()) {
      Todo todo("untouched");
      EXPECT_EQ(source->ReadRecord(&todo.record), 1);
      EXPECT_EQ(todo.Subject(), "untouched");
    }
    EXPECT_EQ(
        log->lines,
        (Lines{"9 PWDesktop-W2010: Recurring To Do item 'weekly' is not supported by PairWise.",
               "9 PWDesktop-W2010: Recurring To Do item 't%d' is not supported by PairWise.",
               "9 PWDesktop-W2011: Recurring Call item 'weekly' is not supported by "
               "PairWise."}));
  }
  // One that is deleted is gone until the next open.
  ASSERT_EQ(source->FindRecord("2+2"), 0);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(source->FindRecord("2+2"), 1);
  Reopen();
  EXPECT_EQ(source->FindRecord("2+2"), 0);
}

TEST_F(TodoSourceTest, ADeletionLeavesTheCursorOnTheNext) {
  Put({Task50(1, 1, "t", ""), Task50(2, 2, "t", "")}, {Call50(3, 3, "c", "")});
  ASSERT_EQ(source->Open(0), 0);
  ASSERT_EQ(source->FindRecord("2+2"), 0);
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(Id(), "3+3");
  EXPECT_EQ(source->DeleteRecord(), 0);
  EXPECT_EQ(Id(), "");
  Todo todo;
  EXPECT_EQ(source->DeleteRecord(), 1);
  EXPECT_EQ(source->ReadRecord(&todo.record), 1);
  EXPECT_EQ(source->UpdateRecord(todo.record), 1);
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(source->RecordCRC(), 0U);
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp::CurrentTime());
  Reopen();
  EXPECT_EQ(Ids(), Lines{"1+1"});
  EXPECT_EQ(*platform.files.Get(kCalls), CallTaskBytes{"WMWCALL50"}.Build())
      << "a year without records has no entry";
}

TEST_F(TodoSourceTest, ChangesAreToldByStampsOrByCRCs) {
  const std::string task50 = Task50(1, 1, "t", "n");
  const std::string task30 = Task30("t", "n", kNewWord | 1U << 22, 0x81828384, 0x91929394);
  const std::string call50 = Call50(2, 2, "c", "m");
  const std::string call30 = Call30("c", "mmmmmmm");
  const auto crc = [](const Lines& texts) {
    std::uint32_t value = 0;
    for (const std::string& text : texts) value = pw::FoldText(value, text);
    return value;
  };
  const PWDateTimeStamp now(2003, 7, 15, 14, 0, 0);
  const PWDateTimeStamp stored(1999, 1, 22, 12, 13, 20);  // 917000000, in the machine's zone
  platform.clock.localOffset = 2 * kSecondsPerHour;
  const struct {
    bool tasks50, calls50;
    PWDateTimeStamp task, call;
    std::uint32_t taskCrc, callCrc;
  } cases[] = {
      {false, false, now, now, crc({"t", "n", "-2134867840", "-2122153084", "-1852664940"}),
       crc({"c", "mmmmmmm", "-2139062144"})},
      {true, false, now, now, 0, 0},
      {false, true, now, stored, 0, 0},  // an old task file's records changed when they were read
      {true, true, stored, stored, 0, 0},
  };
  for (const auto& each : cases) {
    CallTaskBytes tasks{each.tasks50 ? "WMWTASK50" : "WMWTASK20"};
    tasks.days = {{1998, 40, {each.tasks50 ? task50 : task30}}};
    CallTaskBytes calls{each.calls50 ? "WMWCALL50" : "WMWCALL20"};
    calls.days = {{1998, 40, {each.calls50 ? call50 : call30}}};
    platform.files.Put(kTasks, tasks.Build());
    platform.files.Put(kCalls, calls.Build());
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
    ASSERT_EQ(source->FirstRecord(), 0);
    EXPECT_EQ(source->RecordTimeStamp(), each.task);
    EXPECT_EQ(source->RecordCRC(), each.taskCrc);
    ASSERT_EQ(source->NextRecord(), 0);
    EXPECT_EQ(source->RecordTimeStamp(), each.call);
    EXPECT_EQ(source->RecordCRC(), each.callCrc);
  }
}

TEST_F(TodoSourceTest, ATaskFileIsMadeAgainAtTheCloseAndACallFileIsNot) {
  Put({Task50(1, 1, "t", "")}, {Call50(3, 3, "c", "")});
  const std::string tasks = *platform.files.Get(kTasks);
  ASSERT_EQ(source->Open(0), 0);
  platform.files.Delete(kTasks);
  platform.files.Delete(kCalls);
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(platform.files.Get(kTasks), tasks);
  EXPECT_EQ(platform.files.Get(kCalls), std::nullopt);
}

TEST_F(TodoSourceTest, WhatTheOtherOperationsAnswer) {
  EXPECT_EQ(source->Kind, 2U);
  EXPECT_EQ(source->ReservedStatus(), 2);
  EXPECT_EQ(source->ReservedOperation(1, 2), 2);
  EXPECT_FALSE(source->ReservedQuery(1));
  PWField field;
  EXPECT_EQ(source->GetField(0, field), 1);
  EXPECT_EQ(source->SetField(0, field), 1);
  EXPECT_EQ(source->FindField("Subject"), -1);
}

}  // namespace

#include "tests/calltask/todo_fixture.h"

namespace pw::test {
namespace {

TEST_F(TodoSourceTest, MissingFilesAreMadeBeforeTheOrganiserIsAsked) {
  UseVersion50();
  const pw::WindowId organiser = platform.windows.Add("Wingmate_95");
  Lines seen;
  platform.windows.SetAnswer(organiser, [&](const pw::WindowMessage&) {
    seen.push_back(platform.files.Get(kTasks).value_or("none").substr(0, 9));
    seen.push_back(platform.files.Get(kCalls).value_or("none").substr(0, 9));
    return 1;
  });
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(seen, (Lines{"WMWTASK50", "WMWCALL50", "WMWTASK50", "WMWCALL50"}));
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
  // What is added to the other one takes its place.
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  ASSERT_EQ(Add("x", false), 0);
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(CheckFrame(*platform.files.Get(kTasks)), 1);
  platform.files.Put(kTasks, whole);
  platform.files.Put(kCalls, "cut");
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Ids(), Lines{"1+1"});
  EXPECT_EQ(source->CloseSource(), 0);
}

TEST_F(TodoSourceTest, TasksComeBeforeCallsUnderTheirIds) {
  Put({Task50(5, 0xFFFFFFFF, "t1", ""), Task50(0x80000000, 6, "t2", ""), Task50(3, 4, "t3", "")},
      {Call50(3, 4, "c0", ""), Call50(1, 2, "c1", ""), Call50(1, 2, "c2", "")});
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(source->RecordCount(), 6U);
  EXPECT_EQ(Ids(), (Lines{"5+-1", "-2147483648+6", "3+4", "3+4", "1+2", "1+2"}));
  Todo todo;
  EXPECT_EQ(source->FindRecord("1+2"), 0);
  Read(todo);
  EXPECT_EQ(todo.Subject(), "c1");
  EXPECT_TRUE(todo.Call());
  EXPECT_EQ(source->NextRecord(), 0);
  Read(todo);
  EXPECT_EQ(todo.Subject(), "c2");
  EXPECT_EQ(source->FindRecord("3+4"), 0);
  Read(todo);
  EXPECT_EQ(todo.Subject(), "t3");
  for (const char* id : {"1+3", "1+2 ", "", "5", "+", "01+2", "1+", "4294967297+2"}) {
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
    todo.Note((std::string(2048, 'n') + "x").c_str());
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
    source->FirstRecord();
    const std::string id = Id();
    EXPECT_EQ(Add("100%\t", call), 1);
    EXPECT_EQ(log->lines,
              Lines{call ? "9 Wingmate/PairWise Desktop can not hold more than 96 calls within one "
                           "day and the call '100%\t' was dropped."
                         : "9 Wingmate/PairWise Desktop can not hold more than 96 todos within one "
                           "day and the todo '100%\t' was dropped."});
    EXPECT_EQ(source->RecordCount(), count);
    EXPECT_EQ(Id(), id);
    log->lines.clear();
  }
}

TEST_F(TodoSourceTest, RecurringRecordsAreToldOfOnceForEachSubject) {
  Put({Task50(1, 1, "weekly", "", kRecurring), Task50(2, 2, "weekly", "", kRecurring),
       Task50(3, 3, "t%d\x10", "", kRecurring)},
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
               "9 PWDesktop-W2010: Recurring To Do item 't%d~' is not supported by PairWise.",
               "9 PWDesktop-W2011: Recurring Call item 'weekly' is not supported by "
               "PairWise."}));
  }
  // It can be changed blindly, and stays recurring.
  ASSERT_EQ(source->FindRecord("3+3"), 0);
  Todo changed("changed");
  EXPECT_EQ(source->UpdateRecord(changed.record), 0);
  EXPECT_EQ(source->ReadRecord(&changed.record), 1);
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
    const PWDateTimeStamp& task = source->RecordTimeStamp();
    EXPECT_EQ(task, each.task);
    EXPECT_EQ(source->RecordCRC(), each.taskCrc);
    ASSERT_EQ(source->NextRecord(), 0);
    EXPECT_EQ(source->RecordTimeStamp(), each.call);
    EXPECT_EQ(task, each.task) << "a call's stamp is another one";
    EXPECT_EQ(source->RecordCRC(), each.callCrc);
  }
}

}  // namespace
}  // namespace pw::test

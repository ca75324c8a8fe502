#pragma once

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/crc.h"
#include "framework/engine_context.h"
#include "framework/task_record.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/source_fixture.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"

namespace pw::test {

inline constexpr const char* kTasks = "C:\\Data\\Home TASK.WMW";
inline constexpr const char* kCalls = "C:\\Data\\Home CALL.WMW";
inline constexpr std::uint32_t kRecurring = kNewWord | 1U << 24;

inline std::string Text(const PWDateTimeStamp& stamp) {
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

class TodoSourceTest : public SourceTest {
 protected:
  TodoSourceTest() : SourceTest("todo", 3) {
    platform.files.PutFolder("C:\\Data");
    platform.clock.now = PlainSeconds(2003, 7, 15, 12, 0, 0);
    category.Location = "C:\\Data\\Home ";
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
  // A new source over new files.
  void StartAfresh() {
    platform.files.Delete(kTasks);
    platform.files.Delete(kCalls);
    MakeSource();
    ASSERT_EQ(source->Open(0), 0);
  }
  // Updates a task and a call, alone in their files but for these first words, with the same
  // record; the words that are then in the files.
  std::pair<std::uint32_t, std::uint32_t> WordsAfterUpdate(std::uint32_t task, std::uint32_t call,
                                                           Todo& todo) {
    Put({Task50(1, 1, "t", "", task, WordB({8, 1, 10}, {0, 0, 0}))}, {Call50(2, 2, "c", "", call)});
    MakeSource();
    EXPECT_EQ(source->Open(0), 0);
    for (const char* id : {"1+1", "2+2"}) {
      EXPECT_EQ(source->FindRecord(id), 0);
      EXPECT_EQ(source->UpdateRecord(todo.record), 0);
    }
    source->CloseSource();
    return {FirstWord(kTasks), FirstWord(kCalls)};
  }
  // That of a file's only record, behind the words of version 50.
  std::uint32_t FirstWord(const char* path) const {
    return NumberAt(*platform.files.Get(path), 626 + 6222 + 20, 4);
  }
};

}  // namespace pw::test

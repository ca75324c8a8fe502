#pragma once

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/crc.h"
#include "framework/engine_context.h"
#include "framework/source.h"
#include "framework/task_record.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/calltask_builder.h"
#include "tests/support/test_log.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"

namespace pw::test {

using Lines = std::vector<std::string>;
using Steps = std::vector<std::uint32_t>;

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

}  // namespace pw::test

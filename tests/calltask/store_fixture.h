#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/text.h"
#include "platform/testing/test_platform.h"
#include "tests/support/calltask_files.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace pw::test {

using pw::calltask::FormatVersion;

inline constexpr FileKind kCalls30 = {true, false};
inline constexpr FileKind kCalls50 = {true, true};
inline constexpr FileKind kTasks30 = {false, false};
inline constexpr FileKind kTasks50 = {false, true};

class CallTaskStoreTest : public testing::Test {
 protected:
  CallTaskStoreTest() { platform.files.PutFolder("C:\\Data"); }

  std::unique_ptr<pw::DayStore> Load(const FileKind& kind, const std::string& bytes,
                                     std::int32_t result = 0) {
    platform.files.Put(kind.Path(), bytes);
    auto store = kind.NewStore();
    EXPECT_EQ(store->Load(kPrefix), result);
    return store;
  }
  std::string Saved(const FileKind& kind, const pw::DayStore& store) {
    store.Save(kPrefix);
    return *platform.files.Get(kind.Path());
  }
  static std::vector<std::string> Subjects(const pw::DayStore& store) {
    std::vector<std::string> subjects;
    for (std::uint32_t i = 0; i < store.Count(); ++i) subjects.push_back(store.Record(i).subject);
    return subjects;
  }
  static std::unique_ptr<WMCallRec> NewCall(const std::string& subject, std::int32_t year,
                                            std::int32_t month, std::int32_t day) {
    auto call = std::make_unique<WMCallRec>();
    call->SetTexts(subject, "");
    call->SetStart(PlainSeconds(year, month, day, 12, 0, 0));
    return call;
  }
  static std::unique_ptr<CTaskRecord> NewTask(const std::string& subject, std::int32_t year,
                                              std::int32_t month, std::int32_t day) {
    auto task = std::make_unique<CTaskRecord>();
    task->SetTexts(subject, "");
    task->SetStart(PlainSeconds(year, month, day, 12, 0, 0));
    return task;
  }

  // The local date of a record's start.
  static std::string StartOf(const pw::DayRecord& record) {
    const WMBrokenTime local = SecondsToLocal(record.start);
    return pw::Format("%d-%d-%d", local.year + 1900, local.mon + 1, local.mday);
  }

  pw::TestPlatform platform;
};

}  // namespace pw::test

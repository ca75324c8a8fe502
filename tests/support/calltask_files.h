#pragma once

#include <memory>
#include <string>

#include "calltask/call_store.h"
#include "calltask/task_store.h"
#include "tests/support/calltask_builder.h"

// The two files in their two versions, as one.
namespace pw::test {

inline constexpr const char* kPrefix = "C:\\Data\\";

struct FileKind {
  bool isCall;
  bool is50;

  const char* Path() const { return isCall ? "C:\\Data\\CALL.WMW" : "C:\\Data\\TASK.WMW"; }
  std::string Magic() const {
    return std::string(isCall ? "WMWCALL" : "WMWTASK") + (is50 ? "50" : "20");
  }
  std::unique_ptr<DayStore> NewStore() const {
    if (isCall) return std::make_unique<WMCallStore>();
    return std::make_unique<WMTaskStore>();
  }

  // A record, with numbers of its own at version 50. Word B of a task is the same for all.
  std::string Record(std::uint32_t id, const std::string& subject, const std::string& note,
                     std::uint32_t flags = kNewWord) const {
    if (isCall && is50) return Call50(id, ~id, subject, note, flags, 917000000 + id, 0x00620102);
    if (isCall) return Call30(subject, note, flags);
    const std::uint32_t b = WordB({8, 4, 3}, {9, 11, 31});
    if (is50) return Task50(id, ~id, subject, note, flags, b, 0x81828384, 917000000 + id);
    return Task30(subject, note, flags, b, 0x81828384);
  }

  CallTaskBytes File() const {
    CallTaskBytes file;
    file.magic = Magic();
    return file;
  }

  // What a file can hold: the first and last days of common and leap years, a full day, records of
  // every flag, empty notes.
  CallTaskBytes Sample() const {
    CallTaskBytes file = File();
    DayOfRecords full{1997, 364, {}};
    for (std::uint32_t i = 0; i < 96; ++i) {
      full.records.push_back(Record(100 + i, "of a full day", std::to_string(i)));
    }
    file.days = {
        {1990, 0, {Record(1, "new year", "")}},
        {1996, 0, {Record(2, "first of a leap year", "n"), Record(3, "recurring", "", 0x81808080)}},
        {1996, 365, {Record(4, "last of a leap year", "two\r\nlines", 0x80E08080)}},
        full,
        {2005, 364, {Record(5, "last day", "caf\xE9", 0xFFFFFFFF), Record(6, "s", "")}},
    };
    return file;
  }
};

inline constexpr FileKind kFileKinds[] = {
    {true, false}, {true, true}, {false, false}, {false, true}};

}  // namespace pw::test

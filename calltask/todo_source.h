#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

#include "framework/source.h"

class PWTaskRecord;
class WMCallStore;
class WMTaskStore;

namespace pw {
class DayRecord;
class DayStore;
struct TodoKind;
}  // namespace pw

// The organiser's tasks and calls as one set of to-do records, tasks first. The category's location
// is a prefix of both file names, down to the separator and a stem if there is one.
//
// What the organiser can't hold is told in the log: a note of more than 2048 bytes is cut, the 97th
// record of a day dropped. Of days that the files can't tell apart, those before 1990 and behind
// 2005, the 97th record pushes the others out without a word. Recurring records are counted, but
// can't be read.
class WMTodoSource : public PWSource {
 public:
  explicit WMTodoSource(PWSourceManager* manager);
  ~WMTodoSource() override;

  // Makes the files that are missing. Goes on with one of them, if the other can't be read; a
  // record that is then added to the other overwrites it at the close.
  PWRESULT OpenSource() override;
  PWRESULT CloseSource() override;
  PWRESULT AddRecord(PWRecord& record) override;

  // The record stays a task or a call, whichever it is, and stays in its day: a new start date is
  // gone after the next open.
  PWRESULT UpdateRecord(PWRecord& record) override;

  PWRESULT DeleteRecord() override;
  PWRESULT ReadRecord(PWRecord* record) override;
  std::uint32_t RecordCount() override;
  PWString& RecordID() override;

  // The time of the last change, in the machine's zone, if the call file is of version 50, for
  // tasks too. Otherwise, and without a record, the present time.
  PWDateTimeStamp& RecordTimeStamp() override;

  // 0 if either file is of version 50.
  std::uint32_t RecordCRC() override;

  PWRESULT FirstRecord() override;
  PWRESULT NextRecord() override;

  // Puts the cursor on the first record where it finds none.
  PWRESULT FindRecord(const char* id) override;

 private:
  // A record by its store.
  struct Place {
    const pw::TodoKind& kind;
    pw::DayStore& store;
    std::uint32_t index;

    const pw::DayRecord& Record() const;
  };

  bool IsOpen() const { return tasks != nullptr; }
  std::uint32_t TaskCount() const;
  std::optional<Place> Current() const;

  std::int32_t AddTask(const PWTaskRecord& todo);
  std::int32_t AddCall(const PWTaskRecord& todo);
  void Fill(pw::DayRecord& record, const PWTaskRecord& todo, const pw::TodoKind& kind) const;
  void Warn(std::uint32_t number, const std::string& subject) const;
  void ReportRecurring(const Place& place);

  std::string prefix;
  std::unique_ptr<WMTaskStore> tasks;  // both null while closed
  std::unique_ptr<WMCallStore> calls;
  std::uint32_t cursor = 0;
  std::unordered_set<std::string> reportedTasks;  // subjects of recurring ones
  std::unordered_set<std::string> reportedCalls;
};

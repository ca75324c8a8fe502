#include "host/import/todo_import.h"

#include <optional>

#include "base/text.h"
#include "framework/task_record.h"
#include "host/formats/stamp_text.h"

namespace pw {
namespace {

EPWTaskRecordPriority PriorityOf(TodoPriority priority) {
  if (priority == TodoPriority::kHigh) return kPriorityHigh;
  return priority == TodoPriority::kLow ? kPriorityLow : kPriorityNormal;
}

// Nothing for an empty one, and for one that there isn't.
std::optional<PWDateTimeStamp> StampOf(const std::string& date, const char* name,
                                       IncomingRecord& record) {
  if (date.empty()) return std::nullopt;
  if (!IsDate(date)) {
    record.remarks.push_back(std::string(name) + " is no date, and is left out");
    return std::nullopt;
  }
  return PWDateTimeStamp(static_cast<std::uint16_t>(ParseLong(date.substr(0, 4))),
                         static_cast<std::uint8_t>(ParseLong(date.substr(5, 2))),
                         static_cast<std::uint8_t>(ParseLong(date.substr(8, 2))), 0, 0, 0);
}

}  // namespace

void SetTodo(const Todo& todo, IncomingRecord& record) {
  PWTaskRecord task(&record.record);
  task.Subject(Incorporated(todo.subject, "Subject", record).c_str());
  task.Note(Incorporated(todo.note, "Note", record).c_str());
  const auto start = StampOf(todo.start, "Start", record);
  const auto due = StampOf(todo.due, "Due", record);
  task.NoStartDate(!start);
  if (start) task.StartDate(*start);
  task.NoDueDate(!due);
  if (due) task.DueDate(*due);
  task.Priority(PriorityOf(todo.priority));
  task.Completed(todo.completed);
  task.Call(todo.call);
}

}  // namespace pw

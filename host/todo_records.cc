#include "host/todo_records.h"

#include "base/codepage.h"
#include "framework/task_record.h"
#include "host/json_fields.h"

namespace pw {
namespace {

TodoPriority PriorityOf(const PWTaskRecord& record) {
  if (record.Priority() == kPriorityHigh) return TodoPriority::kHigh;
  return record.Priority() == kPriorityLow ? TodoPriority::kLow : TodoPriority::kNormal;
}

}  // namespace

Todo TodoOf(PWRecord& record) {
  const PWTaskRecord task(&record);
  Todo todo;
  todo.subject = CodePageToUtf8(task.Subject().View());
  todo.note = CodePageToUtf8(task.Note().View());
  if (!task.NoStartDate()) todo.start = DateText(task.StartDate());
  if (!task.NoDueDate()) todo.due = DateText(task.DueDate());
  todo.priority = PriorityOf(task);
  todo.completed = task.Completed();
  todo.call = task.Call();
  return todo;
}

}  // namespace pw

#include "host/formats/vtodo.h"

#include "host/formats/icalendar.h"
#include "host/formats/stamp_text.h"

namespace pw {
namespace {

const char* PriorityValue(TodoPriority priority) {
  if (priority == TodoPriority::kHigh) return "1";
  return priority == TodoPriority::kLow ? "9" : "5";
}

// A calendar's start must lie before what is due. One that doesn't is kept under a name of ours.
void AppendDates(std::string& out, const Todo& todo) {
  const bool inOrder = !IsDate(todo.due) || todo.start < todo.due;
  if (!todo.start.empty() && inOrder) AppendDateProperty(out, "DTSTART", todo.start);
  if (!todo.start.empty() && !inOrder) {
    AppendProperty(out, std::string(kOwnPrefix) + "DTSTART", todo.start);
  }
  if (!todo.due.empty()) AppendDateProperty(out, "DUE", todo.due);
}

// The organiser doesn't tell when something was completed: not after its last change.
void AppendStatus(std::string& out, const Todo& todo) {
  AppendProperty(out, "STATUS", todo.completed ? "COMPLETED" : "NEEDS-ACTION");
  if (!todo.completed) return;
  AppendProperty(out, "PERCENT-COMPLETE", "100");
  if (!todo.changed.empty()) AppendProperty(out, "COMPLETED", todo.changed);
}

}  // namespace

void AppendVTodo(std::string& out, const Todo& todo, std::string_view now) {
  AppendProperty(out, "BEGIN", "VTODO");
  AppendProperty(out, "UID", todo.uid);
  AppendProperty(out, "DTSTAMP", todo.changed.empty() ? std::string(now) : todo.changed);
  if (!todo.changed.empty()) AppendProperty(out, "LAST-MODIFIED", todo.changed);
  AppendTextProperty(out, "SUMMARY", todo.subject);
  AppendTextProperty(out, "DESCRIPTION", todo.note);
  AppendDates(out, todo);
  AppendProperty(out, "PRIORITY", PriorityValue(todo.priority));
  AppendStatus(out, todo);
  if (todo.call) {
    AppendProperty(out, "CATEGORIES", "Call");
    AppendProperty(out, std::string(kOwnPrefix) + "CALL", "TRUE");
  }
  AppendProperty(out, "END", "VTODO");
}

}  // namespace pw

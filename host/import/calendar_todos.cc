#include "host/counted.h"
#include "host/formats/record_uid.h"
#include "host/import/calendar_records.h"
#include "host/import/todo_import.h"

namespace pw {

Incoming TodosOfCalendar(const CalendarFile& file) {
  Incoming incoming;
  incoming.problems = file.errors.Told();
  for (const ReadTodo& read : file.todos) {
    const std::string where = "line " + std::to_string(read.line);
    if (read.isCancelled) {
      incoming.problems.push_back(where + ": it was cancelled, and it is left out");
      continue;
    }
    IncomingRecord& record = incoming.records.emplace_back();
    record.where = where;
    record.id = IdOfRecordUid(read.todo.uid);
    record.remarks = read.remarks;
    SetTodo(read.todo, record);
  }
  if (file.todos.empty()) {
    incoming.problems.push_back("the file holds no to-do items" +
                                (file.events.empty()
                                     ? ""
                                     : ", but " + Counted(file.events.size(), "event", "events") +
                                           ": import it as calendar"));
  }
  return incoming;
}

}  // namespace pw

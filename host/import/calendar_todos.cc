#include "host/formats/record_uid.h"
#include "host/import/calendar_records.h"
#include "host/import/todo_import.h"

namespace pw {

Incoming TodosOfCalendar(const CalendarFile& file) {
  Incoming incoming;
  incoming.problems = file.errors.Texts();
  for (const ReadTodo& read : file.todos) {
    IncomingRecord& record = incoming.records.emplace_back();
    record.where = "line " + std::to_string(read.line);
    record.id = IdOfRecordUid(read.todo.uid);
    SetTodo(read.todo, record);
  }
  return incoming;
}

}  // namespace pw

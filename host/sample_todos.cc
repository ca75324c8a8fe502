#include "host/sample_todos.h"

#include <iterator>

#include "base/codepage.h"
#include "base/text.h"
#include "framework/task_record.h"

namespace pw {
namespace {

// Of "YYYY-MM-DD".
PWDateTimeStamp StampOf(std::string_view date) {
  return {static_cast<std::uint16_t>(ParseLong(date)),
          static_cast<std::uint8_t>(ParseLong(date.substr(5))),
          static_cast<std::uint8_t>(ParseLong(date.substr(8))),
          0,
          0,
          0};
}

}  // namespace

const SampleTodo kSampleTodos[] = {
    {false, "Have the tower clock looked at", "1998-03-02", "1998-03-20", 2, false,
     "Günther comes only in the mornings.\r\nAsk for the key at the parish office."},
    {false, "Rebind the ship's log", "1998-03-02", "1998-04-01", 1, false,
     "Blue morocco, if there is any left."},
    {false, "Renew the passport", "1998-02-16", "1998-05-29", 1, false, ""},
    {false, "Order lenses no. 7", "1998-02-02", "1998-02-27", 1, true,
     "Agreed: €1,250 – including the case."},
    {false, "Sort the slides of Villaseca", "1998-01-12", nullptr, 0, false, ""},
    {false, "Send the ferry timetable round", "1998-04-20", "1998-05-01", 1, false,
     "No bicycles on the last boat; say so."},
    {false, "Tax papers to the accountant", "1998-03-02", "1998-03-31", 2, false,
     "Receipts are in the green box."},
    {true, "Zoë Lindqvåst: where are the lenses?", "1998-03-03", "1998-03-03", 2, false,
     "+46 60 555 01 02, after 10."},
    {true, "Harbour Ferry Company", "1998-03-02", nullptr, 1, true, "Group tickets: none left."},
    {true, "Bram about the mooring", "1998-03-05", "1998-03-09", 1, false, ""},
    {true, "Aurélie: paper samples", "1998-03-09", nullptr, 1, false,
     "Only the laid paper,\r\nnot the wove."},
};
const std::size_t kSampleTodoCount = std::size(kSampleTodos);

PWRecord RecordOf(const SampleTodo& todo) {
  PWRecord record;
  PWTaskRecord task(&record);
  task.Call(todo.call);
  task.Subject(Utf8ToCodePageLossy(todo.subject).c_str());
  task.Note(Utf8ToCodePageLossy(todo.note).c_str());
  task.StartDate(StampOf(todo.start));
  task.NoDueDate(todo.due == nullptr);
  if (todo.due != nullptr) task.DueDate(StampOf(todo.due));
  task.Priority(static_cast<EPWTaskRecordPriority>(todo.priority));
  task.Completed(todo.completed);
  return record;
}

}  // namespace pw

#include "host/todo_calendar.h"

#include <cstddef>
#include <unordered_map>

#include "host/formats/icalendar.h"
#include "host/formats/record_uid.h"
#include "host/formats/vtodo.h"
#include "host/todo_records.h"
#include "host/utc_stamp.h"

namespace pw {

std::string TodoCalendar(const std::vector<CategoryRecords>& categories, Clock& clock) {
  const std::string now = UtcStamp(clock, clock.Now());
  std::string calendar;
  BeginCalendar(calendar);
  for (const CategoryRecords& category : categories) {
    std::unordered_map<std::string, std::size_t> seen;
    for (const TypedRecord& each : category.records) {
      PWRecord record = each.record;
      Todo todo = TodoOf(record);
      todo.uid = MakeRecordUid(category.location, each.id, ++seen[each.id]);
      todo.changed = UtcStampOfLocal(clock, each.stamp);
      AppendVTodo(calendar, todo, now);
    }
  }
  EndCalendar(calendar);
  return calendar;
}

}  // namespace pw

#include "calendar/mapping/event_router.h"

#include <memory>
#include <utility>

#include "base/text.h"
#include "calendar/calendar_state.h"
#include "calendar/calendar_store.h"
#include "calendar/mapping/all_day_mapping.h"
#include "calendar/mapping/event_fields.h"
#include "calendar/mapping/event_shape.h"
#include "calendar/mapping/series_mapping.h"
#include "framework/event_record.h"
#include "plugin/string_table.h"
#include "timeplace/zones.h"

namespace {

// As many items as a quarter of an hour has room for beside one more.
constexpr std::size_t kMostOverlapping = 2;

bool IsAllDayWithoutEnd(const PWEventRecord& event) {
  const PWRecurrancePattern* pattern = event.RecurrancePattern();
  return pattern != nullptr && event.AllDay() && pattern->NeverEnds();
}

// The present time, unless a series has that key or a later one already.
std::int32_t NewSeriesKey() {
  std::int32_t& last = LastSeriesKey();
  const std::int32_t now = UtcNowSeconds();
  last = now > last ? now : WrappingSum(last, 1);
  return last;
}

std::int32_t AddYearly(WMCalendarStore& store, PWEventRecord& event) {
  if (!AddSpecialFromRecurring(store.data, event)) return 1;
  store.currentRecord = store.data.Count() - 1;
  return 0;
}

void AddSeries(WMCalendarStore& store, PWEventRecord& event, std::string& message) {
  if (AddRecurringEvent(store, event, NewSeriesKey(), message) != 0) return;
  store.RecountSections();
  store.currentRecord = store.recordEnd - 1;
}

std::int32_t AddPlain(WMCalendarStore& store, PWEventRecord& event, std::string& message) {
  auto item = std::make_unique<WMEventItem>();
  FillItemFromEvent(event, *item);
  if (store.plainItems.CountOverlapping(item->Start(), item->End()) > kMostOverlapping) {
    message = FormatString(strings::kThreeOverlap, item->Subject().c_str());
    return 1;
  }
  const std::string& location = item->header.place.first.text;
  if (!location.empty()) store.places.Add(location);
  store.plainItems.Append(std::move(item));
  store.RecountSections();
  store.currentRecord = store.eventEnd - 1;
  return 0;
}

void AddMultiDay(WMCalendarStore& store, PWEventRecord& event, std::string& message) {
  const PWDateTimeStamp& start = event.StartDate();
  const std::string date = pw::Format("%d/%d/%d", start.month, start.day, start.year);
  message =
      pw::Format(LoadString(strings::kStoredUntimed), event.Subject().Str().c_str(), date.c_str());
  if (AddMultiDayOrSpecial(store.data, event) != 0) return;
  store.currentRecord = store.data.MultiDayCount() - 1;
}

std::int32_t AddSingleDate(WMCalendarStore& store, PWEventRecord& event) {
  if (AddMultiDayOrSpecial(store.data, event) != 0) return 1;
  store.currentRecord = store.data.Count() - 1;
  return 0;
}

// The first form that the event fits. A timed event of no length fits none.
std::int32_t AddByShape(WMCalendarStore& store, PWEventRecord& event, std::string& message) {
  if (IsAllDayWithoutEnd(event)) return AddYearly(store, event);
  if (event.Recurring()) {
    AddSeries(store, event, message);
    return 0;
  }
  if (IsPlainDay(event)) return AddPlain(store, event, message);
  if (IsMultiDay(event)) {
    AddMultiDay(store, event, message);
    return 0;
  }
  return event.AllDay() && IsSingleDay(event) ? AddSingleDate(store, event) : 0;
}

void ReplaceSeries(WMCalendarStore& store, std::size_t index, PWEventRecord& event,
                   std::string& message) {
  const std::int32_t key = store.recurring.Key(index);
  RemoveRecurringItem(store, index);
  // No item takes the key 0, by which one of a damaged file couldn't find its occurrences again.
  AddRecurringEvent(store, event, key == 0 ? NewSeriesKey() : key, message);
  store.RecountSections();
  store.currentRecord = store.recordEnd - 1;
}

// False if the event no longer goes where the record is.
bool UpdateInPlace(WMCalendarStore& store, std::uint32_t index, PWEventRecord& event,
                   std::string& message) {
  if (index >= store.recordEnd) return false;
  if (index >= store.eventEnd) {
    if (!event.Recurring() || IsAllDayWithoutEnd(event)) return false;
    ReplaceSeries(store, index - store.eventEnd, event, message);
    return true;
  }
  if (index < store.dataEnd) {
    if (!UpdateMultiDayOrSpecial(store.data, index, event)) return false;
  } else {
    if (!IsPlainDay(event)) return false;
    store.plainItems.Change(index - store.dataEnd,
                            [&](WMEventItem& item) { FillItemFromEvent(event, item); });
  }
  store.currentRecord = index;
  return true;
}

}  // namespace

std::int32_t AddEvent(WMCalendarStore& store, PWRecord& record, std::string& message) {
  PWEventRecord event(&record);
  const std::int32_t result = AddByShape(store, event, message);
  store.RecountSections();
  return result;
}

std::int32_t UpdateEvent(WMCalendarStore& store, std::uint32_t index, PWRecord& record,
                         std::string& message) {
  PWEventRecord event(&record);
  store.RecountSections();
  if (UpdateInPlace(store, index, event, message)) return 0;
  DeleteByIndex(store, index);
  return AddEvent(store, record, message);
}

std::int32_t DeleteByIndex(WMCalendarStore& store, std::uint32_t index) {
  store.RecountSections();
  if (index >= store.recordEnd) return 1;
  if (index >= store.eventEnd) {
    RemoveRecurringItem(store, index - store.eventEnd);
  } else if (index >= store.dataEnd) {
    store.plainItems.Remove(index - store.dataEnd);
  } else {
    store.data.Remove(index);
  }
  store.RecountSections();
  return 0;
}

std::int32_t ReadByIndex(const WMCalendarStore& store, std::uint32_t index, PWRecord* record,
                         std::string& message) {
  if (index >= store.recordEnd) return 1;
  *record = PWRecord();
  PWEventRecord event(record);
  if (index >= store.eventEnd) {
    const WMRecurringItem& item = store.recurring.Item(index - store.eventEnd);
    return RecurringItemToEvent(item, event, message) ? 0 : 1;
  }
  if (index < store.dataEnd) return ReadMultiDayOrSpecial(store.data, index, event);
  FillEventFromItem(store.plainItems.Item(index - store.dataEnd), event);
  return 0;
}

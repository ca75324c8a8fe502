#include "host/event_calendar.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "framework/event_record.h"
#include "host/calendar_stems.h"
#include "host/calendar_zones.h"
#include "host/event_records.h"
#include "host/formats/icalendar.h"
#include "host/formats/record_uid.h"
#include "host/formats/vtimezone.h"
#include "host/series_events.h"
#include "host/stored_occurrences.h"
#include "host/utc_stamp.h"
#include "timeplace/date.h"

namespace pw {
namespace {

constexpr std::string_view kSeriesId = "Recurring:";

class CalendarMaker {
 public:
  CalendarMaker(const CityClocks& cities, Clock& clock)
      : cities(cities), clock(clock), now(UtcStamp(clock, clock.Now())) {}

  void Add(const CategoryRecords& category) {
    const std::string location = Utf8ToCodePageLossy(category.location);
    haveKeys = HaveSeriesKeys(location + std::string(kRecurringFile));
    stored = ReadStoredOccurrences(location + std::string(kEventFile));
    std::unordered_map<std::string, std::size_t> seen;
    for (const TypedRecord& each : category.records) {
      PWRecord copy = each.record;
      const PWEventRecord record(&copy);
      Event event = EventTextsOf(record);
      event.uid = MakeRecordUid(category.location, each.id, ++seen[each.id]);
      event.changed = UtcStampOfLocal(clock, each.stamp);
      AddEvent(std::move(event), record, each.id);
    }
  }

  EventCalendar Finish() && {
    EventCalendar calendar;
    BeginCalendar(calendar.text);
    zones.Append(calendar.text);
    calendar.text += events;
    EndCalendar(calendar.text);
    calendar.undated = undated;
    return calendar;
  }

 private:
  void AddEvent(Event event, const PWEventRecord& record, const std::string& id) {
    if (record.StartDate() == PWDateTimeStamp()) {
      ++undated;
    } else if (record.AllDay()) {
      AddDates(std::move(event), record);
    } else if (record.Recurring()) {
      AddSeries(std::move(event), record, id);
    } else {
      AddHours(std::move(event), record);
    }
  }

  void AddDates(Event event, const PWEventRecord& record) {
    const std::chrono::sys_days start = DateOf(record.StartDate());
    const std::chrono::sys_days end = DateOf(record.EndDate()) + std::chrono::days(1);
    event.start = DateOf(start);
    if (end > start) event.end = DateOf(end);
    if (record.Recurring()) SetYearly(event, record);
    AppendVEvent(events, event, now);
  }

  void AddHours(Event event, const PWEventRecord& record) {
    const std::int32_t start = StampToSeconds(record.StartDate());
    const std::int32_t end = StampToSeconds(record.EndDate());
    event.start = SeriesClock().At(start);
    if (end > start) event.end = SeriesClock().At(end);
    AppendVEvent(events, event, now);
  }

  void AddSeries(Event series, const PWEventRecord& record, const std::string& id) {
    SeriesClock its;
    its.city = cities.Fitting(record.RecurrancePattern()->TimeZone);
    if (its.city != nullptr && CanBeTold(*its.city)) its.name = zones.NameOf(*its.city);
    for (const Event& event : EventsOfSeries(std::move(series), record, OccurrencesOf(id), its)) {
      AppendVEvent(events, event, now);
    }
  }

  // Nothing where the file doesn't tell.
  std::optional<std::vector<Occurrence>> OccurrencesOf(const std::string& id) {
    if (!haveKeys) return std::nullopt;
    return stored[ParseLong(std::string_view(id).substr(kSeriesId.size()))];
  }

  const CityClocks& cities;
  Clock& clock;
  std::string now;
  CalendarZones zones;
  StoredOccurrences stored;  // of the category
  bool haveKeys = false;     // whether its series can be found there
  std::string events;
  std::size_t undated = 0;
};

}  // namespace

EventCalendar MakeEventCalendar(const std::vector<CategoryRecords>& categories,
                                const CityClocks& cities, Clock& clock) {
  CalendarMaker maker(cities, clock);
  for (const CategoryRecords& category : categories) maker.Add(category);
  return std::move(maker).Finish();
}

}  // namespace pw

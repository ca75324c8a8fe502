#include "host/import/event_group.h"

#include "host/counted.h"

namespace pw {
namespace {

// Takes out the start, or, as a date that is told sloppily means it, the series' own of that date.
void Erase(std::set<LocalStart>& starts, const LocalStart& start, const LocalStart& own) {
  if (starts.erase(start) == 0) starts.erase({start.first, own.second});
}

std::set<LocalStart> StartsIn(const std::vector<CalendarTime>& times, const char* name,
                              const ReadEvent& series, CalendarMoments& moments,
                              std::vector<std::string>& remarks) {
  std::set<LocalStart> starts;
  std::size_t unreadable = 0;
  for (const CalendarTime& time : times) {
    if (const auto start = StartOf(time, series, moments)) {
      starts.insert(*start);
    } else {
      ++unreadable;
    }
  }
  if (unreadable > 0) {
    remarks.push_back(Counted(unreadable, "date", "dates") + " of " + name +
                      " can't be read, and left out");
  }
  return starts;
}

}  // namespace

SeriesDates DatesOf(const EventGroup& group, CalendarMoments& moments) {
  const ReadEvent& series = *group.series;
  SeriesDates dates;
  dates.beside = StartsIn(series.event.dates, "RDATE", series, moments, dates.remarks);
  dates.deleted = StartsIn(series.event.deleted, "EXDATE", series, moments, dates.remarks);
  std::vector<std::string> none;
  dates.deleted.merge(StartsIn(group.cancelled, "", series, moments, none));
  return dates;
}

std::set<LocalStart> StartsOf(const EventGroup& group, const SeriesDates& dates,
                              const std::vector<std::chrono::sys_days>& ofRule,
                              CalendarMoments& moments) {
  const ReadEvent& series = *group.series;
  const auto own = StartOf(series.event.start, series, moments);
  if (!own) return {};
  std::set<LocalStart> starts = dates.beside;
  starts.insert(*own);
  for (const std::chrono::sys_days date : ofRule) starts.insert({date, own->second});
  for (const LocalStart& start : dates.deleted) Erase(starts, start, *own);
  for (const ReadEvent* each : group.changed) {
    if (const auto start = StartOf(*each->event.replaced, series, moments)) {
      Erase(starts, *start, *own);
    }
  }
  return starts;
}

}  // namespace pw

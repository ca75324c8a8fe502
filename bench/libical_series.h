#pragma once

#include <libical/ical.h>

#include <cstdint>
#include <cstdlib>
#include <string>

// A series at nine o'clock in New York, as libical takes it.
struct LibicalSeries {
  std::string rule;
  icaltimezone* zone;
  icaltimetype start;
};

// Through the last day of a year.
inline LibicalSeries SeriesFrom(const char* start, const char* rule, std::int32_t lastYear) {
  LibicalSeries series{std::string(rule) + ";UNTIL=" + std::to_string(lastYear) + "1231T140000Z",
                       icaltimezone_get_builtin_timezone("America/New_York"),
                       icaltime_from_string(start)};
  if (series.zone == nullptr) std::abort();
  series.start.zone = series.zone;
  return series;
}

// Calls `take` with each date, as the clocks show it.
template <class Take>
void WalkSeries(const LibicalSeries& series, Take take) {
  icalrecur_iterator* iterator =
      icalrecur_iterator_new(icalrecurrencetype_from_string(series.rule.c_str()), series.start);
  for (icaltimetype next = icalrecur_iterator_next(iterator); !icaltime_is_null_time(next);
       next = icalrecur_iterator_next(iterator)) {
    take(next);
  }
  icalrecur_iterator_free(iterator);
}

#include "host/import/event_span.h"

#include <algorithm>

#include "host/city_clocks.h"
#include "host/series_events.h"
#include "timeplace/date.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

constexpr const char* kNoTimes = "its times can't be read";
constexpr const char* kOutside = "it lies outside of the years that the organiser has";

PWDateTimeStamp StampOfUtc(std::int32_t seconds) {
  return StampOf(BrokenTimeOf(seconds));
}

PWDateTimeStamp StampOfLocal(const LocalStart& start) {
  PWDateTimeStamp stamp = StampOfDate(start.first);
  const chrono::hh_mm_ss time(start.second);
  stamp.hour = static_cast<std::uint8_t>(time.hours().count());
  stamp.minute = static_cast<std::uint8_t>(time.minutes().count());
  stamp.second = static_cast<std::uint8_t>(time.seconds().count());
  return stamp;
}

// Nothing behind the last of the seconds.
std::optional<std::int32_t> SumOf(std::int32_t seconds, std::int32_t length) {
  const std::int64_t sum = std::int64_t{seconds} + length;
  if (sum > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(sum);
}

EventSpan DaysOf(const ReadEvent& read, CalendarMoments& moments) {
  const Event& event = read.event;
  const chrono::sys_days start = *moments.DateBy(nullptr, event.start);
  chrono::sys_days last = start;
  if (event.end) last = *moments.DateBy(moments.CityOf(*event.end), *event.end) - chrono::days(1);
  if (read.duration) last = start + chrono::days(*read.duration / kSecondsPerDay - 1);
  return {true, StampOfDate(start), StampOfDate(std::max(start, last))};
}

bool IsSameDay(const PWDateTimeStamp& a, const PWDateTimeStamp& b) {
  return DateOf(a) == DateOf(b);
}

}  // namespace

PWDateTimeStamp StampOfDate(chrono::sys_days date) {
  const chrono::year_month_day day(date);
  return {static_cast<std::uint16_t>(static_cast<int>(day.year())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.month())),
          static_cast<std::uint8_t>(static_cast<unsigned>(day.day())),
          0,
          0,
          0};
}

Outcome<EventSpan> SpanOf(const ReadEvent& read, CalendarMoments& moments) {
  const Event& event = read.event;
  const bool areTimes =
      CalendarMoments::IsTime(event.start) && (!event.end || CalendarMoments::IsTime(*event.end));
  if (!areTimes) return Failure{kNoTimes};
  if (CalendarMoments::IsDate(event.start)) return DaysOf(read, moments);
  const auto start = moments.UtcOf(event.start);
  if (!start) return Failure{kOutside};
  const auto end = event.end ? moments.UtcOf(*event.end) : SumOf(*start, read.duration.value_or(0));
  if (!end) return Failure{kOutside};
  return EventSpan{false, StampOfUtc(*start), StampOfUtc(std::max(*start, *end))};
}

std::optional<EventSpan> SpanFrom(const LocalStart& start, const ReadEvent& series,
                                  const EventSpan& span, CalendarMoments& moments) {
  const WMCityRecord* city = moments.CityOf(series.event.start);
  const LocalStart own = *moments.LocalBy(city, series.event.start);
  const chrono::days shift = start.first - own.first;
  if (span.isAllDay) {
    return EventSpan{true, StampOfDate(DateOf(span.start) + shift),
                     StampOfDate(DateOf(span.end) + shift)};
  }
  const auto begin = UtcWithin(city, StampOfLocal(start));
  if (!begin) return std::nullopt;
  std::optional<std::int32_t> end;
  if (start.second == own.second) {
    LocalStart last = LocalOf(LocalStamp(city, span.end));
    last.first += shift;
    end = UtcWithin(city, StampOfLocal(last));
  } else {
    end = SumOf(*begin, StampToSeconds(span.end) - StampToSeconds(span.start));
  }
  if (!end) return std::nullopt;
  return EventSpan{false, StampOfUtc(*begin), StampOfUtc(std::max(*begin, *end))};
}

std::optional<LocalStart> StartOf(const CalendarTime& time, const ReadEvent& series,
                                  CalendarMoments& moments) {
  const WMCityRecord* city = moments.CityOf(series.event.start);
  auto start = moments.LocalBy(city, time);
  if (!start) return std::nullopt;
  const bool isDate = CalendarMoments::IsDate(time) || CalendarMoments::IsDate(series.event.start);
  if (isDate) start->second = moments.LocalBy(city, series.event.start)->second;
  return start;
}

bool IsOfSeveralDays(const EventSpan& span, const WMCityRecord* home) {
  if (span.isAllDay) return !IsSameDay(span.start, span.end);
  return !IsSameDay(LocalStamp(home, span.start), LocalStamp(home, span.end));
}

bool Lengthen(EventSpan& span, const WMCityRecord* home) {
  const std::int32_t start = StampToSeconds(span.start);
  const std::int32_t end = StampToSeconds(span.end);
  if (span.isAllDay || start / kSecondsPerMinute != end / kSecondsPerMinute) return false;
  span.end = StampOfUtc(start + kSecondsPerMinute);
  // The last minute of the day is none before the next day's.
  if (IsOfSeveralDays(span, home)) {
    span = {false, StampOfUtc(start - kSecondsPerMinute), StampOfUtc(start)};
  }
  return true;
}

}  // namespace pw

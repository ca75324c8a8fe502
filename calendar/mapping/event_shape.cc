#include "calendar/mapping/event_shape.h"

#include <algorithm>
#include <cstdint>

#include "framework/event_record.h"
#include "framework/recurrence.h"
#include "timeplace/zones.h"

namespace {

constexpr std::uint16_t kFirstYear = 1980;
constexpr std::uint16_t kLastYear = 2029;

// The bit of an exception's changes by which it takes several days, whatever its times are.
constexpr std::uint32_t kTakesDays = 1U << 5;

// What the clocks show at the start and at the end.
struct LocalSpan {
  WMBrokenTime start;
  WMBrokenTime end;
};

LocalSpan SpanOf(PWDateTimeStamp start, PWDateTimeStamp end) {
  ClampStampRange(start, end);
  return {SecondsToLocal(StampToSeconds(start)), SecondsToLocal(StampToSeconds(end))};
}

bool IsOneDate(const LocalSpan& span) {
  return span.start.year == span.end.year && span.start.mon == span.end.mon &&
         span.start.mday == span.end.mday;
}

bool IsTimedWithinADay(PWEventRecord& event) {
  const LocalSpan span = SpanOf(event.StartDate(), event.EndDate());
  return IsOneDate(span) && (span.start.hour != span.end.hour || span.start.min != span.end.min);
}

}  // namespace

void ClampStamp(PWDateTimeStamp& stamp) {
  stamp.year = std::clamp(stamp.year, kFirstYear, kLastYear);
  stamp.month = std::clamp<std::uint8_t>(stamp.month, 1, 12);
  stamp.day = std::clamp<std::uint8_t>(stamp.day, 1, 31);
  if (stamp.hour > 24) stamp.hour = 23;
  if (stamp.minute > 60) stamp.minute = 59;
}

void ClampStampRange(PWDateTimeStamp& start, PWDateTimeStamp& end) {
  ClampStamp(start);
  ClampStamp(end);
}

bool IsPlainDay(PWEventRecord& event) {
  return !event.AllDay() && !event.Recurring() && IsTimedWithinADay(event);
}

bool IsSingleDay(PWEventRecord& event) {
  if (!event.AllDay()) return IsTimedWithinADay(event);
  const PWDateTimeStamp& start = event.StartDate();
  const PWDateTimeStamp& end = event.EndDate();
  return start.year == end.year && start.month == end.month && start.day == end.day;
}

bool IsMultiDay(PWEventRecord& event) {
  if (event.AllDay()) return !IsSingleDay(event);
  return !IsOneDate(SpanOf(event.StartDate(), event.EndDate()));
}

bool IsSpecialDayShape(PWEventRecord& event) {
  if (!event.AllDay()) return false;
  if (!event.Recurring()) return IsSingleDay(event);
  const PWRecurrancePattern* pattern = event.RecurrancePattern();
  return pattern != nullptr && pattern->NeverEnds();
}

bool ChangedOccurrenceIsMultiDay(PWRecurranceException& exception) {
  if ((exception.Changes.bits & kTakesDays) != 0) return true;
  return !IsOneDate(SpanOf(exception.StartDate, exception.EndDate));
}

#include "calendar/mapping/all_day_mapping.h"

#include <string>

#include "calendar/calendar_state.h"
#include "calendar/data_file.h"
#include "calendar/mapping/event_shape.h"
#include "framework/event_record.h"
#include "timeplace/zones.h"

namespace {

namespace datafile = pw::datafile;

constexpr std::int32_t kWeekdays = 7;
constexpr std::int32_t kMinutesPerDay = 24 * 60;
constexpr std::int32_t kShortestLead = kMinutesPerDay / 2;
constexpr std::uint8_t kFirstYear = 80;  // since 1900
constexpr std::uint8_t kLastYear = 130;
constexpr std::uint8_t kLastMonth = 12;  // one more than there are, as the organiser has it
constexpr std::uint8_t kLastWeek = 5;
constexpr std::int32_t kHourOfDates = 10;  // far from where clocks change

std::uint8_t Byte(std::int32_t value) {
  return static_cast<std::uint8_t>(value);
}

template <class Day>
void GiveKey(Day& day) {
  const ItemIdPair id = NewItemIdPair();
  day.created = id.created;
  day.id = id.id;
}

void FillMultiDayFromEvent(PWEventRecord& event, WMMultiDay& span) {
  PWDateTimeStamp start = event.StartDate();
  PWDateTimeStamp end = event.EndDate();
  ClampStampRange(start, end);
  const auto secondsOf = event.AllDay() ? LocalStampToSeconds : StampToSeconds;
  span.start = secondsOf(start);
  span.end = secondsOf(end);
  span.subject = datafile::MakeSubject(event.Subject().View());
}

void FillDateOfYear(const PWYearlyByDateRecurrance& yearly, WMSpecialDay& day) {
  day.byDate = 1;
  day.year = 0;
  day.month = yearly.Month;
  day.day = Byte(yearly.Day + 1);
  day.week = 1;
  day.weekday = 0;
}

// The engine's Saturday is 0, the organiser's 6.
void FillWeekdayOfYear(const PWYearlyByDayRecurrance& yearly, WMSpecialDay& day) {
  day.byDate = 0;
  day.year = 0;
  day.month = yearly.Month;
  day.day = 0;
  day.week = Byte(yearly.Week + 1);
  day.weekday = Byte(yearly.Day == 0 ? kWeekdays - 1 : yearly.Day - 1);
}

// The date isn't brought into any range.
void FillDate(const PWDateTimeStamp& date, WMSpecialDay& day) {
  day.byDate = 1;
  day.year = Byte(date.year - 1900);
  day.month = Byte(date.month - 1);
  day.day = date.day;
  day.week = 1;
  day.weekday = 0;
}

void FillSpecialFromEvent(PWEventRecord& event, WMSpecialDay& day) {
  PWRecurrancePattern* pattern = event.RecurrancePattern();
  if (pattern == nullptr) {
    FillDate(event.StartDate(), day);
  } else if (const auto* byDate = pattern->YearlyByDate()) {
    FillDateOfYear(*byDate, day);
  } else if (const auto* byDay = pattern->YearlyByDay()) {
    FillWeekdayOfYear(*byDay, day);
  }
  const std::int64_t lead = event.AlarmAdvance();
  if (lead >= kShortestLead) {
    day.alarm = event.Alarm() ? 1 : 0;
    day.alarmDays = static_cast<std::uint8_t>((lead + kShortestLead) / kMinutesPerDay);
  }
  day.subject = datafile::MakeSubject(event.Subject().View());
}

void AppendSpecial(WMDataFile& data, PWEventRecord& event) {
  WMSpecialDay day;
  GiveKey(day);
  FillSpecialFromEvent(event, day);
  data.AddSpecialDay(day);
}

PWDateTimeStamp DateOf(const PWDateTimeStamp& stamp) {
  return {stamp.year, stamp.month, stamp.day, 0, 0, 0};
}

PWDateTimeStamp LocalDate(std::int32_t seconds) {
  return DateOf(SecondsToLocalStamp(seconds));
}

void MultiDayToEvent(const WMMultiDay& span, PWEventRecord& event) {
  event.StartDate(LocalDate(span.start));
  event.EndDate(LocalDate(span.end));
  event.Subject(std::string(datafile::SubjectText(span.subject)).c_str());
  event.AllDay(true);
}

// The weekday of the week of the month that `date` is in; of a fifth week that the month hasn't got
// the fourth.
std::int32_t DayOfWeekday(const WMSpecialDay& day, WMBrokenTime date) {
  date.mday = 1;
  const std::int32_t firstWeekday = SecondsToLocal(LocalToSeconds(date)).wday;
  const std::int32_t weekday = day.weekday + (day.weekday < firstWeekday ? kWeekdays : 0);
  date.mday = day.week * kWeekdays - firstWeekday + weekday - (kWeekdays - 1);
  const std::int32_t mday = date.mday;
  if (day.week != kLastWeek) return mday;
  const bool isInMonth = SecondsToLocal(LocalToSeconds(date)).mon == day.month;
  return isInMonth ? mday : mday - kWeekdays;
}

// Of a special day in a year since 1900.
PWDateTimeStamp DateInYear(const WMSpecialDay& day, std::uint8_t year) {
  WMBrokenTime date = SecondsToLocal(UtcNowSeconds());
  date.year = year;
  date.mon = day.month;
  date.hour = kHourOfDates;
  date.mday = day.byDate != 0 ? day.day : DayOfWeekday(day, date);
  return LocalDate(LocalToSeconds(date));
}

void SetEveryYear(const WMSpecialDay& day, PWEventRecord& event) {
  event.Recurring(true, kRecurranceYearlyByDate);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, true);
  if (day.byDate != 0) {
    PWYearlyByDateRecurrance& yearly = *pattern.YearlyByDate();
    yearly.Day = Byte(day.day - 1);
    yearly.Month = day.month;
    return;
  }
  pattern.Type = kRecurranceYearlyByDay;
  PWYearlyByDayRecurrance& yearly = *pattern.YearlyByDay();
  yearly.Day = Byte(day.weekday == kWeekdays - 1 ? 0 : day.weekday + 1);
  yearly.Week = Byte(day.week - 1);
  yearly.Month = day.month;
}

bool SpecialDayToEvent(const WMSpecialDay& day, PWEventRecord& event) {
  const bool isEveryYear = day.year == 0;
  if (!isEveryYear && (day.year < kFirstYear || day.year > kLastYear)) return false;
  if (day.month > kLastMonth) return false;
  if (isEveryYear) {
    SetEveryYear(day, event);
  } else {
    event.Recurring(false, kRecurranceYearlyByDate);
  }
  const PWDateTimeStamp date = DateInYear(day, isEveryYear ? kFirstYear : day.year);
  event.StartDate(date);
  event.EndDate(date);
  event.Subject(std::string(datafile::WholeSubjectText(day.subject)).c_str());
  event.Alarm(day.alarm != 0);
  event.AlarmAdvance(day.alarmDays * kMinutesPerDay);
  event.AllDay(true);
  return true;
}

}  // namespace

std::int32_t AddMultiDayOrSpecial(WMDataFile& data, PWEventRecord& event) {
  if (IsMultiDay(event)) {
    WMMultiDay span;
    GiveKey(span);
    FillMultiDayFromEvent(event, span);
    data.AddMultiDay(span);
    return 0;
  }
  if (!IsSpecialDayShape(event)) return 1;
  AppendSpecial(data, event);
  return 0;
}

bool AddSpecialFromRecurring(WMDataFile& data, PWEventRecord& event) {
  PWRecurrancePattern* pattern = event.RecurrancePattern();
  if (pattern == nullptr || !pattern->NeverEnds() || !event.AllDay()) return false;
  if (pattern->YearlyByDate() == nullptr && pattern->YearlyByDay() == nullptr) return false;
  AppendSpecial(data, event);
  return true;
}

bool UpdateMultiDayOrSpecial(WMDataFile& data, std::uint32_t index, PWEventRecord& event) {
  if (const WMMultiDay* stored = data.MultiDay(index)) {
    if (!IsMultiDay(event)) return false;
    WMMultiDay span = *stored;
    FillMultiDayFromEvent(event, span);
    return data.Replace(index, span);
  }
  const WMSpecialDay* stored = data.SpecialDay(index);
  if (stored == nullptr || !IsSpecialDayShape(event)) return false;
  WMSpecialDay day = *stored;
  FillSpecialFromEvent(event, day);
  return data.Replace(index, day);
}

std::int32_t ReadMultiDayOrSpecial(const WMDataFile& data, std::uint32_t index,
                                   PWEventRecord& event) {
  if (const WMMultiDay* span = data.MultiDay(index)) {
    MultiDayToEvent(*span, event);
    return 0;
  }
  const WMSpecialDay* day = data.SpecialDay(index);
  return day != nullptr && SpecialDayToEvent(*day, event) ? 0 : 1;
}

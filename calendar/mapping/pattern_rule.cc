#include "calendar/mapping/pattern_rule.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "framework/event_record.h"
#include "platform/platform.h"
#include "timeplace/zones.h"

namespace {

constexpr std::int16_t kMonthsPerYear = 12;
constexpr int kWeekdays = 7;
constexpr int kWeeks = 5;
constexpr int kDayBits = 32;

int MaskBitOfWeekday(int weekday) {
  return weekday == 0 ? kWeekdays - 1 : weekday - 1;
}

std::uint8_t WeekdayOfMaskBit(int bit) {
  return static_cast<std::uint8_t>(bit == kWeekdays - 1 ? 0 : bit + 1);
}

std::uint8_t MaskOfWeekday(std::uint8_t weekday) {
  return static_cast<std::uint8_t>(weekday < kWeekdays ? 1U << MaskBitOfWeekday(weekday) : 0);
}

std::uint8_t MaskOfWeek(std::uint8_t week) {
  return static_cast<std::uint8_t>(week < kWeeks ? 1U << week : 0);
}

void SetByWeekday(WMRecurrenceRule& rule, std::int16_t interval, std::uint8_t week,
                  std::uint8_t weekday) {
  rule.interval = interval;
  rule.weekMask = MaskOfWeek(week);
  rule.weekdayMask = MaskOfWeekday(weekday);
}

// How a type becomes a rule.
struct PatternRow {
  ERecurranceType type;
  std::uint16_t kind;
  std::int32_t mostYears;
  void (*fill)(PWRecurrancePattern& pattern, WMRecurrenceRule& rule);
};

constexpr PatternRow kPatterns[] = {
    {kRecurranceDaily, pw::calendar::kDaily, 1,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       rule.interval = pattern.Daily()->Interval;
     }},
    {kRecurranceWeekly, pw::calendar::kWeekly, 1,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       rule.interval = pattern.Weekly()->Interval;
       for (int weekday = 0; weekday < kWeekdays; ++weekday) {
         if ((pattern.Weekly()->Days.bits >> weekday & 1) == 0) continue;
         rule.weekdayMask |= MaskOfWeekday(static_cast<std::uint8_t>(weekday));
       }
     }},
    {kRecurranceMonthlyByDate, pw::calendar::kMonthlyByDate, 2,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       rule.interval = pattern.MonthlyByDate()->Interval;
       rule.dayMask = pattern.MonthlyByDate()->Days.bits;
     }},
    {kRecurranceMonthlyByDay, pw::calendar::kMonthlyByWeekday, 2,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       const PWMonthlyByDayRecurrance& own = *pattern.MonthlyByDay();
       SetByWeekday(rule, own.Interval, own.Week, own.Day);
     }},
    {kRecurranceYearlyByDate, pw::calendar::kMonthlyByDate, 10,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       const std::uint8_t day = pattern.YearlyByDate()->Day;
       rule.interval = kMonthsPerYear;
       rule.dayMask = day < kDayBits ? 1U << day : 0;
     }},
    {kRecurranceYearlyByDay, pw::calendar::kMonthlyByWeekday, 10,
     [](PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
       const PWYearlyByDayRecurrance& own = *pattern.YearlyByDay();
       SetByWeekday(rule, kMonthsPerYear, own.Week, own.Day);
     }},
};

// Null for a type that no pattern has.
const PatternRow* RowOf(ERecurranceType type) {
  const auto* row = std::find_if(std::begin(kPatterns), std::end(kPatterns),
                                 [&](const PatternRow& each) { return each.type == type; });
  return row == std::end(kPatterns) ? nullptr : row;
}

bool IsYearly(const WMRecurrenceRule& rule) {
  return rule.interval % kMonthsPerYear == 0;
}

std::uint8_t MonthOf(const WMRecurrenceRule& rule) {
  return static_cast<std::uint8_t>(SecondsToLocal(rule.firstDay).mon);
}

int HighestBit(std::uint32_t mask) {
  return std::bit_width(mask) - 1;
}

template <class Variant>
PatternResult SetWeekAndDay(const WMRecurrenceRule& rule, Variant& variant) {
  const std::uint32_t weeks = rule.weekMask & ((1U << kWeeks) - 1);
  const std::uint32_t weekdays = rule.weekdayMask & ((1U << kWeekdays) - 1);
  if (weeks != 0) variant.Week = static_cast<std::uint8_t>(HighestBit(weeks));
  if (weekdays != 0) variant.Day = WeekdayOfMaskBit(HighestBit(weekdays));
  const bool isManifold = std::popcount(weeks) > 1 || std::popcount(weekdays) > 1;
  return isManifold ? PatternResult::kManifold : PatternResult::kDone;
}

PWRecurrancePattern& NewPattern(PWEventRecord& event, ERecurranceType type) {
  event.Recurring(true, type);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, false);
  return pattern;
}

PatternResult SetDaily(const WMRecurrenceRule& rule, PWEventRecord& event) {
  NewPattern(event, kRecurranceDaily).Daily()->Interval = rule.interval;
  return PatternResult::kDone;
}

PatternResult SetWeekly(const WMRecurrenceRule& rule, PWEventRecord& event) {
  PWWeeklyRecurrance& weekly = *NewPattern(event, kRecurranceWeekly).Weekly();
  weekly.Interval = rule.interval;
  for (int bit = 0; bit < kWeekdays; ++bit) {
    weekly.Days.Bit(WeekdayOfMaskBit(bit), (rule.weekdayMask >> bit & 1) != 0);
  }
  return PatternResult::kDone;
}

PatternResult SetByDate(const WMRecurrenceRule& rule, PWEventRecord& event) {
  if (!IsYearly(rule)) {
    PWMonthlyByDateRecurrance& monthly =
        *NewPattern(event, kRecurranceMonthlyByDate).MonthlyByDate();
    monthly.Interval = rule.interval;
    monthly.Days.bits = rule.dayMask;
    return PatternResult::kDone;
  }
  PWYearlyByDateRecurrance& yearly = *NewPattern(event, kRecurranceYearlyByDate).YearlyByDate();
  if (rule.dayMask != 0) yearly.Day = static_cast<std::uint8_t>(std::countr_zero(rule.dayMask));
  yearly.Month = MonthOf(rule);
  return PatternResult::kDone;
}

PatternResult SetByDay(const WMRecurrenceRule& rule, PWEventRecord& event) {
  if (!IsYearly(rule)) {
    PWMonthlyByDayRecurrance& monthly = *NewPattern(event, kRecurranceMonthlyByDay).MonthlyByDay();
    monthly.Interval = rule.interval;
    return SetWeekAndDay(rule, monthly);
  }
  PWYearlyByDayRecurrance& yearly = *NewPattern(event, kRecurranceYearlyByDay).YearlyByDay();
  yearly.Month = MonthOf(rule);
  return SetWeekAndDay(rule, yearly);
}

PatternResult SetVariant(const WMRecurrenceRule& rule, PWEventRecord& event) {
  switch (rule.patternKind) {
    case pw::calendar::kDaily:
      return SetDaily(rule, event);
    case pw::calendar::kWeekly:
      return SetWeekly(rule, event);
    case pw::calendar::kMonthlyByDate:
      return SetByDate(rule, event);
    case pw::calendar::kMonthlyByWeekday:
      return SetByDay(rule, event);
    default:
      return PatternResult::kNoKind;
  }
}

PWDateTimeStamp LastDate(const WMRecurrenceRule& rule, ERecurranceType type) {
  PWDateTimeStamp stamp;
  if (type == kRecurranceYearlyByDate || type == kRecurranceYearlyByDay) {
    stamp = pw::CurrentPlatform().clock->Local(rule.lastDay);
  } else {
    stamp = StampOf(SecondsToLocal(rule.lastDay));
  }
  return {stamp.year, stamp.month, stamp.day, 0, 0, 0};
}

// Its names stay empty.
void SetZone(PWRecurrancePattern& pattern) {
  TIME_ZONE_INFORMATION zone;
  if (HomeToTimeZone(zone)) pattern.TimeZone = PWTimeZone(zone);
}

}  // namespace

bool RuleOfPattern(PWRecurrancePattern& pattern, WMRecurrenceRule& rule) {
  const PatternRow* row = RowOf(pattern.Type);
  if (row == nullptr) return false;
  rule.patternKind = row->kind;
  row->fill(pattern, rule);
  return true;
}

std::int32_t MostYears(ERecurranceType type) {
  const PatternRow* row = RowOf(type);
  return row == nullptr ? 0 : row->mostYears;
}

PatternResult PatternOfRule(const WMRecurrenceRule& rule, PWEventRecord& event) {
  const PatternResult result = SetVariant(rule, event);
  if (result == PatternResult::kNoKind) return result;
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.EndDate = LastDate(rule, pattern.Type);
  SetZone(pattern);
  return result;
}

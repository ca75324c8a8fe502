#include "host/system_zones/rule_line.h"

#include <chrono>

#include "timeplace/date.h"

namespace pw {
namespace {

constexpr std::int32_t kLastWeek = 5;

constexpr std::int32_t kMostZoneHours = 24;
constexpr std::int32_t kMostRuleHours = 7 * 24 - 1;
constexpr std::size_t kShortestName = 3;
constexpr std::size_t kMostDigits = 3;

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Takes the parts of a line off its front. Each gives false where the line has something else.
class LineParser {
 public:
  explicit LineParser(std::string_view line) : rest(line) {}

  bool AtEnd() const { return rest.empty(); }

  bool Char(char c) {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
  }

  // A zone's abbreviation, which nobody needs: letters, or anything within "<" and ">".
  bool Name() {
    const bool quoted = Char('<');
    std::size_t length = 0;
    while (length < rest.size() && IsNameChar(rest[length], quoted)) ++length;
    rest.remove_prefix(length);
    return length >= kShortestName && (!quoted || Char('>'));
  }

  // Hours, minutes and seconds with or without a sign.
  bool Time(std::int32_t mostHours, std::int32_t& seconds) {
    const bool negative = Char('-');
    if (!negative) Char('+');
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t rests = 0;
    if (!Number(0, mostHours, hours)) return false;
    if (Char(':')) {
      if (!Number(0, 59, minutes)) return false;
      if (Char(':') && !Number(0, 59, rests)) return false;
    }
    seconds = hours * kSecondsPerHour + minutes * kSecondsPerMinute + rests;
    if (negative) seconds = -seconds;
    return true;
  }

  bool Day(RuleDay& day) {
    bool good = false;
    if (Char('M')) {
      day.kind = RuleDay::Kind::kWeekday;
      good = Number(1, 12, day.month) && Char('.') && Number(1, kLastWeek, day.week) && Char('.') &&
             Number(0, 6, day.weekday);
    } else if (Char('J')) {
      day.kind = RuleDay::Kind::kDayButLeapDay;
      good = Number(1, 365, day.day);
    } else {
      day.kind = RuleDay::Kind::kDayWithLeapDay;
      good = Number(0, 365, day.day);
    }
    return good && (!Char('/') || Time(kMostRuleHours, day.time));
  }

 private:
  static bool IsNameChar(char c, bool quoted) {
    return IsLetter(c) || (quoted && (IsDigit(c) || c == '+' || c == '-'));
  }

  bool Number(std::int32_t least, std::int32_t most, std::int32_t& value) {
    std::size_t digits = 0;
    value = 0;
    while (digits < rest.size() && digits < kMostDigits && IsDigit(rest[digits])) {
      value = value * 10 + (rest[digits] - '0');
      ++digits;
    }
    rest.remove_prefix(digits);
    return digits > 0 && value >= least && value <= most;
  }

  std::string_view rest;
};

std::chrono::sys_days DayOfRule(const RuleDay& day, std::int32_t number) {
  using std::chrono::sys_days;
  const std::chrono::year year(number);
  const std::chrono::sys_days newYear = year / 1 / 1;
  if (day.kind == RuleDay::Kind::kDayWithLeapDay) return newYear + std::chrono::days(day.day);
  if (day.kind == RuleDay::Kind::kDayButLeapDay) {
    constexpr std::int32_t kLastOfFebruary = 31 + 28;
    const bool behindLeapDay = year.is_leap() && day.day > kLastOfFebruary;
    return newYear + std::chrono::days(day.day - (behindLeapDay ? 0 : 1));
  }
  const auto month = year / day.month;
  const std::chrono::weekday weekday(static_cast<unsigned>(day.weekday));
  if (day.week == kLastWeek) return sys_days(month / weekday[std::chrono::last]);
  return sys_days(month / weekday[static_cast<unsigned>(day.week)]);
}

std::int64_t MomentOf(const RuleDay& day, std::int32_t year, std::int32_t offsetBefore) {
  const std::int64_t days = DayOfRule(day, year).time_since_epoch().count();
  return days * kSecondsPerDay + day.time - offsetBefore;
}

std::int32_t CalendarYear(std::int32_t utc) {
  const auto days =
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(utc)));
  return static_cast<int>(std::chrono::year_month_day(days).year());
}

}  // namespace

std::optional<RuleLine> ParseRuleLine(std::string_view line) {
  LineParser in(line);
  RuleLine rule;
  // The line has offsets as seconds to add to local time.
  std::int32_t west = 0;
  if (!in.Name() || !in.Time(kMostZoneHours, west)) return std::nullopt;
  rule.standard = -west;
  if (in.AtEnd()) return rule;

  RuleLine::Daylight daylight;
  daylight.offset = rule.standard + kSecondsPerHour;
  if (!in.Name()) return std::nullopt;
  if (!in.Char(',')) {
    if (!in.Time(kMostZoneHours, west) || !in.Char(',')) return std::nullopt;
    daylight.offset = -west;
  }
  if (!in.Day(daylight.start) || !in.Char(',') || !in.Day(daylight.end)) return std::nullopt;
  if (!in.AtEnd()) return std::nullopt;
  rule.daylight = daylight;
  return rule;
}

RuleChanges ChangesOfYear(const RuleLine::Daylight& daylight, std::int32_t standard,
                          std::int32_t year) {
  return {MomentOf(daylight.start, year, standard), MomentOf(daylight.end, year, daylight.offset)};
}

std::int32_t OffsetAt(const RuleLine& rule, std::int32_t utc) {
  std::int32_t offset = rule.standard;
  if (!rule.daylight) return offset;
  // The latest change up to the moment tells. One may fall outside of its year. Where one year's
  // end is the next one's start, daylight time goes on.
  std::optional<std::int64_t> latest;
  const auto consider = [&](std::int64_t change, std::int32_t after) {
    if (change > utc || (latest && change < *latest)) return;
    latest = change;
    offset = after;
  };
  const std::int32_t year = CalendarYear(utc);
  for (const std::int32_t each : {year - 1, year, year + 1}) {
    const RuleChanges changes = ChangesOfYear(*rule.daylight, rule.standard, each);
    consider(changes.start, rule.daylight->offset);
    consider(changes.end, rule.standard);
  }
  return offset;
}

}  // namespace pw

#include "host/system_zones/city_of_zone.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "base/codepage.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

struct StateOfZone {
  std::string_view zoneId;
  std::string_view state;
};

// As the zones of the United States don't all say which state they are in.
constexpr StateOfZone kStates[] = {
    {"America/Adak", "AK"},
    {"America/Anchorage", "AK"},
    {"America/Boise", "ID"},
    {"America/Chicago", "IL"},
    {"America/Denver", "CO"},
    {"America/Detroit", "MI"},
    {"America/Indiana/Indianapolis", "IN"},
    {"America/Indiana/Knox", "IN"},
    {"America/Indiana/Marengo", "IN"},
    {"America/Indiana/Petersburg", "IN"},
    {"America/Indiana/Tell_City", "IN"},
    {"America/Indiana/Vevay", "IN"},
    {"America/Indiana/Vincennes", "IN"},
    {"America/Indiana/Winamac", "IN"},
    {"America/Juneau", "AK"},
    {"America/Kentucky/Louisville", "KY"},
    {"America/Kentucky/Monticello", "KY"},
    {"America/Los_Angeles", "CA"},
    {"America/Menominee", "MI"},
    {"America/Metlakatla", "AK"},
    {"America/New_York", "NY"},
    {"America/Nome", "AK"},
    {"America/North_Dakota/Beulah", "ND"},
    {"America/North_Dakota/Center", "ND"},
    {"America/North_Dakota/New_Salem", "ND"},
    {"America/Phoenix", "AZ"},
    {"America/Sitka", "AK"},
    {"America/Yakutat", "AK"},
    {"Pacific/Honolulu", "HI"},
};

constexpr std::int32_t kHoursPerHalfDay = 12;

std::int8_t Small(std::int32_t value) {
  return static_cast<std::int8_t>(value);
}

std::optional<LeftOutReason> SetChange(const RuleDay& day, WMDaylightChange& change) {
  if (day.kind != RuleDay::Kind::kWeekday) return LeftOutReason::kDayOfYear;
  if (day.time < 0 || day.time >= kSecondsPerDay || day.time % kSecondsPerHour != 0) {
    return LeftOutReason::kTimeOfDay;
  }
  const std::int32_t hour = day.time / kSecondsPerHour;
  change.pm = hour >= kHoursPerHalfDay ? 1 : 0;
  change.hour = Small(hour % kHoursPerHalfDay);
  change.week = Small(day.week - 1);
  change.weekday = Small(day.weekday);
  change.month = Small(day.month - 1);
  return {};
}

// The rule with daylight time ahead of standard time. Some zones have it the other way round: what
// they call standard time is ahead in summer, and ends where "daylight time" begins.
RuleLine WithDaylightAhead(RuleLine rule) {
  if (!rule.daylight || rule.daylight->offset >= rule.standard) return rule;
  std::swap(rule.standard, rule.daylight->offset);
  std::swap(rule.daylight->start, rule.daylight->end);
  return rule;
}

// Where to compare the two.
std::vector<std::int64_t> ChangesOfEither(std::int32_t from, std::int32_t to,
                                          const WMCityRecord& city, const CompiledZone& zone) {
  std::vector<std::int64_t> changes = {from, to};
  for (const CompiledZone::Change& change : zone.changes) {
    if (change.at >= from && change.at <= to) changes.push_back(change.at);
  }
  const std::int32_t offset = ZoneOffsetSeconds(city.offset);
  for (std::int32_t year = YearOf(from); year <= YearOf(to); ++year) {
    const DaylightBounds bounds = BoundsOfYear(RuleOf(city), year);
    changes.push_back(std::int64_t{bounds.start} + offset);
    changes.push_back(std::int64_t{bounds.end} + offset);
    if (!zone.rule.daylight) continue;
    const RuleChanges rule = ChangesOfYear(*zone.rule.daylight, zone.rule.standard, year);
    changes.push_back(rule.start);
    changes.push_back(rule.end);
  }
  return changes;
}

bool AgreesAt(std::int32_t utc, const WMCityRecord& city, const CompiledZone& zone) {
  const std::int64_t local = UtcToLocal(city, utc).seconds;
  return local - utc == OffsetAt(zone, utc);
}

}  // namespace

std::string CityNameOf(std::string_view zoneId) {
  std::string name(zoneId.substr(zoneId.rfind('/') + 1));
  std::replace(name.begin(), name.end(), '_', ' ');
  const auto* found = std::find_if(std::begin(kStates), std::end(kStates),
                                   [&](const StateOfZone& each) { return each.zoneId == zoneId; });
  if (found != std::end(kStates)) name.append(", ").append(found->state);
  return Utf8ToCodePageLossy(name);
}

std::optional<LeftOutReason> SetClocks(const RuleLine& rule, WMCityRecord& city) {
  const RuleLine plain = WithDaylightAhead(rule);
  if (plain.standard % kSecondsPerMinute != 0) return LeftOutReason::kSeconds;
  const std::int32_t minutes = plain.standard / kSecondsPerMinute;
  WMCityRecord made = city;
  made.offset = static_cast<std::int16_t>(minutes / 60 * 100 + minutes % 60);
  made.dstMode = kNoDaylight;
  if (plain.daylight) {
    made.dstMode = kDaylightByWeekday;
    if (const auto reason = SetChange(plain.daylight->start, made.dstStart)) return reason;
    if (const auto reason = SetChange(plain.daylight->end, made.dstEnd)) return reason;
    if (plain.daylight->offset - plain.standard != kSecondsPerHour) {
      return LeftOutReason::kNotOneHour;
    }
  }
  city = made;
  return {};
}

bool AgreesBetween(std::int32_t from, std::int32_t to, const WMCityRecord& city,
                   const CompiledZone& zone) {
  constexpr std::int64_t kHoursAround = 2;
  for (const std::int64_t change : ChangesOfEither(from, to, city, zone)) {
    for (std::int64_t hours = -kHoursAround; hours <= kHoursAround; ++hours) {
      const std::int64_t hour = change + hours * kSecondsPerHour;
      for (const std::int64_t utc : {hour - 1, hour}) {
        if (utc < from || utc > to) continue;
        if (!AgreesAt(static_cast<std::int32_t>(utc), city, zone)) return false;
      }
    }
  }
  return true;
}

}  // namespace pw

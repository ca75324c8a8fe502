#include "timeplace/bounds_cache.h"

namespace pw {
namespace {

// There are no more zone numbers; with more rules than these the file is not the organiser's.
constexpr std::size_t kMostRules = 256;

}  // namespace

BoundsCache::Key BoundsCache::KeyOf(const DaylightRule& rule) {
  const WMDaylightChange& start = rule.start;
  const WMDaylightChange& end = rule.end;
  return {rule.mode, start.pm, start.hour, start.week,  start.weekday, start.month,
          end.pm,    end.hour, end.week,   end.weekday, end.month};
}

void BoundsCache::Use(const DaylightRule& rule) {
  if (yearsOfCurrent != nullptr && rule == current) return;
  current = rule;
  if (rules.size() >= kMostRules) rules.clear();
  yearsOfCurrent = &rules[KeyOf(rule)];
}

DaylightBounds BoundsCache::Of(std::int32_t year) {
  if (yearsOfCurrent == nullptr || year < kFirstYear) return BoundsOfYear(current, year);
  const auto index = static_cast<std::size_t>(year - kFirstYear);
  if (index >= kYears) return BoundsOfYear(current, year);
  if (!yearsOfCurrent->known[index]) {
    yearsOfCurrent->bounds[index] = BoundsOfYear(current, year);
    yearsOfCurrent->known[index] = true;
  }
  return yearsOfCurrent->bounds[index];
}

}  // namespace pw

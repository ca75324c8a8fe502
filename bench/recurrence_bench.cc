#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/libical_series.h"
#include "calendar/recurrence_rule.h"
#include "calendar/rule_expansion.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"
#include "timeplace/zones.h"

// The dates of series of twenty years in a zone with daylight time, each beside the same rule in
// libical. The items are dates: the moment of each occurrence, and what the clocks show then.
namespace {

using pw::test::Change;
using pw::test::City;

constexpr std::int32_t kFirstYear = 1990;
constexpr std::int32_t kYears = 20;

// The same series for both.
struct Series {
  const char* text;
  WMRecurrenceRule rule;
};

WMRecurrenceRule RuleOfKind(std::uint16_t kind) {
  WMRecurrenceRule rule;
  rule.patternKind = kind;
  return rule;
}

Series Daily() {
  return {"FREQ=DAILY", RuleOfKind(pw::calendar::kDaily)};
}

Series Weekly() {
  Series series{"FREQ=WEEKLY;BYDAY=MO,WE,FR;WKST=MO", RuleOfKind(pw::calendar::kWeekly)};
  series.rule.weekdayMask = 1U << 1 | 1U << 3 | 1U << 5;
  return series;
}

Series ByDate() {
  Series series{"FREQ=MONTHLY;BYMONTHDAY=15", RuleOfKind(pw::calendar::kMonthlyByDate)};
  series.rule.dayMask = 1U << 14;
  return series;
}

Series ByWeekday() {
  Series series{"FREQ=MONTHLY;BYDAY=2TU", RuleOfKind(pw::calendar::kMonthlyByWeekday)};
  series.rule.weekMask = 1U << 1;
  series.rule.weekdayMask = 1U << 2;
  return series;
}

// The organiser at home in New York.
class Organiser {
 public:
  Organiser() {
    pw::test::PutZoneFiles(platform,
                           {City("New York, NY", "USA", 1, -500, kDaylightByWeekday,
                                 Change(2, 1, 0, 2), Change(2, 0, 0, 10))},
                           "New York, NY");
    if (!LoadHomeZone()) std::abort();
  }

 private:
  pw::TestPlatform platform;
};

std::int32_t LocalNine(std::int32_t year) {
  return LocalStampToSeconds({static_cast<std::uint16_t>(year), 1, 1, 9, 0, 0});
}

LibicalSeries ReferenceOf(const Series& series) {
  return SeriesFrom("19900101T090000", series.text, kFirstYear + kYears - 1);
}

// Both must do the same work. They are compared by what the clocks show, as the organiser's city
// has one rule for all years and the other's zone the history of its switches.
void RequireSameDates(const Series& series) {
  std::vector<std::int32_t> occurrences;
  if (!ExpandRule(series.rule, occurrences)) std::abort();
  std::size_t at = 0;
  WalkSeries(ReferenceOf(series), [&](const icaltimetype& date) {
    if (at == occurrences.size()) std::abort();
    const WMBrokenTime local = SecondsToLocal(occurrences[at++]);
    const bool isSame = local.year + 1900 == date.year && local.mon + 1 == date.month &&
                        local.mday == date.day && local.hour == date.hour;
    if (!isSame) std::abort();
  });
  if (at != occurrences.size()) std::abort();
}

void BM_Expand(benchmark::State& state, Series (*make)()) {
  const Organiser organiser;
  Series series = make();
  series.rule.firstDay = LocalNine(kFirstYear);
  series.rule.lastDay = LocalNine(kFirstYear + kYears) - kSecondsPerDay;
  RequireSameDates(series);
  std::size_t dates = 0;
  for (auto _ : state) {
    std::vector<std::int32_t> occurrences;
    if (!ExpandRule(series.rule, occurrences)) std::abort();
    for (const std::int32_t occurrence : occurrences) {
      benchmark::DoNotOptimize(SecondsToLocal(occurrence));
    }
    dates = occurrences.size();
  }
  state.counters["dates"] = static_cast<double>(dates);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * dates));
}

// Its iterator works on what the clocks show, so that the moment is what it must be asked for.
void BM_Libical(benchmark::State& state, Series (*make)()) {
  const LibicalSeries reference = ReferenceOf(make());
  std::size_t dates = 0;
  for (auto _ : state) {
    dates = 0;
    WalkSeries(reference, [&](const icaltimetype& next) {
      benchmark::DoNotOptimize(icaltime_as_timet_with_zone(next, reference.zone));
      ++dates;
    });
  }
  state.counters["dates"] = static_cast<double>(dates);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * dates));
}

// A date of the first of each pair is to take a tenth of one of the second at most.
BENCHMARK_CAPTURE(BM_Expand, daily, Daily);
BENCHMARK_CAPTURE(BM_Libical, daily, Daily);
BENCHMARK_CAPTURE(BM_Expand, weekly, Weekly);
BENCHMARK_CAPTURE(BM_Libical, weekly, Weekly);
BENCHMARK_CAPTURE(BM_Expand, by_date, ByDate);
BENCHMARK_CAPTURE(BM_Libical, by_date, ByDate);
BENCHMARK_CAPTURE(BM_Expand, by_weekday, ByWeekday);
BENCHMARK_CAPTURE(BM_Libical, by_weekday, ByWeekday);

}  // namespace

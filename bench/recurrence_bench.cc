#include <libical/ical.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

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

void BM_Expand(benchmark::State& state, Series (*make)()) {
  const Organiser organiser;
  Series series = make();
  series.rule.firstDay = LocalNine(kFirstYear);
  series.rule.lastDay = LocalNine(kFirstYear + kYears) - kSecondsPerDay;
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
  icaltimezone* zone = icaltimezone_get_builtin_timezone("America/New_York");
  if (zone == nullptr) std::abort();
  const Series series = make();
  const std::string until = std::to_string(kFirstYear + kYears - 1) + "1231T140000Z";
  const std::string text = std::string(series.text) + ";UNTIL=" + until;
  icaltimetype start = icaltime_from_string("19900101T090000");
  start.zone = zone;
  std::size_t dates = 0;
  for (auto _ : state) {
    icalrecur_iterator* iterator =
        icalrecur_iterator_new(icalrecurrencetype_from_string(text.c_str()), start);
    dates = 0;
    for (icaltimetype next = icalrecur_iterator_next(iterator); !icaltime_is_null_time(next);
         next = icalrecur_iterator_next(iterator)) {
      benchmark::DoNotOptimize(icaltime_as_timet_with_zone(next, zone));
      ++dates;
    }
    icalrecur_iterator_free(iterator);
  }
  state.counters["dates"] = static_cast<double>(dates);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * dates));
}

BENCHMARK_CAPTURE(BM_Expand, daily, Daily);
BENCHMARK_CAPTURE(BM_Libical, daily, Daily);
BENCHMARK_CAPTURE(BM_Expand, weekly, Weekly);
BENCHMARK_CAPTURE(BM_Libical, weekly, Weekly);
BENCHMARK_CAPTURE(BM_Expand, by_date, ByDate);
BENCHMARK_CAPTURE(BM_Libical, by_date, ByDate);
BENCHMARK_CAPTURE(BM_Expand, by_weekday, ByWeekday);
BENCHMARK_CAPTURE(BM_Libical, by_weekday, ByWeekday);

}  // namespace

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/libical_series.h"
#include "calendar/calendar_store.h"
#include "calendar/mapping/event_router.h"
#include "calendar/record_list.h"
#include "framework/event_record.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"
#include "timeplace/engine_zone.h"

// The engine's calls on a calendar in memory: events of one day, and series with all their
// occurrences, in a zone with daylight time.
namespace {

using pw::test::Change;

constexpr std::int32_t kFirstYear = 1995;

PWDateTimeStamp UtcStamp(std::int32_t seconds) {
  return StampOf(BrokenTimeOf(seconds));
}

WMCityRecord NewYork() {
  return pw::test::City("New York, NY", "USA", 1, -500, kDaylightByWeekday, Change(2, 1, 0, 2),
                        Change(2, 0, 0, 10));
}

// An open calendar at home in New York.
class Calendar {
 public:
  Calendar() {
    platform.clock.now = PlainSeconds(kFirstYear, 1, 1, 12, 0, 0);
    pw::test::PutZoneFiles(platform, {NewYork()}, "New York, NY");
    if (store.Load("C:\\Data\\") != 0) std::abort();
  }

  void Add(PWRecord& record) {
    std::string message;
    if (AddEvent(store, record, message) != 0) std::abort();
  }

  // The ids of all records.
  std::vector<std::string> Ids() {
    std::vector<std::string> ids;
    for (std::uint32_t i = 0; i < store.RecordCount(); ++i) ids.push_back(IdOfIndex(store, i));
    return ids;
  }
  std::uint32_t Find(const std::string& id) {
    const auto index = IndexOfId(store, id);
    if (!index) std::abort();
    return *index;
  }
  void Delete(const std::vector<std::string>& ids) {
    for (const std::string& id : ids) DeleteByIndex(store, Find(id));
    if (store.RecordCount() != 0) std::abort();
  }

 private:
  pw::TestPlatform platform;

 public:
  WMCalendarStore store;
};

PWRecord Event(std::int32_t start) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject("A subject of some length");
  event.Notes("Notes of an ordinary length,\r\nwhich have two lines.", PWRecord::kWholeText);
  event.StartDate(UtcStamp(start));
  event.EndDate(UtcStamp(start + kSecondsPerHour));
  return record;
}

// The n-th of hours of working days from nine o'clock on, so many of one time.
PWRecord Hour(std::int64_t number, std::int64_t atOnce) {
  const auto slot = static_cast<std::int32_t>(number / atOnce);
  return Event(PlainSeconds(kFirstYear, 1, 1, 14, 0, 0) + slot / 8 * kSecondsPerDay +
               slot % 8 * kSecondsPerHour);
}

void AddHours(Calendar& calendar, std::int64_t count, std::int64_t atOnce) {
  for (std::int64_t i = 0; i < count; ++i) {
    PWRecord record = Hour(i, atOnce);
    calendar.Add(record);
  }
}

void Count(benchmark::State& state, std::size_t items) {
  state.counters["items"] = static_cast<double>(items);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * items));
}

void BM_AddHours(benchmark::State& state, std::int64_t atOnce) {
  for (auto _ : state) {
    Calendar calendar;
    AddHours(calendar, state.range(0), atOnce);
  }
  Count(state, static_cast<std::size_t>(state.range(0)));
}

void BM_FindAndUpdateHours(benchmark::State& state) {
  Calendar calendar;
  AddHours(calendar, state.range(0), 1);
  const std::vector<std::string> ids = calendar.Ids();
  for (auto _ : state) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
      PWRecord record = Hour(static_cast<std::int64_t>(i), 1);
      std::string message;
      UpdateEvent(calendar.store, calendar.Find(ids[i]), record, message);
    }
  }
  Count(state, ids.size());
}

void ReadAll(Calendar& calendar) {
  for (std::uint32_t i = 0; i < calendar.store.RecordCount(); ++i) {
    PWRecord record;
    std::string message;
    if (ReadByIndex(calendar.store, i, &record, message) != 0) std::abort();
  }
}

void BM_ReadHours(benchmark::State& state) {
  Calendar calendar;
  AddHours(calendar, state.range(0), 1);
  for (auto _ : state) ReadAll(calendar);
  Count(state, calendar.store.RecordCount());
}

void BM_FindAndDeleteHours(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    Calendar calendar;
    AddHours(calendar, state.range(0), 1);
    const std::vector<std::string> ids = calendar.Ids();
    state.ResumeTiming();
    calendar.Delete(ids);
  }
  Count(state, static_cast<std::size_t>(state.range(0)));
}

// A pattern, and the same rule for libical; both from 2 January 1995, a Monday, at nine.
struct Kind {
  ERecurranceType type;
  void (*fill)(PWRecurrancePattern& pattern);
  const char* rule;
};

const Kind kKinds[] = {
    {kRecurranceDaily, [](auto& p) { p.Daily()->Interval = 1; }, "FREQ=DAILY"},
    {kRecurranceWeekly,
     [](auto& p) {
       p.Weekly()->Interval = 1;
       p.Weekly()->Days.bits = 1U << 2 | 1U << 4 | 1U << 6;
     },
     "FREQ=WEEKLY;BYDAY=MO,WE,FR;WKST=MO"},
    {kRecurranceMonthlyByDate,
     [](auto& p) {
       p.MonthlyByDate()->Interval = 1;
       p.MonthlyByDate()->Days.bits = 1U << 1;
     },
     "FREQ=MONTHLY;BYMONTHDAY=2"},
    {kRecurranceMonthlyByDay,
     [](auto& p) {
       *p.MonthlyByDay() = {1, 0, 2};
     },
     "FREQ=MONTHLY;BYDAY=1MO"},
    {kRecurranceYearlyByDate,
     [](auto& p) {
       *p.YearlyByDate() = {0, 1};
     },
     "FREQ=YEARLY;BYMONTH=1;BYMONTHDAY=2"},
    {kRecurranceYearlyByDay,
     [](auto& p) {
       *p.YearlyByDay() = {0, 0, 2};
     },
     "FREQ=YEARLY;BYMONTH=1;BYDAY=1MO"},
};

PWRecord Series(const Kind& kind, std::uint16_t lastYear) {
  PWRecord record = Event(PlainSeconds(kFirstYear, 1, 2, 14, 0, 0));
  PWEventRecord event(&record);
  event.Recurring(true, kind.type);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  kind.fill(pattern);
  pattern.EndDate = PWDateTimeStamp(lastYear, 12, 31, 0, 0, 0);
  pattern.TimeZone = PWTimeZone(pw::EngineZoneOf(NewYork(), kFirstYear));
  return record;
}

// So many of each kind, over two years.
void AddSeries(Calendar& calendar, std::int64_t count) {
  for (const Kind& kind : kKinds) {
    PWRecord record = Series(kind, kFirstYear + 1);
    for (std::int64_t i = 0; i < count; ++i) calendar.Add(record);
  }
}

void BM_AddSeries(benchmark::State& state) {
  std::size_t occurrences = 0;
  for (auto _ : state) {
    Calendar calendar;
    AddSeries(calendar, state.range(0));
    occurrences = calendar.store.occurrenceItems.Count();
  }
  Count(state, occurrences);
}

void BM_ReadSeries(benchmark::State& state) {
  Calendar calendar;
  AddSeries(calendar, state.range(0));
  for (auto _ : state) ReadAll(calendar);
  Count(state, calendar.store.RecordCount());
}

void BM_FindAndDeleteSeries(benchmark::State& state) {
  std::size_t occurrences = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Calendar calendar;
    AddSeries(calendar, state.range(0));
    const std::vector<std::string> ids = calendar.Ids();
    occurrences = calendar.store.occurrenceItems.Count();
    state.ResumeTiming();
    calendar.Delete(ids);
  }
  Count(state, occurrences);
}

// Five years of one series: the items are its occurrences, made whole.
void BM_Occurrences(benchmark::State& state) {
  const Kind& kind = kKinds[state.range(0)];
  PWRecord record = Series(kind, kFirstYear + 5);
  Calendar calendar;
  std::size_t occurrences = 0;
  for (auto _ : state) {
    calendar.Add(record);
    state.PauseTiming();
    occurrences = calendar.store.occurrenceItems.Count();
    DeleteByIndex(calendar.store, 0);
    state.ResumeTiming();
  }
  Count(state, occurrences);
}

void BM_LibicalDates(benchmark::State& state) {
  const LibicalSeries series =
      SeriesFrom("19950102T090000", kKinds[state.range(0)].rule, kFirstYear + 5);
  std::size_t dates = 0;
  for (auto _ : state) {
    dates = 0;
    WalkSeries(series, [&](const icaltimetype& next) {
      benchmark::DoNotOptimize(icaltime_as_timet_with_zone(next, series.zone));
      ++dates;
    });
  }
  Count(state, dates);
}

// Eight times the records are to take about ten times as long at most.
BENCHMARK_CAPTURE(BM_AddHours, alone, 1)->Arg(2'500)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_AddHours, two_at_once, 2)
    ->Arg(2'500)
    ->Arg(20'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindAndUpdateHours)->Arg(2'500)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadHours)->Arg(2'500)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindAndDeleteHours)->Arg(2'500)->Arg(20'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddSeries)->Arg(125)->Arg(1'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadSeries)->Arg(125)->Arg(1'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindAndDeleteSeries)->Arg(125)->Arg(1'000)->Unit(benchmark::kMillisecond);

// An item of the first is to take a sixth of one of the second at most, for each kind of series.
BENCHMARK(BM_Occurrences)->DenseRange(0, std::size(kKinds) - 1);
BENCHMARK(BM_LibicalDates)->DenseRange(0, std::size(kKinds) - 1);

}  // namespace

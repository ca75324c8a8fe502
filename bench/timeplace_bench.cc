#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "platform/platform.h"
#include "platform/posix/posix_clock.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"
#include "timeplace/zones.h"

// Dates and zones over 50 years, each beside the machine's own function for the same. One iteration
// is one conversion, or one way to another zone and back.
namespace {

using pw::test::Change;
using pw::test::City;
using pw::test::PutZoneFiles;

constexpr std::int32_t kFirstYear = 1980;
constexpr std::int32_t kLastYear = 2029;
constexpr std::size_t kMoments = 4096;  // as many as stay in the processor's nearest memory

// New York's rule as the machine has it: by the rule alone, and with the file of its history.
constexpr const char* kMachineRule = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* kMachineHistory = ":America/New_York";

enum class Order : std::uint8_t { kByDate, kRandom };

std::vector<std::int32_t> Moments(Order order) {
  const std::int32_t first = PlainSeconds(kFirstYear, 1, 1, 0, 0, 0);
  const std::int32_t last = PlainSeconds(kLastYear, 12, 31, 23, 59, 59);
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int32_t> any(first, last);
  std::vector<std::int32_t> moments(kMoments);
  std::generate(moments.begin(), moments.end(), [&] { return any(random); });
  if (order == Order::kByDate) std::sort(moments.begin(), moments.end());
  return moments;
}

// The fields that each moment has in UTC, for the one side and for the other.
std::vector<WMBrokenTime> FieldsOf(const std::vector<std::int32_t>& moments) {
  std::vector<WMBrokenTime> fields;
  fields.reserve(moments.size());
  for (const std::int32_t moment : moments) fields.push_back(BrokenTimeOf(moment));
  return fields;
}

std::vector<tm> MachineFieldsOf(const std::vector<std::int32_t>& moments) {
  std::vector<tm> fields;
  fields.reserve(moments.size());
  for (const std::int32_t moment : moments) {
    const time_t seconds = moment;
    gmtime_r(&seconds, &fields.emplace_back());
    fields.back().tm_isdst = -1;
  }
  return fields;
}

// Converts one value after the other, all over again from the first behind the last.
template <class Value, class Conversion>
void ConvertEach(benchmark::State& state, const std::vector<Value>& values, Conversion convert) {
  std::size_t next = 0;
  for (auto _ : state) {
    auto result = convert(values[next]);
    benchmark::DoNotOptimize(result);
    next = (next + 1) % kMoments;
  }
}

// The organiser at home in New York, in memory but for the clock.
class Organiser {
 public:
  Organiser() {
    PutZoneFiles(platform,
                 {
                     City("Calcutta", "India", 3, 530),
                     City("New York, NY", "USA", kNewYork, -500, kDaylightByWeekday,
                          Change(2, 1, 0, 2), Change(2, 0, 0, 10)),
                     City("Sydney", "Australia", kSydney, 1000, kDaylightByWeekday,
                          Change(2, 4, 0, 9), Change(3, 4, 0, 2)),
                 },
                 "New York, NY");
    pw::Platform services = platform.Services();
    services.clock = &clock;
    pw::SetPlatform(services);
    if (!LoadHomeZone()) std::abort();
  }

  static constexpr std::uint8_t kNewYork = 1;
  static constexpr std::uint8_t kSydney = 2;

 private:
  pw::TestPlatform platform;
  pw::PosixClock clock;
};

// The machine's own zone.
class MachineZone {
 public:
  explicit MachineZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
  ~MachineZone() {
    unsetenv("TZ");
    tzset();
  }
  MachineZone(const MachineZone&) = delete;
  MachineZone& operator=(const MachineZone&) = delete;
};

void BM_BrokenTimeOf(benchmark::State& state, Order order) {
  ConvertEach(state, Moments(order), BrokenTimeOf);
}

void BM_Machine_gmtime(benchmark::State& state, Order order) {
  ConvertEach(state, Moments(order), [](time_t seconds) {
    tm broken;
    gmtime_r(&seconds, &broken);
    return broken;
  });
}

void BM_PlainSeconds(benchmark::State& state, Order order) {
  ConvertEach(state, FieldsOf(Moments(order)), [](const WMBrokenTime& broken) {
    return PlainSeconds(broken.year + 1900, broken.mon + 1, broken.mday, broken.hour, broken.min,
                        broken.sec);
  });
}

void BM_Machine_timegm(benchmark::State& state, Order order) {
  ConvertEach(state, MachineFieldsOf(Moments(order)), [](tm broken) { return timegm(&broken); });
}

void BM_SecondsToLocal(benchmark::State& state, Order order) {
  const Organiser organiser;
  ConvertEach(state, Moments(order), SecondsToLocal);
}

void BM_Machine_localtime(benchmark::State& state, Order order, const char* zone) {
  const MachineZone there(zone);
  ConvertEach(state, Moments(order), [](time_t seconds) {
    tm broken;
    localtime_r(&seconds, &broken);
    return broken;
  });
}

void BM_LocalToSeconds(benchmark::State& state, Order order) {
  const Organiser organiser;
  ConvertEach(state, FieldsOf(Moments(order)),
              [](WMBrokenTime broken) { return LocalToSeconds(broken); });
}

void BM_Machine_mktime(benchmark::State& state, Order order, const char* zone) {
  const MachineZone there(zone);
  ConvertEach(state, MachineFieldsOf(Moments(order)), [](tm broken) { return mktime(&broken); });
}

void BM_SwitchZoneThereAndBack(benchmark::State& state) {
  const Organiser organiser;
  for (auto _ : state) {
    if (!SwitchZone(Organiser::kSydney, false) || !SwitchZone(0, false)) std::abort();
  }
}

BENCHMARK_CAPTURE(BM_BrokenTimeOf, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_Machine_gmtime, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_BrokenTimeOf, random, Order::kRandom);
BENCHMARK_CAPTURE(BM_Machine_gmtime, random, Order::kRandom);

BENCHMARK_CAPTURE(BM_PlainSeconds, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_Machine_timegm, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_PlainSeconds, random, Order::kRandom);
BENCHMARK_CAPTURE(BM_Machine_timegm, random, Order::kRandom);

BENCHMARK_CAPTURE(BM_SecondsToLocal, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_Machine_localtime, by_date_rule, Order::kByDate, kMachineRule);
BENCHMARK_CAPTURE(BM_Machine_localtime, by_date_history, Order::kByDate, kMachineHistory);
BENCHMARK_CAPTURE(BM_SecondsToLocal, random, Order::kRandom);
BENCHMARK_CAPTURE(BM_Machine_localtime, random_rule, Order::kRandom, kMachineRule);
BENCHMARK_CAPTURE(BM_Machine_localtime, random_history, Order::kRandom, kMachineHistory);

BENCHMARK_CAPTURE(BM_LocalToSeconds, by_date, Order::kByDate);
BENCHMARK_CAPTURE(BM_Machine_mktime, by_date_rule, Order::kByDate, kMachineRule);
BENCHMARK_CAPTURE(BM_Machine_mktime, by_date_history, Order::kByDate, kMachineHistory);
BENCHMARK_CAPTURE(BM_LocalToSeconds, random, Order::kRandom);
BENCHMARK_CAPTURE(BM_Machine_mktime, random_rule, Order::kRandom, kMachineRule);
BENCHMARK_CAPTURE(BM_Machine_mktime, random_history, Order::kRandom, kMachineHistory);

BENCHMARK(BM_SwitchZoneThereAndBack);

}  // namespace

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_folder.h"
#include "bench/libical_run.h"
#include "framework/source.h"
#include "framework/task_record.h"
#include "host/formats/icalendar.h"
#include "host/formats/vtodo.h"
#include "platform/platform.h"
#include "plugin/source_manager.h"

// Tasks and calls of fifteen years on a real file system, half of each, through the source. A
// record must not cost more the more there are.
namespace {

constexpr const char* kNote = "A note of an ordinary length,\r\nwhich has two lines.";

std::string SubjectOf(std::uint32_t record) {
  return "Subject of record " + std::to_string(record);
}

constexpr const char* kVersionKey = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

// The day of the n-th of so many records, spread evenly over 1990 to 2004.
PWDateTimeStamp DayOf(std::uint32_t record, std::uint32_t records) {
  constexpr std::uint64_t kYears = 15;
  constexpr std::uint64_t kMonths = 12;
  constexpr std::uint64_t kDays = 28;
  const std::uint64_t day = kYears * kMonths * kDays * record / records;
  return {static_cast<std::uint16_t>(1990 + day / (kMonths * kDays)),
          static_cast<std::uint8_t>(1 + day / kDays % kMonths),
          static_cast<std::uint8_t>(1 + day % kDays),
          0,
          0,
          0};
}

// A folder with both files, and a manager over it.
class Bench {
 public:
  explicit Bench(std::uint32_t records) : folder("calltask_bench"), manager(0) {
    category.Location = "C:\\";
    manager.Config = &config;
    pw::CurrentPlatform().registry->Create(kVersionKey)->Write("Version", pw::NumberValue(50));
    Fill(records);
  }

  std::unique_ptr<PWSource> Open() {
    std::unique_ptr<PWSource> source(manager.CreateSource("todo"));
    source->Category = &category;
    if (source->Open(0) != kResultOk) std::abort();
    return source;
  }

 private:
  void Fill(std::uint32_t records) {
    const auto source = Open();
    for (std::uint32_t i = 0; i < records; ++i) {
      PWRecord record;
      PWTaskRecord todo(&record);
      todo.Call(i % 2 == 0);
      todo.Subject(SubjectOf(i).c_str());
      todo.Note(kNote);
      todo.StartDate(DayOf(i, records));
      todo.DueDate(DayOf(records - 1 - i, records));
      if (source->AddRecord(record) != kResultOk) std::abort();
    }
    source->CloseSource();
  }

  BenchFolder folder;
  PWConfig config;
  WMSourceManager manager;
  PWSourceCategory category;
};

std::uint32_t Records(const benchmark::State& state) {
  return static_cast<std::uint32_t>(state.range(0));
}

void Walk(PWSource& source) {
  for (PWRESULT more = source.FirstRecord(); more == kResultOk; more = source.NextRecord()) {
    PWRecord record;
    if (source.ReadRecord(&record) != kResultOk) std::abort();
    benchmark::DoNotOptimize(source.RecordID());
    benchmark::DoNotOptimize(source.RecordTimeStamp());
  }
}

void BM_Load(benchmark::State& state) {
  Bench bench(Records(state));
  for (auto _ : state) benchmark::DoNotOptimize(bench.Open());
}

void BM_Walk(benchmark::State& state) {
  Bench bench(Records(state));
  const auto source = bench.Open();
  for (auto _ : state) Walk(*source);
}

// All that a run without changes does.
void BM_OpenWalkClose(benchmark::State& state) {
  Bench bench(Records(state));
  for (auto _ : state) {
    const auto source = bench.Open();
    Walk(*source);
    source->CloseSource();
  }
}

std::string DateOf(const PWDateTimeStamp& day) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year, day.month, day.day);
  return text;
}

// The same records as an iCalendar file.
std::string Calendar(std::uint32_t records) {
  std::string calendar;
  pw::BeginCalendar(calendar);
  for (std::uint32_t i = 0; i < records; ++i) {
    pw::Todo todo;
    todo.uid = "record-" + std::to_string(i);
    todo.changed = "19980302T120000Z";
    todo.subject = SubjectOf(i);
    todo.note = kNote;
    todo.start = DateOf(DayOf(i, records));
    todo.due = DateOf(DayOf(records - 1 - i, records));
    todo.call = i % 2 == 0;
    pw::AppendVTodo(calendar, todo, todo.changed);
  }
  pw::EndCalendar(calendar);
  return calendar;
}

// The same in memory with the library that reads such files: parse, walk, write.
void BM_LibicalParseWalkWrite(benchmark::State& state) {
  const std::string calendar = Calendar(Records(state));
  for (auto _ : state) {
    const std::uint32_t found =
        ParseWalkWrite(calendar, ICAL_VTODO_COMPONENT, [](icalcomponent* todo) {
          benchmark::DoNotOptimize(icalcomponent_get_uid(todo));
          benchmark::DoNotOptimize(icalcomponent_get_summary(todo));
          benchmark::DoNotOptimize(icalcomponent_get_description(todo));
          benchmark::DoNotOptimize(icalcomponent_get_dtstart(todo));
          benchmark::DoNotOptimize(icalcomponent_get_due(todo));
        });
    if (found != Records(state)) std::abort();
  }
}

void BM_FindEveryId(benchmark::State& state) {
  Bench bench(Records(state));
  std::vector<std::string> ids;
  const auto walked = bench.Open();
  for (PWRESULT more = walked->FirstRecord(); more == kResultOk; more = walked->NextRecord()) {
    ids.push_back(walked->RecordID().Str());
  }
  std::unique_ptr<PWSource> source;
  for (auto _ : state) {
    state.PauseTiming();
    source.reset();
    source = bench.Open();
    state.ResumeTiming();
    for (const std::string& id : ids) {
      if (source->FindRecord(id.c_str()) != kResultOk) std::abort();
    }
  }
}

void BM_UpdateEveryRecord(benchmark::State& state) {
  Bench bench(Records(state));
  PWRecord record;
  PWTaskRecord(&record).Subject("Changed");
  std::unique_ptr<PWSource> source;
  for (auto _ : state) {
    state.PauseTiming();
    source.reset();
    source = bench.Open();
    state.ResumeTiming();
    for (PWRESULT more = source->FirstRecord(); more == kResultOk; more = source->NextRecord()) {
      if (source->UpdateRecord(record) != kResultOk) std::abort();
    }
  }
}

void BM_AddEveryRecord(benchmark::State& state) {
  for (auto _ : state) Bench bench(Records(state));
}

// Saves both files, changed or not.
void BM_Save(benchmark::State& state) {
  Bench bench(Records(state));
  std::unique_ptr<PWSource> source;
  for (auto _ : state) {
    state.PauseTiming();
    source.reset();
    source = bench.Open();
    state.ResumeTiming();
    source->CloseSource();
  }
}

BENCHMARK(BM_Load)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenWalkClose)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LibicalParseWalkWrite)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindEveryId)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateEveryRecord)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddEveryRecord)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save)->Arg(4375)->Arg(35000)->Unit(benchmark::kMillisecond);

}  // namespace

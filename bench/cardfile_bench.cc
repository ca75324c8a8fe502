#include <fcntl.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "base/text.h"
#include "bench/bench_folder.h"
#include "cardfile/card_file.h"
#include "cardfile/format.h"
#include "cardfile/new_file.h"
#include "framework/engine_context.h"
#include "framework/source.h"
#include "plugin/source_manager.h"

// Cardfiles of 12 fields on a real file system, and what each step is held against: the same bytes
// written plainly, the same titles sorted by the standard library, the same bytes read plainly into
// the same structs.
namespace {

namespace fs = std::filesystem;

constexpr const char* kPath = "C:\\bench.WMCard";
constexpr int kNamedFields = 11;  // and the contact log

std::vector<std::string> FieldNames() {
  std::vector<std::string> names = {"Last Name", "First Name", "Company"};
  for (int i = 3; i < kNamedFields; ++i) names.push_back("Field " + std::to_string(i));
  return names;
}

// Half of the cards share their title with others.
std::vector<std::string> CardValues(std::mt19937& random, std::uint32_t card) {
  const std::uint32_t person = card % 2 == 0 ? card : random() % 1000;
  std::vector<std::string> values = {"Name " + std::to_string((person * 7919U) % 65537U),
                                     "First " + std::to_string(person % 100), "Company"};
  for (int i = 3; i < kNamedFields; ++i) values.push_back("value " + std::to_string(random()));
  values.emplace_back("a line of notes\r\nand another one");
  return values;
}

// A folder with one cardfile, and a manager over it.
class Bench {
 public:
  explicit Bench(std::uint32_t cards) : folder("cardfile_bench"), manager(0) {
    original = MakeFile(cards);
    Restore();
    category.Location = kPath;
    manager.Config = &config;
    PWStringVector names;
    for (const std::string& name : FieldNames()) names.AppendText(name);
    names.AppendText("Contact Log");
    pw::Engine().fieldMaps[{"contact", kPath}] = PWFieldMap::Identity(names);
  }

  std::unique_ptr<PWSource> OpenSource() {
    std::unique_ptr<PWSource> source(manager.CreateSource("contact"));
    source->Category = &category;
    if (source->Open(0) != kResultOk) std::abort();
    return source;
  }
  std::unique_ptr<WMCardFile> LoadFile() {
    auto file = std::make_unique<WMCardFile>();
    if (file->Load(kPath) != 0) std::abort();
    return file;
  }

  fs::path File() const { return folder.Path() / "bench.WMCard"; }
  const std::string& Bytes() const { return original; }

  // Puts the file back as it was made.
  void Restore() const { std::ofstream(File(), std::ios::binary) << original; }

  // The same cards in no order, as after a change of every title.
  std::unique_ptr<WMCardFile> LoadShuffled() {
    const auto sorted = LoadFile();
    std::vector<std::uint32_t> order(sorted->CardCount());
    std::iota(order.begin(), order.end(), 0U);
    std::shuffle(order.begin(), order.end(), std::mt19937(4));
    std::ofstream(File(), std::ios::binary)
        << pw::NewCardFile(FieldNames(), {"Last Name", "First Name", "Company"});
    auto shuffled = LoadFile();
    std::vector<std::string> values;
    for (const std::uint32_t index : order) {
      sorted->DecodeCard(sorted->Card(index), values);
      shuffled->AddCard(values);
    }
    return shuffled;
  }

 private:
  // Made by the store, which leaves the cards in the order of their titles.
  std::string MakeFile(std::uint32_t cards) {
    std::ofstream(File(), std::ios::binary)
        << pw::NewCardFile(FieldNames(), {"Last Name", "First Name", "Company"});
    WMCardFile file;
    if (file.Load(kPath) != 0) std::abort();
    std::mt19937 random(3);
    for (std::uint32_t i = 0; i < cards; ++i) {
      std::vector<std::string> values = CardValues(random, i);
      file.AddCard(values);
    }
    file.Save();
    return ReadPlainly();
  }

  std::string ReadPlainly() const {
    std::ifstream in(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  BenchFolder folder;
  std::string original;
  PWConfig config;
  WMSourceManager manager;
  PWSourceCategory category;
};

std::uint32_t Cards(const benchmark::State& state) {
  return static_cast<std::uint32_t>(state.range(0));
}

void BM_Load(benchmark::State& state) {
  Bench bench(Cards(state));
  for (auto _ : state) benchmark::DoNotOptimize(bench.LoadFile());
}

void BM_OpenAndWalk(benchmark::State& state) {
  Bench bench(Cards(state));
  for (auto _ : state) {
    const auto source = bench.OpenSource();
    for (PWRESULT more = source->FirstRecord(); more == kResultOk; more = source->NextRecord()) {
      benchmark::ClobberMemory();
    }
  }
}

void BM_FindEveryId(benchmark::State& state) {
  Bench bench(Cards(state));
  std::vector<std::string> ids;
  const auto walked = bench.OpenSource();
  for (PWRESULT more = walked->FirstRecord(); more == kResultOk; more = walked->NextRecord()) {
    ids.push_back(walked->RecordID().Str());
  }
  for (auto _ : state) {
    state.PauseTiming();
    const auto source = bench.OpenSource();
    state.ResumeTiming();
    for (const std::string& id : ids) {
      if (source->FindRecord(id.c_str()) != kResultOk) std::abort();
    }
  }
}

void BM_UpdateEveryCard(benchmark::State& state) {
  Bench bench(Cards(state));
  PWRecord record;
  record.SetField("First Name", "Changed");
  for (auto _ : state) {
    state.PauseTiming();
    const auto source = bench.OpenSource();
    state.ResumeTiming();
    for (PWRESULT more = source->FirstRecord(); more == kResultOk; more = source->NextRecord()) {
      if (source->UpdateRecord(record) != kResultOk) std::abort();
    }
  }
}

void BM_DeleteEveryCard(benchmark::State& state) {
  Bench bench(Cards(state));
  for (auto _ : state) {
    state.PauseTiming();
    const auto file = bench.LoadFile();
    state.ResumeTiming();
    while (file->CardCount() > 0) file->DeleteCard(0);
  }
}

// After a change of every card that leaves the titles as they were.
void BM_Save(benchmark::State& state) {
  Bench bench(Cards(state));
  const auto file = bench.LoadFile();
  std::vector<std::string> values;
  for (std::uint32_t i = 0; i < file->CardCount(); ++i) {
    file->DecodeCard(file->Card(i), values);
    file->EncodeCard(file->Card(i), values);
  }
  for (auto _ : state) file->Save();
}

void BM_SaveOutOfOrder(benchmark::State& state) {
  Bench bench(Cards(state));
  const auto file = bench.LoadShuffled();
  for (auto _ : state) file->Save();
}

// What a save is held against, together.
void BM_ReferencePlainWrite(benchmark::State& state) {
  Bench bench(Cards(state));
  for (auto _ : state) {
    const int file = open(bench.File().c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0 || ftruncate(file, 0) != 0) std::abort();
    const std::string& bytes = bench.Bytes();
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    close(file);
  }
}

void BM_ReferenceStableSort(benchmark::State& state) {
  Bench bench(Cards(state));
  const auto file = bench.LoadShuffled();
  std::vector<std::string_view> titles;
  for (std::uint32_t i = 0; i < file->CardCount(); ++i) {
    titles.push_back(pw::cardfile::TitleText(file->Card(i).index.title));
  }
  for (auto _ : state) {
    std::vector<std::string_view> sorted = titles;
    std::stable_sort(sorted.begin(), sorted.end(), [](std::string_view a, std::string_view b) {
      return pw::CompareIgnoringCase(a, b) < 0;
    });
    benchmark::DoNotOptimize(sorted.data());
  }
}

// What an open and a walk are held against: one read, the index entries as they are, and each body
// split into its values.
void BM_ReferencePlainLoad(benchmark::State& state) {
  Bench bench(Cards(state));
  const std::size_t namedFields = FieldNames().size();
  for (auto _ : state) {
    std::string bytes(fs::file_size(bench.File()), '\0');
    std::ifstream(bench.File(), std::ios::binary)
        .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    pw::ByteReader in(bytes);
    in.Seek(pw::cardfile::kHeaderSize + pw::cardfile::kNamePointerSize + pw::cardfile::kLayoutSize);
    std::vector<WMCardEntry> entries(Cards(state));
    std::vector<std::string> values(namedFields + 1);
    for (WMCardEntry& entry : entries) {
      entry.index = pw::cardfile::DecodeIndexEntry(in);
      std::string_view body = std::string_view(bytes).substr(
          entry.index.bodyOffset, entry.index.textLength + entry.index.notesLength);
      for (std::size_t i = 0; i < namedFields; ++i) {
        const std::size_t end = std::min(body.find("\r\n"), body.size());
        values[i] = body.substr(0, end);
        body.remove_prefix(std::min(end + 2, body.size()));
      }
      values[namedFields] = body;
      benchmark::ClobberMemory();
    }
  }
}

BENCHMARK(BM_Load)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenAndWalk)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReferencePlainLoad)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindEveryId)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateEveryCard)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DeleteEveryCard)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveOutOfOrder)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReferencePlainWrite)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReferenceStableSort)->Arg(8192)->Arg(65535)->Unit(benchmark::kMillisecond);

}  // namespace

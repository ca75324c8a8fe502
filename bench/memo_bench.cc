#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/bench_folder.h"
#include "framework/memo_record.h"
#include "framework/source.h"
#include "memo/format.h"
#include "platform/portable/rtf_reader.h"
#include "platform/portable/rtf_writer.h"
#include "plugin/source_manager.h"

// Binders on a real file system, and the conversion of rich text that their records go through.
namespace {

namespace memo = pw::memo;

constexpr const char* kStem = "C:\\bench";
constexpr std::size_t kNoteSize = 2048;

// So many bytes of lines of words.
std::string Prose(std::size_t size) {
  constexpr std::string_view kLine = "The ferry leaves at nine, and caf\xE9s open late.\r\n";
  std::string text;
  while (text.size() < size) text += kLine;
  text.resize(size);
  return text;
}

// A binder of two sections, each of half the notes.
class Bench {
 public:
  explicit Bench(std::size_t notes) : folder("memo_bench"), manager(0) {
    const std::string subject = *pw::rtf::Document("A subject", {"Arial", 20, 0}, SIZE_MAX);
    const std::string body = *pw::rtf::Document(Prose(kNoteSize), {"Arial", 20, 0}, SIZE_MAX);
    pw::ByteWriter headerFile;
    memo::EncodeHeaderFileStart(headerFile, static_cast<std::int32_t>(notes));
    for (std::size_t i = 0; i < notes; ++i) {
      memo::NoteHeader header;
      header.sectionId = i < notes / 2 ? 0 : 1;
      header.id = static_cast<std::int32_t>(i + 1);
      header.subjectOffset = static_cast<std::uint32_t>(contents.size());
      header.subjectSize = static_cast<std::uint32_t>(subject.size());
      header.bodySize = static_cast<std::uint32_t>(body.size());
      memo::EncodeNoteHeader(headerFile, header);
      contents.append(subject).append(body);
    }
    headers = headerFile.Release();
    sections = memo::EncodeSections({{"A", 1, memo::kNewFlag, 0}, {"B", 1, memo::kNewFlag, 1}});
    manager.Config = &config;
    Restore();
  }

  void Restore() const {
    Write("bench.WMWrite", sections);
    Write("bench.WMNoteHeader", headers);
    Write("bench.WMContent", contents);
  }

  std::unique_ptr<PWSource> OpenSection(const char* name) {
    category.Location = (std::string(kStem) + ";" + name).c_str();
    std::unique_ptr<PWSource> source(manager.CreateSource("memo"));
    source->Category = &category;
    if (source->Open(0) != kResultOk) std::abort();
    return source;
  }

 private:
  void Write(const char* name, const std::string& bytes) const {
    std::ofstream(folder.Path() / name, std::ios::binary) << bytes;
  }

  BenchFolder folder;
  PWConfig config;
  WMSourceManager manager;
  PWSourceCategory category;
  std::string sections;
  std::string headers;
  std::string contents;
};

std::size_t ReadAll(PWSource& source) {
  std::size_t bytes = 0;
  for (PWRESULT at = source.FirstRecord(); at == kResultOk; at = source.NextRecord()) {
    PWRecord record;
    if (source.ReadRecord(&record) != kResultOk) std::abort();
    bytes += PWMemoRecord(&record).Body().View().size();
  }
  return bytes;
}

void Open(benchmark::State& state) {
  Bench bench(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(bench.OpenSection("A"));
}

void Read(benchmark::State& state) {
  Bench bench(static_cast<std::size_t>(state.range(0)));
  const auto source = bench.OpenSection("A");
  for (auto _ : state) benchmark::DoNotOptimize(ReadAll(*source));
}

// All that an engine does: both sections one after the other, one note in ten changed in each.
void OpenReadUpdateSave(benchmark::State& state) {
  Bench bench(static_cast<std::size_t>(state.range(0)));
  PWRecord changed;
  PWMemoRecord memo(&changed);
  memo.Subject("Another subject", PWRecord::kWholeText);
  memo.Body(Prose(kNoteSize).c_str(), PWRecord::kWholeText);
  for (auto _ : state) {
    for (const char* section : {"A", "B"}) {
      const auto source = bench.OpenSection(section);
      ReadAll(*source);
      std::vector<std::string> ids;
      std::size_t count = 0;
      for (PWRESULT at = source->FirstRecord(); at == kResultOk; at = source->NextRecord()) {
        if (count++ % 10 == 0) ids.push_back(source->RecordID().Str());
      }
      for (const std::string& id : ids) {
        if (source->FindRecord(id.c_str()) != kResultOk) std::abort();
        if (source->UpdateRecord(changed) != kResultOk) std::abort();
      }
      source->CloseSource();
    }
    state.PauseTiming();
    bench.Restore();
    state.ResumeTiming();
  }
}

void Measure(benchmark::State& state, const std::string& document) {
  for (auto _ : state) benchmark::DoNotOptimize(pw::rtf::PlainText(document));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}

// A document of a megabyte that repeats a piece.
std::string Repeated(const std::string& piece) {
  std::string document = "{\\rtf1 ";
  while (document.size() < 1 << 20) document += piece;
  return document + "}";
}

void RichToPlain(benchmark::State& state, const char* piece) {
  Measure(state, Repeated(piece));
}

void PlainToRich(benchmark::State& state) {
  const std::string text = Prose(1 << 20);
  for (auto _ : state) {
    benchmark::DoNotOptimize(pw::rtf::Document(text, {"Arial", 20, 0}, SIZE_MAX));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

BENCHMARK(Open)->Arg(5'000)->Arg(40'000)->Unit(benchmark::kMillisecond);
BENCHMARK(Read)->Arg(5'000)->Arg(40'000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenReadUpdateSave)->Arg(5'000)->Arg(40'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RichToPlain, Prose,
                  "The ferry leaves at nine, and the caf\\'e9s open late.\\par\r\n");
BENCHMARK_CAPTURE(RichToPlain, FormattedWords, "{\\b\\f1\\fs24 the} {\\i\\cf2 ferry} \\u8217?s ");
BENCHMARK_CAPTURE(RichToPlain, Braces, "{{{{}}}}");
BENCHMARK_CAPTURE(RichToPlain, DroppedBraces, "{\\pict{{{}}}}");
BENCHMARK_CAPTURE(RichToPlain, ShortWords, "\\b\\i");
BENCHMARK_CAPTURE(RichToPlain, UnknownWords, "\\x1\\pardxyzzy-99");
BENCHMARK_CAPTURE(RichToPlain, HexBytes, "\\'e9");
BENCHMARK_CAPTURE(RichToPlain, Symbols, "\\~\\{");
BENCHMARK_CAPTURE(RichToPlain, Characters, "\\u8364?");
BENCHMARK_CAPTURE(RichToPlain, Paragraphs, "\\par\n");
BENCHMARK_CAPTURE(RichToPlain, LineEnds, "\r\n");
BENCHMARK(PlainToRich);

}  // namespace

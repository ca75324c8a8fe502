#include "host/sample_profile.h"

#include <chrono>
#include <memory>
#include <system_error>
#include <utility>

#include "base/codepage.h"
#include "cardfile/new_file.h"
#include "framework/source.h"
#include "host/city_clocks.h"
#include "host/engine_run.h"
#include "host/native_file.h"
#include "host/products.h"
#include "host/profile_lock.h"
#include "host/sample_cards.h"
#include "host/sample_clocks.h"
#include "host/sample_events.h"
#include "host/sample_memos.h"
#include "host/sample_todos.h"
#include "memo/format.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMark = ".pairwise-demo";
constexpr const char* kDataFolder = "C:\\Data";
constexpr const char* kCardfile = "Friends.WMCard";
constexpr const char* kStem = "Ada";  // of the calendar and the to-do items
constexpr std::int64_t kSecondsBetweenRecords = 98'765;

constexpr std::uint32_t kSampleTicks = 4'711;  // part of a to-do item's id

constexpr const char* kLockFile = "profile.lock";

std::string InDataFolder(const std::string& name) {
  return std::string(kDataFolder) + "\\" + name;
}

// Whether the folder is missing, empty, or an earlier sample's.
Outcome<Done> CheckFolder(const fs::path& folder) {
  std::error_code error;
  const bool isThere = fs::exists(folder, error);
  if (isThere && !fs::is_directory(folder, error)) {
    return Failure{folder.string() + ": already there, and not a folder"};
  }
  if (isThere && !fs::is_empty(folder, error) && !fs::exists(folder / kMark, error)) {
    return Failure{folder.string() + ": already there, and not made by an earlier demo"};
  }
  return Done{};
}

// Empties the folder of an earlier sample, which is locked. The lock's file must stay, as a lock on
// one that is no longer there keeps nobody away; and so the mark, for the next demo.
Outcome<Done> ClearFolder(const fs::path& folder) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const fs::path name = entry.path().filename();
    if (name == kLockFile || name == kMark) continue;
    std::error_code failed;
    fs::remove_all(entry.path(), failed);
    if (failed) return SystemFailure(entry.path(), failed.value());
  }
  if (error) return SystemFailure(folder, error.value());
  fs::create_directories(folder / "data" / "Data", error);
  if (error) return SystemFailure(folder, error.value());
  return Done{};
}

// Clocks are made where this machine has zone data; the calendar needs their cities.
Outcome<SampleClocks> AddClocks(SampleProfile& sample) {
  using std::chrono::system_clock;
  auto clocks = MakeSampleClocks(system_clock::to_time_t(system_clock::now()));
  if (!clocks) {
    sample.noClocks = clocks.Why().message;
    return SampleClocks();
  }
  const fs::path folder = sample.cardfile.parent_path();
  const std::pair<const char*, std::string> files[] = {{"CLOCKS.DAT", clocks->clockFile},
                                                       {"cityinfo.dat", clocks->cityFile},
                                                       {"timezone.dat", clocks->zoneFile},
                                                       {"AdaEVEN.WMW", SampleEventFile()},
                                                       {"Holidef.dat", SampleHolidays()}};
  for (const auto& [name, bytes] : files) {
    const auto written = WriteNativeFile(folder / name, bytes);
    if (!written) return written.Why();
  }
  return clocks;
}

Outcome<Done> WriteFiles(SampleProfile& sample) {
  const auto clocks = AddClocks(sample);
  if (!clocks) return clocks.Why();
  const Product& product = kProducts[0];
  const std::vector<std::string> names(kSampleFields.begin(), kSampleFields.end());
  const std::vector<std::string> keys = {"Last Name", "First Name", "Company"};
  const std::pair<fs::path, std::string> files[] = {
      {sample.profile.folder / kMark, "A later `pairwise demo` may empty this folder.\n"},
      {sample.cardfile, NewCardFile(names, keys)},
      {sample.profile.RegistryFile(),
       FreshRegistry(product, {kDataFolder, InDataFolder(kStem), clocks->homeCity, true})},
      {sample.profile.DescriptionFile(), RenderProfile(sample.profile)},
      {sample.profile.folder / "data" / "Data" / "crdstyle.dat", SampleTemplates()},
  };
  for (const auto& [file, bytes] : files) {
    auto written = WriteNativeFile(file, bytes);
    if (!written) return written;
  }
  for (const auto& [extension, bytes] : memo::NewBinder(kSampleSections)) {
    auto written = WriteNativeFile(
        sample.cardfile.parent_path() / (std::string(kSampleBinder) + extension), bytes);
    if (!written) return written;
  }
  return Done{};
}

PWRecord RecordOf(const SampleCard& card) {
  PWRecord record;
  for (std::size_t i = 0; i < kSampleFields.size(); ++i) {
    record.SetField(kSampleFields[i], Utf8ToCodePageLossy(card.values[i]));
  }
  record.SetField(kSampleLogField, Utf8ToCodePageLossy(card.log));
  return record;
}

// Adds the records through the module, one after the other in time. Gives their ids.
Outcome<std::vector<std::string>> AddRecords(EngineRun& run, const char* type,
                                             const std::string& location,
                                             std::vector<PWRecord> records) {
  PWSourceCategory category;
  category.Location = location.c_str();
  const std::unique_ptr<PWSource> source(run.Manager().CreateSource(type));
  const Failure failure{run.NativePathOf(location) + ": the records could not be added"};
  if (source == nullptr) return failure;
  source->Category = &category;
  if (source->Open(0) != kResultOk) return failure;
  std::vector<std::string> ids;
  std::int64_t now = kSampleTime;
  for (PWRecord& record : records) {
    run.Objects().clock.FixNow(now);
    now += kSecondsBetweenRecords;
    if (source->AddRecord(record) != kResultOk) return failure;
    ids.push_back(CodePageToUtf8(source->RecordID().View()));
  }
  if (source->CloseSource() != kResultOk) return failure;
  return ids;
}

std::vector<PWRecord> MemosOf(std::size_t section) {
  std::vector<PWRecord> memos;
  for (std::size_t i = 0; i < kSampleMemoCount; ++i) {
    if (kSampleMemos[i].section == section) memos.push_back(RecordOf(kSampleMemos[i]));
  }
  return memos;
}

// Cards, to-do items, memos and events.
Outcome<Done> FillFiles(EngineRun& run, SampleProfile& sample) {
  std::vector<PWRecord> cards;
  for (std::size_t i = 0; i < kSampleCardCount; ++i) cards.push_back(RecordOf(kSampleCards[i]));
  auto ids = AddRecords(run, "contact", InDataFolder(kCardfile), std::move(cards));
  if (!ids) return ids.Why();
  sample.ids = std::move(*ids);

  std::vector<PWRecord> todos;
  for (std::size_t i = 0; i < kSampleTodoCount; ++i) todos.push_back(RecordOf(kSampleTodos[i]));
  run.Objects().clock.FixTicks(kSampleTicks);
  ids = AddRecords(run, "todo", InDataFolder(kStem), std::move(todos));
  if (!ids) return ids.Why();
  sample.todoIds = std::move(*ids);

  for (std::size_t section = 0; section < kSampleSections.size(); ++section) {
    ids = AddRecords(run, "memo", InDataFolder(kSampleBinder) + ";" + kSampleSections[section],
                     MemosOf(section));
    if (!ids) return ids.Why();
    sample.memoIds.insert(sample.memoIds.end(), ids->begin(), ids->end());
  }
  if (!sample.noClocks.empty()) return Done{};

  ids = AddRecords(run, "calendar", InDataFolder(kStem), SampleEvents(CityClocks::Of(run).Home()));
  if (!ids) return ids.Why();
  sample.eventIds = std::move(*ids);
  return Done{};
}

}  // namespace

std::int64_t SampleTimeAfterCards() {
  return kSampleTime + kSecondsBetweenRecords * static_cast<std::int64_t>(kSampleCardCount);
}

Outcome<SampleProfile> MakeSampleProfile(const fs::path& folder, std::ostream& messages) {
  std::error_code error;
  SampleProfile sample;
  sample.profile.folder = fs::absolute(folder, error).lexically_normal();
  sample.profile.drives = {{kDataFolder, sample.profile.folder / "data"}};
  sample.profile.config = {{PWConfig::kDataFolder, kDataFolder},
                           {PWConfig::kInstallFolder, kDataFolder},
                           {PWConfig::kCalendarStem, ""},
                           {PWConfig::kProductKey, kProducts[0].mainKey}};
  sample.cardfile = sample.profile.folder / "data" / kCardfile;

  const auto free = CheckFolder(sample.profile.folder);
  if (!free) return free.Why();
  fs::create_directories(sample.profile.folder, error);
  if (error) return SystemFailure(sample.profile.folder, error.value());
  auto lock = ProfileLock::Take(sample.profile);
  if (!lock) return lock.Why();
  const auto cleared = ClearFolder(sample.profile.folder);
  if (!cleared) return cleared.Why();
  const auto written = WriteFiles(sample);
  if (!written) return written.Why();
  const auto run = EngineRun::Start(sample.profile, RunMode::kWriting, messages, std::move(*lock));
  if (!run) return run.Why();
  const auto filled = FillFiles(**run, sample);
  if (!filled) return filled.Why();
  if (const auto lost = (*run)->RegistryFailure()) return *lost;
  return sample;
}

}  // namespace pw

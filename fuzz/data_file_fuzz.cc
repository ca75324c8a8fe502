#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "calendar/calendar_state.h"
#include "calendar/data_file.h"
#include "fuzz/data_file_records.h"
#include "platform/testing/test_platform.h"

// Reads anything as a data file. What loads is found by its ids, changed and removed; what is saved
// is each record that was held, and loads again, but for what is misplaced by rule.
namespace {

namespace datafile = pw::datafile;
using datafile::FormatVersion;
using pw::test::RecordsByKind;

constexpr const char* kPath = "C:\\DATA.WMW";
constexpr std::uint32_t kLookedAt = 256;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

// What is damaged lies in the file, and no more is taken from it than it has bytes for: each of two
// lists may go over them all.
void CheckDecoded(const std::string& bytes) {
  const datafile::File file = datafile::DecodeFile(bytes);
  Require(file.records.size() * datafile::kRecordSize35 <= 2 * bytes.size());
  for (const datafile::Damage& damage : file.damage) Require(damage.offset <= bytes.size());
}

void FindAll(WMDataFile& file) {
  const std::uint32_t count = std::min(file.Count(), kLookedAt);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::string id = file.IdText(i);
    const auto found = file.Find(id);
    Require(found && *found <= i && file.IdText(*found) == id);
    file.Stamp(i);
  }
}

WMMultiDay NewMultiDay() {
  WMMultiDay span;
  span.start = span.end = datafile::kFirstMoment;
  return span;
}

void Change(WMDataFile& file) {
  const std::uint32_t count = std::min(file.Count(), kLookedAt);
  for (std::uint32_t i = count; i-- > 0;) {
    const bool replaced = file.MultiDay(i) != nullptr ? file.Replace(i, NewMultiDay())
                                                      : file.Replace(i, WMSpecialDay());
    Require(replaced);
    if (i % 2 == 0) Require(file.Remove(i));
  }
  file.AddMultiDay(NewMultiDay());
  file.AddSpecialDay(WMSpecialDay());
  FindAll(file);
}

std::vector<std::string> Sorted(std::vector<std::string> records) {
  std::sort(records.begin(), records.end());
  return records;
}

std::size_t CountLost(const RecordsByKind& held, const RecordsByKind& again) {
  std::vector<std::string> lost;
  for (const auto& [tag, records] : held) {
    const auto before = Sorted(records);
    const auto after = Sorted(again.at(tag));
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                        std::back_inserter(lost));
  }
  return lost.size();
}

// How many records are lost; none where the table says where all stand.
std::size_t SaveAndLoadAgain(WMDataFile& file, const pw::MemoryFiles& files) {
  Require(file.Save(kPath));
  const std::string saved = files.Get(kPath).value();
  const datafile::File decoded = datafile::DecodeFile(saved);
  const RecordsByKind held = pw::test::RecordsHeld(file, *decoded.version);
  const auto sections = pw::test::SectionsOf(held, decoded.table);
  Require(saved.substr(datafile::kFirstSection) == sections.bytes);

  WMDataFile again;
  again.Load(kPath);
  const RecordsByKind found = pw::test::RecordsHeld(again, *decoded.version);
  Require(!sections.arePlaced || found == held);
  return CountLost(held, found);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  CheckDecoded(bytes);
  pw::TestPlatform platform;
  OrganiserVersion() = 50;
  platform.files.Put(kPath, bytes);
  WMDataFile file;
  file.Load(kPath);
  FindAll(file);
  const std::size_t lost = SaveAndLoadAgain(file, platform.files);
  const auto version = datafile::DecodeFile(platform.files.Get(kPath).value()).version;
  Require(lost == datafile::LostAtSave(datafile::DecodeFile(bytes), *version));
  file.SetFileVersion(FormatVersion::k50);
  FindAll(file);
  Change(file);
  SaveAndLoadAgain(file, platform.files);
  return 0;
}

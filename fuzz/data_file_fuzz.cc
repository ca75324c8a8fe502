#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "calendar/calendar_state.h"
#include "calendar/data_file.h"
#include "platform/testing/test_platform.h"

// Reads anything as a data file. What loads is found by its ids, changed and removed; what is saved
// is a file with all that was held.
namespace {

namespace datafile = pw::datafile;
using datafile::FormatVersion;

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

void Change(WMDataFile& file) {
  const std::uint32_t count = std::min(file.Count(), kLookedAt);
  for (std::uint32_t i = count; i-- > 0;) {
    const bool replaced = file.MultiDay(i) != nullptr ? file.Replace(i, WMMultiDay())
                                                      : file.Replace(i, WMSpecialDay());
    Require(replaced);
    if (i % 2 == 0) Require(file.Remove(i));
  }
  file.AddMultiDay(WMMultiDay());
  file.AddSpecialDay(WMSpecialDay());
  FindAll(file);
}

// A save is as long as its records, unless the table had no entry for some.
void CheckSaved(WMDataFile& file, const pw::MemoryFiles& files) {
  Require(file.Save(kPath));
  const std::string saved = files.Get(kPath).value();
  const std::size_t records =
      file.Count() * datafile::RecordSize(file.FileVersion()) + datafile::kFirstSection;
  Require(saved.size() >= datafile::kFirstSection && saved.size() <= records);
  Require(datafile::DecodeFile(saved).version.has_value());
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
  CheckSaved(file, platform.files);
  file.SetFileVersion(FormatVersion::k50);
  FindAll(file);
  Change(file);
  CheckSaved(file, platform.files);
  return 0;
}

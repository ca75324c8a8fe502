#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "calendar/recurring_file.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

// Reads anything as a recurring file. What was read is written so that nothing of it is damaged,
// has dates within bounds, and is found by its keys whatever changes.
namespace {

constexpr const char* kPath = "C:\\RECR.WMW";
constexpr std::size_t kLookedAt = 16;
constexpr std::size_t kMostDates = 60000;  // a day each, of all that 32 bits of seconds hold

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

// Whether the organiser reads a record as it was written.
bool IsKept(const pw::recurring::StoredRecord& record) {
  return record.bytes.size() >= pw::recurring::kShortestRecord && record.bytes.front() != '\x09';
}

void CheckWritten(const std::string& bytes, std::size_t records) {
  const pw::recurring::Frame frame = pw::recurring::ReadFrame(bytes);
  Require(frame.damages.empty() && frame.records.size() == records);
  for (const pw::recurring::StoredRecord& record : frame.records) {
    if (!IsKept(record)) continue;
    const auto decoded = pw::recurring::DecodeRecord(frame.version, record.bytes);
    pw::ByteWriter again;
    pw::recurring::EncodeRecord(again, frame.version, decoded.record);
    // A record that was too long is zeros.
    const bool isZeros = record.bytes.find_first_not_of('\0') == std::string_view::npos;
    Require(isZeros || !decoded.damage);
    // A text that begins with the end of the subject gains one.
    const bool gains = decoded.record.detail.notes.find('\x7F') == 0;
    Require(isZeros || gains || again.Written() == record.bytes);
  }
}

void CheckDates(WMRecurringFile& file) {
  for (std::size_t i = 0; i < std::min(file.Count(), kLookedAt); ++i) {
    const std::size_t dates = file.Item(i).Occurrences().size();
    Require(dates <= kMostDates);
    file.Item(i).AddDeletedDate(file.Item(i).rule.firstDay);
    Require(file.Item(i).Occurrences().size() <= dates);
  }
}

void CheckLookups(WMRecurringFile& file) {
  for (std::size_t i = 0; i < std::min(file.Count(), kLookedAt); ++i) {
    const auto found = file.FindByIdText(file.IdText(i));
    Require(found && *found <= i && file.Key(*found) == file.Key(i));
    file.SetKey(i, static_cast<std::int32_t>(i));
  }
  while (file.Count() > kLookedAt) file.Remove(file.Count() / 2);
  file.Append(std::make_unique<WMRecurringItem>());
  Require(file.FindByKey(file.Key(file.Count() - 1)).has_value());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pw::TestPlatform platform;
  pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "New York, NY");
  Require(LoadHomeZone());
  platform.files.Put(kPath, {reinterpret_cast<const char*>(data), size});
  WMRecurringFile file;
  file.Load(kPath);
  const std::size_t read = file.Count();
  file.Save();
  CheckWritten(platform.files.Get(kPath).value(), read);
  CheckDates(file);
  CheckLookups(file);
  file.Save();
  CheckWritten(platform.files.Get(kPath).value(), file.Count());
  return 0;
}

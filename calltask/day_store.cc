#include "calltask/day_store.h"

#include <algorithm>
#include <utility>

#include "platform/platform.h"
#include "platform/whole_file.h"
#include "plugin/discovery.h"
#include "timeplace/zones.h"

namespace pw {
namespace {

using calltask::FormatVersion;

void FixFormat(const StoreKind& kind) {
  auto& format = *kind.format;
  if (!format) format = IsVersion50() ? FormatVersion::k50 : FormatVersion::k30;
}

// The start of all records that were filed under a day: the local midnight of 1 January, and whole
// days of 24 hours from there. South of the equator, where that midnight is in daylight time, this
// is an hour short of midnight all winter, and so on the day before; the organiser has it so.
// Seconds don't hold the years behind 2037, which are shown as that one.
std::int32_t StartOfDay(std::uint16_t key) {
  WMBrokenTime newYear;
  newYear.year = std::min(calltask::YearOfKey(key), kLastYearOfSeconds) - 1900;
  newYear.mday = 1;
  newYear.isdst = -1;
  return LocalToSeconds(newYear) + calltask::DayOfKey(key) * kSecondsPerDay;
}

}  // namespace

DayStore::DayStore(const StoreKind& kind) : kind(kind) {
  FixFormat(kind);
}

DayStore::~DayStore() = default;

std::int32_t DayStore::Load(const std::string& prefix) {
  const auto file =
      ReadWholeFile(prefix + kind.fileName, calltask::kLargestFile, OpenMode::kReadWriteExisting);
  if (!file) return -1;
  if (file->empty()) return 0;
  const calltask::Frame frame = calltask::ReadFrame(*file);
  if (!frame.hasHeader) return -1;
  header = frame.header;
  if (const auto version = calltask::VersionOf(header, kind.magics)) *kind.format = version;
  dirty = true;
  LoadDays(frame.days, file->size());
  return frame.isWhole ? 0 : -1;
}

void DayStore::LoadDays(const std::vector<calltask::DayBlock>& blocks, std::size_t fileSize) {
  std::map<std::uint16_t, DayRecords> read;
  calltask::BlockReader reader(fileSize);
  for (const calltask::DayBlock& block : blocks) {
    auto day = NewDay(block.key)->Read(block.bytes, Format(), reader);
    if (day) read[block.key] = std::move(*day);
  }
  for (auto& [key, dayRecords] : read) {
    auto& day = days.emplace(key, NewDay(key)).first->second;
    const std::int32_t start = StartOfDay(key);
    for (auto& record : dayRecords) {
      record->start = start;
      day->Add(*record);
      Append(std::move(record));
    }
  }
}

void DayStore::Append(std::unique_ptr<DayRecord> record) {
  records.push_back(std::move(record));
  const auto slot = static_cast<std::uint32_t>(ranks.Append());
  if (ids) ids->Add(DigestAt(slot), slot);
}

void DayStore::Save(const std::string& prefix) const {
  if (!dirty) return;
  const auto bytes = Encode();
  if (!bytes) return;
  const OpenMode mode = kind.madeAtSave ? OpenMode::kOpenAlways : OpenMode::kReadWriteExisting;
  const auto file =
      CurrentPlatform().files->Open(prefix + kind.fileName, mode, Sharing::kReadWrite);
  if (file == nullptr || !file->Truncate()) return;
  file->Write(*bytes);
}

std::optional<std::string> DayStore::Encode() const {
  std::vector<std::string> blocks;
  std::vector<calltask::DayBlock> frame;
  blocks.reserve(days.size());  // they stay where they are
  for (const auto& [key, day] : days) {
    blocks.push_back(day->Encode(Format()));
    if (!blocks.back().empty()) frame.push_back({key, blocks.back()});
  }
  calltask::Header saved = header;
  calltask::SetMagic(saved, kind.magics, Format());
  return calltask::WriteFrame(saved, frame);
}

// The format is the process's: another source's file may have set it meanwhile, and all ids with
// it.
IdIndex& DayStore::Ids() {
  if (ids && indexedFormat == Format()) return *ids;
  indexedFormat = Format();
  ids.emplace();
  ids->Reserve(ranks.Count());
  for (std::size_t i = 0; i < ranks.Count(); ++i) {
    const auto slot = static_cast<std::uint32_t>(ranks.SlotAt(i));
    ids->Add(DigestAt(slot), slot);
  }
  return *ids;
}

std::optional<std::uint32_t> DayStore::Find(const std::string& id) {
  const auto digest = DayRecord::DigestOfId(id, Format());
  if (!digest) return std::nullopt;
  const bool isSure = Format() == FormatVersion::k50;
  const auto slot = Ids().First(
      *digest, [&](std::uint32_t at) { return isSure || records[at]->IdText(Format()) == id; });
  if (!slot) return std::nullopt;
  return static_cast<std::uint32_t>(ranks.RankOf(*slot));
}

void DayStore::Change(std::uint32_t index, const std::function<void(DayRecord&)>& change) {
  dirty = true;
  const auto slot = static_cast<std::uint32_t>(ranks.SlotAt(index));
  if (ids) ids->Remove(DigestAt(slot), slot);
  change(*records[slot]);
  if (ids) ids->Add(DigestAt(slot), slot);
}

void DayStore::Remove(std::uint32_t index) {
  dirty = true;
  const auto slot = static_cast<std::uint32_t>(ranks.SlotAt(index));
  DayRecord& record = *records[slot];
  if (ids) ids->Remove(DigestAt(slot), slot);
  ranks.Remove(index);
  if (record.IsRecurring()) return;
  if (record.day != nullptr) record.day->Remove(record);
  records[slot].reset();
}

std::int32_t DayStore::AddToDay(std::unique_ptr<DayRecord> record, std::uint16_t key) {
  const auto found = days.find(key);
  const bool isFull = found != days.end() && found->second->IsFull();
  if (isFull && key != calltask::kCatchAllKey) return kDayFull;
  if (isFull || found == days.end()) days.insert_or_assign(key, NewDay(key));
  days.at(key)->Add(*record);
  dirty = true;
  Append(std::move(record));
  return 0;
}

std::int32_t CreateStoreFile(const StoreKind& kind, const std::string& prefix) {
  FixFormat(kind);
  calltask::Header header{};
  calltask::SetMagic(header, kind.magics, **kind.format);
  const auto bytes = calltask::WriteFrame(header, {});
  return bytes && MakeFile(prefix + kind.fileName, *bytes) ? 0 : -1;
}

}  // namespace pw

#include "calendar/recurring_file.h"

#include <limits>

#include "base/text.h"
#include "calendar/calendar_state.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "timeplace/date.h"

namespace {

namespace recurring = pw::recurring;
using recurring::FormatVersion;

constexpr std::string_view kIdPrefix = "Recurring:";
constexpr std::int32_t kOlderOrganiser = 40;
constexpr std::int32_t kLastYearOfStamp = 2020;

// The last write in seconds, or 0 for a year that isn't looked at.
std::int32_t StampOf(pw::File& file) {
  constexpr std::int64_t kNanosecondsPerSecond = 1000000000;
  const auto written = file.LastWriteTime();
  if (!written || *written < 0) return 0;
  const std::int64_t seconds = *written / kNanosecondsPerSecond;
  if (seconds > std::numeric_limits<std::int32_t>::max()) return 0;
  const auto stamp = static_cast<std::int32_t>(seconds);
  return YearOf(stamp) <= kLastYearOfStamp ? stamp : 0;
}

std::string Encoded(const recurring::Header& header) {
  pw::ByteWriter out;
  recurring::EncodeHeader(out, header);
  return out.Release();
}

}  // namespace

WMRecurringFile::WMRecurringFile()
    : version(IsVersion50() ? FormatVersion::k50 : FormatVersion::k30) {}

bool WMRecurringFile::Load(const std::string& filePath) {
  Close();
  path = filePath;
  version = OrganiserVersion() == kOlderOrganiser ? FormatVersion::k30 : FormatVersion::k50;
  handle =
      pw::CurrentPlatform().files->Open(path, pw::OpenMode::kOpenAlways, pw::Sharing::kReadWrite);
  return handle != nullptr && Read();
}

bool WMRecurringFile::Read() {
  auto size = handle->Size();
  if (size == std::uint64_t{0} && WriteEmpty()) size = handle->Size();
  if (size > recurring::kLargestFile) {
    Refuse();
    return false;
  }
  if (!size || !handle->Seek(0)) return false;
  const std::string bytes = handle->Read(static_cast<std::size_t>(*size));
  const recurring::Frame frame = recurring::ReadFrame(bytes);
  if (!frame.hasHeader) return false;
  header = frame.header;
  version = frame.version;
  for (const recurring::StoredRecord& record : frame.records) {
    auto item =
        std::make_unique<WMRecurringItem>(recurring::DecodeRecord(version, record.bytes).record);
    item->linked = version == FormatVersion::k50;
    Append(std::move(item));
  }
  if (!frame.hasAllRecords) return false;
  fileStamp = StampOf(*handle);
  return true;
}

// Without a path nothing is written over it.
void WMRecurringFile::Refuse() {
  handle.reset();
  path.clear();
}

bool WMRecurringFile::WriteEmpty() {
  recurring::Header empty;
  recurring::SetMagic(empty, version);
  return handle->Write(Encoded(empty));
}

void WMRecurringFile::Save() {
  if (path.empty()) return;
  // Nothing but the disk can fail once the file is cut.
  const std::string body = recurring::EncodeBody(version, Records());
  recurring::SetMagic(header, version);
  header.count = static_cast<std::int16_t>(Count());
  if (handle == nullptr) {
    handle = pw::CurrentPlatform().files->Open(path, pw::OpenMode::kCreateAlways,
                                               pw::Sharing::kReadWrite);
  }
  if (handle == nullptr) return;
  if (!handle->Seek(0) || !handle->Truncate() || !handle->Write(Encoded(header))) {
    Drop();
    return;
  }
  handle->Write(body);
}

void WMRecurringFile::Close() {
  Drop();
  header = recurring::Header();
  fileStamp = 0;
}

void WMRecurringFile::Drop() {
  handle.reset();
  items.clear();
  ranks = pw::SlotRanks();
  slotsByKey.clear();
}

std::vector<const recurring::Record*> WMRecurringFile::Records() const {
  std::vector<const recurring::Record*> records;
  records.reserve(Count());
  for (const auto& item : items) {
    if (item != nullptr) records.push_back(item.get());
  }
  return records;
}

void WMRecurringFile::SetKey(std::size_t index, std::int32_t key) {
  const std::size_t slot = ranks.SlotAt(index);
  slotsByKey.erase({items[slot]->key, slot});
  items[slot]->key = key;
  slotsByKey.emplace(key, slot);
}

std::int32_t WMRecurringFile::Stamp(std::size_t index) const {
  return version == FormatVersion::k50 ? Item(index).modified : fileStamp;
}

std::string WMRecurringFile::IdText(std::size_t index) const {
  return std::string(kIdPrefix) + pw::FormatLong(Key(index));
}

std::optional<std::size_t> WMRecurringFile::FindByIdText(std::string_view text) const {
  const std::size_t colon = text.find(':');
  return FindByKey(pw::ParseLong(colon == std::string_view::npos ? text : text.substr(colon + 1)));
}

std::optional<std::size_t> WMRecurringFile::FindByKey(std::int32_t key) const {
  const auto first = slotsByKey.lower_bound({key, 0});
  if (first == slotsByKey.end() || first->first != key) return std::nullopt;
  return ranks.RankOf(first->second);
}

std::size_t WMRecurringFile::Append(std::unique_ptr<WMRecurringItem> item) {
  const std::size_t slot = ranks.Append();
  slotsByKey.emplace(item->key, slot);
  items.push_back(std::move(item));
  return Count() - 1;
}

void WMRecurringFile::Remove(std::size_t index) {
  const std::size_t slot = ranks.SlotAt(index);
  slotsByKey.erase({items[slot]->key, slot});
  items[slot].reset();
  ranks.Remove(index);
}

void WMRecurringFile::ForgetInstances(std::int32_t key) {
  auto each = slotsByKey.lower_bound({key, 0});
  for (; each != slotsByKey.end() && each->first == key; ++each) {
    for (WMRecurringException& exception : items[each->second]->exceptions) {
      exception.instance = nullptr;
    }
  }
}

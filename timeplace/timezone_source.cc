#include "timeplace/timezone_source.h"

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/registry.h"
#include "framework/timezone_record.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/handshake.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"
#include "timeplace/city_index.h"
#include "timeplace/clock_format.h"
#include "timeplace/clock_mapping.h"
#include "timeplace/zones.h"

namespace clocks = pw::clocks;

namespace {

constexpr std::uint32_t kSourceKind = 0;
constexpr std::size_t kLongestFolder = 255;

pw::ProcessWide<PWString> recordId;
pw::ProcessWide<PWDateTimeStamp> recordTimeStamp;  // always fresh: the clocks have none

// The file open for both, with the bytes of the clocks; nothing if it is missing or too short.
struct OpenClocks {
  std::unique_ptr<pw::File> file;
  std::string bytes;
};
std::optional<OpenClocks> OpenClockFile(const std::string& path) {
  OpenClocks opened;
  opened.file = pw::CurrentPlatform().files->Open(path, pw::OpenMode::kReadWriteExisting,
                                                  pw::Sharing::kReadWrite);
  if (opened.file == nullptr) return std::nullopt;
  opened.bytes = opened.file->Read(clocks::kFileSize);
  if (opened.bytes.size() < clocks::kFileSize) return std::nullopt;
  return opened;
}

// A word of both flags; 0 for a clock that is neither.
std::int32_t FlagWord(const PWTimezoneRecord& clock) {
  const std::uint32_t active = clock.Active() ? 0xFFFF0000 : 0;
  const std::uint32_t home = clock.Home() ? 0x0000FFFF : 0;
  return static_cast<std::int32_t>(active | home);
}

}  // namespace

WMTimezoneSource::WMTimezoneSource(PWSourceManager* manager) : PWSource(manager, kSourceKind) {}

WMTimezoneSource::~WMTimezoneSource() = default;

PWRESULT WMTimezoneSource::OpenSource() {
  entries.clear();
  current.reset();
  const auto folder = FindClocks();
  if (!folder) return kResultFailed;
  clocksPath = *folder + "\\CLOCKS.DAT";
  AskOrganiser();
  ZoneFilesMayHaveChanged();
  cities = std::make_unique<WMCityIndex>(*folder + "\\CITYINFO.DAT");
  auto opened = OpenClockFile(clocksPath);
  if (!opened) return GiveUp();
  opened->file.reset();
  pw::ByteReader in(opened->bytes);
  for (std::size_t i = 0; i < clocks::kClocks; ++i) {
    if (!AddEntry(clocks::DecodeClock(in))) return GiveUp();
  }
  return kResultOk;
}

// The data folder, as the main key of the edition has it.
std::optional<std::string> WMTimezoneSource::FindClocks() {
  // It made this source.
  const std::int32_t edition = static_cast<WMSourceManager*>(Manager)->GetProduct();
  const auto mainKey = MainKeyOf(edition);
  PWRegistry registry;
  PWString folder;
  if (edition == product::kUnknown || !mainKey || registry.Open(LoadString(*mainKey), false) == 0) {
    return std::nullopt;
  }
  if (registry.Read("Data", folder) == 0) return std::nullopt;
  if (folder.View().size() > kLongestFolder) return std::nullopt;
  return folder.Str();
}

void WMTimezoneSource::AskOrganiser() {
  readOnly = false;
  if (NotifyOrganiserOpen(clocksPath.c_str(), 0, kTimezoneFiles, false) == kOrganiserAgrees) {
    NotifyOrganiserLock(0, false);
    return;
  }
  if (!IsOrganiserRunning()) return;
  readOnly = true;
  if (Manager->Log == nullptr) return;
  const std::string line = FormatString(strings::kTimezonesReadOnly, Manager->Name());
  Manager->Log->Add(line.c_str(), kLogWarning);
}

PWRESULT WMTimezoneSource::GiveUp() {
  cities.reset();
  if (!readOnly) NotifyOrganiserEnd(false, 0, false);
  return kResultFailed;
}

// False if the city file doesn't know its city.
bool WMTimezoneSource::AddEntry(const WMClock& clock) {
  const pw::CityName name = pw::SplitCityText(clock.CityText());
  WMCityRecord city;
  if (!cities->FindByName(name.Key(), city)) return false;
  auto entry = std::make_unique<WMTimezoneEntry>();
  pw::DescribeCity(entry->record, name, clock.Country(), city);
  PWTimezoneRecord record(&entry->record);
  record.Home(clock.notHome == 0);
  record.World(clock.inactive == 0);
  record.Active(clock.inactive == 0);
  entry->index = static_cast<std::int32_t>(entries.size());
  entry->label = clock.Label();
  entries.push_back(std::move(entry));
  return true;
}

PWRESULT WMTimezoneSource::CloseSource() {
  if (readOnly) return kResultOk;
  auto opened = OpenClockFile(clocksPath);
  if (!opened || entries.size() < clocks::kClocks) return kResultFailed;
  SettleFlags();
  pw::ByteReader in(opened->bytes);
  pw::ByteWriter out;
  for (const auto& entry : entries) {
    const PWTimezoneRecord record(&entry->record);
    WMClock clock = clocks::DecodeClock(in);
    clock.SetCityText(pw::CityNameOf(entry->record).Key());
    clock.SetCountry(record.Country().View());
    clock.SetLabel(entry->label);
    clock.notHome = record.Home() ? 0 : 1;
    clock.inactive = record.Active() ? 0 : 1;
    clocks::EncodeClock(out, clock);
  }
  const bool written = opened->file->Seek(0) && opened->file->Write(out.Written());
  opened->file.reset();
  cities.reset();
  NotifyOrganiserEnd(true, 0, false);
  return written ? kResultOk : kResultFailed;
}

// The last home and the last active clock stay; without a home clock the first becomes it, without
// an active one the home clock.
void WMTimezoneSource::SettleFlags() {
  PWRecord* home = nullptr;
  PWRecord* active = nullptr;
  for (const auto& entry : entries) {
    PWTimezoneRecord clock(&entry->record);
    if (clock.Home()) home = &entry->record;
    if (clock.Active()) active = &entry->record;
    clock.World(false);
    clock.Home(false);
    clock.Active(false);
  }
  if (home == nullptr) home = &entries.front()->record;
  if (active == nullptr) active = home;
  PWTimezoneRecord(home).Home(true);
  PWTimezoneRecord(active).Active(true);
}

PWRESULT WMTimezoneSource::UpdateRecord(PWRecord& record) {
  WMTimezoneEntry* entry = Current();
  if (readOnly || entry == nullptr || cities == nullptr) return kResultFailed;
  WMCityRecord city;
  if (!cities->FindByName(pw::CityNameOf(record).Key(), city)) return kResultFailed;
  // A clock keeps its city: an update for another one is taken, and does nothing.
  const PWTimezoneRecord clock(&entry->record);
  if (pw::CompareIgnoringCase(pw::CityNameOf(entry->record).Key(), city.Name()) != 0 ||
      pw::CompareIgnoringCase(clock.Country().View(), city.Country()) != 0) {
    return kResultOk;
  }
  entry->record = record;
  MakeExclusive(*entry);
  return kResultOk;
}

// A flag that this clock has is taken from all others.
void WMTimezoneSource::MakeExclusive(WMTimezoneEntry& chosen) {
  const PWTimezoneRecord set(&chosen.record);
  for (const auto& entry : entries) {
    if (entry.get() == &chosen) continue;
    PWTimezoneRecord other(&entry->record);
    if (set.Home()) other.Home(false);
    if (set.World()) other.World(false);
    if (set.Active()) other.Active(false);
  }
}

PWRESULT WMTimezoneSource::ReadRecord(PWRecord* record) {
  const WMTimezoneEntry* entry = Current();
  if (entry == nullptr) return kResultFailed;
  *record = entry->record;
  return kResultOk;
}

std::uint32_t WMTimezoneSource::RecordCount() {
  return static_cast<std::uint32_t>(entries.size());
}

PWString& WMTimezoneSource::RecordID() {
  const WMTimezoneEntry* entry = Current();
  if (entry != nullptr) {
    *recordId = entry->index;
  } else {
    recordId->Clear();
  }
  return *recordId;
}

PWDateTimeStamp& WMTimezoneSource::RecordTimeStamp() {
  return *recordTimeStamp;
}

std::uint32_t WMTimezoneSource::RecordCRC() {
  PWCrc crc;
  for (const auto& entry : entries) {
    const PWTimezoneRecord clock(&entry->record);
    crc.Add(clock.City());
    const std::int32_t flags = FlagWord(clock);
    if (flags != 0) crc.Add(PWString(pw::FormatLong(flags).c_str()));
  }
  return crc.value;
}

PWRESULT WMTimezoneSource::FirstRecord() {
  current.reset();
  if (entries.empty()) return kResultFailed;
  current = 0;
  return kResultOk;
}

PWRESULT WMTimezoneSource::NextRecord() {
  if (!current) return kResultFailed;
  ++*current;
  if (*current < entries.size()) return kResultOk;
  current.reset();
  return kResultFailed;
}

PWRESULT WMTimezoneSource::FindRecord(const char* id) {
  const std::int32_t index = pw::ParseLong(pw::TextOf(id));
  current.reset();
  if (index < 0 || static_cast<std::size_t>(index) >= entries.size()) return kResultFailed;
  current = static_cast<std::size_t>(index);
  return kResultOk;
}

WMTimezoneEntry* WMTimezoneSource::Current() {
  return current ? entries[*current].get() : nullptr;
}

#include "calendar/data_file.h"

#include <algorithm>
#include <memory>

#include "calendar/calendar_state.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "timeplace/software_value.h"
#include "timeplace/zones.h"

namespace datafile = pw::datafile;
using datafile::FormatVersion;

namespace {

constexpr const char* kTemplateName = "Holidef.dat";
constexpr std::int32_t kCalendarVersion50 = 50;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

FormatVersion VersionIf(bool isVersion50) {
  return isVersion50 ? FormatVersion::k50 : FormatVersion::k35;
}

std::unique_ptr<pw::File> OpenToRead(const std::string& path) {
  return pw::CurrentPlatform().files->Open(path, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
}

void CopyTemplate(const std::string& path) {
  const auto folder = pw::OrganiserDataFolder();
  if (!folder) return;
  const std::string from = pw::PathInFolder(*folder, kTemplateName);
  pw::CurrentPlatform().files->CopyWithoutOverwriting(from, path);
}

// Null if the file is neither there nor can be made.
std::unique_ptr<pw::File> OpenOrMake(const std::string& path) {
  if (auto file = OpenToRead(path)) return file;
  CopyTemplate(path);
  if (auto file = OpenToRead(path)) return file;
  WMDataFile::CreateEmpty(path);
  return OpenToRead(path);
}

std::unique_ptr<pw::File> OpenToRewrite(const std::string& path) {
  return pw::CurrentPlatform().files->Open(path, pw::OpenMode::kCreateAlways, pw::Sharing::kNone);
}

// What version 35 doesn't keep.
template <class Day>
void GiveKey(Day& day) {
  const ItemIdPair key = NewItemIdPair();
  day.created = key.created;
  day.id = key.id;
  day.stamp = UtcNowSeconds();
}

void CountOneMore(WMDataSection& section, std::int16_t tag) {
  if (section.tag != tag) section = {tag, 0, 0, section.offset};
  section.count = static_cast<std::uint16_t>(section.count + 1);
  section.bytes = static_cast<std::uint16_t>(section.bytes + datafile::kRecordSize50);
}

}  // namespace

WMDataFile::WMDataFile() : version(VersionIf(IsVersion50())) {}

void WMDataFile::Load(const std::string& path) {
  const auto file = OpenOrMake(path);
  if (file == nullptr) return;
  const std::int64_t lastWrite = file->LastWriteTime().value_or(0);
  fileStamp = static_cast<std::int32_t>(lastWrite / kNanosecondsPerSecond);

  datafile::File read = datafile::DecodeFile(file->Read(datafile::kLargestFile));
  header = read.header;
  if (!read.version) return;
  version = *read.version;
  table = read.table;
  for (datafile::Record& record : read.records) {
    std::visit(
        [&](auto& day) {
          if (version == FormatVersion::k35) GiveKey(day);
          Take(day);
        },
        record);
  }
}

void WMDataFile::Take(const WMMultiDay& span) {
  if (datafile::IsInRange(span)) multiDays.Append(span);
}

bool WMDataFile::Save(const std::string& path) {
  if (Count() == 0) return CreateEmpty(path);
  const auto file = OpenToRewrite(path);
  if (file == nullptr) return false;
  datafile::SetMagic(header, version);
  datafile::PlaceSections(table, SpecialDayCount(), MultiDayCount());
  return file->Write(
      datafile::EncodeFile(header, table, version, specialDays.InOrder(), multiDays.InOrder()));
}

bool WMDataFile::CreateEmpty(const std::string& path) {
  const FormatVersion version = VersionIf(OrganiserVersion() == kCalendarVersion50);
  const auto file = OpenToRewrite(path);
  return file != nullptr && file->Write(datafile::EncodeEmptyFile(version));
}

const WMMultiDay* WMDataFile::MultiDay(std::uint32_t index) const {
  return index < MultiDayCount() ? &multiDays.At(index) : nullptr;
}

const WMSpecialDay* WMDataFile::SpecialDay(std::uint32_t index) const {
  const bool isThere = index >= MultiDayCount() && index < Count();
  return isThere ? &specialDays.At(index - MultiDayCount()) : nullptr;
}

std::int32_t WMDataFile::Stamp(std::uint32_t index) const {
  if (version != FormatVersion::k50) return fileStamp;
  if (index < MultiDayCount()) return multiDays.At(index).stamp;
  return specialDays.At(index - MultiDayCount()).stamp;
}

std::string WMDataFile::IdText(std::uint32_t index) const {
  if (index < MultiDayCount()) return datafile::IdText(multiDays.At(index), version);
  return datafile::IdText(specialDays.At(index - MultiDayCount()), version);
}

std::optional<std::uint32_t> WMDataFile::Find(const std::string& id) {
  if (const auto span = multiDays.Find(id, version)) return span;
  if (const auto day = specialDays.Find(id, version)) return *day + MultiDayCount();
  return std::nullopt;
}

void WMDataFile::AddMultiDay(const WMMultiDay& span) {
  multiDays.Append(span);
  WMDataSection* section = datafile::FindSection(table, datafile::kMultiDayTag);
  if (section == nullptr) section = datafile::FindSection(table, datafile::kFreeTag);
  if (section != nullptr) CountOneMore(*section, datafile::kMultiDayTag);
}

// An entry that counts nothing is taken too, whatever its kind: the organiser has it so.
void WMDataFile::AddSpecialDay(const WMSpecialDay& day) {
  specialDays.Append(day);
  WMDataSection* section = datafile::FindSection(table, datafile::kSpecialDayTag);
  if (section == nullptr) {
    const auto unused = std::find_if(table.begin(), table.end(), [](const WMDataSection& each) {
      return each.tag == datafile::kFreeTag || each.count == 0;
    });
    if (unused != table.end()) section = &*unused;
  }
  if (section != nullptr) CountOneMore(*section, datafile::kSpecialDayTag);
}

bool WMDataFile::Replace(std::uint32_t index, const WMMultiDay& span) {
  if (index >= MultiDayCount()) return false;
  multiDays.Replace(index, span);
  return true;
}

bool WMDataFile::Replace(std::uint32_t index, const WMSpecialDay& day) {
  if (index < MultiDayCount() || index >= Count()) return false;
  specialDays.Replace(index - MultiDayCount(), day);
  return true;
}

bool WMDataFile::Remove(std::uint32_t index) {
  if (index >= Count()) return false;
  if (index < MultiDayCount()) {
    multiDays.Remove(index);
  } else {
    specialDays.Remove(index - MultiDayCount());
  }
  return true;
}

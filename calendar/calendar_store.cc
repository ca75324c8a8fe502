#include "calendar/calendar_store.h"

#include <optional>
#include <string_view>

#include "calendar/calendar_state.h"
#include "calendar/event_file.h"
#include "calendar/occurrence_links.h"
#include "platform/platform.h"
#include "plugin/string_table.h"
#include "timeplace/zones.h"

namespace {

namespace events = pw::events;

constexpr std::int32_t kLoadFailed = -1;
constexpr std::int32_t kVersion50 = 50;

// Whether the file could be opened; what is written isn't looked at.
bool Overwrite(const std::string& path, std::string_view bytes) {
  const auto file =
      pw::CurrentPlatform().files->Open(path, pw::OpenMode::kCreateAlways, pw::Sharing::kReadWrite);
  if (file == nullptr) return false;
  file->Write(bytes);
  return true;
}

pw::frame::Header NewHeader() {
  pw::frame::Header header{};
  events::SetMagic(header, OrganiserVersion());
  return header;
}

std::string EventPath(const std::string& folder) {
  return folder + LoadString(strings::kEventFile).Str();
}

std::string DataPath(const std::string& folder) {
  return folder + LoadString(strings::kDataFile).Str();
}

std::string RecurringPath(const std::string& folder) {
  return folder + LoadString(strings::kRecurringFile).Str();
}

}  // namespace

WMCalendarStore::WMCalendarStore() {
  ChooseOrganiserVersion();
  header = NewHeader();
}

WMCalendarStore::~WMCalendarStore() = default;

std::int32_t WMCalendarStore::Load(const std::string& folder) {
  if (!LoadHomeZone()) return kLoadFailed;
  zone = HomeZoneId();
  places.Load();
  eventPath = EventPath(folder);
  dataPath = DataPath(folder);
  recurringPath = RecurringPath(folder);
  recurring.SetPath(recurringPath);

  const auto file = pw::CurrentPlatform().files->Open(eventPath, pw::OpenMode::kReadWriteExisting,
                                                      pw::Sharing::kReadWrite);
  if (file == nullptr) return 0;
  const auto size = file->Size();
  if (!size || *size == 0 || *size > events::kLargestFile) return kLoadFailed;
  return LoadFiles(file->Read(static_cast<std::size_t>(*size))) ? 0 : kLoadFailed;
}

// The other two files are read, and made, even if the events then can't be.
bool WMCalendarStore::LoadFiles(std::string_view eventBytes) {
  if (eventBytes.size() < pw::frame::kHeaderSize) return false;
  pw::ByteReader(eventBytes).TakeInto(header);
  OrganiserVersion() = events::VersionOf(header);
  data.Load(dataPath);
  if (OrganiserVersion() == kVersion50) data.SetFileVersion(WMDataFile::Version::k50);
  recurring.Load(recurringPath);
  if (!ReadEvents(eventBytes, plainItems, occurrenceItems)) return false;
  if (recurring.Version() == pw::recurring::FormatVersion::k50) {
    LinkInstancesToExceptions(occurrenceItems, recurring);
  } else {
    LinkOlderFile(occurrenceItems, recurring);
  }
  return true;
}

std::int32_t WMCalendarStore::Save() {
  const auto image = EncodeEvents(header, plainItems, occurrenceItems);
  // The three stay together: a series without its occurrences, or they without it, are of no use.
  if (!image || image->size() > events::kLargestFile) return 0;
  Overwrite(eventPath, *image);
  data.Save(dataPath);
  recurring.Save();
  places.Save();
  dirty = false;
  return 0;
}

std::int32_t WMCalendarStore::Close() {
  recurring.Close();
  plainItems.Clear();
  occurrenceItems.Clear();
  return 0;
}

void WMCalendarStore::RecountSections() {
  dataEnd = data.Count();
  eventEnd = dataEnd + static_cast<std::uint32_t>(plainItems.Count());
  recordEnd = eventEnd + static_cast<std::uint32_t>(recurring.Count());
}

std::uint32_t WMCalendarStore::RecordCount() {
  RecountSections();
  return recordEnd;
}

bool CreateEventFiles(const std::string& folder) {
  if (OrganiserVersion() == 0) ChooseOrganiserVersion();
  const bool isMade = Overwrite(EventPath(folder), pw::frame::WriteEmptyFile(NewHeader()));
  WMDataFile::CreateEmpty(DataPath(folder));
  return isMade;
}

bool ResetFiles(const std::string& folder) {
  pw::Files& files = *pw::CurrentPlatform().files;
  const std::string dataPath = DataPath(folder);
  return files.Delete(EventPath(folder)) && CreateEventFiles(folder) && files.Delete(dataPath) &&
         WMDataFile::CreateEmpty(dataPath) && files.Delete(RecurringPath(folder));
}

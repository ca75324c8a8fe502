#include "calendar/mapping/calendar_source.h"

#include "base/process_wide.h"
#include "base/text.h"
#include "calendar/calendar_state.h"
#include "calendar/calendar_store.h"
#include "calendar/mapping/event_gate.h"
#include "calendar/mapping/event_router.h"
#include "calendar/record_list.h"
#include "framework/event_record.h"
#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/handshake.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"
#include "timeplace/zones.h"

namespace {

constexpr std::uint32_t kSourceKind = 2;
constexpr std::int32_t kVersion50 = 50;

pw::ProcessWide<PWString> recordId;
pw::ProcessWide<PWDateTimeStamp> recordTimeStamp;

// A code that no edition has leaves the key of the one before.
void ChooseCalendarKey(PWSourceManager* manager) {
  auto* organiser = dynamic_cast<WMSourceManager*>(manager);
  if (organiser == nullptr) return;
  if (const auto key = MainKeyOf(organiser->GetProduct())) {
    CalendarKeyPath() = LoadString(*key).Str();
  }
}

}  // namespace

WMCalendarSource::WMCalendarSource(PWSourceManager* manager) : PWSource(manager, kSourceKind) {}

WMCalendarSource::~WMCalendarSource() = default;

PWRESULT WMCalendarSource::OpenSource() {
  cursor = 0;
  ChooseCalendarKey(Manager);
  ZoneFilesMayHaveChanged();
  store = std::make_unique<WMCalendarStore>();
  const std::string location = Category->Location.Str();
  const std::string eventPath = location + LoadString(strings::kEventFile).Str();
  if (!AskOrganiser(*Manager, eventPath, kCalendarFiles)) return kResultFailed;
  if (store->Load(location) == 0) return kResultOk;
  store.reset();
  NotifyOrganiserEnd(false, 0, false);
  return kResultFailed;
}

PWRESULT WMCalendarSource::CloseSource() {
  if (store != nullptr) {
    if (store->dirty) store->Save();
    store->Close();
  }
  store.reset();
  NotifyOrganiserEnd(true, 0, false);
  return kResultOk;
}

PWRESULT WMCalendarSource::AddRecord(PWRecord& record) {
  if (store == nullptr || !PassesGate(record)) return kResultFailed;
  std::string message;
  const std::int32_t result = AddEvent(*store, record, message);
  Warn(message);
  if (result != 0) return kResultFailed;
  WarnOfShortenedNotes(record);
  cursor = store->currentRecord;
  return kResultOk;
}

PWRESULT WMCalendarSource::UpdateRecord(PWRecord& record) {
  if (store == nullptr || !PassesGate(record)) return kResultFailed;
  std::string message;
  UpdateEvent(*store, cursor, record, message);
  Warn(message);
  WarnOfShortenedNotes(record);
  cursor = store->currentRecord;
  return kResultOk;
}

// Also makes ready for the change that follows.
bool WMCalendarSource::PassesGate(PWRecord& record) {
  if (!CheckEventStorable(record, Manager->Log)) return false;
  store->dirty = true;
  NotesShortened() = false;
  return true;
}

void WMCalendarSource::Warn(const std::string& message) {
  if (message.empty() || Manager->Log == nullptr) return;
  Manager->Log->Addf("%s", kLogWarning, message.c_str());
}

void WMCalendarSource::WarnOfShortenedNotes(PWRecord& record) {
  if (!NotesShortened() || Manager->Log == nullptr) return;
  const std::string subject = PWEventRecord(&record).Subject().Str();
  const std::string name = Manager->Name().Str();
  Manager->Log->Addf(LoadString(strings::kEventNotesShortened), kLogWarning, subject.c_str(),
                     name.c_str());
}

PWRESULT WMCalendarSource::DeleteRecord() {
  if (store == nullptr || DeleteByIndex(*store, cursor) != 0) return kResultFailed;
  store->dirty = true;
  cursor = 0;
  return kResultOk;
}

PWRESULT WMCalendarSource::ReadRecord(PWRecord* record) {
  if (store == nullptr) return kResultFailed;
  std::string message;
  store->RecountSections();
  if (ReadByIndex(*store, cursor, record, message) == 0) return kResultOk;
  Warn(message);
  return kResultFailed;
}

std::uint32_t WMCalendarSource::RecordCount() {
  return store == nullptr ? 0 : store->RecordCount();
}

PWString& WMCalendarSource::RecordID() {
  *recordId = cursor < RecordCount() ? IdOfIndex(*store, cursor) : std::string();
  return *recordId;
}

PWDateTimeStamp& WMCalendarSource::RecordTimeStamp() {
  if (cursor >= RecordCount()) return *recordTimeStamp;
  if (const auto seconds = StampOfIndex(*store, cursor)) {
    *recordTimeStamp = pw::CurrentPlatform().clock->Local(*seconds);
  }
  return *recordTimeStamp;
}

std::uint32_t WMCalendarSource::RecordCRC() {
  if (cursor >= RecordCount() || OrganiserVersion() == kVersion50) return 0;
  const auto values = CrcValuesOfIndex(*store, cursor);
  if (!values) return 0;
  std::uint32_t crc = 0;
  for (const std::string& text : values->texts) crc = GenerateCRC(crc, PWString(text.c_str()));
  for (const std::int32_t word : values->words) {
    crc = GenerateCRC(crc, PWString(pw::FormatLong(word).c_str()));
  }
  return crc;
}

PWRESULT WMCalendarSource::FirstRecord() {
  cursor = 0;
  return RecordCount() > 0 ? kResultOk : kResultFailed;
}

PWRESULT WMCalendarSource::NextRecord() {
  if (cursor >= RecordCount()) return kResultFailed;
  ++cursor;
  return cursor < RecordCount() ? kResultOk : kResultFailed;
}

PWRESULT WMCalendarSource::FindRecord(const char* id) {
  cursor = 0;
  if (store == nullptr) return kResultFailed;
  const auto index = IndexOfId(*store, pw::TextOf(id));
  if (!index) return kResultFailed;
  cursor = *index;
  return kResultOk;
}

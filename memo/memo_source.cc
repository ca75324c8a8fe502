#include "memo/memo_source.h"

#include "base/process_wide.h"
#include "base/text.h"
#include "framework/memo_record.h"
#include "memo/binder.h"
#include "memo/location.h"
#include "memo/open_section.h"
#include "platform/platform.h"
#include "plugin/handshake.h"

namespace memo = pw::memo;

namespace {

constexpr std::uint32_t kSourceKind = 2;

pw::ProcessWide<PWString> recordId;
pw::ProcessWide<PWDateTimeStamp> recordTimeStamp;
pw::ProcessWide<std::uint16_t> openSectionId;

bool IsMissing(const std::string& path) {
  return !pw::CurrentPlatform().files->Exists(path);
}

}  // namespace

std::uint16_t& OpenSectionId() {
  return *openSectionId;
}

WMMemoSource::WMMemoSource(PWSourceManager* manager) : PWSource(manager, kSourceKind) {}

WMMemoSource::~WMMemoSource() = default;

PWRESULT WMMemoSource::OpenSource() {
  const memo::Location location(Category->Location.Str());
  for (const char* extension : {memo::kSectionFile, memo::kHeaderFile, memo::kContentFile}) {
    if (IsMissing(location.stem + extension)) return kResultFileMissing;
  }
  const std::string sectionPath = location.stem + memo::kSectionFile;
  if (!AskOrganiser(*Manager, sectionPath, kMemoFiles)) return kResultFailed;

  cursor = 0;
  recordCount = 0;
  binder = std::make_unique<WMBinder>();
  if (binder->Open(location.stem) != 0) return GiveUp();
  const auto sectionId = binder->FindSection(location.section);
  if (!sectionId) return GiveUp();
  OpenSectionId() = *sectionId;
  for (std::uint32_t i = 0; i < binder->NoteCount(); ++i) {
    if (binder->Note(i).header.sectionId == *sectionId) ++recordCount;
  }
  return kResultOk;
}

PWRESULT WMMemoSource::GiveUp() {
  binder.reset();
  NotifyOrganiserEnd(false, 0, false);
  return kResultFailed;
}

PWRESULT WMMemoSource::CloseSource() {
  if (binder != nullptr) binder->Save();
  binder.reset();
  NotifyOrganiserEnd(true, 0, false);
  return kResultOk;
}

PWRESULT WMMemoSource::AddRecord(PWRecord& record) {
  if (binder == nullptr) return kResultFailed;
  const PWMemoRecord note(&record);
  if (binder->AddNote(note.Subject().Str(), note.Body().Str(), OpenSectionId()) != 0) {
    return kResultFailed;
  }
  cursor = binder->NoteCount() - 1;
  ++recordCount;
  return kResultOk;
}

PWRESULT WMMemoSource::UpdateRecord(PWRecord& record) {
  if (binder == nullptr) return kResultFailed;
  const PWMemoRecord note(&record);
  const std::int32_t result = binder->UpdateNote(cursor, note.Subject().Str(), note.Body().Str());
  return result == 0 ? kResultOk : kResultFailed;
}

PWRESULT WMMemoSource::DeleteRecord() {
  if (binder == nullptr || binder->DeleteNote(cursor) != 0) return kResultFailed;
  if (recordCount > 0) --recordCount;  // the note may be another section's
  return kResultOk;
}

PWRESULT WMMemoSource::ReadRecord(PWRecord* record) {
  const WMNote* note = Current();
  if (note == nullptr) return kResultFailed;
  PWMemoRecord read(record);
  read.Subject(note->SubjectText().c_str(), PWRecord::kWholeText);
  read.Body(note->BodyText().c_str(), PWRecord::kWholeText);
  return kResultOk;
}

PWString& WMMemoSource::RecordID() {
  const WMNote* note = Current();
  *recordId = note == nullptr ? 0 : note->header.id;
  return *recordId;
}

PWDateTimeStamp& WMMemoSource::RecordTimeStamp() {
  if (const WMNote* note = Current()) {
    *recordTimeStamp = pw::CurrentPlatform().clock->Local(note->header.lastChange);
  }
  return *recordTimeStamp;
}

PWRESULT WMMemoSource::FirstRecord() {
  cursor = 0;
  if (Current() == nullptr) return kResultFailed;
  return IsOnRecord() ? kResultOk : NextRecord();
}

PWRESULT WMMemoSource::NextRecord() {
  while (Current() != nullptr) {
    ++cursor;
    if (IsOnRecord()) return kResultOk;
  }
  return kResultFailed;
}

PWRESULT WMMemoSource::FindRecord(const char* id) {
  cursor = 0;
  if (binder == nullptr) return kResultFailed;
  const auto found = binder->FindNote(pw::ParseLong(pw::TextOf(id)), OpenSectionId());
  if (!found) return kResultFailed;
  cursor = *found;
  return kResultOk;
}

const WMNote* WMMemoSource::Current() const {
  if (binder == nullptr || cursor >= binder->NoteCount()) return nullptr;
  return &binder->Note(cursor);
}

bool WMMemoSource::IsOnRecord() const {
  const WMNote* note = Current();
  return note != nullptr && note->header.sectionId == OpenSectionId();
}

#include "cardfile/contact_source.h"

#include <algorithm>

#include "base/process_wide.h"
#include "base/text.h"
#include "cardfile/card_file.h"
#include "platform/platform.h"
#include "plugin/handshake.h"

namespace {

constexpr std::uint32_t kSourceKind = 2;

// The source's calls of the handshake all skip it: cardfiles are opened whether the organiser runs
// or not, and it isn't told.
constexpr bool kSkip = true;

constexpr char kStampMarkerStandIn = '\x80';

pw::ProcessWide<PWString> recordId;
pw::ProcessWide<PWDateTimeStamp> recordTimeStamp;

}  // namespace

WMContactSource::WMContactSource(PWSourceManager* manager) : PWSource(manager, kSourceKind) {}

WMContactSource::~WMContactSource() = default;

PWRESULT WMContactSource::OpenSource() {
  const std::string path = Category->Location.Str();
  if (!pw::CurrentPlatform().files->Exists(path)) return kResultFileMissing;
  if (!AskOrganiser(*Manager, path, kContactFiles, kSkip)) return kResultFailed;

  file = std::make_unique<WMCardFile>();
  if (file->Load(path) != 0) {
    file.reset();
    NotifyOrganiserEnd(false, 0, kSkip);
    return kResultFailed;
  }
  file->GetFieldNames(fieldNames);
  fieldIndex.clear();
  for (std::size_t i = 0; i < fieldNames.size(); ++i) {
    fieldIndex.emplace(fieldNames[i], static_cast<std::int32_t>(i));
  }
  values.clear();
  cursor = 0;
  placed = false;
  valuesAreCurrent = false;
  return kResultOk;
}

PWRESULT WMContactSource::CloseSource() {
  if (file != nullptr && file->IsDirty()) file->Save();
  file.reset();
  NotifyOrganiserEnd(true, 0, kSkip);
  return kResultOk;
}

PWRESULT WMContactSource::AddRecord(PWRecord& record) {
  if (file == nullptr) return kResultFailed;
  values.assign(fieldNames.size(), std::string());
  valuesAreCurrent = false;
  if (ApplyMapToSource(record) != kResultOk || file->AddCard(values) != 0) return kResultFailed;
  cursor = file->CardCount() - 1;
  placed = true;
  valuesAreCurrent = true;
  return kResultOk;
}

// The values are those of the card as it was decoded when the cursor came to it, so that what the
// map doesn't touch stays. Without that, as behind a deletion, they are another card's, or none.
PWRESULT WMContactSource::UpdateRecord(PWRecord& record) {
  if (!OnCard() || !valuesAreCurrent) return kResultFailed;
  if (ApplyMapToSource(record) != kResultOk) return kResultFailed;
  file->EncodeCard(file->Card(cursor), values);
  return kResultOk;
}

PWRESULT WMContactSource::DeleteRecord() {
  if (!OnCard()) return kResultFailed;
  file->DeleteCard(cursor);
  valuesAreCurrent = false;
  return kResultOk;
}

PWRESULT WMContactSource::ReadRecord(PWRecord* record) {
  return ApplyMapFromSource(record);
}

std::uint32_t WMContactSource::RecordCount() {
  return file == nullptr || file->IsBlank() ? 0 : file->CardCount();
}

PWString& WMContactSource::RecordID() {
  if (OnCard()) {
    *recordId = file->Card(cursor).index.id;
  } else {
    recordId->Clear();
  }
  return *recordId;
}

PWDateTimeStamp& WMContactSource::RecordTimeStamp() {
  if (OnCard()) {
    *recordTimeStamp = pw::CurrentPlatform().clock->Local(file->Card(cursor).timeStamp);
  }
  return *recordTimeStamp;
}

PWRESULT WMContactSource::FirstRecord() {
  if (file == nullptr || file->IsBlank()) return kResultFailed;
  cursor = 0;
  if (RecordCount() == 0) return kResultFailed;
  DecodeCurrent();
  return kResultOk;
}

PWRESULT WMContactSource::NextRecord() {
  if (cursor >= RecordCount()) return kResultFailed;
  ++cursor;
  if (cursor >= RecordCount()) return kResultFailed;
  DecodeCurrent();
  return kResultOk;
}

PWRESULT WMContactSource::FindRecord(const char* id) {
  if (RecordCount() == 0) return kResultFailed;
  const auto found = file->FindCard(pw::ParseLong(pw::TextOf(id)));
  cursor = found.value_or(file->CardCount());
  if (!found) return kResultFailed;
  DecodeCurrent();
  return kResultOk;
}

PWRESULT WMContactSource::GetField(std::int32_t index, PWField& out) {
  if (!HasValue(index)) return kResultFailed;
  out.SetText(values[static_cast<std::size_t>(index)]);
  return kResultOk;
}

PWRESULT WMContactSource::SetField(std::int32_t index, PWField& value) {
  if (!HasValue(index)) return kResultFailed;
  std::string& stored = values[static_cast<std::size_t>(index)];
  stored = value.text.View();
  // No value can then be taken for a time stamp.
  std::replace(stored.begin(), stored.end(), pw::cardfile::kStampMarker, kStampMarkerStandIn);
  return kResultOk;
}

std::int32_t WMContactSource::FindField(const char* name) {
  const auto found = fieldIndex.find(pw::TextOf(name));
  return found == fieldIndex.end() ? -1 : found->second;
}

bool WMContactSource::OnCard() const {
  return file != nullptr && placed && !file->IsBlank() && cursor < file->CardCount();
}

void WMContactSource::DecodeCurrent() {
  placed = true;
  valuesAreCurrent = true;
  file->DecodeCard(file->Card(cursor), values);
}

bool WMContactSource::HasValue(std::int32_t index) const {
  return index >= 0 && static_cast<std::size_t>(index) < values.size();
}

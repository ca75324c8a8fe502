#include "memo/binder.h"

#include <algorithm>
#include <utility>

#include "memo/section_groups.h"
#include "platform/platform.h"
#include "timeplace/zones.h"

namespace memo = pw::memo;

namespace {

constexpr std::size_t kMostSections = 1000;

// A note by its section and its id.
std::uint64_t NumberOf(std::int32_t id, std::uint16_t sectionId) {
  return std::uint64_t{sectionId} << 32 | static_cast<std::uint32_t>(id);
}

bool IsEmpty(pw::File& file) {
  return file.Size() == std::uint64_t{0};
}

std::int32_t OneMore(std::int32_t id) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(id) + 1);
}

// In pieces, as the notes of a damaged file may share their texts, and be much larger than it.
void WriteTexts(const std::vector<std::vector<WMNote*>>& groups, pw::File& file) {
  constexpr std::size_t kPiece = 1 << 20;
  std::string piece;
  for (const auto& group : groups) {
    for (const WMNote* note : group) {
      piece.append(note->Subject()).append(note->Body());
      if (piece.size() < kPiece) continue;
      file.Write(piece);
      piece.clear();
    }
  }
  file.Write(piece);
}

void Empty(pw::File& file) {
  if (file.Seek(0)) file.Truncate();
}

}  // namespace

WMBinder::WMBinder() = default;

WMBinder::~WMBinder() = default;

std::int32_t WMBinder::Open(const std::string& stem) {
  const std::int32_t opened = OpenFiles(stem);
  if (opened != 0) return opened;
  isValid = Load();
  return isValid ? 0 : kFailed;
}

// All are tried, and of what is wrong the last stands.
std::int32_t WMBinder::OpenFiles(const std::string& stem) {
  const auto open = [&](const char* extension) {
    return pw::CurrentPlatform().files->Open(stem + extension, pw::OpenMode::kReadWriteExisting,
                                             pw::Sharing::kReadWrite);
  };
  sectionFile = open(memo::kSectionFile);
  headerFile = open(memo::kHeaderFile);
  contentFile = open(memo::kContentFile);
  if (contentFile == nullptr) return kNoContentFile;
  if (headerFile == nullptr) return kNoHeaderFile;
  if (IsEmpty(*headerFile)) return kEmptyHeaderFile;
  if (sectionFile == nullptr) return kNoSectionFile;
  if (IsEmpty(*sectionFile)) return kEmptySectionFile;
  return 0;
}

bool WMBinder::Load() {
  auto loaded = memo::DecodeSections(sectionFile->Read(memo::kLargestSectionFile));
  if (!loaded) return false;
  sections = std::move(*loaded);
  const auto headerSize = headerFile->Size();
  const auto contentSize = contentFile->Size();
  if (!headerSize || *headerSize > memo::kLargestHeaders) return false;
  if (!contentSize || *contentSize > memo::kLargestContents) return false;
  const auto headers =
      memo::DecodeNoteHeaders(headerFile->Read(static_cast<std::size_t>(*headerSize)));
  if (!headers) return false;
  contents = contentFile->Read(static_cast<std::size_t>(*contentSize));
  for (const memo::NoteHeader& header : *headers) {
    Append(std::make_unique<WMNote>(header, memo::SubjectOf(header, contents),
                                    memo::BodyOf(header, contents)));
    highestId = std::max(highestId, header.id);
  }
  return true;
}

void WMBinder::Append(std::unique_ptr<WMNote> note) {
  const auto slot = static_cast<std::uint32_t>(ranks.Append());
  if (ids) ids->Add(NumberOf(note->header.id, note->header.sectionId), slot);
  notes.push_back(std::move(note));
}

// The binder then holds what it held before.
std::int32_t WMBinder::Save() {
  if (!isValid || !isDirty) return kFailed;
  const auto groups = GroupNotes();
  if (!PlaceTexts(groups)) return kFailed;
  pw::ByteWriter headers;
  memo::EncodeHeaderFileStart(headers, static_cast<std::int32_t>(NoteCount()));
  for (const auto& group : groups) {
    for (const WMNote* note : group) memo::EncodeNoteHeader(headers, note->header);
  }
  for (pw::File* file : {sectionFile.get(), headerFile.get(), contentFile.get()}) Empty(*file);
  headerFile->Write(headers.Written());
  sectionFile->Write(memo::EncodeSections(sections));
  WriteTexts(groups, *contentFile);
  return 0;
}

// The notes by their sections, which learn how many they have.
std::vector<std::vector<WMNote*>> WMBinder::GroupNotes() {
  std::vector<WMNote*> inOrder;
  std::vector<std::uint16_t> sectionIdsOfNotes;
  for (const auto& note : notes) {
    if (note == nullptr) continue;
    inOrder.push_back(note.get());
    sectionIdsOfNotes.push_back(note->header.sectionId);
  }
  std::vector<std::uint16_t> sectionIds;
  for (const memo::Section& section : sections) sectionIds.push_back(section.id);

  std::vector<std::vector<WMNote*>> groups;
  for (const auto& indexes : memo::GroupBySection(sectionIds, sectionIdsOfNotes)) {
    sections[groups.size()].noteCount = static_cast<std::int32_t>(indexes.size());
    auto& group = groups.emplace_back();
    for (const std::uint32_t index : indexes) group.push_back(inOrder[index]);
  }
  return groups;
}

// One behind the other. False if an offset would be beyond 32 bits.
bool WMBinder::PlaceTexts(const std::vector<std::vector<WMNote*>>& groups) {
  std::uint64_t position = 0;
  for (const auto& group : groups) {
    for (WMNote* note : group) {
      if (position > UINT32_MAX) return false;
      note->header.subjectOffset = static_cast<std::uint32_t>(position);
      note->header.subjectSize = static_cast<std::uint32_t>(note->Subject().size());
      note->header.bodySize = static_cast<std::uint32_t>(note->Body().size());
      position += note->Subject().size() + note->Body().size();
    }
  }
  return position <= UINT32_MAX;
}

std::int32_t WMBinder::AddNote(const std::string& subject, const std::string& body,
                               std::uint16_t sectionId) {
  if (!isValid) return kFailed;
  auto note = std::make_unique<WMNote>();
  if (!note->SetSubjectText(subject) || !note->SetBodyText(body)) return kFailed;
  isDirty = true;
  const std::int32_t now = UtcNowSeconds();
  highestId = now > highestId ? now : OneMore(highestId);
  note->header.sectionId = sectionId;
  note->header.id = highestId;
  note->header.lastChange = now;
  Append(std::move(note));
  return 0;
}

std::int32_t WMBinder::UpdateNote(std::uint32_t index, const std::string& subject,
                                  const std::string& body) {
  if (!isValid || index >= NoteCount()) return kFailed;
  auto& note = notes[ranks.SlotAt(index)];
  auto changed = std::make_unique<WMNote>(*note);
  if (!changed->SetSubjectText(subject) || !changed->SetBodyText(body)) return kFailed;
  isDirty = true;
  changed->header.lastChange = UtcNowSeconds();
  note = std::move(changed);
  return 0;
}

std::int32_t WMBinder::DeleteNote(std::uint32_t index) {
  if (!isValid || index >= NoteCount()) return kFailed;
  const auto slot = static_cast<std::uint32_t>(ranks.SlotAt(index));
  const memo::NoteHeader& header = notes[slot]->header;
  if (ids) ids->Remove(NumberOf(header.id, header.sectionId), slot);
  ranks.Remove(index);
  notes[slot].reset();
  isDirty = true;
  return 0;
}

std::int32_t WMBinder::AddSection(const std::string& name) {
  if (sections.size() >= kMostSections) return kFailed;
  memo::Section section;
  section.name = name;
  section.id = sections.empty() ? 1 : static_cast<std::uint16_t>(sections.back().id + 1);
  sections.push_back(std::move(section));
  isDirty = true;
  return 0;
}

void WMBinder::Close() {
  isValid = false;
  sectionFile.reset();
  headerFile.reset();
  contentFile.reset();
}

std::optional<std::uint16_t> WMBinder::FindSection(const std::string& name) const {
  const auto found = std::find_if(sections.begin(), sections.end(),
                                  [&](const memo::Section& each) { return each.name == name; });
  if (found == sections.end()) return std::nullopt;
  return found->id;
}

std::optional<std::uint32_t> WMBinder::FindNote(std::int32_t id, std::uint16_t sectionId) {
  const auto slot = Ids().First(NumberOf(id, sectionId));
  if (!slot) return std::nullopt;
  return static_cast<std::uint32_t>(ranks.RankOf(*slot));
}

pw::IdIndex& WMBinder::Ids() {
  if (ids) return *ids;
  ids.emplace();
  ids->Reserve(notes.size());
  for (std::size_t slot = 0; slot < notes.size(); ++slot) {
    if (notes[slot] == nullptr) continue;
    const memo::NoteHeader& header = notes[slot]->header;
    ids->Add(NumberOf(header.id, header.sectionId), static_cast<std::uint32_t>(slot));
  }
  return *ids;
}

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "memo/binder.h"
#include "platform/testing/test_platform.h"

namespace {

constexpr const char* kStem = "C:\\fuzz";
constexpr std::uint32_t kNotesLookedAt = 64;
constexpr std::size_t kLargestSave = 16 << 20;

std::string_view TakePart(std::string_view& bytes) {
  if (bytes.size() < 2) return {};
  const std::size_t size = std::size_t{static_cast<std::uint8_t>(bytes[0])} * 16;
  const std::string_view part = bytes.substr(1, size);
  bytes.remove_prefix(1 + part.size());
  return part;
}

// What the notes would take in the file: many may claim the same bytes.
std::size_t TextBytes(const WMBinder& binder) {
  std::size_t bytes = 0;
  for (std::uint32_t i = 0; i < binder.NoteCount(); ++i) {
    bytes += binder.Note(i).Subject().size() + binder.Note(i).Body().size();
  }
  return bytes;
}

}  // namespace

// A byte for a sixteenth of the size of the sections, then they, the same for the headers, then the
// texts. Any bytes open or fail; what opens is read, changed, saved and, unless a note was of no
// section, opened again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  pw::TestPlatform platform;
  platform.files.Put(std::string(kStem) + ".WMWrite", TakePart(bytes));
  platform.files.Put(std::string(kStem) + ".WMNoteHeader", TakePart(bytes));
  platform.files.Put(std::string(kStem) + ".WMContent", bytes);
  WMBinder binder;
  if (binder.Open(kStem) != 0) return 0;

  for (std::uint32_t i = 0; i < std::min(binder.NoteCount(), kNotesLookedAt); ++i) {
    const WMNote& note = binder.Note(i);
    note.SubjectText();
    note.BodyText();
    if (!binder.FindNote(note.header.id, note.header.sectionId)) __builtin_trap();
  }
  if (binder.NoteCount() > 1) binder.DeleteNote(1);
  if (binder.NoteCount() > 0) binder.UpdateNote(0, "changed", "note");
  binder.AddNote("new", "note", binder.Sections().back().id);
  if (TextBytes(binder) > kLargestSave) return 0;
  if (binder.Save() != 0) __builtin_trap();
  const std::size_t headers = platform.files.Get(std::string(kStem) + ".WMNoteHeader")->size();
  const bool isWhole = headers == 10 + std::size_t{32} * binder.NoteCount();
  WMBinder again;
  if ((again.Open(kStem) == 0) != isWhole) __builtin_trap();
  return 0;
}

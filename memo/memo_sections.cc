#include "memo/memo_sections.h"

#include "memo/binder.h"
#include "memo/location.h"
#include "memo/open_section.h"
#include "platform/platform.h"
#include "plugin/handshake.h"

namespace memo = pw::memo;

namespace {

// False if it can't be made or written.
bool MakeFile(const std::string& path, const std::string& bytes) {
  const auto file =
      pw::CurrentPlatform().files->Open(path, pw::OpenMode::kCreateAlways, pw::Sharing::kReadWrite);
  return file != nullptr && file->Write(bytes);
}

bool MakeBinder(const std::string& stem, const std::string& name) {
  memo::Section section;
  section.name = name;
  return MakeFile(stem + memo::kSectionFile, memo::EncodeSections({section})) &&
         MakeFile(stem + memo::kHeaderFile, memo::EncodeEmptyHeaderFile()) &&
         MakeFile(stem + memo::kContentFile, "");
}

}  // namespace

std::int32_t CreateMemoSection(const std::string& stem, const std::string& name) {
  if (!pw::CurrentPlatform().files->Exists(stem + memo::kSectionFile)) {
    return MakeBinder(stem, name) ? 0 : 1;
  }
  WMBinder binder;
  if (binder.Open(stem) == 0) {
    if (binder.FindSection(name)) return 1;
    binder.AddSection(name);
  }
  binder.Save();
  return 0;
}

std::int32_t ClearMemoSection(const std::string& location) {
  const memo::Location where(location);
  const std::string sectionPath = where.stem + memo::kSectionFile;
  if (NotifyOrganiserOpen(sectionPath.c_str(), 0, kMemoFiles, false) == kOrganiserBusy) return 1;
  NotifyOrganiserLock(0, false);
  WMBinder binder;
  if (binder.Open(where.stem) == 0) {
    if (const auto sectionId = binder.FindSection(where.section)) {
      OpenSectionId() = *sectionId;
      for (std::uint32_t i = 0; i < binder.NoteCount();) {
        if (binder.Note(i).header.sectionId != *sectionId || binder.DeleteNote(i) != 0) ++i;
      }
    }
    binder.Save();
  }
  NotifyOrganiserEnd(false, 0, false);
  return 0;
}

#include "memo/memo_sections.h"

#include <algorithm>

#include "memo/binder.h"
#include "memo/location.h"
#include "memo/open_section.h"
#include "platform/platform.h"
#include "platform/whole_file.h"
#include "plugin/handshake.h"

namespace memo = pw::memo;

namespace {

bool MakeBinder(const std::string& stem, const std::string& name) {
  const auto files = memo::NewBinder({name});
  return std::all_of(files.begin(), files.end(), [&](const memo::BinderPart& part) {
    return pw::MakeFile(stem + part.extension, part.bytes);
  });
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
  if (!AskOrganiser(where.stem + memo::kSectionFile, kMemoFiles)) return 1;
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

#include "host/binder_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>

#include "host/check/binder_check.h"
#include "memo/format.h"
#include "memo/location.h"
#include "platform/platform.h"
#include "platform/whole_file.h"

namespace pw {
namespace {

std::string Read(const std::string& path) {
  return ReadWholeFile(path, memo::kLargestHeaders).value_or("");
}

std::uint64_t SizeOf(const std::string& path) {
  const auto file = CurrentPlatform().files->Open(path, OpenMode::kRead, Sharing::kReadWrite);
  return file == nullptr ? 0 : file->Size().value_or(0);
}

}  // namespace

BinderLook LookAtBinder(const std::string& location) {
  const std::string stem = memo::Location(location).stem;
  const std::string sections = Read(stem + memo::kSectionFile);
  const std::string headers = Read(stem + memo::kHeaderFile);
  const std::uint64_t contentSize = SizeOf(stem + memo::kContentFile);
  FileCheck check;
  CheckBinder({sections, headers, contentSize}, check);
  return {!check.findings.empty(), DoNotesShareTexts(headers, contentSize)};
}

std::optional<std::vector<std::string>> SectionNames(const std::string& stem) {
  const auto sections = memo::DecodeSections(Read(stem + memo::kSectionFile));
  const std::string headers = Read(stem + memo::kHeaderFile);
  const bool isWhole = sections && !headers.empty() && memo::DecodeNoteHeaders(headers) &&
                       CurrentPlatform().files->Exists(stem + memo::kContentFile);
  if (!isWhole) return std::nullopt;
  std::vector<std::string> names;
  for (const memo::Section& section : *sections) names.push_back(section.name);
  return names;
}

std::vector<std::string> RichBodies(const std::string& location) {
  const memo::Location where(location);
  const auto sections = memo::DecodeSections(Read(where.stem + memo::kSectionFile));
  const auto headers = memo::DecodeNoteHeaders(Read(where.stem + memo::kHeaderFile));
  const auto contents = ReadWholeFile(where.stem + memo::kContentFile, memo::kLargestContents);
  if (!sections || !headers || !contents) return {};
  const auto section =
      std::find_if(sections->begin(), sections->end(),
                   [&](const memo::Section& each) { return each.name == where.section; });
  if (section == sections->end()) return {};
  std::vector<std::string> bodies;
  for (const memo::NoteHeader& header : *headers) {
    if (header.sectionId == section->id) bodies.emplace_back(memo::BodyOf(header, *contents));
  }
  return bodies;
}

std::vector<std::string> UnlistedBinders(const std::string& folder,
                                         const PWSourceCategoryVector& categories) {
  std::set<std::string> listed;
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    listed.insert(memo::Location(categories.At(i)->Location.Str()).stem);
  }
  const std::string_view ending = memo::kSectionFile;
  std::vector<std::string> unlisted;
  for (const FoundFile& file : CurrentPlatform().files->Find(folder + "\\*" + memo::kSectionFile)) {
    const std::string path = folder + "\\" + file.name;
    if (listed.count(path.substr(0, path.size() - ending.size())) == 0) unlisted.push_back(path);
  }
  return unlisted;
}

}  // namespace pw

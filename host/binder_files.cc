#include "host/binder_files.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "memo/format.h"

namespace pw {
namespace {

constexpr std::uint64_t kLargestFile = 1 << 30;

std::string ReadWhole(Files& files, const std::string& path) {
  const auto file = files.Open(path, OpenMode::kRead, Sharing::kReadWrite);
  const auto size = file == nullptr ? std::nullopt : file->Size();
  if (!size || *size > kLargestFile) return {};
  return file->Read(static_cast<std::size_t>(*size));
}

}  // namespace

BinderFiles ReadBinderFiles(Files& files, std::string_view location) {
  const std::string stem(BinderStem(location));
  return {ReadWhole(files, stem + memo::kSectionFile), ReadWhole(files, stem + memo::kHeaderFile),
          ReadWhole(files, stem + memo::kContentFile)};
}

std::vector<std::string_view> RichBodies(const BinderFiles& binder, std::string_view section) {
  const auto sections = memo::DecodeSections(binder.sections);
  const auto headers = memo::DecodeNoteHeaders(binder.headers);
  if (!sections || !headers) return {};
  const auto found = std::find_if(sections->begin(), sections->end(),
                                  [&](const memo::Section& each) { return each.name == section; });
  if (found == sections->end()) return {};
  std::vector<std::string_view> bodies;
  for (const memo::NoteHeader& header : *headers) {
    if (header.sectionId == found->id) bodies.push_back(memo::BodyOf(header, binder.contents));
  }
  return bodies;
}

std::string_view BinderStem(std::string_view location) {
  const std::size_t end = location.find(';');
  return end == std::string_view::npos ? std::string_view() : location.substr(0, end);
}

std::string_view BinderSection(std::string_view location) {
  return location.substr(location.find(';') + 1);
}

std::vector<std::string> UnlistedBinders(Files& files, const std::string& folder,
                                         const PWSourceCategoryVector& categories) {
  std::set<std::string> listed;
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    listed.emplace(BinderStem(categories.At(i)->Location.View()));
  }
  const std::string_view ending = memo::kSectionFile;
  std::vector<std::string> unlisted;
  for (const FoundFile& file : files.Find(folder + "\\*" + memo::kSectionFile)) {
    const std::string path = folder + "\\" + file.name;
    if (listed.count(path.substr(0, path.size() - ending.size())) == 0) unlisted.push_back(path);
  }
  return unlisted;
}

}  // namespace pw

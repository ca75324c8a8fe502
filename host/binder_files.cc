#include "host/binder_files.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

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
  const auto sections = memo::DecodeSections(ReadWhole(files, stem + memo::kSectionFile));
  const auto headers = memo::DecodeNoteHeaders(ReadWhole(files, stem + memo::kHeaderFile));
  if (!sections || !headers) return {};
  return {*sections, *headers, ReadWhole(files, stem + memo::kContentFile)};
}

std::unordered_map<std::int32_t, std::string_view> RichBodies(const BinderFiles& binder,
                                                              std::string_view section) {
  const auto found = std::find_if(binder.sections.begin(), binder.sections.end(),
                                  [&](const memo::Section& each) { return each.name == section; });
  if (found == binder.sections.end()) return {};
  std::unordered_map<std::int32_t, std::string_view> bodies;
  for (const memo::NoteHeader& header : binder.headers) {
    if (header.sectionId != found->id) continue;
    bodies.try_emplace(header.id, memo::BodyOf(header, binder.contents));
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

}  // namespace pw

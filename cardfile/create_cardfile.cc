#include "cardfile/create_cardfile.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "base/text.h"
#include "cardfile/format.h"
#include "cardfile/new_file.h"
#include "platform/platform.h"
#include "plugin/string_table.h"

namespace {

constexpr std::size_t kLargestBlock = UINT16_MAX;

std::string LinesOf(const std::vector<std::string>& names) {
  std::string lines;
  for (const std::string& name : names) lines.append(name).append(pw::cardfile::kLineEnd);
  return lines;
}

// The lines that the size of the names can count.
std::string_view Fitting(std::string_view block) {
  if (block.size() <= kLargestBlock) return block;
  const std::string_view cut = block.substr(0, kLargestBlock);
  const std::size_t last = cut.rfind(pw::cardfile::kLineEnd);
  return last == std::string_view::npos ? std::string_view()
                                        : cut.substr(0, last + pw::cardfile::kLineEnd.size());
}

std::vector<std::string> NamesOf(std::string_view block) {
  std::vector<std::string> names;
  while (!block.empty()) {
    const std::size_t end = std::min(block.find('\r'), block.size());
    names.emplace_back(block.substr(0, end));
    block.remove_prefix(std::min(end + pw::cardfile::kLineEnd.size(), block.size()));
  }
  return names;
}

std::vector<std::string> SortKeysOf(std::vector<std::string> names) {
  std::vector<std::string> keys;
  for (const std::uint32_t preferred :
       {strings::kLastName, strings::kFirstName, strings::kCompany}) {
    const auto found = std::find(names.begin(), names.end(), LoadString(preferred).Str());
    if (found == names.end()) continue;
    keys.push_back(*found);
    names.erase(found);
  }
  const std::size_t more = std::min(pw::cardfile::kSortKeys - keys.size(), names.size());
  keys.insert(keys.end(), names.begin(), names.begin() + static_cast<std::ptrdiff_t>(more));
  return keys;
}

}  // namespace

std::int32_t CreateCardfile(const std::string& path, const std::vector<std::string>& fieldNames) {
  pw::Files& files = *pw::CurrentPlatform().files;
  if (files.Exists(path)) return 1;
  const auto file = files.Open(path, pw::OpenMode::kCreateAlways, pw::Sharing::kReadWrite);
  if (file == nullptr) return 1;
  const std::string lines = LinesOf(fieldNames);
  const std::string_view block = Fitting(pw::UpToZero(lines));
  file->Write(pw::NewCardFileOfBlock(block, SortKeysOf(NamesOf(block))));
  return 0;
}

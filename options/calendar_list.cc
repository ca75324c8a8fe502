#include "options/calendar_list.h"

#include <algorithm>
#include <string_view>

#include "platform/platform.h"

namespace pw::options {
namespace {

constexpr std::string_view kEventFile = "EVEN.WMW";

}  // namespace

std::vector<std::string> CalendarStems(const std::string& folder) {
  std::vector<std::string> stems;
  const std::string pattern = folder + "\\*" + std::string(kEventFile);
  for (const FoundFile& file : CurrentPlatform().files->Find(pattern)) {
    if (file.isFolder) continue;
    stems.push_back(file.name.substr(0, file.name.size() - kEventFile.size()));
  }
  return stems;
}

std::string SelectedStem(const std::vector<std::string>& stems, const std::string& wanted) {
  if (std::find(stems.begin(), stems.end(), wanted) != stems.end()) return wanted;
  return stems.empty() ? "" : stems.front();
}

}  // namespace pw::options

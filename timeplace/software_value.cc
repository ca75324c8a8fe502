#include "timeplace/software_value.h"

#include "platform/platform.h"
#include "plugin/discovery.h"
#include "plugin/string_table.h"

namespace pw {
namespace {

constexpr std::string_view kDesktopKey = R"(Software\Gullwing\PairWise Desktop\Version 1)";
constexpr std::string_view kInformationManagerKey =
    R"(Software\Gullwing\ORB PairWise Information Manager\Version 1)";
constexpr std::string_view kWingmate98Key = R"(Software\Gullwing\Wingmate 98\Version 1)";

constexpr std::string_view kMainSubkey = "Main";
constexpr std::size_t kLongestFolder = 260;

std::optional<std::string> ReadValue(const std::string& keyPath, const std::string& valueName,
                                     std::size_t limit) {
  const auto key = CurrentPlatform().registry->Open(keyPath, RegistryAccess::kReadWrite);
  return key == nullptr ? std::nullopt : ReadText(*key, valueName, limit);
}

}  // namespace

std::optional<std::string> ReadSoftwareValue(std::string_view subkey, const std::string& valueName,
                                             std::size_t limit) {
  for (const std::string_view stem : {kDesktopKey, kInformationManagerKey, kWingmate98Key}) {
    std::string keyPath(stem);
    keyPath.append("\\").append(subkey);
    auto value = ReadValue(keyPath, valueName, limit);
    if (value) return value;
  }
  return std::nullopt;
}

std::optional<std::string> OrganiserDataFolder() {
  const std::string valueName = LoadString(strings::kData).Str();
  const std::string& keyPath = CalendarKeyPath();
  if (keyPath.empty()) return ReadSoftwareValue(kMainSubkey, valueName, kLongestFolder);
  return ReadValue(keyPath, valueName, kLongestFolder);
}

std::string PathInFolder(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!folder.ends_with('\\') && !folder.ends_with('/')) path += '\\';
  return path.append(name);
}

}  // namespace pw

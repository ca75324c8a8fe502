#include "host/default_calendar.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "framework/config.h"
#include "host/products.h"
#include "host/registry_entry.h"
#include "platform/path.h"
#include "platform/registry.h"

namespace pw {
namespace {

// The longest path of a default user that the module takes.
constexpr std::size_t kLongestDefaultUser = 255;

// The edition as the module finds it: the information manager for a number that no edition has, but
// without its key the desktop edition.
const Product& ProductOf(const Profile& profile, Registry& registry) {
  const auto key = registry.Open(profile.Setting(PWConfig::kProductKey), RegistryAccess::kRead);
  if (key == nullptr) return *FindProduct("desktop");
  const std::uint32_t number = ReadNumber(*key, "PRODUCT").value_or(0);
  const auto* found = std::find_if(std::begin(kProducts), std::end(kProducts),
                                   [&](const Product& each) { return each.number == number; });
  return found == std::end(kProducts) ? *FindProduct("orb") : *found;
}

// The folder that a path names, or in which what it names lies.
std::string FolderPart(const std::string& path) {
  const auto parts = SplitPath(path);
  if (!parts) return {};
  const std::size_t count =
      parts->names.size() - (parts->endsInSeparator || parts->names.empty() ? 0 : 1);
  std::string folder = parts->root == "\\" ? "" : parts->root;
  for (std::size_t i = 0; i < count; ++i) {
    const bool isStart = i == 0 && parts->root.empty();
    folder.append(isStart ? "" : "\\").append(parts->names[i]);
  }
  return parts->root == "\\" && count == 0 ? parts->root : folder;
}

}  // namespace

std::optional<DefaultCalendar> DefaultCalendarOf(const Profile& profile) {
  PosixRegistry registry = ReadOnlyRegistry(profile);
  const auto key = registry.Open(CalendarKey(ProductOf(profile, registry)), RegistryAccess::kRead);
  const auto user =
      key == nullptr ? std::nullopt : ReadText(*key, kDefaultUser, kLongestDefaultUser);
  if (!user) return std::nullopt;
  const std::size_t end = user->find_last_of("\\/:");
  return DefaultCalendar{FolderPart(*user),
                         end == std::string::npos ? *user : user->substr(end + 1)};
}

Outcome<Done> SetDefaultCalendar(const Profile& profile, const DefaultCalendar& calendar) {
  PosixRegistry registry = ReadOnlyRegistry(profile);
  return WriteRegistryText(profile, CalendarKey(ProductOf(profile, registry)), kDefaultUser,
                           calendar.folder + "\\" + calendar.stem);
}

std::optional<std::string> FolderOfDefaultCalendar(const Profile& profile) {
  if (!profile.Setting(PWConfig::kCalendarStem).empty()) return std::nullopt;
  const auto calendar = DefaultCalendarOf(profile);
  return calendar ? std::optional(calendar->folder) : std::nullopt;
}

}  // namespace pw

#include "host/settled_profile.h"

#include <algorithm>
#include <iterator>
#include <system_error>

#include "base/codepage.h"
#include "base/text.h"
#include "host/backups.h"
#include "host/calendar_stems.h"
#include "host/data_folder.h"
#include "host/default_calendar.h"
#include "host/native_file.h"
#include "host/new_name.h"
#include "host/profile_edit.h"
#include "host/text_table.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

// Where no calendar is named the module takes the default user's, and with it their folder, so
// that must be the one that was settled.
bool NeedsDefaultUser(const Profile& before, const Profile& after) {
  const bool changes =
      before.DataFolder() != after.DataFolder() ||
      before.Setting(PWConfig::kCalendarStem) != after.Setting(PWConfig::kCalendarStem);
  return changes && after.Setting(PWConfig::kCalendarStem).empty();
}

// The one that counts for the module.
std::string StemOf(const Profile& profile) {
  std::string named = profile.Setting(PWConfig::kCalendarStem);
  if (!named.empty()) return named;
  const auto calendar = DefaultCalendarOf(profile);
  return calendar ? calendar->stem : std::string();
}

// Whether the folder has any files of that stem, or none of any.
bool HasCalendar(const fs::path& folder, const std::string& wanted) {
  const std::vector<CalendarStem> stems = CalendarStems(folder);
  return stems.empty() || std::any_of(stems.begin(), stems.end(), [&](const CalendarStem& stem) {
           return EqualFileNames(stem.text, wanted);
         });
}

}  // namespace

Profile SettledProfile(const Profile& before, PWConfig& settings, std::int32_t syncMode) {
  Profile after = before;
  after.syncMode = syncMode;
  for (const std::uint32_t id :
       {PWConfig::kDataFolder, PWConfig::kInstallFolder, PWConfig::kCalendarStem}) {
    const std::string value = settings.String(id).Str();
    // The wizard's page empties the install folder where the registry doesn't know of one.
    if (id == PWConfig::kInstallFolder && value.empty()) continue;
    if (value != before.Setting(id)) after.config[id] = value;
  }
  return after;
}

std::string SettledChanges(const Profile& before, const Profile& after) {
  std::vector<std::string> changes;
  const auto add = [&](std::uint32_t id, const std::string& what) {
    const std::string value = after.Setting(id);
    if (value == before.Setting(id)) return;
    changes.push_back(what + " " + (value.empty() ? "without a name" : CodePageToUtf8(value)));
  };
  add(PWConfig::kDataFolder, "data folder");
  add(PWConfig::kInstallFolder, "install folder");
  add(PWConfig::kCalendarStem, "calendar");
  if (before.syncMode != after.syncMode) {
    changes.push_back(std::string("sync ") + kSyncModes[after.syncMode]);
  }
  return JoinNonEmpty(changes, ", ");
}

std::optional<Failure> WhyUnusable(const Profile& before, const Profile& after) {
  if (!NativeDataFolder(after)) {
    const std::string folder = after.DataFolder();
    return Failure{(folder.empty() ? "no data folder" : CodePageToUtf8(folder)) +
                   ": not on one of the drives that [drives] in " +
                   after.DescriptionFile().string() + " names; nothing was saved"};
  }
  const std::string stem = after.Setting(PWConfig::kCalendarStem);
  if (stem.empty() || stem == before.Setting(PWConfig::kCalendarStem)) return std::nullopt;
  const auto name = NewFileName(CodePageToUtf8(stem));
  if (name) return std::nullopt;
  return Failure{"calendar '" + OneLine(CodePageToUtf8(stem)) + "': " + name.Why().message +
                 "; nothing was saved"};
}

std::vector<std::string> SettledWarnings(const Profile& before, const Profile& after) {
  std::vector<std::string> warnings;
  const auto backups = BackupsOf(after);
  const auto folder = NativeDataFolder(after);
  const auto folderBefore = NativeDataFolder(before);
  std::error_code error;
  const bool isOther = folder && folderBefore && !fs::equivalent(*folder, *folderBefore, error);
  if (isOther && backups && !backups->empty()) {
    warnings.push_back(
        "backups that were made before may be of another folder; `pairwise restore` would put them "
        "into the new one");
  }
  if (folder && !fs::is_directory(*folder, error)) {
    warnings.push_back(folder->string() + ": there is no such folder");
  } else if (folder && !HasCalendar(*folder, StemOf(after))) {
    warnings.push_back(folder->string() + ": has calendar or to-do files, but none of '" +
                       CodePageToUtf8(StemOf(after)) + "'; `pairwise options` chooses");
  }
  return warnings;
}

Outcome<Done> SaveSettled(const Profile& before, const Profile& after) {
  const auto text = ReadNativeFile(after.DescriptionFile(), kLargestDescription);
  if (!text) return text.Why();
  if (NeedsDefaultUser(before, after)) {
    // A user whom the registry named before goes along; one whose name was emptied has none.
    const bool wasNamed = before.Setting(PWConfig::kCalendarStem).empty();
    auto saved =
        SetDefaultCalendar(after, {after.DataFolder(), wasNamed ? StemOf(before) : std::string()});
    if (!saved) return saved;
  }
  return WriteNativeFile(after.DescriptionFile(), EditedDescription(*text, after));
}

}  // namespace pw

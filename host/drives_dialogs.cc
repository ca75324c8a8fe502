#include "host/drives_dialogs.h"

#include <vector>

#include "base/text.h"
#include "framework/config.h"
#include "host/data_folder.h"

namespace pw {
namespace {

// Nothing if the folder is on a drive.
std::optional<std::string> WhyNotOnADrive(const Profile& profile, const std::string& folder) {
  Profile with = profile;
  with.config[PWConfig::kDataFolder] = folder;
  if (NativeDataFolder(with)) return std::nullopt;
  std::vector<std::string> drives;
  for (const ProfileDrive& drive : profile.drives) drives.push_back(drive.prefix);
  return folder + " is on none of the profile's drives: " + JoinNonEmpty(drives, ", ");
}

}  // namespace

std::optional<std::string> DrivesDialogs::ChooseFolder(WindowId parent, const std::string& title,
                                                       const std::string& startFolder,
                                                       const FolderComplaint& complaint) {
  return DialogsWrapper::ChooseFolder(parent, title, startFolder,
                                      [&](const std::string& folder) -> std::optional<std::string> {
                                        if (auto why = WhyNotOnADrive(profile, folder)) return why;
                                        return complaint ? complaint(folder) : std::nullopt;
                                      });
}

}  // namespace pw

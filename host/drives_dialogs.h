#pragma once

#include <optional>
#include <string>

#include "host/profile.h"
#include "platform/dialogs.h"

namespace pw {

// Dialogs in which only a folder on one of the profile's drives can be chosen, as no other could be
// saved. Neither the dialogs nor the profile is owned.
class DrivesDialogs : public DialogsWrapper {
 public:
  DrivesDialogs(Dialogs& dialogs, const Profile& profile)
      : DialogsWrapper(dialogs), profile(profile) {}

  std::optional<std::string> ChooseFolder(WindowId parent, const std::string& title,
                                          const std::string& startFolder,
                                          const FolderComplaint& complaint) override;

 private:
  const Profile& profile;
};

}  // namespace pw

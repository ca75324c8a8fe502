#pragma once

#include <string>

#include "host/console.h"
#include "host/profile.h"

namespace pw {

// Restores a backup and tells what became of the files. What is there is backed up first, and for
// as long as it lasts the profile is marked, so that a restore can be taken back, also one that is
// cut off. Where a run was cut off before, the files that it newly made go. Gives the exit code.
// The locks of the profile and of the data are held.
int BringBack(const Console& console, const Profile& profile, const std::string& name);

}  // namespace pw

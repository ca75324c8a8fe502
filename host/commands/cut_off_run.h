#pragma once

#include <optional>

#include "host/console.h"
#include "host/profile.h"

// A writing run that was cut off, by a kill or a power failure, may have left a file half written.
namespace pw {

// Says so to a person that only looks at the files, and how to bring them back.
void TellOfCutOffRun(const Console& console, const Profile& profile);

// The same of one that holds the profile's lock.
void TellOfUnfinishedRun(const Console& console, const Profile& profile);

// Asks a person that is there what is to become of the files, and does it. Gives the exit code if
// the run at hand must not go on; nothing where it may, or there was no such run. The profile's
// lock is held.
std::optional<int> SettleCutOffRun(const Console& console, const Profile& profile);

}  // namespace pw

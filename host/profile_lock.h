#pragma once

#include <utility>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"
#include "platform/posix/descriptor.h"

namespace pw {

// Keeps every other writing run away from a profile for as long as it lives. It is a lock on the
// file `profile.lock` of the profile, which stays there; the lock goes with the process, however it
// ends.
class ProfileLock {
 public:
  // Fails at once if another run holds it, or the profile can't be written to.
  static Outcome<ProfileLock> Take(const Profile& profile);

  // Whether a run holds it. Makes no file, and so also serves on read-only media.
  static bool IsHeld(const Profile& profile);

 private:
  explicit ProfileLock(Descriptor file) : file(std::move(file)) {}

  Descriptor file;
};

// Keeps the writing runs of all profiles away from the folders that a profile's run can write to
// (data_places.h), by locks on the folders themselves, which leave nothing there. One that isn't
// there isn't locked, nor is one on a file system that can't lock folders.
class DataLock {
 public:
  // Fails at once if another run holds one of them.
  static Outcome<DataLock> Take(const Profile& profile);

 private:
  std::vector<Descriptor> folders;
};

}  // namespace pw

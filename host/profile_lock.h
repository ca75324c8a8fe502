#pragma once

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

 private:
  explicit ProfileLock(Descriptor file) : file(std::move(file)) {}

  Descriptor file;
};

}  // namespace pw

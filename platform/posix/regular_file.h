#pragma once

#include <sys/types.h>

#include <cerrno>
#include <string>

#include "platform/posix/descriptor.h"

namespace pw {

// What `errno` is where something else than a regular file stands.
inline constexpr int kNoRegularFile = ENOTSUP;

inline constexpr mode_t kNewFileRights = 0666;  // less what the user's mask takes away

// Opens a regular file by `open`'s flags. Anything else, a folder too, is looked at and left alone:
// a device may do something when it is merely opened, and a pipe waits for its other end. A program
// that holds a lease on the file is asked to give it up, and waited for. Not open, with the reason
// in `errno`, if the file can't be had.
Descriptor OpenRegularFile(const std::string& path, int flags, mode_t rights = kNewFileRights);

}  // namespace pw

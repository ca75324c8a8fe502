#pragma once

#include <filesystem>
#include <memory>

#include "host/outcome.h"

namespace pw {

// A copy of one folder's regular files, with their times, in a temporary folder that only this user
// can enter. The original isn't changed by it; where the system lets us, not even its access times
// are.
//
// The destructor removes it, and so does a signal that ends the process (see `RemoveOnSignal`).
class PrivateCopy {
 public:
  // A missing folder, or a file in it that can't be read, fails and leaves nothing behind.
  static Outcome<std::unique_ptr<PrivateCopy>> Make(const std::filesystem::path& original);

  ~PrivateCopy();
  PrivateCopy(const PrivateCopy&) = delete;
  PrivateCopy& operator=(const PrivateCopy&) = delete;

  const std::filesystem::path& Folder() const { return folder; }

 private:
  explicit PrivateCopy(std::filesystem::path folder);

  std::filesystem::path folder;
};

}  // namespace pw

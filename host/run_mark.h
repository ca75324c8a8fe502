#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/outcome.h"
#include "host/profile.h"

namespace pw {

// For as long as a writing run lasts the profile holds a mark, the file `run.unfinished`, that
// names the backup made before it. Where one is found though nobody holds the profile's lock, the
// run was cut off, and may have left a file half written.
class RunMark {
 public:
  // The profile's lock is held. The mark has reached the disk when it returns.
  static Outcome<RunMark> Set(const Profile& profile, const std::string& backup);

  // Takes the mark away, unless it was left.
  ~RunMark();

  // Lets the mark stay: the files are in between.
  void Leave() { file.clear(); }

  RunMark(RunMark&& other) noexcept;
  RunMark& operator=(RunMark&&) = delete;

 private:
  explicit RunMark(std::filesystem::path file) : file(std::move(file)) {}

  std::filesystem::path file;  // empty once moved from or left
};

// The backup that a mark names; nothing where there is no mark, and empty where the mark can't be
// read or names no backup that is there. To be asked with the lock held.
std::optional<std::string> BackupOfUnfinishedRun(const Profile& profile);

// The same for one that doesn't hold the lock: nothing while a writing run goes on.
std::optional<std::string> BackupOfCutOffRun(const Profile& profile);

// Takes the mark of a run that was cut off away. The profile's lock is held.
void ForgetUnfinishedRun(const Profile& profile);

}  // namespace pw

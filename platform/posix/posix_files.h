#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/posix/path_table.h"

namespace pw {

// The files of this machine, as the organiser's paths name them (see `PathTable`).
//
// Only regular files and folders are there: a pipe, a device or a broken link is none, and is never
// opened. What sharing forbids is told in sharing_lock.h; a file that this program has open, here
// or in another process, isn't deleted. A copy has the rights of its original, less what the user's
// mask takes away.
class PosixFiles : public Files {
 public:
  // The table isn't owned. The path of the module is one of the organiser's.
  PosixFiles(const PathTable& table, std::string modulePath);

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode, Sharing sharing) override;
  bool Exists(const std::string& path) override;
  bool IsReadableAndWritable(const std::string& path) override;
  bool Delete(const std::string& path) override;
  bool CopyWithoutOverwriting(const std::string& from, const std::string& to) override;
  std::vector<FoundFile> Find(const std::string& pattern) override;
  std::string ModulePath() override { return modulePath; }

 private:
  bool MayRemoveName(const NativePath& native) const;

  const PathTable& table;
  std::string modulePath;
};

}  // namespace pw

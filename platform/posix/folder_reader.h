#pragma once

#include <dirent.h>

#include <memory>
#include <string>

namespace pw {

// Walks the entries of a folder, in no order, "." and ".." included. A folder that can't be read
// has none.
class FolderReader {
 public:
  explicit FolderReader(const std::string& folder) : stream(opendir(folder.c_str())) {}

  // The next entry, which lasts until the one after it is asked for; null at the end.
  const dirent* Next() { return stream == nullptr ? nullptr : readdir(stream.get()); }

  // For looking at an entry itself. Only while there was one.
  int Descriptor() const { return dirfd(stream.get()); }

 private:
  struct Close {
    void operator()(DIR* open) const { closedir(open); }
  };
  std::unique_ptr<DIR, Close> stream;
};

}  // namespace pw

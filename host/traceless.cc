#include "host/traceless.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "host/native_file.h"

namespace pw {

Descriptor OpenLeavingNoTrace(int folder, const char* name, int flags) {
  Descriptor opened(::openat(folder, name, flags | O_RDONLY | O_CLOEXEC | O_NOATIME));
  if (!opened.IsOpen() && errno == EPERM) {
    opened = Descriptor(::openat(folder, name, flags | O_RDONLY | O_CLOEXEC));
  }
  return opened;
}

Outcome<std::vector<std::string>> NamesLeavingNoTrace(const std::filesystem::path& folder) {
  const Descriptor opened = OpenLeavingNoTrace(AT_FDCWD, folder.c_str(), O_DIRECTORY);
  if (!opened.IsOpen()) return SystemFailure(folder, errno);
  const int number = ::fcntl(opened.Number(), F_DUPFD_CLOEXEC, 0);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(number), ::closedir);
  if (entries == nullptr) return SystemFailure(folder, errno);
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(entries.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return SystemFailure(folder, errno);
  return names;
}

}  // namespace pw

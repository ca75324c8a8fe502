#include "host/folder_copy.h"

#include <string>

#include "host/file_copy.h"
#include "host/traceless.h"

namespace pw {

std::optional<Failure> CopyRegularFiles(const std::filesystem::path& original,
                                        const std::filesystem::path& copy) {
  const auto names = NamesLeavingNoTrace(original);
  if (!names) return names.Why();
  for (const std::string& name : *names) {
    const auto copied = CopyFile(original / name, copy / name, CopyUse::kPassing);
    if (!copied) return copied.Why();
  }
  return {};
}

}  // namespace pw

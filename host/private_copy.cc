#include "host/private_copy.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "host/folder_copy.h"
#include "host/native_file.h"
#include "host/signal_cleanup.h"

namespace pw {

namespace fs = std::filesystem;

PrivateCopy::PrivateCopy(fs::path made) : folder(std::move(made)) {
  RemoveOnSignal(folder);
}

PrivateCopy::~PrivateCopy() {
  std::error_code error;
  fs::remove_all(folder, error);
  ForgetOnSignal(folder);
}

Outcome<std::unique_ptr<PrivateCopy>> PrivateCopy::Make(const fs::path& original) {
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  if (error) return Failure{"no folder for temporary files: " + error.message()};
  std::string pattern = (parent / "pairwise-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) return SystemFailure(pattern, errno);
  std::unique_ptr<PrivateCopy> copy(new PrivateCopy(pattern));
  if (auto failure = CopyRegularFiles(original, copy->folder)) return *failure;
  return copy;
}

}  // namespace pw

#include "host/run_mark.h"

#include <system_error>
#include <utility>

#include "host/native_file.h"
#include "host/profile_lock.h"

namespace pw {
namespace {

constexpr std::uintmax_t kLargestMark = 4096;

std::filesystem::path MarkOf(const Profile& profile) {
  return profile.folder / "run.unfinished";
}

}  // namespace

Outcome<RunMark> RunMark::Set(const Profile& profile, const std::string& backup) {
  const auto written = WriteNativeFile(MarkOf(profile), backup + "\n");
  if (!written) return written.Why();
  return RunMark(MarkOf(profile));
}

RunMark::RunMark(RunMark&& other) noexcept : file(std::exchange(other.file, {})) {}

RunMark::~RunMark() {
  std::error_code error;
  if (!file.empty()) std::filesystem::remove(file, error);
}

std::optional<std::string> BackupOfUnfinishedRun(const Profile& profile) {
  const auto mark = ReadNativeFile(MarkOf(profile), kLargestMark);
  if (!mark) return std::nullopt;
  return mark->substr(0, mark->find('\n'));
}

std::optional<std::string> BackupOfCutOffRun(const Profile& profile) {
  if (!BackupOfUnfinishedRun(profile)) return std::nullopt;
  const auto lock = ProfileLock::Take(profile);
  // A run that has ended meanwhile took its mark along.
  return lock ? BackupOfUnfinishedRun(profile) : std::nullopt;
}

void ForgetUnfinishedRun(const Profile& profile) {
  std::error_code error;
  std::filesystem::remove(MarkOf(profile), error);
}

}  // namespace pw

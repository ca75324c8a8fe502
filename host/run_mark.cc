#include "host/run_mark.h"

#include <system_error>
#include <utility>

#include "host/backup_names.h"
#include "host/backups.h"
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
  const auto written = WriteSyncedFile(MarkOf(profile), backup + "\n");
  if (!written) return written.Why();
  return RunMark(MarkOf(profile));
}

RunMark::RunMark(RunMark&& other) noexcept : file(std::exchange(other.file, {})) {}

RunMark::~RunMark() {
  std::error_code error;
  if (!file.empty()) std::filesystem::remove(file, error);
}

std::optional<std::string> BackupOfUnfinishedRun(const Profile& profile) {
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(MarkOf(profile), error))) {
    return std::nullopt;
  }
  const auto mark = ReadNativeFile(MarkOf(profile), kLargestMark);
  const std::string name = mark ? mark->substr(0, mark->find('\n')) : std::string();
  const bool isThere =
      IsBackupName(name) && std::filesystem::is_directory(BackupFolder(profile, name), error);
  return isThere ? name : std::string();
}

std::optional<std::string> BackupOfCutOffRun(const Profile& profile) {
  if (!BackupOfUnfinishedRun(profile) || ProfileLock::IsHeld(profile)) return std::nullopt;
  // A run that has ended meanwhile took its mark along.
  return BackupOfUnfinishedRun(profile);
}

void ForgetUnfinishedRun(const Profile& profile) {
  std::error_code error;
  std::filesystem::remove(MarkOf(profile), error);
}

}  // namespace pw

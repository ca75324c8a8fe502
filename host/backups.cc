#include "host/backups.h"

#include <algorithm>
#include <ctime>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "base/text.h"
#include "host/data_folder.h"
#include "host/folder_copy.h"
#include "host/native_file.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnfinished = ".unfinished";
constexpr const char* kElsewhere = "organiser";

std::string NameOf(std::int64_t now) {
  const auto seconds = static_cast<std::time_t>(now);
  std::tm utc{};
  ::gmtime_r(&seconds, &utc);
  return Format("%04d-%02d-%02dT%02d-%02d-%02d", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                utc.tm_hour, utc.tm_min, utc.tm_sec);
}

// A name that comes behind those of the same second.
std::string NewName(const Profile& profile, std::int64_t now) {
  std::string name = NameOf(now);
  std::string latest;
  for (const std::string& each : BackupsOf(profile)) {
    if (each.rfind(name, 0) == 0) latest = each;
  }
  if (latest.empty()) return name;
  const std::int32_t number =
      latest.size() > name.size() ? ParseLong(std::string_view(latest).substr(name.size() + 1)) : 1;
  return name + Format("-%02d", number + 1);
}

constexpr std::uintmax_t kLargestFile = UINTMAX_MAX;

// One file under another name, with the times that it had.
std::optional<Failure> Copy(const fs::path& file, const fs::path& target) {
  const auto bytes = ReadNativeFile(file, kLargestFile);
  if (!bytes) return bytes.Why();
  const auto written = WriteNativeFile(target, *bytes);
  if (!written) return written.Why();
  std::error_code error;
  fs::last_write_time(target, fs::last_write_time(file, error), error);
  return std::nullopt;
}

std::optional<Failure> CopyClocksElsewhere(const Profile& profile, const fs::path& backup) {
  std::error_code error;
  for (const fs::path& file : ClockFilesElsewhere(profile)) {
    if (!fs::is_regular_file(file, error)) continue;
    fs::create_directory(backup / kElsewhere, error);
    if (auto failure = Copy(file, backup / kElsewhere / file.filename())) return failure;
  }
  return std::nullopt;
}

// The folder is new.
std::optional<Failure> FillBackup(const Profile& profile, const fs::path& data,
                                  const fs::path& backup) {
  std::error_code error;
  fs::create_directories(backup, error);
  if (error) return SystemFailure(backup, error.value());
  if (auto failure = CopyRegularFiles(data, backup)) return failure;
  return CopyClocksElsewhere(profile, backup);
}

void RemoveOldest(const Profile& profile, const std::string& kept) {
  std::error_code error;
  const std::vector<std::string> all = BackupsOf(profile);
  for (std::size_t i = 0; i + kMostBackups < all.size(); ++i) {
    if (all[i] != kept) fs::remove_all(BackupFolder(profile, all[i]), error);
  }
}

}  // namespace

std::vector<std::string> BackupsOf(const Profile& profile) {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(BackupFolder(profile, ""), error)) {
    const std::string name = entry.path().filename().string();
    if (entry.is_directory(error) && !name.ends_with(kUnfinished)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

fs::path BackupFolder(const Profile& profile, const std::string& name) {
  return profile.folder / "backups" / name;
}

Outcome<std::string> MakeBackup(const Profile& profile, std::int64_t now, const std::string& kept) {
  const auto data = NativeDataFolder(profile);
  if (!data) return data.Why();
  const std::string name = NewName(profile, now);
  const fs::path made = BackupFolder(profile, name + kUnfinished);
  std::error_code error;
  fs::remove_all(made, error);
  if (const auto failure = FillBackup(profile, *data, made)) {
    fs::remove_all(made, error);
    return *failure;
  }
  fs::rename(made, BackupFolder(profile, name), error);
  if (error) return SystemFailure(made, error.value());
  RemoveOldest(profile, kept);
  return name;
}

Outcome<std::size_t> RestoreBackup(const Profile& profile, const std::string& name) {
  const auto data = NativeDataFolder(profile);
  if (!data) return data.Why();
  std::error_code error;
  const fs::path folder = BackupFolder(profile, name);
  std::vector<std::pair<fs::path, fs::path>> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (entry.is_regular_file(error)) {
      files.emplace_back(entry.path(), *data / entry.path().filename());
    }
  }
  if (error) return SystemFailure(folder, error.value());
  for (const fs::path& target : ClockFilesElsewhere(profile)) {
    const fs::path file = folder / kElsewhere / target.filename();
    if (fs::is_regular_file(file, error)) files.emplace_back(file, target);
  }
  fs::create_directories(*data, error);
  for (const auto& [file, target] : files) {
    if (const auto failure = Copy(file, target)) return *failure;
  }
  return files.size();
}

}  // namespace pw

#include <algorithm>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/backups.h"
#include "host/commands/commands.h"
#include "host/counted.h"
#include "host/profile_lock.h"

// `pairwise backup` and `pairwise restore`: copies of the organiser's files in the profile.
namespace pw {
namespace {

// Does the work with the profile locked, so that no run changes the files meanwhile.
int WithLockedProfile(const CommandLine& line, const std::function<int(const Profile&)>& work) {
  const Console& console = line.console;
  if (line.profileFolder.empty()) {
    return console.FailUsage("which profile? Give it as --profile DIR, or set PAIRWISE_PROFILE");
  }
  const auto profile = ReadProfile(line.profileFolder);
  if (!profile) return console.Fail(profile.Why());
  const auto lock = ProfileLock::Take(*profile);
  if (!lock) return console.Fail(lock.Why());
  return work(*profile);
}

int Backup(const Console& console, const Profile& profile) {
  const auto made = MakeBackup(profile, std::time(nullptr));
  if (!made) return console.Fail(made.Why());
  console.out << *made << "\n";
  console.messages << "the files are in " << BackupFolder(profile, *made).string() << "; the last "
                   << kMostBackups << " backups are kept\n";
  return kExitDone;
}

int ListBackups(const Console& console, const Profile& profile) {
  const std::vector<std::string> names = BackupsOf(profile);
  for (const std::string& name : names) console.out << name << "\n";
  if (names.empty()) console.messages << "there is no backup yet; `pairwise backup` makes one\n";
  return kExitDone;
}

// What is there is backed up first, so that a restore can be taken back.
int Restore(const Console& console, const Profile& profile, const std::string& name) {
  const std::vector<std::string> names = BackupsOf(profile);
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    return console.Fail({"there is no backup '" + name + "'; `pairwise restore` lists them"});
  }
  const auto before = MakeBackup(profile, std::time(nullptr), name);
  if (!before) return console.Fail(before.Why());
  const auto restored = RestoreBackup(profile, name);
  if (!restored) return console.Fail(restored.Why());
  console.messages << Counted(*restored, "file is", "files are") << " as in " << name
                   << "; what was there before is in " << *before << "\n";
  return kExitDone;
}

}  // namespace

void AddBackupCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("backup", "Copy the organiser's files into the profile");
  command->callback([&line] {
    line.chosen = [&line] {
      return WithLockedProfile(
          line, [&](const Profile& profile) { return Backup(line.console, profile); });
    };
  });
}

void AddRestoreCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("restore", "Bring a backup back, or list all");
  command->footer(
      "What is there is backed up before. Files that the backup hasn't got stay as they are.");
  auto name = std::make_shared<std::optional<std::string>>();
  command->add_option("backup", *name, "Name of the backup; without one they are listed")
      ->type_name("NAME");
  command->callback([&line, name] {
    line.chosen = [&line, name] {
      return WithLockedProfile(line, [&](const Profile& profile) {
        return *name ? Restore(line.console, profile, **name) : ListBackups(line.console, profile);
      });
    };
  });
}

}  // namespace pw

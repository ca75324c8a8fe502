#include <algorithm>
#include <ctime>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/backups.h"
#include "host/commands/commands.h"
#include "host/commands/profile_run.h"
#include "host/counted.h"
#include "host/run_mark.h"

// `pairwise backup` and `pairwise restore`: copies of the organiser's files in the profile.
namespace pw {
namespace {

int Backup(const Console& console, const Profile& profile) {
  const auto made =
      MakeBackup(profile, std::time(nullptr), BackupOfUnfinishedRun(profile).value_or(""));
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
  ForgetUnfinishedRun(profile);
  console.messages << Counted(*restored, "file is", "files are") << " as in " << name
                   << "; what was there before is in " << *before << "\n";
  return kExitDone;
}

int Keep(const Console& console, const Profile& profile) {
  if (!BackupOfUnfinishedRun(profile)) {
    return console.Fail({"no run was cut off, so there is nothing to keep"});
  }
  ForgetUnfinishedRun(profile);
  return kExitDone;
}

struct RestoreOptions {
  std::optional<std::string> name;
  bool keep = false;
};

int RunRestore(const Console& console, const Profile& profile, const RestoreOptions& options) {
  if (options.keep) return Keep(console, profile);
  return options.name ? Restore(console, profile, *options.name) : ListBackups(console, profile);
}

}  // namespace

void AddBackupCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("backup", "Copy the organiser's files into the profile");
  command->callback([&line] {
    line.chosen = [&line] {
      return WithLockedProfile(line, [&](const Profile& profile, const ProfileLock& /*lock*/) {
        return Backup(line.console, profile);
      });
    };
  });
}

void AddRestoreCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("restore", "Bring a backup back, or list all");
  command->footer(
      "What is there is backed up before. Files that the backup hasn't got stay as they are.");
  auto options = std::make_shared<RestoreOptions>();
  CLI::Option* name =
      command
          ->add_option("backup", options->name, "Name of the backup; without one they are listed")
          ->type_name("NAME");
  command
      ->add_flag("--keep", options->keep,
                 "Keep the files as a run that was cut off has left them, and go on")
      ->excludes(name);
  command->callback([&line, options] {
    line.chosen = [&line, options] {
      return WithLockedProfile(line, [&](const Profile& profile, const ProfileLock& /*lock*/) {
        return RunRestore(line.console, profile, *options);
      });
    };
  });
}

}  // namespace pw

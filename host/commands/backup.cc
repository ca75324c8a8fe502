#include <ctime>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include <CLI/CLI.hpp>

#include "host/backups.h"
#include "host/bring_back.h"
#include "host/commands/commands.h"
#include "host/commands/cut_off_run.h"
#include "host/commands/profile_run.h"
#include "host/run_mark.h"

// `pairwise backup` and `pairwise restore`: copies of the organiser's files in the profile.
namespace pw {
namespace {

int Backup(const Console& console, const Profile& profile) {
  TellOfUnfinishedRun(console, profile);
  const auto made =
      MakeBackup(profile, std::time(nullptr), {{BackupOfUnfinishedRun(profile).value_or("")}, {}});
  if (!made) return console.Fail(made.Why());
  console.out << made->name << "\n";
  if (!made->isNew) console.messages << "nothing has changed since that one was made; ";
  console.messages << "the files are in " << BackupFolder(profile, made->name).string()
                   << "; the last " << kMostBackups << " backups are kept\n";
  return kExitDone;
}

int ListBackups(const Console& console, const Profile& profile) {
  TellOfCutOffRun(console, profile);
  const auto names = BackupsOf(profile);
  if (!names) return console.Fail(names.Why());
  for (const std::string& name : *names) console.out << name << "\n";
  if (names->empty()) console.messages << "there is no backup yet; `pairwise backup` makes one\n";
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

// A list disturbs nobody, and so needs no lock.
int RunRestore(const CommandLine& line, const RestoreOptions& options) {
  const Console& console = line.console;
  if (options.keep) {
    return WithLockedProfile(line, [&](const Profile& profile, const ProfileLock& /*lock*/) {
      return Keep(console, profile);
    });
  }
  if (options.name) {
    return WithLockedData(
        line, [&](const Profile& profile) { return BringBack(console, profile, *options.name); });
  }
  return WithProfile(line, [&](const Profile& profile) { return ListBackups(console, profile); });
}

}  // namespace

void AddBackupCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("backup", "Copy the organiser's files into the profile");
  command->callback([&line] {
    line.chosen = [&line] {
      return WithLockedData(line,
                            [&](const Profile& profile) { return Backup(line.console, profile); });
    };
  });
}

void AddRestoreCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("restore", "Bring a backup back, or list all");
  command->footer(
      "What is there is backed up before. Files that the backup hasn't got stay as they are, but "
      "those\nof a calendar or binder of which it has some, and those that a cut-off run has "
      "made.");
  auto options = std::make_shared<RestoreOptions>();
  CLI::Option* name =
      command
          ->add_option("backup", options->name, "Name of the backup; without one they are listed")
          ->type_name("NAME");
  command
      ->add_flag("--keep", options->keep,
                 "Keep the files as a run that was cut off has left them, and go on")
      ->excludes(name);
  command->callback(
      [&line, options] { line.chosen = [&line, options] { return RunRestore(line, *options); }; });
}

}  // namespace pw

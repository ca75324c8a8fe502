#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "host/collected_log.h"
#include "host/engine_objects.h"
#include "host/module_library.h"
#include "host/outcome.h"
#include "host/private_copy.h"
#include "host/profile.h"
#include "host/profile_lock.h"
#include "host/watched_files.h"
#include "platform/posix/machine.h"

namespace pw {

enum class RunMode {
  // Nothing that is there is changed: the module works on private copies of the data folder and of
  // the others that it takes data from, with a registry whose changes are forgotten, and no running
  // organiser hears of it.
  kReading,
  // For the option pages: as reading, but the data folder is only looked at where it lies, and the
  // profile is locked.
  kSettling,
  // In place, with the profile locked.
  kWriting,
};

// One run of the module over a profile, with the engine's part played. There is one at a time.
class EngineRun {
 public:
  // `messages` takes what the person should know of; it isn't owned. A run that locks the profile
  // takes the lock, unless it is given one that is held already.
  static Outcome<std::unique_ptr<EngineRun>> Start(const Profile& profile, RunMode mode,
                                                   std::ostream& messages,
                                                   std::optional<ProfileLock> held = {});

  ~EngineRun();
  EngineRun(const EngineRun&) = delete;
  EngineRun& operator=(const EngineRun&) = delete;

  RunMode Mode() const { return mode; }
  EngineObjects& Objects() { return *objects; }
  PWSourceManager& Manager() { return *manager; }

  // The file of this machine that a location of the organiser's stands for, not the private copy of
  // it; the location itself if it stands for none.
  std::string NativePathOf(const std::string& location) const;

  // Why a run that writes can't change a file of the organiser's where it lies: links lead away
  // from the profile's drives, or this user may not. Nothing where it can, or there is no such
  // file. Told in runs of all modes, of the file itself, not of the private copy.
  std::optional<Failure> WhyClosed(const std::string& location) const;

  // Why the registry's file can't be used, or lacks what was changed; nothing if all is well.
  std::optional<Failure> RegistryFailure() const;

  // The organiser's paths of files that could not be written, or not whole.
  std::vector<std::string> UnwrittenFiles() const { return files->Unwritten(); }

  // Those that are there and could not be opened for writing, to be read or changed.
  std::vector<std::string> RefusedFiles() const { return files->Refused(); }

  // Shows the lines of the log so far to the person, and drops them.
  void ShowLog();

 private:
  EngineRun(const Profile& profile, RunMode mode, std::ostream& messages);

  // Each gives what stands in its way, or nothing.
  std::optional<Failure> PreparePlaces();
  std::optional<Failure> CopyPlaces();
  std::optional<Failure> StartMachine();
  std::optional<Failure> LoadModule();

  void SetWindowChain(bool chain);

  Profile profile;
  RunMode mode;
  std::ostream& messages;
  PathTable originals;
  std::filesystem::path moduleFile;
  std::optional<ProfileLock> lock;
  std::vector<std::unique_ptr<PrivateCopy>> copies;
  MachineOptions options;

  std::unique_ptr<Machine> machine;
  std::unique_ptr<UnattendedDialogs> dialogs;
  std::unique_ptr<WatchedFiles> files;
  Platform previousPlatform;

  std::vector<LogLine> log;
  PWConfig config;
  PWApplicationSource applicationSource;
  std::optional<ModuleLibrary> module;
  std::unique_ptr<PWSourceManager> manager;
  std::unique_ptr<PWImportManager> importManager;
  std::unique_ptr<EngineObjects> objects;
};

}  // namespace pw

#include "host/engine_run.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/codepage.h"
#include "base/process_wide.h"
#include "framework/engine_context.h"
#include "host/data_folder.h"
#include "host/data_places.h"
#include "host/signal_cleanup.h"
#include "platform/posix/real_path.h"

namespace pw {
namespace {

constexpr const char* kImportManagerName = "Object_ImportManager";

// The project's version as that of the module's file, in words of 16 bits.
constexpr std::uint64_t kVersion = std::uint64_t{PAIRWISE_MAJOR} << 48 |
                                   std::uint64_t{PAIRWISE_MINOR} << 32 |
                                   std::uint64_t{PAIRWISE_PATCH} << 16;

}  // namespace

EngineRun::EngineRun(const Profile& given, RunMode mode, std::ostream& messages)
    : profile(given),
      mode(mode),
      messages(messages),
      originals(WritableMounts(profile), profile.folder) {}

Outcome<std::unique_ptr<EngineRun>> EngineRun::Start(const Profile& profile, RunMode mode,
                                                     std::ostream& messages,
                                                     std::optional<ProfileLock> held) {
  std::unique_ptr<EngineRun> run(new EngineRun(profile, mode, messages));
  run->lock = std::move(held);
  if (auto failure = run->PreparePlaces()) return *failure;
  if (auto failure = run->StartMachine()) return *failure;
  if (auto failure = run->LoadModule()) return *failure;
  return run;
}

EngineRun::~EngineRun() {
  objects.reset();
  importManager.reset();
  manager.reset();
  // Also what the module holds for the whole process, as its code goes next.
  ResetProcessWideState();
  module.reset();
  if (machine != nullptr) SetPlatform(previousPlatform);
}

std::optional<Failure> EngineRun::PreparePlaces() {
  auto found = FindModule(profile.module);
  if (!found) return found.Why();
  moduleFile = *found;
  options.modulePath = moduleFile;
  options.currentFolder = profile.folder;
  options.mounts = WritableMounts(profile);
  if (mode != RunMode::kWriting) {
    for (Mount& mount : options.mounts) mount.readOnly = true;
  }
  options.moduleVersion = kVersion;
  options.somebodyThere = false;
  if (mode != RunMode::kReading) {
    if (lock) return {};
    auto taken = ProfileLock::Take(profile);
    if (!taken) return taken.Why();
    lock = std::move(*taken);
    return {};
  }

  return CopyPlaces();
}

std::optional<Failure> EngineRun::CopyPlaces() {
  const auto places = DataPlaces(profile);
  if (!places) return places.Why();
  WatchForSignals();
  for (const DataPlace& place : *places) {
    const bool isData = place.kind == PlaceKind::kData;
    std::error_code error;
    if (!isData && (place.location.empty() || !std::filesystem::exists(place.folder, error))) {
      continue;
    }
    auto made = PrivateCopy::Make(place.folder);
    if (!made) return made.Why();
    if (isData) options.currentFolder = (*made)->Folder();
    options.mounts.push_back({place.location, (*made)->Folder(), false});
    copies.push_back(std::move(*made));
  }
  return {};
}

std::optional<Failure> EngineRun::StartMachine() {
  const bool writing = mode == RunMode::kWriting;
  options.registry.file = profile.RegistryFile();
  options.registry.mode = writing ? RegistryMode::kReadWrite : RegistryMode::kOverlay;
  options.registry.warn = [this](const std::string& warning) {
    // What can't be saved is told once, by whoever asks at the end of the run.
    const auto lost = machine == nullptr ? std::nullopt : machine->Registry().SaveFailure();
    if (lost && warning.starts_with(*lost)) return;
    messages << "pairwise: " << warning << "\n";
  };
  if (writing) options.windowsFolder = DefaultWindowsFolder();
  machine = std::make_unique<Machine>(options);
  Platform services = machine->Services();
  dialogs = std::make_unique<UnattendedDialogs>(*services.dialogs, messages);
  services.dialogs = dialogs.get();
  files = std::make_unique<WatchedFiles>(*services.files);
  services.files = files.get();
  previousPlatform = SetPlatform(services);
  return RegistryFailure();
}

std::optional<Failure> EngineRun::LoadModule() {
  auto loaded = ModuleLibrary::Load(moduleFile);
  if (!loaded) return loaded.Why();
  module = std::move(*loaded);
  importManager.reset(static_cast<PWImportManager*>(module->CreateObject(kImportManagerName)));
  if (importManager == nullptr || importManager->SourceManager == nullptr) {
    return Failure{moduleFile.string() + ": the module makes no source manager"};
  }
  manager.reset(importManager->SourceManager);
  for (const auto& [id, value] : profile.config) config.String(id) = value;
  applicationSource.SyncMode = profile.syncMode;
  manager->Config = &config;
  manager->ApplicationSource = &applicationSource;
  manager->Log = new CollectedLog(log);
  objects = std::make_unique<EngineObjects>(
      EngineObjects{*importManager, *manager, config, applicationSource, log, machine->Clock(),
                    *dialogs, [this](bool chain) { SetWindowChain(chain); }});
  RegisterTypes(*objects);
  return {};
}

void EngineRun::SetWindowChain(bool chain) {
  Engine().mainWindow.reset();
  if (!chain) return;
  PosixWindows& windows = machine->Windows();
  const WindowId grandparent = windows.AddLocalWindow(kNoWindow);
  const WindowId parent = windows.AddLocalWindow(grandparent);
  Engine().mainWindow.emplace(windows.AddLocalWindow(parent));
}

std::string EngineRun::NativePathOf(const std::string& location) const {
  const auto native = originals.Translate(location);
  if (!native) return CodePageToUtf8(location);
  const bool endsInSlash = native->path.size() > 1 && native->path.back() == '/';
  return native->path.substr(0, native->path.size() - (endsInSlash ? 1 : 0));
}

std::optional<Failure> EngineRun::WhyClosed(const std::string& location) const {
  const auto native = originals.Translate(location);
  struct stat status {};
  if (!native || ::lstat(native->path.c_str(), &status) != 0) return std::nullopt;
  if (!originals.MayChange(*native)) {
    return Failure{native->path + ": leads to " + RealPath(native->path).value_or("nowhere") +
                   ", away from the profile's drives, and so is left as it is; put the file itself "
                   "there, or name the folder that it leads to in [drives] of " +
                   profile.DescriptionFile().string()};
  }
  const bool may = ::faccessat(AT_FDCWD, native->path.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
  if (may || errno == ENOENT) return std::nullopt;
  return Failure{native->path + ": can't be opened for reading and writing (" +
                 std::generic_category().message(errno) + "), and so is left as it is"};
}

std::optional<Failure> EngineRun::RegistryFailure() const {
  const PosixRegistry& registry = machine->Registry();
  if (const auto error = registry.Error()) return Failure{*error};
  if (const auto error = registry.SaveFailure()) return Failure{*error};
  return {};
}

void EngineRun::ShowLog() {
  for (const LogLine& line : log) messages << "pairwise: " << CodePageToUtf8(line.text) << "\n";
  log.clear();
}

}  // namespace pw

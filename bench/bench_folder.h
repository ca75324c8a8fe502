#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/posix/machine.h"

// Drive C: on a real file system, in a folder of its own that goes with it, and a registry in
// memory: what the module's code then works on.
class BenchFolder {
 public:
  explicit BenchFolder(const std::string& name)
      : folder(std::filesystem::temp_directory_path() / (name + "." + std::to_string(getpid()))),
        machine(Options()),
        before(pw::SetPlatform(machine.Services())) {
    std::filesystem::create_directories(folder);
  }
  ~BenchFolder() {
    pw::SetPlatform(before);
    std::filesystem::remove_all(folder);
  }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;

  const std::filesystem::path& Path() const { return folder; }

 private:
  pw::MachineOptions Options() const {
    pw::MachineOptions options;
    options.mounts = {{"C:", folder, false}};
    options.registry.file = folder / "registry.reg";
    options.registry.mode = pw::RegistryMode::kOverlay;
    return options;
  }

  std::filesystem::path folder;
  pw::Machine machine;
  pw::Platform before;
};

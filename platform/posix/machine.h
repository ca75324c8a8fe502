#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/portable/portable_rich_text.h"
#include "platform/posix/path_table.h"
#include "platform/posix/posix_clock.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/posix_registry.h"
#include "platform/posix/posix_shell.h"
#include "platform/posix/posix_windows.h"
#include "platform/posix/terminal_dialogs.h"

namespace pw {

struct MachineOptions {
  std::vector<Mount> mounts;
  std::filesystem::path currentFolder = ".";  // where the organiser's relative paths start
  std::filesystem::path modulePath;
  std::optional<std::uint64_t> moduleVersion;  // see `Shell::ModuleVersion`
  RegistryStoreOptions registry;
  std::filesystem::path windowsFolder;  // empty: nobody is to be heard or told
  bool somebodyThere = TerminalIsThere();
};

// This machine, with all services that a run needs. Dialogs read the standard input and ask on the
// standard error output.
class Machine {
 public:
  explicit Machine(MachineOptions options);
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  // The services, which live as long as the machine.
  Platform Services();

  // What only this platform has: a clock to be fixed, windows of this process, why the registry's
  // file can't be used.
  SettableClock& Clock() { return clock; }
  PosixWindows& Windows() { return windows; }
  const PosixRegistry& Registry() const { return registry; }

 private:
  PathTable table;
  PosixFiles files;
  PosixRegistry registry;
  PosixWindows windows;
  PosixClock realClock;
  SettableClock clock;
  TerminalDialogs dialogs;
  PosixShell shell;
  PortableRichText richText;
};

}  // namespace pw

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/posix/path_table.h"
#include "platform/shell.h"

namespace pw {

// Starts programs of this machine.
//
// A program runs on its own: in a session of its own, without this one's terminal and open files,
// and nobody waits for its end. It can be started where its file may be executed; the one verb is
// "open", and how its window is shown is left to it. Parameters are separated by blanks; double
// quotes hold together what is between them.
class PosixShell : public Shell {
 public:
  // The table isn't owned.
  PosixShell(const PathTable& table, std::optional<std::uint64_t> moduleVersion)
      : table(table), moduleVersion(moduleVersion) {}

  bool Execute(const ShellCommand& command) override;
  std::optional<std::uint64_t> ModuleVersion() override { return moduleVersion; }

 private:
  const PathTable& table;
  std::optional<std::uint64_t> moduleVersion;
};

}  // namespace pw

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/shell.h"

namespace pw {

// Starts nothing, and remembers what it was asked to start.
class FakeShell : public Shell {
 public:
  std::vector<ShellCommand> commands;
  bool succeeds = true;
  std::optional<std::uint64_t> moduleVersion;

  bool Execute(const ShellCommand& command) override {
    commands.push_back(command);
    return succeeds;
  }
  std::optional<std::uint64_t> ModuleVersion() override { return moduleVersion; }
};

}  // namespace pw

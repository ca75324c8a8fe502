#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Other programs, and the version of this one. All operations are called on the engine's one
// thread.
namespace pw {

struct ShellCommand {
  std::string verb;        // "open"
  std::string file;        // path of the program
  std::string parameters;  // may be empty
  std::string folder;      // to run in
  std::int32_t show = 1;   // 1: a normal window
};

class Shell {
 public:
  virtual ~Shell() = default;

  // Starts a program and doesn't wait for it. False if it could not be started.
  virtual bool Execute(const ShellCommand& command) = 0;

  // The module's file version: four words of 16 bits, the most significant first. Nothing if the
  // module carries none.
  virtual std::optional<std::uint64_t> ModuleVersion() = 0;
};

// Passes everything on, so that a test overrides only what is to differ.
class ShellWrapper : public Shell {
 public:
  explicit ShellWrapper(Shell& target) : target(target) {}

  bool Execute(const ShellCommand& command) override { return target.Execute(command); }
  std::optional<std::uint64_t> ModuleVersion() override { return target.ModuleVersion(); }

 private:
  Shell& target;
};

}  // namespace pw

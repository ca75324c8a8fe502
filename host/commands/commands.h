#pragma once

#include <functional>
#include <string>

#include "host/console.h"
#include "host/outcome.h"
#include "host/profile.h"

namespace CLI {
class App;
}

namespace pw {

// What the commands share while the command line is read.
struct CommandLine {
  Console console;
  std::string profileFolder;  // as given, or from the environment; may be empty

  // What is to be done, set by the command that was named. Gives the exit code.
  std::function<int()> chosen;
};

// Each adds its command to the program, with its own options.
void AddInitCommand(CLI::App& app, CommandLine& line);
void AddInfoCommand(CLI::App& app, CommandLine& line);
void AddCategoriesCommand(CLI::App& app, CommandLine& line);
void AddCitiesCommand(CLI::App& app, CommandLine& line);
void AddCheckCommand(CLI::App& app, CommandLine& line);
void AddListCommand(CLI::App& app, CommandLine& line);
void AddShowCommand(CLI::App& app, CommandLine& line);
void AddExportCommand(CLI::App& app, CommandLine& line);
void AddImportCommand(CLI::App& app, CommandLine& line);
void AddNewCommand(CLI::App& app, CommandLine& line);
void AddRemoveCommand(CLI::App& app, CommandLine& line);
void AddWipeCommand(CLI::App& app, CommandLine& line);
void AddBackupCommand(CLI::App& app, CommandLine& line);
void AddRestoreCommand(CLI::App& app, CommandLine& line);
void AddOptionsCommand(CLI::App& app, CommandLine& line);
void AddSetupCommand(CLI::App& app, CommandLine& line);
void AddDriveCommand(CLI::App& app, CommandLine& line);
void AddOrganiserCommand(CLI::App& app, CommandLine& line);
void AddDemoCommand(CLI::App& app, CommandLine& line);

// Reads the command line and does what it says. Gives the exit code.
int RunCommandLine(int argc, const char* const* argv, const Console& console);

}  // namespace pw

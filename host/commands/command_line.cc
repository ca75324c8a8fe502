#include <iostream>

#include <CLI/CLI.hpp>

#include "host/commands/commands.h"

namespace pw {
namespace {

constexpr const char* kAbout =
    "Synchronises the files of a personal organiser of the nineties, from the command line.\n"
    "A profile says where the files lie; `pairwise demo` makes one to try things on.";

constexpr const char* kAfterword =
    "Exit codes: 0 done, 1 failed, 2 called in a wrong way, 4 done but for what was told:\n"
    "records left out, or damage found.";

constexpr const char* kProfileHint =
    "The profile is given by -p,--profile DIR, or by PAIRWISE_PROFILE.";

}  // namespace

int RunCommandLine(int argc, const char* const* argv, const Console& console) {
  CommandLine line{console, {}, {}};
  CLI::App app(kAbout, "pairwise");
  app.footer(kAfterword);
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.get_formatter()->column_width(28);
  app.add_option("-p,--profile", line.profileFolder, "Folder of the profile to work on")
      ->envname("PAIRWISE_PROFILE")
      ->type_name("DIR");

  AddDemoCommand(app, line);
  AddInitCommand(app, line);
  AddInfoCommand(app, line);
  AddCategoriesCommand(app, line);
  AddCitiesCommand(app, line);
  AddCheckCommand(app, line);
  AddListCommand(app, line);
  AddShowCommand(app, line);
  AddExportCommand(app, line);
  AddImportCommand(app, line);
  AddNewCommand(app, line);
  AddRemoveCommand(app, line);
  AddWipeCommand(app, line);
  AddBackupCommand(app, line);
  AddRestoreCommand(app, line);
  AddOptionsCommand(app, line);
  AddSetupCommand(app, line);
  AddDriveCommand(app, line);
  AddOrganiserCommand(app, line);
  // Their own help doesn't list the program's options.
  for (CLI::App* command : app.get_subcommands({})) {
    const std::string own = command->get_footer();
    command->footer((own.empty() ? "" : own + "\n") + kProfileHint);
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int code = app.exit(error, console.out, console.messages);
    return code == 0 ? kExitDone : kExitUsage;
  }
  if (!line.chosen) return console.FailUsage("what is to be done? See `pairwise --help`");
  const int code = line.chosen();
  console.out.flush();
  if (!console.out) return console.Fail({"the output could not be written"});
  return code;
}

}  // namespace pw

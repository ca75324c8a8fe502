#include "platform/posix/machine.h"

#include <iostream>
#include <utility>

#include "base/codepage.h"

namespace pw {

// A module below a folder that the organiser's text can't name is known by a path that opens
// nothing.
Machine::Machine(MachineOptions options)
    : table(options.mounts, options.currentFolder),
      files(table, Utf8ToCodePageLossy(options.modulePath.native())),
      registry(std::move(options.registry)),
      windows(std::move(options.windowsFolder)),
      clock(realClock),
      dialogs(std::cin, std::cerr, options.somebodyThere),
      shell(table, options.moduleVersion) {}

Platform Machine::Services() {
  Platform services;
  services.files = &files;
  services.registry = &registry;
  services.windows = &windows;
  services.clock = &clock;
  services.dialogs = &dialogs;
  services.shell = &shell;
  services.richText = &richText;
  return services;
}

}  // namespace pw

#include "host/organiser_guard.h"

#include "platform/posix/posix_windows.h"
#include "platform/posix/window_folder.h"

namespace pw {

std::optional<Failure> OrganiserInTheWay() {
  PosixWindows windows(DefaultWindowsFolder());
  const WindowId window = windows.Find(kOrganiserWindow);
  if (window == kNoWindow || windows.IsEnabled(window)) return std::nullopt;
  return Failure{"the organiser is busy with a dialog; close it, and try again; nothing was done"};
}

}  // namespace pw

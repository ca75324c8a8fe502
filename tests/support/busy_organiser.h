#pragma once

#include "framework/engine_context.h"
#include "platform/testing/test_platform.h"

namespace pw::test {

// An organiser runs that has a dialog open, as far as can be told by windows.
inline void MakeOrganiserBusy(TestPlatform& platform) {
  platform.windows.Add("Wingmate_95", false);
  const WindowId grandparent = platform.windows.Add("Frame");
  const WindowId parent = platform.windows.Add("Child", true, grandparent);
  Engine().mainWindow = PWWindow(platform.windows.Add("Engine", true, parent));
}

}  // namespace pw::test

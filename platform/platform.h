#pragma once

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/rich_text.h"
#include "platform/shell.h"
#include "platform/windows.h"

namespace pw {

// The services that everything above this layer runs on. Nothing here is owned. Each must be there
// but `richText`, which is null on a platform that can't convert.
struct Platform {
  Files* files = nullptr;
  Registry* registry = nullptr;
  Windows* windows = nullptr;
  Clock* clock = nullptr;
  Dialogs* dialogs = nullptr;
  Shell* shell = nullptr;
  RichText* richText = nullptr;
};

// The platform of this process. Whoever runs the module sets it before the module is loaded, and
// the services must live until the module is unloaded or another platform is set. Using it before
// one was set ends the process with a message.
const Platform& CurrentPlatform();

// Sets the platform and returns what was set before.
Platform SetPlatform(const Platform& platform);

}  // namespace pw

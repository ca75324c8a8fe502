#include "platform/testing/test_platform.h"

#include "base/process_wide.h"

namespace pw {

TestPlatform::TestPlatform() : before(SetPlatform(Services())) {}

TestPlatform::~TestPlatform() {
  ResetProcessWideState();  // which may still use the services
  SetPlatform(before);
}

Platform TestPlatform::Services() {
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

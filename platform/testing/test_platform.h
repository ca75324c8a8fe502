#pragma once

#include "platform/platform.h"
#include "platform/portable/portable_rich_text.h"
#include "platform/testing/fake_clock.h"
#include "platform/testing/fake_shell.h"
#include "platform/testing/fake_windows.h"
#include "platform/testing/memory_files.h"
#include "platform/testing/memory_registry.h"
#include "platform/testing/scripted_dialogs.h"

namespace pw {

// A platform in memory, which is the process's own for as long as it lives. When it goes, all
// process-wide state starts afresh, and the platform before stands again.
class TestPlatform {
 public:
  TestPlatform();
  ~TestPlatform();
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;

  // To be set with services that wrap these, where a test wants some to behave otherwise.
  Platform Services();

  FakeClock clock;
  MemoryFiles files{clock};
  MemoryRegistry registry;
  FakeWindows windows;
  ScriptedDialogs dialogs;
  FakeShell shell;
  PortableRichText richText;

 private:
  Platform before;
};

}  // namespace pw

#include <signal.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "framework/engine_context.h"
#include "platform/posix/machine.h"
#include "platform/posix/window_folder.h"
#include "plugin/handshake.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"

namespace pw {
namespace {

// This process has a word with an organiser that is another one, over the machine's own services.
class OrganiserTest : public ::testing::Test {
 protected:
  OrganiserTest() {
    ::setenv("XDG_RUNTIME_DIR", sample.Folder().c_str(), 1);
    MachineOptions options;
    options.registry.file = sample.folder.Path() / "registry.reg";
    options.windowsFolder = DefaultWindowsFolder();
    machine = std::make_unique<Machine>(options);
    previous = SetPlatform(machine->Services());
  }
  ~OrganiserTest() override {
    ResetProcessWideState();
    SetPlatform(previous);
  }

  std::unique_ptr<Process> Start(std::vector<std::string> options) {
    options.insert(options.begin(), {"--profile", sample.Folder(), "organiser"});
    auto process = std::make_unique<Process>(options);
    EXPECT_EQ(process->ReadLine(), "ready");
    return process;
  }

  const Sample sample;
  std::unique_ptr<Machine> machine;
  Platform previous;
};

TEST_F(OrganiserTest, HearsEachStepAndFindsTheNotes) {
  const auto organiser = Start({"--answer-to", "1=5", "--count", "4"});
  EXPECT_EQ(NotifyOrganiserOpen("C:\\Data\\M\xFCller.WMCard", 0, kContactFiles, false),
            kOrganiserAgrees);
  EXPECT_FALSE(NotifyOrganiserLock(0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(true, 0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(false, 0, false));
  const Finished run = organiser->Finish();
  EXPECT_EQ(run.code, 0);
  // The message's number, which depends on its name alone.
  const std::string number = run.out.substr(0, run.out.find(','));
  EXPECT_EQ(number.rfind("message 0x", 0), 0U);
  EXPECT_EQ(run.out, number + ", step 0: a source wants the files; answered 0\n" +
                         "  Cardfile      C:\\Data\\Müller.WMCard\n" + number +
                         ", step 1: the source opens the files now; answered 5\n" + number +
                         ", step 2: the source is done, the files may be taken back; answered 0\n" +
                         number +
                         ", step 3: the source gives up, the files are as they were; answered 0\n");
  EXPECT_NE(
      sample.folder.Get("registry.reg").find("\"Cardfile\"=\"C:\\\\Data\\\\M\xFCller.WMCard\""),
      std::string::npos);
}

TEST_F(OrganiserTest, ThatIsDisabledMakesTheSourceWait) {
  const auto organiser = Start({"--disabled"});
  // Without windows of our own the organiser's dialog could be ours.
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kContactFiles, false), kOrganiserAgrees);
  PosixWindows& windows = machine->Windows();
  const WindowId grandparent = windows.AddLocalWindow(kNoWindow);
  Engine().mainWindow.emplace(windows.AddLocalWindow(windows.AddLocalWindow(grandparent)));
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kContactFiles, false), kOrganiserBusy);
  organiser->Signal(SIGINT);
  EXPECT_EQ(organiser->Finish().code, 0);
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kContactFiles, false), kOrganiserOther);
}

}  // namespace
}  // namespace pw

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/posix_windows.h"
#include "platform/testing/fake_windows.h"
#include "platform/windows.h"
#include "tests/platform/implementations.h"
#include "tests/platform/temp_folder.h"
#include "tests/platform/window_thread.h"

namespace pw {
namespace {

using Answer = std::function<std::int32_t(const WindowMessage&)>;

// An implementation without windows, and what the interface can't do. Windows are numbered from 0
// as they are added; a parent is such a number, or -1.
class Implementation {
 public:
  virtual ~Implementation() = default;
  virtual Windows& Get() = 0;
  virtual void Add(const std::string& className, bool enabled = true, int parent = -1) = 0;
  virtual void Remove(int window) = 0;
  virtual void SetEnabled(int window, bool enabled) = 0;
  virtual void SetAnswer(int window, Answer answer) = 0;
  // Sent messages of a window, and posted ones that it has come to.
  virtual std::vector<WindowMessage> Received(int window) = 0;
};

class InMemory : public Implementation {
 public:
  Windows& Get() override { return windows; }
  void Add(const std::string& className, bool enabled, int parent) override {
    ids.push_back(windows.Add(className, enabled, parent < 0 ? kNoWindow : At(parent)));
  }
  void Remove(int window) override { windows.Remove(At(window)); }
  void SetEnabled(int window, bool enabled) override { windows.SetEnabled(At(window), enabled); }
  void SetAnswer(int window, Answer answer) override {
    windows.SetAnswer(At(window), std::move(answer));
  }
  std::vector<WindowMessage> Received(int window) override {
    std::vector<WindowMessage> messages;
    for (const auto* const list : {&windows.posted, &windows.sent}) {
      for (const auto& delivered : *list) {
        if (delivered.window == At(window)) messages.push_back(delivered);
      }
    }
    return messages;
  }

 private:
  WindowId At(int window) const { return ids[static_cast<std::size_t>(window)]; }

  FakeWindows windows;
  std::vector<WindowId> ids;
};

class OverSockets : public Implementation {
 public:
  Windows& Get() override { return windows; }
  void Add(const std::string& className, bool enabled, int parent) override {
    threads.push_back(std::make_unique<WindowThread>(
        folder.Path(), className, enabled, parent < 0 ? std::string() : At(parent).SocketName()));
    ASSERT_EQ(threads.back()->Error(), std::nullopt);
  }
  void Remove(int window) override { threads[static_cast<std::size_t>(window)].reset(); }
  void SetEnabled(int window, bool enabled) override { At(window).SetEnabled(enabled); }
  void SetAnswer(int window, Answer answer) override { At(window).SetAnswer(std::move(answer)); }
  std::vector<WindowMessage> Received(int window) override { return At(window).Received(); }

 private:
  WindowThread& At(int window) const { return *threads[static_cast<std::size_t>(window)]; }

  TempFolder folder;
  std::vector<std::unique_ptr<WindowThread>> threads;
  PosixWindows windows{folder.Path()};
};

class WindowsContractTest : public ContractTest<Implementation> {
 protected:
  Windows& windows = implementation->Get();
};

TEST_P(WindowsContractTest, RegisteredMessagesHaveANumberByTheirName) {
  const std::uint32_t number = windows.RegisterMessage("IWM Pilot Notification");
  EXPECT_GE(number, 0xC000U);
  EXPECT_LE(number, 0xFFFFU);
  EXPECT_EQ(windows.RegisterMessage("iwm pilot NOTIFICATION"), number);
  EXPECT_NE(windows.RegisterMessage("IWM Pilot"), number);
  EXPECT_EQ(windows.RegisterMessage("IWM Pilot Notification"), number);
}

TEST_P(WindowsContractTest, WindowsAreFoundByTheirClass) {
  EXPECT_EQ(windows.Find("Wingmate_95"), kNoWindow);
  implementation->Add("Wingmate_95");
  implementation->Add("Other class. /%\xE4");
  const WindowId organiser = windows.Find("Wingmate_95");
  const WindowId other = windows.Find("OTHER class. /%\xE4");
  EXPECT_NE(organiser, kNoWindow);
  EXPECT_NE(other, kNoWindow);
  EXPECT_NE(organiser, other);
  EXPECT_EQ(windows.Find("wingmate_95"), organiser) << "its number stays";
  for (const char* const missing : {"", "Wingmate_9", "Wingmate_95x", "Other"}) {
    EXPECT_EQ(windows.Find(missing), kNoWindow) << missing;
  }
}

TEST_P(WindowsContractTest, OfSeveralWindowsTheFirstIsFound) {
  for (int i = 0; i < 12; ++i) implementation->Add("Same");
  const WindowId first = windows.Find("Same");
  EXPECT_EQ(windows.Find("same"), first);
  implementation->SetAnswer(0, [](const WindowMessage&) { return 1; });
  EXPECT_EQ(windows.Send(first, {}), 1);
  implementation->Remove(0);
  EXPECT_NE(windows.Find("Same"), kNoWindow);
  EXPECT_NE(windows.Find("Same"), first);
}

TEST_P(WindowsContractTest, ASentMessageArrivesWholeAndItsAnswerComesBack) {
  implementation->Add("W");
  const WindowId window = windows.Find("W");
  EXPECT_EQ(windows.Send(window, {1, 2, 3}), 0);
  for (const std::int32_t answer : {1, 2, -1, INT32_MIN, INT32_MAX}) {
    implementation->SetAnswer(0, [answer](const WindowMessage&) { return answer; });
    EXPECT_EQ(windows.Send(window, {0xFFFF, 0xFFFFFFFF, INT32_MIN}), answer);
  }
  const auto received = implementation->Received(0);
  ASSERT_EQ(received.size(), 6U);
  EXPECT_EQ(received.front(), (WindowMessage{1, 2, 3}));
  EXPECT_EQ(received.back(), (WindowMessage{0xFFFF, 0xFFFFFFFF, INT32_MIN}));
}

TEST_P(WindowsContractTest, PostedMessagesArriveInTheirOrderBeforeWhatIsSentLater) {
  implementation->Add("W");
  const WindowId window = windows.Find("W");
  std::vector<WindowMessage> expected;
  for (std::uint32_t i = 0; i < 200; ++i) {
    EXPECT_TRUE(windows.Post(window, {0xC001, i, 0}));
    expected.push_back({0xC001, i, 0});
  }
  windows.Send(window, {0xC002, 0, 0});
  expected.push_back({0xC002, 0, 0});
  EXPECT_EQ(implementation->Received(0), expected);
}

TEST_P(WindowsContractTest, AWindowTellsWhetherItIsEnabled) {
  implementation->Add("On");
  implementation->Add("Off", false);
  const WindowId on = windows.Find("On");
  EXPECT_TRUE(windows.IsEnabled(on));
  EXPECT_FALSE(windows.IsEnabled(windows.Find("Off")));
  implementation->SetEnabled(0, false);
  EXPECT_FALSE(windows.IsEnabled(on));
  EXPECT_TRUE(implementation->Received(0).empty()) << "it isn't asked by a message";
}

TEST_P(WindowsContractTest, AWindowTellsItsParent) {
  implementation->Add("Grandparent");
  implementation->Add("Parent", true, 0);
  implementation->Add("Child", true, 1);
  const WindowId child = windows.Find("Child");
  const WindowId parent = windows.Parent(child);
  EXPECT_NE(parent, kNoWindow);
  EXPECT_EQ(parent, windows.Find("Parent"));
  EXPECT_EQ(windows.Parent(parent), windows.Find("Grandparent"));
  EXPECT_EQ(windows.Parent(windows.Find("Grandparent")), kNoWindow);
  implementation->Remove(1);
  EXPECT_EQ(windows.Parent(child), kNoWindow);
}

TEST_P(WindowsContractTest, AWindowThatHasGoneIsNone) {
  implementation->Add("W");
  implementation->Add("Child", true, 0);
  implementation->SetAnswer(1, [](const WindowMessage&) { return 7; });
  const WindowId gone = windows.Find("Child");
  implementation->Remove(1);
  EXPECT_EQ(windows.Find("Child"), kNoWindow);
  for (const WindowId window : {gone, kNoWindow, WindowId{4711}}) {
    EXPECT_EQ(windows.Parent(window), kNoWindow);
    EXPECT_FALSE(windows.IsEnabled(window));
    EXPECT_EQ(windows.Send(window, {1, 2, 3}), 0);
    EXPECT_FALSE(windows.Post(window, {1, 2, 3}));
  }
}

INSTANTIATE_TEST_SUITE_P(InMemoryAndOverSockets, WindowsContractTest,
                         testing::Values(Make<Implementation, InMemory>,
                                         Make<Implementation, OverSockets>));

}  // namespace
}  // namespace pw

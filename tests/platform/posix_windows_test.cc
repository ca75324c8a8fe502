#include "platform/posix/posix_windows.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/window_folder.h"
#include "platform/posix/window_server.h"
#include "platform/posix/window_wire.h"
#include "tests/platform/temp_folder.h"
#include "tests/platform/window_thread.h"

namespace pw {
namespace {

using namespace std::string_literals;

class PosixWindowsTest : public ::testing::Test {
 protected:
  // A socket in the folder that was bound by hand; it listens if that is asked for.
  Descriptor Bind(const std::string& name, bool listens = true) {
    Descriptor descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto address = AddressOf(folder.Path(), name);
    EXPECT_EQ(
        bind(descriptor.Number(), reinterpret_cast<const sockaddr*>(&*address), sizeof(*address)),
        0);
    EXPECT_TRUE(!listens || listen(descriptor.Number(), 8) == 0);
    return descriptor;
  }
  Descriptor Connect(const std::string& name) const {
    return ConnectTo(*AddressOf(folder.Path(), name), Waiting::kYes);
  }
  bool IsThere(const std::string& name) const {
    return std::filesystem::exists(folder.Path() / name);
  }

  TempFolder folder;
  PosixWindows windows{folder.Path()};
};

// Serves until the process ends.
class Organiser : public WindowHandler {
 public:
  std::string ClassName() override { return "Wingmate_95"; }
  bool Enabled() override { return true; }
  std::string Parent() override { return {}; }
  std::int32_t Answer(const WindowMessage& message) override {
    if (message.wParam == 0) _exit(0);
    return 7;
  }
};

TEST_F(PosixWindowsTest, AProcessThatDiesOverAMessageAnswersNothing) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    Organiser organiser;
    WindowServer server(folder.Path(), organiser);
    if (server.Error() || write(ready[1], "", 1) != 1) _exit(1);
    server.Serve();
    _exit(1);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  close(ready[0]);
  close(ready[1]);
  const WindowId window = windows.Find("Wingmate_95");
  ASSERT_NE(window, kNoWindow);
  EXPECT_EQ(windows.Send(window, {1, 1, 0}), 7);
  EXPECT_EQ(windows.Send(window, {1, 0, 0}), 0);
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);

  const std::string left = FileNameOf({"Wingmate_95", static_cast<std::uint32_t>(child), 1});
  EXPECT_TRUE(IsThere(left)) << "it had no time to tidy up";
  EXPECT_FALSE(windows.IsEnabled(window));
  EXPECT_EQ(windows.Find("Wingmate_95"), kNoWindow);
  EXPECT_FALSE(IsThere(left));
}

TEST_F(PosixWindowsTest, DeadSocketsArePassedOverAndRemovedAndNothingElseIs) {
  Bind("W.1.1");         // and closed again at once
  Bind("W.2.1", false);  // was never listening
  Bind("Other.1.1");     // of another class
  folder.Put("W.3.1", "no socket");
  Bind("W.x.1");
  Bind("W%GG.1.1");
  const Descriptor live = Bind("w.5.1");
  const Descriptor later = Bind("W.10.1");

  {
    const Descriptor lock = LockFolder(folder.Path(), true);  // as while a window is being made
    ASSERT_TRUE(lock.IsOpen());
    EXPECT_NE(windows.Find("W"), kNoWindow);
    EXPECT_TRUE(IsThere("W.1.1"));
  }
  EXPECT_NE(windows.Find("W"), kNoWindow);
  EXPECT_FALSE(IsThere("W.1.1"));
  EXPECT_FALSE(IsThere("W.2.1"));
  for (const char* const name : {"Other.1.1", "W.3.1", "W.x.1", "W%GG.1.1", "w.5.1", "W.10.1"}) {
    EXPECT_TRUE(IsThere(name)) << name;
  }
}

TEST_F(PosixWindowsTest, AServerTakesTheNameOfADeadOneAndNoLiveOnes) {
  const auto self = static_cast<std::uint32_t>(getpid());
  const Descriptor live = Bind(FileNameOf({"W", self, 1}));
  Bind(FileNameOf({"W", self, 2}));
  {
    const WindowThread window(folder.Path(), "W");
    EXPECT_EQ(window.Error(), std::nullopt);
    EXPECT_EQ(window.SocketName(), FileNameOf({"W", self, 2}));
    EXPECT_EQ(PresenceAt(*AddressOf(folder.Path(), window.SocketName())), Presence::kListening);
  }
  EXPECT_FALSE(IsThere(FileNameOf({"W", self, 2})));
  EXPECT_TRUE(IsThere(FileNameOf({"W", self, 1})));
}

TEST_F(PosixWindowsTest, StrangersFoldersArentUsed) {
  const WindowThread window(folder.Path(), "W");
  ASSERT_NE(windows.Find("W"), kNoWindow);
  const WindowId id = windows.Find("W");
  const std::filesystem::path link = folder.Path() / "link";
  std::filesystem::create_directory_symlink(folder.Path(), link);
  EXPECT_EQ(PosixWindows(link).Find("W"), kNoWindow) << "a link to it";
  EXPECT_EQ(PosixWindows("").Find("W"), kNoWindow);
  EXPECT_EQ(PosixWindows(folder.Path() / "none").Find("W"), kNoWindow);

  for (const mode_t mode : {0701U, 0710U, 0704U, 0777U}) {
    ASSERT_EQ(chmod(folder.Path().c_str(), mode), 0);
    EXPECT_EQ(windows.Find("W"), kNoWindow) << mode;
    EXPECT_EQ(windows.Send(id, {1, 2, 3}), 0);
    EXPECT_FALSE(windows.Post(id, {1, 2, 3}));
    EXPECT_NE(WindowThread(folder.Path(), "V").Error(), std::nullopt) << mode;
  }
  ASSERT_EQ(chmod(folder.Path().c_str(), 0700), 0);
  EXPECT_EQ(windows.Find("W"), id);
  // Only root can make it somebody else's.
  if (chown(folder.Path().c_str(), 1, 1) == 0) {
    EXPECT_EQ(windows.Find("W"), kNoWindow) << "another user's";
  }
}

TEST_F(PosixWindowsTest, TheFolderIsMadeForThisUserAlone) {
  const std::filesystem::path made = folder.Path() / "made";
  {
    const WindowThread window(made, "W");
    EXPECT_EQ(window.Error(), std::nullopt);
    EXPECT_TRUE(IsOwnFolder(made));
  }
  EXPECT_NE(WindowThread(folder.Path() / "none" / "deep", "W").Error(), std::nullopt);
  folder.Put("file", "");
  EXPECT_NE(WindowThread(folder.Path() / "file", "W").Error(), std::nullopt);
}

TEST_F(PosixWindowsTest, TheUsersFolderIsThatOfTheSession) {
  const char* const before = std::getenv("XDG_RUNTIME_DIR");
  const std::string kept = before == nullptr ? "" : before;
  setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
  EXPECT_EQ(DefaultWindowsFolder(), folder.Path() / "pairwise");
  folder.Put("file", "");
  const std::string strangers = folder.Path() / "strangers";
  ASSERT_EQ(mkdir(strangers.c_str(), 0700), 0);
  // Only root can make it somebody else's.
  const bool isStrangers = chown(strangers.c_str(), 1, 1) == 0;
  const std::filesystem::path unusables[] = {"", ".", folder.Path() / "none",
                                             folder.Path() / "file", isStrangers ? strangers : ""};
  for (const std::filesystem::path& unusable : unusables) {
    setenv("XDG_RUNTIME_DIR", unusable.c_str(), 1);
    EXPECT_EQ(DefaultWindowsFolder(), "/tmp/pairwise-" + std::to_string(geteuid())) << unusable;
  }
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(DefaultWindowsFolder(), "/tmp/pairwise-" + std::to_string(geteuid()));
  if (before != nullptr) setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

TEST_F(PosixWindowsTest, APathTooLongForASocketIsAnErrorThatNamesIt) {
  const std::string className(100, 'x');
  const WindowThread window(folder.Path(), className);
  ASSERT_NE(window.Error(), std::nullopt);
  EXPECT_NE(window.Error()->find(folder.Path().native()), std::string::npos);
  EXPECT_NE(window.Error()->find("longer"), std::string::npos);
  EXPECT_EQ(windows.Find(className), kNoWindow);
  EXPECT_NE(WindowThread(folder.Path(), "").Error(), std::nullopt);
}

TEST_F(PosixWindowsTest, SilentAndMalformedVisitorsHoldUpNobody) {
  WindowThread window(folder.Path(), "W");
  window.SetAnswer([](const WindowMessage&) { return 5; });
  const std::string request = EncodeRequest({WindowRequestKind::kSend, {1, 2, 3}});
  const std::string visits[] = {
      "",
      "PWQ1",
      "PWR1"s + request.substr(4),
      "PWQ1\4\0\0\0"s + request.substr(8),
      "PWQ1\0\0\0\0"s + request.substr(8),
      std::string(5000, '\xFF'),
      request.substr(0, 19),
  };
  std::vector<Descriptor> open;
  for (int round = 0; round < 30; ++round) {
    for (const std::string& bytes : visits) {
      open.push_back(Connect(window.SocketName()));
      ASSERT_TRUE(open.back().IsOpen());
      SendBytes(open.back(), bytes);
    }
    EXPECT_EQ(windows.Send(windows.Find("W"), {1, 2, 3}), 5);
  }
  EXPECT_EQ(window.Received().size(), 30U);

  // One that speaks in pieces, and goes before its answer.
  Descriptor slow = Connect(window.SocketName());
  for (const char c : request) ASSERT_TRUE(SendBytes(slow, std::string(1, c)));
  EXPECT_EQ(ReceiveReply(slow), (WindowReply{5, false, ""}));
  Connect(window.SocketName()).Close();
  SendBytes(Connect(window.SocketName()), request);
  EXPECT_EQ(windows.Send(windows.Find("W"), {1, 2, 3}), 5);
}

TEST_F(PosixWindowsTest, PostingDoesntWaitWhereNobodyHandles) {
  const Descriptor busy = Bind("W.1.1");
  const WindowId window = windows.Find("W");
  ASSERT_NE(window, kNoWindow);
  int taken = 0;
  while (taken < 1000 && windows.Post(window, {1, 2, 3})) ++taken;
  EXPECT_GT(taken, 0);
  EXPECT_LT(taken, 1000) << "at some point it takes no more";
  EXPECT_EQ(windows.Find("W"), window) << "and is there all the same";
}

// As the organiser does that opens a dialog when it is sent a message: it doesn't come back from it
// before the dialog is closed.
TEST_F(PosixWindowsTest, AWindowTellsHowItIsWhileItHandlesAMessage) {
  const WindowThread parent(folder.Path(), "Parent");
  WindowThread window(folder.Path(), "W", true, parent.SocketName());
  window.SetAnswer([&](const WindowMessage&) {
    PosixWindows asking(folder.Path());
    const WindowId asked = asking.Find("W");
    const bool before = asking.IsEnabled(asked);
    window.SetEnabled(false);
    const bool during = asking.IsEnabled(asked);
    const bool hasParent = asking.Parent(asked) == asking.Find("Parent");
    return (before ? 1 : 0) + (during ? 2 : 0) + (hasParent ? 4 : 0);
  });
  EXPECT_EQ(windows.Send(windows.Find("W"), {1, 2, 3}), 1 + 4);
}

TEST_F(PosixWindowsTest, SoManyMessagesWaitForABusyWindowAndNoneIsLost) {
  std::promise<void> free;
  WindowThread window(folder.Path(), "W");
  window.SetAnswer([&, waits = free.get_future().share()](const WindowMessage&) {
    waits.wait();
    return 7;
  });
  const WindowId id = windows.Find("W");
  constexpr std::uint32_t kMany = 20'000;
  std::vector<WindowMessage> expected;
  while (expected.size() < kMany) {
    const WindowMessage message{1, static_cast<std::uint32_t>(expected.size()), 0};
    if (!windows.Post(id, message)) break;
    expected.push_back(message);
  }
  EXPECT_LT(expected.size(), kMany) << "at some point it takes no more";
  free.set_value();
  EXPECT_EQ(windows.Send(id, {2, 0, 0}), 7);
  expected.push_back({2, 0, 0});
  EXPECT_EQ(window.Received(), expected);
}

TEST_F(PosixWindowsTest, StoppingLeavesTheErrorNumberAlone) {
  Organiser organiser;
  WindowServer server(folder.Path(), organiser);
  errno = 0;
  for (int i = 0; i < 100'000; ++i) server.Stop();
  EXPECT_EQ(errno, 0);
}

// What a malformed or dying window says for an answer.
TEST_F(PosixWindowsTest, AMalformedReplyIsNone) {
  const Descriptor listener = Bind("W.1.1");
  const WindowId window = windows.Find("W");
  const auto answerWith = [&](const std::string& bytes) {
    return std::async(std::launch::async, [&listener, bytes] {
      // The look for the window left connections that say nothing.
      for (;;) {
        const Descriptor connection(accept(listener.Number(), nullptr, nullptr));
        char request[kWindowRequestSize];
        if (recv(connection.Number(), request, sizeof(request), MSG_WAITALL) <= 0) continue;
        SendBytes(connection, bytes);
        return;
      }
    });
  };
  const std::string good = EncodeReply({7, true, "W.1.1"});
  const struct {
    std::string bytes;
    std::int32_t answer;
  } cases[] = {
      {good, 7},
      {"", 0},
      {good.substr(0, 15), 0},
      {good.substr(0, good.size() - 1), 0},
      {"PWQ1" + good.substr(4), 0},
      {good.substr(0, 12) + "\xFF\xFF\xFF\xFF", 0},
  };
  for (const auto& test : cases) {
    auto answering = answerWith(test.bytes);
    EXPECT_EQ(windows.Send(window, {1, 2, 3}), test.answer) << test.bytes;
    answering.get();
  }
  for (const std::string& parent :
       {"../W.1.1"s, "/etc/passwd"s, "W"s, "W.1.2"s, "W.01.1"s, "W.1.1\0"s, ".1.1"s}) {
    auto answering = answerWith(EncodeReply({0, true, parent}));
    EXPECT_EQ(windows.Parent(window), kNoWindow) << parent;
    answering.get();
  }
}

TEST_F(PosixWindowsTest, SendingOutlastsSignals) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
  WindowThread window(folder.Path(), "W");
  const pthread_t sender = pthread_self();
  window.SetAnswer([sender](const WindowMessage&) {
    for (int i = 0; i < 50; ++i) pthread_kill(sender, SIGUSR1);
    return 9;
  });
  EXPECT_EQ(windows.Send(windows.Find("W"), {1, 2, 3}), 9);
  sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(PosixWindowsTest, LocalWindowsAreAChainThatNobodyElseSees) {
  const WindowId grandparent = windows.AddLocalWindow(kNoWindow);
  const WindowId parent = windows.AddLocalWindow(grandparent);
  const WindowThread served(folder.Path(), "W");
  const WindowId child = windows.AddLocalWindow(parent);
  EXPECT_EQ(windows.Parent(child), parent);
  EXPECT_EQ(windows.Parent(parent), grandparent);
  EXPECT_EQ(windows.Parent(grandparent), kNoWindow);
  EXPECT_TRUE(windows.IsEnabled(child));
  EXPECT_EQ(windows.Send(child, {1, 2, 3}), 0);
  EXPECT_TRUE(windows.Post(child, {1, 2, 3}));
  EXPECT_EQ(windows.Find(""), kNoWindow);
  const WindowId found = windows.Find("W");
  EXPECT_TRUE(found != child && found != parent && found != grandparent);
}

TEST(WindowFolderTest, ASocketsNameTellsItsWindow) {
  const struct {
    WindowSocket socket;
    std::string name;
  } cases[] = {
      {{"Wingmate_95", 4711, 1}, "Wingmate_95.4711.1"},
      {{"a.b/c%\xE4\0"s, 0xFFFFFFFF, 0}, "a%2Eb%2Fc%25%E4%00.4294967295.0"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(FileNameOf(test.socket), test.name);
    EXPECT_EQ(SocketOfFileName(test.name), test.socket);
  }
  for (const char* const name :
       {"", ".", "..", "W", "W.1", "W.1.", "W..1", ".1.1", "W.1.x", "W.-1.1", "W.1.01", "W.1. 1",
        "W.1.4294967296", "a.b.1.1", "%.1.1", "%4.1.1", "%4g.1.1", "a b.1.1", "\xE4.1.1"}) {
    EXPECT_EQ(SocketOfFileName(name), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace pw

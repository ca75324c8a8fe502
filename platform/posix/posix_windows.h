#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/posix/window_folder.h"
#include "platform/posix/window_wire.h"
#include "platform/windows.h"

namespace pw {

// Windows that this user's processes serve, each at a socket in one folder (window_server.h).
//
// Whether a window is there shows by its process taking connections. To learn its parent or whether
// it is enabled it must be asked, which it answers while it handles a message too, as long as its
// process runs. Only where hundreds of messages wait for it an answer waits for one to be handled.
class PosixWindows : public Windows {
 public:
  // In an empty folder name, and in a folder that isn't this user's alone, there are no windows.
  explicit PosixWindows(std::filesystem::path folder) : folder(std::move(folder)) {}

  // A window of this process that nobody else sees: always enabled, and answering 0 to everything.
  // For a chain of parents over the engine's main window.
  WindowId AddLocalWindow(WindowId parent);

  // Found from the name alone, letter case ignored, so that all programs come to the same number
  // without meeting. Two names have the same with a chance of 1 in 16,384.
  std::uint32_t RegisterMessage(const std::string& name) override;

  // Where several windows have the class, the one of the lowest process number, and the first in
  // that process. Sockets of that class whose process died are removed on the way.
  WindowId Find(const std::string& className) override;

  WindowId Parent(WindowId window) override;
  bool IsEnabled(WindowId window) override;
  std::int32_t Send(WindowId window, const WindowMessage& message) override;

  // Also false if the window has let so many messages wait that it takes no more.
  bool Post(WindowId window, const WindowMessage& message) override;

 private:
  struct Window {
    std::string socketName;       // empty for a local window
    WindowId parent = kNoWindow;  // of a local window
  };

  WindowId Add(Window window);
  WindowId IdOf(const std::string& socketName);
  const Window* At(WindowId window) const;
  std::optional<sockaddr_un> AddressIn(const std::string& socketName) const;
  Descriptor Connect(const Window& window, Waiting waiting) const;
  std::optional<WindowReply> Request(const Window& window, const WindowRequest& request) const;

  std::filesystem::path folder;
  std::vector<Window> windows;  // number n stands at n - 1
  std::map<std::string, WindowId> bySocketName;
};

}  // namespace pw

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace pw {

// Windows that answer what a test tells them to, and a record of all that they were told.
class FakeWindows : public Windows {
 public:
  using Answer = std::function<std::int32_t(const WindowMessage&)>;

  // The messages that reached a window, in their order.
  struct Delivered : WindowMessage {
    WindowId window = kNoWindow;
  };
  std::vector<Delivered> sent;
  std::vector<Delivered> posted;

  // A new window answers 0. Of several with one class the first is found.
  WindowId Add(const std::string& className, bool enabled = true, WindowId parent = kNoWindow);
  void Remove(WindowId window);

  // Nothing happens if the window isn't there. A function is called while the message is handled,
  // and may change the windows.
  void SetEnabled(WindowId window, bool enabled);
  void SetAnswer(WindowId window, std::int32_t answer);
  void SetAnswer(WindowId window, Answer answer);

  std::uint32_t RegisterMessage(const std::string& name) override;
  WindowId Find(const std::string& className) override;
  WindowId Parent(WindowId window) override;
  bool IsEnabled(WindowId window) override;
  std::int32_t Send(WindowId window, const WindowMessage& message) override;
  bool Post(WindowId window, const WindowMessage& message) override;

 private:
  struct Window {
    std::string className;
    bool enabled = true;
    WindowId parent = kNoWindow;
    Answer answer;
  };

  Window* At(WindowId window);

  std::map<WindowId, Window> windows;  // in the order that they were added
  std::uint32_t lastWindow = 0;
  std::map<std::string, std::uint32_t> messages;
};

}  // namespace pw

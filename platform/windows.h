#pragma once

#include <cstdint>
#include <string>

// Top-level windows of this user's programs, and the messages that pass between them.
//
// How a window is can be asked at any time: nothing but `Send` waits for a window to handle its
// messages, so that one that shows a dialog from within a message tells that it is disabled. All
// operations are called on the engine's one thread.
namespace pw {

// Names a window within this process; 0 is no window. A window that has gone keeps its number and
// answers like none.
enum class WindowId : std::uint32_t {};
inline constexpr WindowId kNoWindow{0};

struct WindowMessage {
  std::uint32_t number = 0;
  std::uint32_t wParam = 0;
  std::int32_t lParam = 0;

  friend bool operator==(const WindowMessage&, const WindowMessage&) = default;
};

class Windows {
 public:
  virtual ~Windows() = default;

  // The number that stands for a message's name in every program of this user: 0xC000 to 0xFFFF.
  virtual std::uint32_t RegisterMessage(const std::string& name) = 0;

  // A top-level window of that class, letter case ignored; `kNoWindow` if there is none. A window
  // whose program has died isn't found.
  virtual WindowId Find(const std::string& className) = 0;

  // The window's parent; `kNoWindow` if it has none or isn't there.
  virtual WindowId Parent(WindowId window) = 0;

  // Whether the window takes input. A window with an open modal dialog doesn't, nor does one that
  // isn't there.
  virtual bool IsEnabled(WindowId window) = 0;

  // Blocks until the window has answered, without a time-out, and returns its answer; 0 if the
  // window isn't there or dies over it.
  virtual std::int32_t Send(WindowId window, const WindowMessage& message) = 0;

  // Hands the message over and doesn't wait for it to be handled. False if the window isn't there.
  virtual bool Post(WindowId window, const WindowMessage& message) = 0;
};

// Passes everything on, so that a test overrides only what is to differ.
class WindowsWrapper : public Windows {
 public:
  explicit WindowsWrapper(Windows& target) : target(target) {}

  std::uint32_t RegisterMessage(const std::string& name) override {
    return target.RegisterMessage(name);
  }
  WindowId Find(const std::string& className) override { return target.Find(className); }
  WindowId Parent(WindowId window) override { return target.Parent(window); }
  bool IsEnabled(WindowId window) override { return target.IsEnabled(window); }
  std::int32_t Send(WindowId window, const WindowMessage& message) override {
    return target.Send(window, message);
  }
  bool Post(WindowId window, const WindowMessage& message) override {
    return target.Post(window, message);
  }

 private:
  Windows& target;
};

}  // namespace pw

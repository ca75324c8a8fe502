#include "platform/testing/fake_windows.h"

#include <utility>

#include "base/text.h"

namespace pw {

WindowId FakeWindows::Add(const std::string& className, bool enabled, WindowId parent) {
  const WindowId window{++lastWindow};
  windows[window] = {className, enabled, parent, nullptr};
  return window;
}

void FakeWindows::Remove(WindowId window) {
  windows.erase(window);
}

void FakeWindows::SetEnabled(WindowId window, bool enabled) {
  if (Window* const found = At(window)) found->enabled = enabled;
}

void FakeWindows::SetAnswer(WindowId window, std::int32_t answer) {
  SetAnswer(window, [answer](const WindowMessage&) { return answer; });
}

void FakeWindows::SetAnswer(WindowId window, Answer answer) {
  if (Window* const found = At(window)) found->answer = std::move(answer);
}

std::uint32_t FakeWindows::RegisterMessage(const std::string& name) {
  const auto next = static_cast<std::uint32_t>(0xC000 + messages.size());
  return messages.emplace(AsciiLower(name), next).first->second;
}

WindowId FakeWindows::Find(const std::string& className) {
  for (const auto& [id, window] : windows) {
    if (EqualIgnoringCase(window.className, className)) return id;
  }
  return kNoWindow;
}

WindowId FakeWindows::Parent(WindowId window) {
  const Window* const found = At(window);
  return found != nullptr && At(found->parent) != nullptr ? found->parent : kNoWindow;
}

bool FakeWindows::IsEnabled(WindowId window) {
  const Window* const found = At(window);
  return found != nullptr && found->enabled;
}

std::int32_t FakeWindows::Send(WindowId window, const WindowMessage& message) {
  const Window* const found = At(window);
  if (found == nullptr) return 0;
  sent.push_back({message, window});
  const Answer answer = found->answer;  // a copy, since the answer may remove the window
  return answer ? answer(message) : 0;
}

bool FakeWindows::Post(WindowId window, const WindowMessage& message) {
  if (At(window) == nullptr) return false;
  posted.push_back({message, window});
  return true;
}

FakeWindows::Window* FakeWindows::At(WindowId window) {
  const auto found = windows.find(window);
  return found == windows.end() ? nullptr : &found->second;
}

}  // namespace pw

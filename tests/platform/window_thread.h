#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/window_server.h"

namespace pw {

// A window that a thread of the test serves. What it answers and whether it is enabled can be
// changed while it does.
class WindowThread : private WindowHandler {
 public:
  WindowThread(const std::filesystem::path& folder, std::string className, bool enabled = true,
               std::string parent = {})
      : className(std::move(className)),
        enabled(enabled),
        parent(std::move(parent)),
        server(folder, *this),
        thread([this] { server.Serve(); }) {}
  ~WindowThread() override {
    server.Stop();
    thread.join();
  }

  std::optional<std::string> Error() const { return server.Error(); }
  const std::string& SocketName() const { return server.SocketName(); }

  void SetEnabled(bool value) { enabled = value; }
  void SetAnswer(std::function<std::int32_t(const WindowMessage&)> value) {
    const std::lock_guard<std::mutex> lock(mutex);
    answer = std::move(value);
  }
  std::vector<WindowMessage> Received() {
    const std::lock_guard<std::mutex> lock(mutex);
    return received;
  }

 private:
  std::string ClassName() override { return className; }
  bool Enabled() override { return enabled; }
  std::string Parent() override { return parent; }
  std::int32_t Answer(const WindowMessage& message) override {
    const std::lock_guard<std::mutex> lock(mutex);
    received.push_back(message);
    return answer ? answer(message) : 0;
  }

  std::string className;
  std::atomic<bool> enabled;
  std::string parent;
  std::mutex mutex;
  std::function<std::int32_t(const WindowMessage&)> answer;
  std::vector<WindowMessage> received;
  WindowServer server;
  std::thread thread;
};

}  // namespace pw

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/posix/descriptor.h"
#include "platform/posix/window_wire.h"
#include "platform/windows.h"

namespace pw {

// A window of this process that others can find. All but the class name is asked for afresh each
// time, on the thread that serves.
class WindowHandler {
 public:
  virtual ~WindowHandler() = default;

  virtual std::string ClassName() = 0;
  virtual bool Enabled() = 0;

  // `WindowServer::SocketName` of the parent window, which another server serves; empty for none.
  virtual std::string Parent() = 0;

  // Handles a message, sent or posted. The answer to a posted one goes nowhere.
  virtual std::int32_t Answer(const WindowMessage& message) = 0;
};

// Serves one window: its socket is there, and messages wait at it, from construction to
// destruction.
//
// Requests are handled one after the other in the order of their arrival; while a message is being
// handled all others wait. Who connects and says nothing, or says something malformed, holds up
// nobody.
class WindowServer {
 public:
  // The folder is made where it is missing. The handler isn't owned and must outlive the server.
  WindowServer(const std::filesystem::path& folder, WindowHandler& handler);
  ~WindowServer();
  WindowServer(const WindowServer&) = delete;
  WindowServer& operator=(const WindowServer&) = delete;

  // Why there is no window; nothing if there is one.
  std::optional<std::string> Error() const { return error; }

  // File name of the window's socket.
  const std::string& SocketName() const { return socketName; }

  // Handles requests until `Stop`; at once over if that was called before, or there is no window.
  void Serve();

  // Ends `Serve`, once the message that is being handled has its answer. May be called from any
  // thread and from a signal handler.
  void Stop();

 private:
  struct Client {
    Descriptor connection;
    std::string received;
  };

  std::optional<std::string> Listen();
  bool Bind();
  void Accept();
  bool Read(Client& client);
  void Handle(const Client& client);

  std::filesystem::path folder;
  WindowHandler& handler;
  std::string socketName;
  std::optional<std::string> error;

  Descriptor listener;
  Descriptor stopReader;
  Descriptor stopWriter;
  std::vector<Client> clients;  // connected, and not heard out yet, in the order that they came
};

}  // namespace pw

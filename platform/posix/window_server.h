#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/posix/descriptor.h"
#include "platform/posix/window_wire.h"
#include "platform/windows.h"

namespace pw {

// A window of this process that others can find. All but the class name is asked for afresh each
// time.
class WindowHandler {
 public:
  virtual ~WindowHandler() = default;

  virtual std::string ClassName() = 0;

  // These are called on a thread of the server's own, at any time, also while a message is being
  // handled: they must answer at once. The parent is `WindowServer::SocketName` of the parent
  // window, which another server serves; empty for none.
  virtual bool Enabled() = 0;
  virtual std::string Parent() = 0;

  // Handles a message, sent or posted, on the thread that serves. The answer to a posted one goes
  // nowhere.
  virtual std::int32_t Answer(const WindowMessage& message) = 0;
};

// Serves one window: its socket is there, and messages wait at it, from construction to
// destruction.
//
// Messages are handled one after the other in the order of their arrival. Meanwhile a second thread
// hears who comes: it tells how the window is, and puts messages into a queue. When that is full
// nobody is heard until a message has been handled. Who connects and says nothing, or says
// something malformed, holds up nobody.
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

  // Handles messages until `Stop`; at once over if that was called before, or there is no window.
  // Messages that still wait then get no answer.
  void Serve();

  // Ends `Serve`, once the message that is being handled has its answer. May be called from any
  // thread and from a signal handler, and leaves `errno` alone.
  void Stop();

 private:
  struct Client {
    Descriptor connection;
    std::string received;
  };

  struct Message {
    WindowMessage message;
    Descriptor sender;  // who waits for the answer; not open if the message was posted
  };

  std::optional<std::string> Listen();
  bool Bind();
  bool IsStopped() const;

  // Of the thread that serves.
  std::optional<Message> NextMessage();
  void Handle(const Message& message);

  // Of the thread that hears.
  void Hear();
  bool WaitForRoom();
  bool HearOnce();
  void Accept();
  bool Read(Client& client);
  void Take(Client& client);

  std::filesystem::path folder;
  WindowHandler& handler;
  std::string socketName;
  std::optional<std::string> error;

  Descriptor listener;
  Descriptor stopReader;
  Descriptor stopWriter;

  // Of the thread that hears alone: who is connected and not heard out yet, in the order that they
  // came.
  std::vector<Client> clients;

  std::mutex mutex;  // for these
  std::condition_variable changed;
  std::deque<Message> queue;
  bool ended = false;
};

}  // namespace pw

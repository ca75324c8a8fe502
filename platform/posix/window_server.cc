#include "platform/posix/window_server.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <system_error>
#include <thread>
#include <utility>

#include "platform/posix/window_folder.h"

namespace pw {
namespace {

// So many connections are heard at a time. When they are all silent the one that came first has to
// go for the next.
constexpr std::size_t kMostClients = 64;

// Windows of one class in one process.
constexpr std::uint32_t kMostWindows = 1000;

// Messages that wait for the window. It is a limit to the descriptors that senders hold here; for
// one round of clients there is still room.
constexpr std::size_t kLongestQueue = 256;

constexpr int kPauseMilliseconds = 10;

std::string LastError(const std::string& what) {
  return what + ": " + std::generic_category().message(errno);
}

// The process's signals go on to the threads that it had before. Not joinable if the system gives
// no thread.
template <class Work>
std::thread StartWithoutSignals(Work work) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread;
  try {
    thread = std::thread(std::move(work));
  } catch (const std::system_error&) {
    thread = {};
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace

WindowServer::WindowServer(const std::filesystem::path& folder, WindowHandler& handler)
    : folder(folder), handler(handler) {
  error = Listen();
  if (error) listener.Close();
}

WindowServer::~WindowServer() {
  // Before the socket is closed: as long as it listens nobody else takes its name.
  if (listener.IsOpen()) unlink((folder / socketName).c_str());
}

std::optional<std::string> WindowServer::Listen() {
  if (handler.ClassName().empty()) return "a window needs a class name";
  if (!MakeOwnFolder(folder)) {
    return folder.string() + ": can't be made, or isn't a folder of this user alone";
  }
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return LastError("no pipe can be made");
  stopReader = Descriptor(ends[0]);
  stopWriter = Descriptor(ends[1]);
  listener = Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!listener.IsOpen()) return LastError("no socket can be made");

  const Descriptor lock = LockFolder(folder, true);
  if (!lock.IsOpen()) return LastError(folder.string() + ": can't be locked");
  if (!Bind()) {
    return errno == ENAMETOOLONG
               ? (folder / socketName).string() + ": longer than the path of a socket can be"
               : LastError((folder / socketName).string());
  }
  if (listen(listener.Number(), SOMAXCONN) == 0) return std::nullopt;
  auto failure = LastError((folder / socketName).string());
  unlink((folder / socketName).c_str());
  return failure;
}

// Takes the first number whose name is free, or was left by a process of the same number that died.
bool WindowServer::Bind() {
  const auto process = static_cast<std::uint32_t>(getpid());
  const std::string className = handler.ClassName();
  for (std::uint32_t number = 1; number <= kMostWindows; ++number) {
    socketName = FileNameOf({className, process, number});
    const auto address = AddressOf(folder, socketName);
    if (!address) {
      errno = ENAMETOOLONG;
      return false;
    }
    const auto bindSocket = [&] {
      return bind(listener.Number(), reinterpret_cast<const sockaddr*>(&*address),
                  sizeof(*address)) == 0;
    };
    if (bindSocket()) return true;
    if (errno != EADDRINUSE) return false;
    if (PresenceAt(*address) != Presence::kDead) continue;
    if (unlink((folder / socketName).c_str()) == 0 && bindSocket()) return true;
  }
  errno = EADDRINUSE;
  return false;
}

void WindowServer::Serve() {
  if (error) return;
  std::thread hearing = StartWithoutSignals([this] { Hear(); });
  if (!hearing.joinable()) {
    error = "no thread can be made to hear who comes";
    return;
  }
  while (const auto message = NextMessage()) Handle(*message);
  hearing.join();
}

void WindowServer::Stop() {
  const int before = errno;
  // A full pipe was written to before, which is enough.
  if (stopWriter.IsOpen()) (void)!write(stopWriter.Number(), "", 1);
  errno = before;
}

bool WindowServer::IsStopped() const {
  pollfd stop{stopReader.Number(), POLLIN, 0};
  return Uninterrupted([&] { return poll(&stop, 1, 0); }) != 0;
}

// Nothing once it is over. Whether it is must be looked up here too, since the other thread learns
// it only after the next message could already be out of the queue.
std::optional<WindowServer::Message> WindowServer::NextMessage() {
  std::unique_lock<std::mutex> lock(mutex);
  changed.wait(lock, [&] { return ended || !queue.empty(); });
  ended = ended || IsStopped();
  std::optional<Message> next;
  if (!ended) {
    next = std::move(queue.front());
    queue.pop_front();
  }
  changed.notify_all();
  return next;
}

void WindowServer::Handle(const Message& message) {
  WindowReply reply;
  reply.answer = handler.Answer(message.message);
  // A reply always fits into the buffer of a fresh connection, so this waits for nobody.
  if (message.sender.IsOpen()) SendBytes(message.sender, EncodeReply(reply));
}

void WindowServer::Hear() {
  while (WaitForRoom() && HearOnce()) {
  }
  const std::lock_guard<std::mutex> lock(mutex);
  ended = true;
  changed.notify_all();
}

// False once it is over.
bool WindowServer::WaitForRoom() {
  std::unique_lock<std::mutex> lock(mutex);
  changed.wait(lock, [&] { return ended || queue.size() < kLongestQueue; });
  return !ended;
}

bool WindowServer::HearOnce() {
  std::vector<pollfd> waits = {{stopReader.Number(), POLLIN, 0}, {listener.Number(), POLLIN, 0}};
  for (const Client& client : clients) waits.push_back({client.connection.Number(), POLLIN, 0});
  if (Uninterrupted([&] { return poll(waits.data(), waits.size(), -1); }) < 0) return false;
  if (waits[0].revents != 0) return false;

  std::vector<Client> silent;
  for (std::size_t i = 0; i < clients.size(); ++i) {
    if (waits[i + 2].revents == 0 || Read(clients[i])) silent.push_back(std::move(clients[i]));
  }
  clients = std::move(silent);
  if (waits[1].revents != 0) Accept();
  return true;
}

// As many as can be heard, and one at least. Those that are there already have just been found
// silent.
void WindowServer::Accept() {
  if (clients.size() == kMostClients) clients.erase(clients.begin());
  while (clients.size() < kMostClients) {
    Descriptor connection(
        accept4(listener.Number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!connection.IsOpen()) {
      const bool noneLeft = errno == EAGAIN || errno == EINTR || errno == ECONNABORTED;
      // Out of descriptors or memory: the next round must not come at once again and again.
      if (!noneLeft) poll(nullptr, 0, kPauseMilliseconds);
      return;
    }
    clients.push_back({std::move(connection), {}});
  }
}

// Whether more is to come from the client.
bool WindowServer::Read(Client& client) {
  char bytes[kWindowRequestSize];
  const ssize_t got = Uninterrupted([&] {
    return recv(client.connection.Number(), bytes, kWindowRequestSize - client.received.size(), 0);
  });
  if (got < 0) return errno == EAGAIN;
  if (got == 0) return false;
  client.received.append(bytes, static_cast<std::size_t>(got));
  if (client.received.size() < kWindowRequestSize) return true;
  Take(client);
  return false;
}

// A request that has come as a whole.
void WindowServer::Take(Client& client) {
  const auto request = DecodeRequest(client.received);
  if (!request) return;
  if (request->kind == WindowRequestKind::kAsk) {
    SendBytes(client.connection, EncodeReply({0, handler.Enabled(), handler.Parent()}));
    return;
  }
  Message message{request->message, {}};
  if (request->kind == WindowRequestKind::kSend) message.sender = std::move(client.connection);
  const std::lock_guard<std::mutex> lock(mutex);
  queue.push_back(std::move(message));
  changed.notify_all();
}

}  // namespace pw

#include "platform/posix/posix_windows.h"

#include "base/crc32.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::uint32_t kFirstRegistered = 0xC000;
constexpr std::uint32_t kRegisteredCount = 0x4000;

}  // namespace

WindowId PosixWindows::AddLocalWindow(WindowId parent) {
  return Add({{}, parent});
}

std::uint32_t PosixWindows::RegisterMessage(const std::string& name) {
  return kFirstRegistered + Crc32(0, AsciiLower(name)) % kRegisteredCount;
}

WindowId PosixWindows::Find(const std::string& className) {
  if (folder.empty() || !IsOwnFolder(folder)) return kNoWindow;
  for (const WindowSocket& socket : ListSockets(folder)) {
    if (!EqualIgnoringCase(socket.className, className)) continue;
    const std::string name = FileNameOf(socket);
    const auto address = AddressOf(folder, name);
    const Presence presence = address ? PresenceAt(*address) : Presence::kAbsent;
    if (presence == Presence::kListening) return IdOf(name);
    if (presence == Presence::kDead) RemoveDead(folder, name);
  }
  return kNoWindow;
}

WindowId PosixWindows::Parent(WindowId window) {
  const Window* const found = At(window);
  if (found == nullptr) return kNoWindow;
  if (found->socketName.empty()) return found->parent;
  const auto reply = Request(*found, {});
  // The name is another process's word: it must be one of a socket in the folder.
  if (!reply || !SocketOfFileName(reply->parent)) return kNoWindow;
  const auto address = AddressIn(reply->parent);
  const bool there = address && PresenceAt(*address) == Presence::kListening;
  return there ? IdOf(reply->parent) : kNoWindow;
}

bool PosixWindows::IsEnabled(WindowId window) {
  const Window* const found = At(window);
  if (found == nullptr) return false;
  if (found->socketName.empty()) return true;
  const auto reply = Request(*found, {});
  return reply && reply->enabled;
}

std::int32_t PosixWindows::Send(WindowId window, const WindowMessage& message) {
  const Window* const found = At(window);
  if (found == nullptr || found->socketName.empty()) return 0;
  const auto reply = Request(*found, {WindowRequestKind::kSend, message});
  return reply ? reply->answer : 0;
}

bool PosixWindows::Post(WindowId window, const WindowMessage& message) {
  const Window* const found = At(window);
  if (found == nullptr) return false;
  if (found->socketName.empty()) return true;
  const Descriptor connection = Connect(*found, Waiting::kNo);
  return connection.IsOpen() &&
         SendBytes(connection, EncodeRequest({WindowRequestKind::kPost, message}));
}

WindowId PosixWindows::Add(Window window) {
  windows.push_back(std::move(window));
  return static_cast<WindowId>(windows.size());
}

WindowId PosixWindows::IdOf(const std::string& socketName) {
  const auto known = bySocketName.find(socketName);
  if (known != bySocketName.end()) return known->second;
  return bySocketName[socketName] = Add({socketName, kNoWindow});
}

const PosixWindows::Window* PosixWindows::At(WindowId window) const {
  const auto number = static_cast<std::size_t>(window);
  return number == 0 || number > windows.size() ? nullptr : &windows[number - 1];
}

std::optional<sockaddr_un> PosixWindows::AddressIn(const std::string& socketName) const {
  return IsOwnFolder(folder) ? AddressOf(folder, socketName) : std::nullopt;
}

Descriptor PosixWindows::Connect(const Window& window, Waiting waiting) const {
  const auto address = AddressIn(window.socketName);
  return address ? ConnectTo(*address, waiting) : Descriptor();
}

std::optional<WindowReply> PosixWindows::Request(const Window& window,
                                                 const WindowRequest& request) const {
  const Descriptor connection = Connect(window, Waiting::kYes);
  if (!connection.IsOpen() || !SendBytes(connection, EncodeRequest(request))) return std::nullopt;
  return ReceiveReply(connection);
}

}  // namespace pw

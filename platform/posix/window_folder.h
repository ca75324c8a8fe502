#pragma once

#include <sys/un.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/descriptor.h"

// The folder of a user's windows, and the sockets in it: one for each window, named after its
// class, its process and a number, "Wingmate_95.4711.1".
//
// A window whose program died leaves its socket behind, and nobody answers there. Who removes one,
// and who makes one, holds the folder's lock, so that no socket is taken for dead while it is being
// made.
namespace pw {

// `$XDG_RUNTIME_DIR/pairwise`, or `/tmp/pairwise-` and the user's number where that isn't set, or
// names no folder of this user.
std::filesystem::path DefaultWindowsFolder();

// Whether it is a folder, not a link to one, that belongs to this user and is closed to all others.
// No other folder is used: a stranger's windows could be in it.
bool IsOwnFolder(const std::filesystem::path& folder);

// Makes the folder, with nothing above it, where it is missing. Whether it can be used.
bool MakeOwnFolder(const std::filesystem::path& folder);

// Locks the folder as long as the descriptor is open. Not open if it can't be locked, or if
// somebody else has the lock and it isn't to be waited for.
Descriptor LockFolder(const std::filesystem::path& folder, bool wait);

struct WindowSocket {
  std::string className;
  std::uint32_t process = 0;
  std::uint32_t number = 0;

  friend bool operator==(const WindowSocket&, const WindowSocket&) = default;
};
std::string FileNameOf(const WindowSocket& socket);
std::optional<WindowSocket> SocketOfFileName(std::string_view name);

// The sockets in the folder, dead ones among them, in the order of process, number and class.
std::vector<WindowSocket> ListSockets(const std::filesystem::path& folder);

// Nothing if the path is longer than a socket's address can be.
std::optional<sockaddr_un> AddressOf(const std::filesystem::path& folder,
                                     const std::string& fileName);

enum class Waiting : std::uint8_t { kNo, kYes };

// A connection to a window's socket; not open if nobody listens there. While more programs are
// already waiting than the window lets, it waits too, or not: `errno` is EAGAIN then.
Descriptor ConnectTo(const sockaddr_un& address, Waiting waiting);

enum class Presence : std::uint8_t {
  kListening,
  kDead,    // a socket that nobody listens at
  kAbsent,  // no socket, or it can't be told
};
Presence PresenceAt(const sockaddr_un& address);

// Removes a window's socket if nobody listens there. It stays if the lock can't be had at once.
void RemoveDead(const std::filesystem::path& folder, const std::string& fileName);

}  // namespace pw

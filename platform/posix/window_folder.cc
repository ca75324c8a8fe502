#include "platform/posix/window_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include "base/text.h"
#include "platform/posix/folder_reader.h"

namespace pw {
namespace {

// Characters of a class name that stand in a file name as they are; others become "%" and two
// digits.
constexpr bool IsPlain(char c) {
  const unsigned char lower = AsciiLower(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

std::string Escaped(std::string_view className) {
  std::string out;
  for (const char c : className) {
    if (IsPlain(c)) {
      out.push_back(c);
    } else {
      out += Format("%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    }
  }
  return out;
}

std::optional<unsigned> HexDigit(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return std::nullopt;
}

std::optional<std::string> Unescaped(std::string_view escaped) {
  std::string out;
  while (!escaped.empty()) {
    if (IsPlain(escaped[0])) {
      out.push_back(escaped[0]);
      escaped.remove_prefix(1);
      continue;
    }
    if (escaped[0] != '%' || escaped.size() < 3) return std::nullopt;
    const auto high = HexDigit(escaped[1]);
    const auto low = HexDigit(escaped[2]);
    if (!high || !low) return std::nullopt;
    out.push_back(static_cast<char>(*high * 16 + *low));
    escaped.remove_prefix(3);
  }
  return out;
}

// The number behind the last dot, which is cut off the end together with the dot.
std::optional<std::uint32_t> TakeNumber(std::string_view& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  const std::string_view digits = name.substr(dot + 1);
  const auto number = static_cast<std::uint32_t>(ParseLong(digits));
  if (std::to_string(number) != digits) return std::nullopt;
  name = name.substr(0, dot);
  return number;
}

// A user who becomes another, root say, may well keep the environment.
bool BelongsToThisUser(const char* folder) {
  struct stat status {};
  return stat(folder, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

}  // namespace

std::filesystem::path DefaultWindowsFolder() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  const bool usable = runtime != nullptr && runtime[0] == '/' && BelongsToThisUser(runtime);
  if (usable) return std::filesystem::path(runtime) / "pairwise";
  return "/tmp/pairwise-" + std::to_string(geteuid());
}

bool IsOwnFolder(const std::filesystem::path& folder) {
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid() && (status.st_mode & 0077U) == 0;
}

bool MakeOwnFolder(const std::filesystem::path& folder) {
  return (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) && IsOwnFolder(folder);
}

Descriptor LockFolder(const std::filesystem::path& folder, bool wait) {
  Descriptor descriptor(Uninterrupted(
      [&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
  if (!descriptor.IsOpen()) return descriptor;
  const int how = wait ? LOCK_EX : LOCK_EX | LOCK_NB;
  if (Uninterrupted([&] { return flock(descriptor.Number(), how); }) != 0) descriptor.Close();
  return descriptor;
}

std::string FileNameOf(const WindowSocket& socket) {
  return Escaped(socket.className) + "." + std::to_string(socket.process) + "." +
         std::to_string(socket.number);
}

std::optional<WindowSocket> SocketOfFileName(std::string_view name) {
  const auto number = TakeNumber(name);
  const auto process = number ? TakeNumber(name) : std::nullopt;
  auto className = process ? Unescaped(name) : std::nullopt;
  if (!className || className->empty()) return std::nullopt;
  return WindowSocket{std::move(*className), *process, *number};
}

std::vector<WindowSocket> ListSockets(const std::filesystem::path& folder) {
  std::vector<WindowSocket> sockets;
  FolderReader reader(folder);
  while (const dirent* const entry = reader.Next()) {
    if (auto socket = SocketOfFileName(entry->d_name)) sockets.push_back(std::move(*socket));
  }
  std::sort(sockets.begin(), sockets.end(), [](const WindowSocket& a, const WindowSocket& b) {
    return std::tie(a.process, a.number, a.className) < std::tie(b.process, b.number, b.className);
  });
  return sockets;
}

std::optional<sockaddr_un> AddressOf(const std::filesystem::path& folder,
                                     const std::string& fileName) {
  const std::string path = folder / fileName;
  sockaddr_un address{};
  if (path.size() >= sizeof(address.sun_path)) return std::nullopt;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return address;
}

Descriptor ConnectTo(const sockaddr_un& address, Waiting waiting) {
  const int flags = SOCK_STREAM | SOCK_CLOEXEC | (waiting == Waiting::kNo ? SOCK_NONBLOCK : 0);
  Descriptor descriptor(socket(AF_UNIX, flags, 0));
  if (!descriptor.IsOpen()) return descriptor;
  const int result = Uninterrupted([&] {
    return connect(descriptor.Number(), reinterpret_cast<const sockaddr*>(&address),
                   sizeof(address));
  });
  if (result == 0) return descriptor;
  const int reason = errno;
  descriptor.Close();
  errno = reason;
  return descriptor;
}

Presence PresenceAt(const sockaddr_un& address) {
  if (ConnectTo(address, Waiting::kNo).IsOpen() || errno == EAGAIN) return Presence::kListening;
  if (errno != ECONNREFUSED) return Presence::kAbsent;
  // Anything else in the place of a socket refuses too.
  struct stat status {};
  const bool isSocket = lstat(address.sun_path, &status) == 0 && S_ISSOCK(status.st_mode);
  return isSocket ? Presence::kDead : Presence::kAbsent;
}

void RemoveDead(const std::filesystem::path& folder, const std::string& fileName) {
  const auto address = AddressOf(folder, fileName);
  const Descriptor lock = LockFolder(folder, false);
  if (!address || !lock.IsOpen() || PresenceAt(*address) != Presence::kDead) return;
  unlinkat(lock.Number(), fileName.c_str(), 0);
}

}  // namespace pw

#include "platform/posix/window_wire.h"

#include <sys/socket.h>

#include "base/cursor.h"

namespace pw {
namespace {

constexpr std::string_view kRequestMark = "PWQ1";
constexpr std::string_view kReplyMark = "PWR1";

// Exactly so many bytes, or nothing.
std::optional<std::string> ReceiveBytes(const Descriptor& connection, std::size_t count) {
  std::string bytes(count, '\0');
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = Uninterrupted(
        [&] { return recv(connection.Number(), bytes.data() + done, count - done, 0); });
    if (got <= 0) return std::nullopt;
    done += static_cast<std::size_t>(got);
  }
  return bytes;
}

}  // namespace

std::string EncodeRequest(const WindowRequest& request) {
  ByteWriter bytes;
  bytes.Bytes(kRequestMark);
  bytes.U32(static_cast<std::uint32_t>(request.kind));
  bytes.U32(request.message.number);
  bytes.U32(request.message.wParam);
  bytes.I32(request.message.lParam);
  return bytes.Release();
}

std::optional<WindowRequest> DecodeRequest(std::string_view bytes) {
  ByteReader reader(bytes);
  WindowRequest request;
  const bool marked = reader.Take(kRequestMark.size()) == kRequestMark;
  const std::uint32_t kind = reader.U32();
  request.kind = static_cast<WindowRequestKind>(kind);
  request.message.number = reader.U32();
  request.message.wParam = reader.U32();
  request.message.lParam = reader.I32();
  const bool known = kind >= static_cast<std::uint32_t>(WindowRequestKind::kAsk) &&
                     kind <= static_cast<std::uint32_t>(WindowRequestKind::kPost);
  if (!marked || !known || reader.Short() || reader.Remaining() != 0) return std::nullopt;
  return request;
}

std::string EncodeReply(const WindowReply& reply) {
  const std::string_view parent =
      reply.parent.size() <= kLongestParent ? reply.parent : std::string_view();
  ByteWriter bytes;
  bytes.Bytes(kReplyMark);
  bytes.I32(reply.answer);
  bytes.U32(reply.enabled ? 1 : 0);
  bytes.U32(static_cast<std::uint32_t>(parent.size()));
  bytes.Bytes(parent);
  return bytes.Release();
}

bool SendBytes(const Descriptor& connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = Uninterrupted(
        [&] { return send(connection.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
    if (put <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

std::optional<WindowReply> ReceiveReply(const Descriptor& connection) {
  const auto head = ReceiveBytes(connection, kWindowReplyHeadSize);
  if (!head) return std::nullopt;
  ByteReader reader(*head);
  if (reader.Take(kReplyMark.size()) != kReplyMark) return std::nullopt;
  WindowReply reply;
  reply.answer = reader.I32();
  reply.enabled = reader.U32() != 0;
  const std::uint32_t length = reader.U32();
  if (length > kLongestParent) return std::nullopt;
  auto parent = ReceiveBytes(connection, length);
  if (!parent) return std::nullopt;
  reply.parent = std::move(*parent);
  return reply;
}

}  // namespace pw

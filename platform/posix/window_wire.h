#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/descriptor.h"
#include "platform/windows.h"

// What programs say to each other's windows. A connection carries one request, and then one reply
// unless the message was posted.
namespace pw {

enum class WindowRequestKind : std::uint32_t {
  kAsk = 1,   // how the window is; it sees no message
  kSend = 2,  // a message, whose answer is waited for
  kPost = 3,  // a message, and no reply comes
};

struct WindowRequest {
  WindowRequestKind kind = WindowRequestKind::kAsk;
  WindowMessage message;  // zeros when asking

  friend bool operator==(const WindowRequest&, const WindowRequest&) = default;
};

struct WindowReply {
  std::int32_t answer = 0;  // to a message
  bool enabled = false;
  std::string parent;  // file name of the parent window's socket; empty if there is none

  friend bool operator==(const WindowReply&, const WindowReply&) = default;
};

//  offset  width  a request, little-endian
//       0      4  "PWQ1"
//       4      4  kind
//       8      4  number of the message
//      12      4  wParam
//      16      4  lParam
inline constexpr std::size_t kWindowRequestSize = 20;
std::string EncodeRequest(const WindowRequest& request);
std::optional<WindowRequest> DecodeRequest(std::string_view bytes);  // nothing if malformed

//  offset  width  a reply, little-endian
//       0      4  "PWR1"
//       4      4  answer
//       8      4  1 if enabled, else 0
//      12      4  n, at most `kLongestParent`
//      16      n  parent
inline constexpr std::size_t kWindowReplyHeadSize = 16;
inline constexpr std::size_t kLongestParent = 255;
std::string EncodeReply(const WindowReply& reply);  // a longer parent is left out

// Sends all bytes, and doesn't raise a signal when nobody is there to take them. False if not all
// went out, which a connection that doesn't wait also gives when its buffer is full.
bool SendBytes(const Descriptor& connection, std::string_view bytes);

// Waits for a reply. Nothing if the other side goes before it has given one, or gives something
// else.
std::optional<WindowReply> ReceiveReply(const Descriptor& connection);

}  // namespace pw

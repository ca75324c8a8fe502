#include <cstdint>
#include <string>
#include <string_view>

#include "platform/portable/rtf_reader.h"
#include "platform/portable/rtf_writer.h"

// Any bytes have a plain text that is a small multiple of them, and a text that is written comes
// back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string plain = pw::rtf::PlainText(bytes);
  if (plain.size() > 2 * size) __builtin_trap();
  const auto document = pw::rtf::Document(plain, {"Arial", 20, 0}, SIZE_MAX);
  if (!document || document->find('\0') != std::string::npos) __builtin_trap();
  const std::string again = pw::rtf::PlainText(*document);
  // Line ends become those of the organiser once, and are so from then on.
  const auto second = pw::rtf::Document(again, {"Arial", 20, 0}, SIZE_MAX);
  if (pw::rtf::PlainText(*second) != again) __builtin_trap();
  return 0;
}

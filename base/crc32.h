#pragma once

#include <cstdint>
#include <string_view>

namespace pw {

// The reflected CRC-32 of polynomial 0xEDB88320. Chaining from 0 over the pieces of a text gives
// the same as one pass over the whole: Crc32(Crc32(0, a), b) is Crc32(0, a + b).
std::uint32_t Crc32(std::uint32_t crc, std::string_view bytes);

}  // namespace pw

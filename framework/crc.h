#pragma once

#include <cstdint>
#include <string_view>

#include "framework/values.h"

// How record contents are folded into a CRC-32, chained from 0. Equal input gives equal output, and
// the pieces may be folded one by one.
namespace pw {

// The bytes of a text and one zero byte.
std::uint32_t FoldText(std::uint32_t crc, std::string_view text);

// The fields in order, little-endian, seven bytes.
std::uint32_t FoldStamp(std::uint32_t crc, const PWDateTimeStamp& stamp);

}  // namespace pw

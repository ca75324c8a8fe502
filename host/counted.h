#pragma once

#include <cstddef>
#include <string>

namespace pw {

// "1 card", "40 cards".
std::string Counted(std::size_t count, const char* one, const char* many);

}  // namespace pw

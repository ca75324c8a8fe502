#pragma once

#include <cstdint>

// The id of the section whose notes are records. One for the whole process: only one memo source is
// open at a time.
std::uint16_t& OpenSectionId();

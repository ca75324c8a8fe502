#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pw {

// The bytes of a new cardfile: its fields, at most three of them that make up a card's title, and
// the one blank card by which a cardfile is known to be empty. All texts are of the organiser's
// code page. Key text beyond its line of 128 bytes is cut, and fields end before the one that
// 65,535 bytes of names couldn't hold.
std::string NewCardFile(const std::vector<std::string>& fieldNames,
                        const std::vector<std::string>& sortKeys);

// The same, of names that are laid out as the file has them, 65,535 bytes at most.
std::string NewCardFileOfBlock(std::string_view fieldBlock,
                               const std::vector<std::string>& sortKeys);

}  // namespace pw

#pragma once

#include <string>
#include <vector>

namespace pw {

// The bytes of a new cardfile: its fields, at most three of them that make up a card's title, and the
// one blank card by which a cardfile is known to be empty. All texts are of the organiser's code page.
// Key text beyond its line of 128 bytes, and field text beyond 65,535 bytes, is cut.
std::string NewCardFile(const std::vector<std::string>& fieldNames,
                        const std::vector<std::string>& sortKeys);

}  // namespace pw

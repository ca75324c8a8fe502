#pragma once

#include <cstdint>
#include <vector>

namespace pw::memo {

// Which notes each section of a binder has, when it is saved: for each section, the indexes of its
// notes in their order.
//
// A note goes to the section of its id. Of several with one id it is the one at or behind the place
// of the note before it, or else the first. A note whose id no section has ends it all: it and
// those behind it are in no group.
using SectionGroups = std::vector<std::vector<std::uint32_t>>;
SectionGroups GroupBySection(const std::vector<std::uint16_t>& sectionIds,
                             const std::vector<std::uint16_t>& sectionIdsOfNotes);

}  // namespace pw::memo

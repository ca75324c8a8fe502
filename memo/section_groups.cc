#include "memo/section_groups.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace pw::memo {

SectionGroups GroupBySection(const std::vector<std::uint16_t>& sectionIds,
                             const std::vector<std::uint16_t>& sectionIdsOfNotes) {
  std::unordered_map<std::uint16_t, std::vector<std::size_t>> places;  // of each id, ascending
  for (std::size_t i = 0; i < sectionIds.size(); ++i) places[sectionIds[i]].push_back(i);

  SectionGroups groups(sectionIds.size());
  std::size_t last = 0;
  std::uint32_t note = 0;
  for (const std::uint16_t id : sectionIdsOfNotes) {
    const auto found = places.find(id);
    if (found == places.end()) break;
    const auto next = std::lower_bound(found->second.begin(), found->second.end(), last);
    last = next == found->second.end() ? found->second.front() : *next;
    groups[last].push_back(note++);
  }
  return groups;
}

}  // namespace pw::memo

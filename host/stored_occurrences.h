#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pw {

// When the occurrences of each series take place that are as their series has them, as the event
// file at that location has them: by the series' key the moments, ascending. Empty for a file that
// can't be read.
using StoredOccurrences = std::map<std::int32_t, std::vector<std::int32_t>>;
StoredOccurrences ReadStoredOccurrences(const std::string& eventFile);

}  // namespace pw

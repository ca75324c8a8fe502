#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pw {

struct Occurrence {
  std::int32_t start = 0;  // seconds since 1970 UTC
  std::int32_t end = 0;    // which may be before the start

  friend bool operator<(const Occurrence& a, const Occurrence& b) {
    return std::pair(a.start, a.end) < std::pair(b.start, b.end);
  }
};

// The occurrences of each series that are as their series has them, as the event file at that
// location has them: by the series' key, ascending. Empty for a file that can't be read.
using StoredOccurrences = std::map<std::int32_t, std::vector<Occurrence>>;
StoredOccurrences ReadStoredOccurrences(const std::string& eventFile);

// Whether the series in the recurring file at that location have keys. Those of the older version
// have none, and are linked with their occurrences by the module at each open.
bool HaveSeriesKeys(const std::string& recurringFile);

}  // namespace pw

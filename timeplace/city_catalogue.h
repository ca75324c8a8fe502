#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "timeplace/city_format.h"

class WMCityIndex;

namespace pw {

// What is kept in memory of a city file, so that a change of zone touches no file. Lookups take
// constant time and allocate nothing. Records stay where they are for as long as the
// catalogue, or the one that it was moved to, lives.
class CityCatalogue {
 public:
  // Without cities.
  CityCatalogue() = default;

  // Copies all cities of the index that aren't deleted. Its last node becomes the current one.
  explicit CityCatalogue(WMCityIndex& index);

  CityCatalogue(CityCatalogue&&) = default;
  CityCatalogue& operator=(CityCatalogue&&) = default;
  CityCatalogue(const CityCatalogue&) = delete;
  CityCatalogue& operator=(const CityCatalogue&) = delete;

  // The first city of that zone, in the order of the file; null if there is none.
  const WMCityRecord* ByZone(std::uint8_t zone) const;

 private:
  std::vector<WMCityRecord> records;        // never grows once it is pointed into
  std::vector<const WMCityRecord*> byZone;  // empty, or one for each number
};

// What tells one state of a file from another.
struct FileState {
  std::string path;
  std::uint64_t size = 0;
  std::int64_t lastWrite = 0;  // in nanoseconds since 1970 UTC

  friend bool operator==(const FileState&, const FileState&) = default;
};

// Nothing if the file can't be opened or asked.
std::optional<FileState> StateOf(const std::string& path);

}  // namespace pw

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "calendar/data_file.h"

// What a data file holds in memory, and what a save of it must have written.
namespace pw::test {

// By the tags of their kinds, in their order, as bytes of a version.
using RecordsByKind = std::map<std::int16_t, std::vector<std::string>>;

inline RecordsByKind RecordsHeld(const WMDataFile& file, datafile::FormatVersion version) {
  RecordsByKind records = {{datafile::kSpecialDayTag, {}}, {datafile::kMultiDayTag, {}}};
  const auto add = [&](std::int16_t tag, const auto& day) {
    ByteWriter out;
    datafile::EncodeRecord(out, day, version);
    records[tag].push_back(out.Release());
  };
  for (std::uint32_t i = 0; i < file.Count(); ++i) {
    if (const WMMultiDay* const span = file.MultiDay(i)) {
      add(datafile::kMultiDayTag, *span);
    } else {
      add(datafile::kSpecialDayTag, *file.SpecialDay(i));
    }
  }
  return records;
}

struct SectionsToSave {
  std::string bytes;      // what must stand behind the table: each kind once, if it has an entry
  bool arePlaced = true;  // all kinds have one, which says where they stand and how many there are
};

inline SectionsToSave SectionsOf(RecordsByKind records, const datafile::SectionTable& table) {
  SectionsToSave sections;
  for (const WMDataSection& entry : table) {
    const auto kind = records.extract(entry.tag);
    if (kind.empty()) continue;
    const std::size_t place = datafile::kFirstSection + sections.bytes.size();
    const bool isPlaced = static_cast<std::size_t>(entry.offset) == place || kind.mapped().empty();
    if (!isPlaced || entry.count != kind.mapped().size()) sections.arePlaced = false;
    for (const std::string& record : kind.mapped()) sections.bytes += record;
  }
  for (const auto& [tag, left] : records) {
    if (!left.empty()) sections.arePlaced = false;
  }
  return sections;
}

}  // namespace pw::test

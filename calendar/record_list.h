#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class WMCalendarStore;

// What the engine knows the calendar's records by: each by its index in the one list of all, see
// `WMCalendarStore`.
//
//   id := created "+" id              an item
//       | "Recurring:" key            a series
//       | "MultiDay:" ... | "SpecialDay:" ...
//
// Numbers are signed. See `pw::datafile::IdText` for the latter two.

// Empty for an index that is no record.
std::string IdOfIndex(const WMCalendarStore& store, std::uint32_t index);

// The first record of that id, which also becomes the store's current one.
std::optional<std::uint32_t> IndexOfId(WMCalendarStore& store, std::string_view id);

// When the record was last changed, in seconds since 1970 UTC; where the file doesn't know, when
// that was last written. Nothing for an index that is no record.
std::optional<std::int32_t> StampOfIndex(const WMCalendarStore& store, std::uint32_t index);

// What a change of a record shows in, where it has no stamp. Nothing for an item, and for an index
// that is no record.
struct CrcValues {
  std::vector<std::string> texts;
  std::vector<std::int32_t> words;
};
std::optional<CrcValues> CrcValuesOfIndex(const WMCalendarStore& store, std::uint32_t index);

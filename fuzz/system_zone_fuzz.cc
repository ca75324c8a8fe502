#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/system_zones/city_of_zone.h"
#include "host/system_zones/compiled_zone.h"
#include "host/system_zones/zone_tables.h"
#include "timeplace/date.h"

// Reads anything as this machine's zone files and as their tables. Every zone has an offset at
// every moment, and one that makes a city can be compared with it.
namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckZone(const pw::CompiledZone& zone) {
  for (std::size_t i = 1; i < zone.changes.size(); ++i) {
    Require(zone.changes[i - 1].at <= zone.changes[i].at);
  }
  for (const std::int32_t moment : {INT32_MIN, -1, 0, 951'782'400, INT32_MAX}) {
    pw::OffsetAt(zone, moment);
  }
  const std::int32_t from = PlainSeconds(2026, 1, 1, 0, 0, 0);
  WMCityRecord city;
  if (!pw::SetClocks(zone.rule, city)) pw::AgreesBetween(from, from + 86'400 * 366, city, zone);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto zone = pw::ParseCompiledZone(bytes)) CheckZone(*zone);
  if (const auto rule = pw::ParseRuleLine(bytes)) CheckZone({0, {}, *rule});
  for (const pw::ZoneRow& row : pw::ParseZoneTable(bytes)) pw::CityNameOf(row.id);
  pw::ParseCountryTable(bytes);
  return 0;
}

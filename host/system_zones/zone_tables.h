#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// The tables that come with this machine's zone files: lines of UTF-8 with tabs between the
// columns,
// "#" before a comment.
namespace pw {

// A row of "zone1970.tab".
struct ZoneRow {
  std::string countryCode;  // of the country with the zone's principal city
  std::string id;           // "America/New_York": also the file, from the folder of zones on
};

// Rows that lack one of the two are left out.
std::vector<ZoneRow> ParseZoneTable(std::string_view text);

// The countries of "iso3166.tab" by their codes.
std::map<std::string, std::string, std::less<>> ParseCountryTable(std::string_view text);

}  // namespace pw

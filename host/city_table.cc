#include "host/city_table.h"

#include <algorithm>
#include <cstdlib>

#include "base/codepage.h"
#include "base/cursor.h"
#include "base/text.h"
#include "timeplace/date.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr const char* kWeekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kWeeks[] = {"1st", "2nd", "3rd", "4th", "last"};

std::string OffsetText(const WMCityRecord& city) {
  const std::int32_t minutes = -ZoneOffsetSeconds(city.offset) / kSecondsPerMinute;
  const std::int32_t size = std::abs(minutes);
  return Format("%c%02d:%02d", minutes < 0 ? '-' : '+', size / 60, size % 60);
}

// The day on which clocks change, in words.
std::string DayText(const WMDaylightChange& change, std::int8_t mode) {
  const std::string month = kMonths[std::clamp<std::int32_t>(change.month, 0, 11)];
  if (mode == kDaylightByDate) return std::to_string(change.week + 1) + " " + month;
  if (change.week < 0 || change.weekday < 0 || change.weekday > 6) return "1 " + month;
  const char* week = kWeeks[std::min<std::int32_t>(change.week, 4)];
  return Format("%s %s %s", week, kWeekdays[change.weekday], month.c_str());
}

// As the organiser reads even a damaged rule; empty for no daylight time.
std::string ChangeText(const WMDaylightChange& change, const DaylightRule& rule) {
  if (rule.mode == kNoDaylight) return "";
  if (!rule.IsKnown()) return "unknown";
  return DayText(change, rule.mode) + Format(" %02d:00", change.HourOfDay());
}

}  // namespace

Outcome<CityListing> ListCities(std::string_view bytes) {
  if (bytes.size() < city::kHeaderSize) return Failure{"too short for a city file"};
  ByteReader in(bytes);
  const city::Header header = city::DecodeHeader(in);
  const std::size_t nodes = in.Remaining() / city::kNodeSize;
  const bool isEmpty = header.root == 0 && in.Remaining() == 0;
  if (!isEmpty && (header.root == 0 || header.root > nodes)) {
    return Failure{Format("damaged, or no city file: its tree starts at city %u of %zu",
                          unsigned{header.root}, nodes)};
  }
  CityListing listing;
  listing.isCutOff = in.Remaining() % city::kNodeSize != 0;
  for (std::size_t i = 0; i < nodes; ++i) {
    const WMCityRecord record = city::DecodeNode(in).record;
    if (record.deleted == 0) listing.cities.push_back(record);
  }
  std::stable_sort(
      listing.cities.begin(), listing.cities.end(),
      [](const WMCityRecord& a, const WMCityRecord& b) { return a.Name() < b.Name(); });
  return listing;
}

TextTable CityTable(const std::vector<WMCityRecord>& cities) {
  TextTable table;
  table.heading = {"City", "Zone", "Offset", "Daylight from", "Daylight until", "Country"};
  for (const WMCityRecord& city : cities) {
    const DaylightRule rule = RuleOf(city);
    table.rows.push_back({CodePageToUtf8(city.Name()), std::to_string(city.zone), OffsetText(city),
                          ChangeText(rule.start, rule), ChangeText(rule.end, rule),
                          CodePageToUtf8(city.Country())});
  }
  return table;
}

}  // namespace pw

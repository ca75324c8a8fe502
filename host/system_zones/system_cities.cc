#include "host/system_zones/system_cities.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "host/native_file.h"
#include "host/system_zones/zone_tables.h"
#include "timeplace/date.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUsualFolder = "/usr/share/zoneinfo";

// Many times what any has. A table of this size has fewer rows than a city file may have nodes.
constexpr std::uintmax_t kLargestTable = 256 * std::uintmax_t{1024};
constexpr std::uintmax_t kLargestZone = 1024 * std::uintmax_t{1024};

// Zone numbers have eight bits, and 0 is no zone. The zone file holds one entry more than the
// highest, for a search that stops one short of their number.
constexpr std::size_t kMostZones = 255;
constexpr std::size_t kZoneEntrySize = 34;

constexpr std::string_view kUnitedStatesCode = "US";
constexpr const char* kUnitedStates = "USA";  // as the organiser spells it

constexpr std::array<const char*, kLeftOutReasons> kReasonTexts = {
    "without a readable zone file",
    "with changes by the day of the year",
    "with changes at no full hour of the day",
    "with daylight time of other than an hour",
    "with seconds in their offset",
    "whose rule doesn't hold for the next three years",
    "with another city's name",
    "beyond 255 zones",
};

// Seconds that can be taken to any zone's clocks in 32 bits.
struct Period {
  std::int32_t from = 0;
  std::int32_t to = 0;
};

Period ThreeYearsFrom(std::int64_t now) {
  constexpr std::int64_t kEarliest = 2 * std::int64_t{kSecondsPerDay};
  constexpr std::int64_t kLatest = std::numeric_limits<std::int32_t>::max() - kEarliest;
  constexpr std::int64_t kThreeYears = 3 * std::int64_t{kSecondsPerCommonYear} + kSecondsPerDay;
  const std::int64_t from = std::clamp(now, kEarliest, kLatest);
  const std::int64_t to = std::min(from + kThreeYears, kLatest);
  return {static_cast<std::int32_t>(from), static_cast<std::int32_t>(to)};
}

// Makes the cities one by one, and numbers their zones at the end.
class CityMaker {
 public:
  CityMaker(fs::path folder, std::string_view countryTable, std::int64_t now)
      : folder(std::move(folder)),
        period(ThreeYearsFrom(now)),
        countries(ParseCountryTable(countryTable)) {}

  void Add(const ZoneRow& row) {
    SystemCity city{row.id, {}};
    if (const auto reason = Make(row, city.record)) {
      LeaveOut(*reason);
    } else {
      made.cities.push_back(std::move(city));
    }
  }

  SystemCities Finish() {
    NumberZones();
    std::sort(made.cities.begin(), made.cities.end(), [](const SystemCity& a, const SystemCity& b) {
      return a.record.Name() < b.record.Name();
    });
    return std::move(made);
  }

 private:
  // What cities of one number share, in the order of the numbers: from west to east.
  static auto ZoneKey(const WMCityRecord& city) {
    const auto change = [](const WMDaylightChange& each) {
      return std::tuple(each.month, each.week, each.weekday, each.HourOfDay());
    };
    return std::tuple(city.offset, city.dstMode, change(city.dstStart), change(city.dstEnd));
  }

  std::string CountryOf(const std::string& code) const {
    if (code == kUnitedStatesCode) return kUnitedStates;
    const auto found = countries.find(code);
    return Utf8ToCodePageLossy(found == countries.end() ? code : found->second);
  }

  std::optional<LeftOutReason> Make(const ZoneRow& row, WMCityRecord& city) {
    const auto bytes = ReadNativeFile(folder / row.id, kLargestZone);
    const auto zone = bytes ? ParseCompiledZone(*bytes) : std::nullopt;
    if (!zone) return LeftOutReason::kUnreadable;
    if (const auto reason = SetClocks(zone->rule, city)) return reason;
    if (!AgreesBetween(period.from, period.to, city, *zone)) return LeftOutReason::kNotInForce;
    city.SetName(CityNameOf(row.id));
    city.SetCountry(CountryOf(row.countryCode));
    if (!names.emplace(city.Name()).second) return LeftOutReason::kSameName;
    return {};
  }

  void LeaveOut(LeftOutReason reason) { ++made.leftOut[static_cast<std::size_t>(reason)]; }

  void NumberZones() {
    std::map<decltype(ZoneKey({})), std::uint8_t> numbers;
    for (const SystemCity& city : made.cities) numbers[ZoneKey(city.record)] = 0;
    for (auto& [key, number] : numbers) {
      if (made.zones == kMostZones) break;
      number = ++made.zones;
    }
    for (SystemCity& city : made.cities) city.record.zone = numbers[ZoneKey(city.record)];
    const std::size_t without =
        std::erase_if(made.cities, [](const SystemCity& city) { return city.record.zone == 0; });
    made.leftOut[static_cast<std::size_t>(LeftOutReason::kTooManyZones)] += without;
  }

  fs::path folder;
  Period period;
  std::map<std::string, std::string, std::less<>> countries;
  std::set<std::string, std::less<>> names;
  SystemCities made;
};

}  // namespace

std::string SystemCities::CityFile() const {
  std::vector<WMCityRecord> records;
  records.reserve(cities.size());
  for (const SystemCity& city : cities) records.push_back(city.record);
  return city::EncodeCityFile(records);
}

std::string SystemCities::ZoneFile() const {
  return std::string((std::size_t{zones} + 1) * kZoneEntrySize, '\0');
}

std::string SystemCities::LeftOutText() const {
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < leftOut.size(); ++i) {
    if (leftOut[i] > 0) parts.push_back(std::to_string(leftOut[i]) + " " + kReasonTexts[i]);
  }
  return JoinNonEmpty(parts, ", ");
}

fs::path SystemZoneFolder() {
  const char* folder = std::getenv("TZDIR");
  return folder == nullptr || *folder == '\0' ? kUsualFolder : folder;
}

Outcome<SystemCities> CitiesOfSystem(const fs::path& zoneFolder, std::int64_t now) {
  const auto zoneTable = ReadNativeFile(zoneFolder / "zone1970.tab", kLargestTable);
  const auto countryTable = ReadNativeFile(zoneFolder / "iso3166.tab", kLargestTable);
  for (const auto* table : {&zoneTable, &countryTable}) {
    if (*table) continue;
    return Failure{table->Why().message + " (the package tzdata brings this machine's zones)"};
  }
  CityMaker maker(zoneFolder, *countryTable, now);
  for (const ZoneRow& row : ParseZoneTable(*zoneTable)) maker.Add(row);
  return maker.Finish();
}

}  // namespace pw

#include "host/home_city.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/codepage.h"
#include "base/cursor.h"
#include "host/city_table.h"
#include "host/native_file.h"
#include "host/traceless.h"
#include "timeplace/clock_format.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCityFile = "cityinfo.dat";
constexpr std::uintmax_t kLargestClockFile = 1 << 20;

// The file of that name in any letter case; nothing if there is none.
std::optional<fs::path> FileIn(const fs::path& folder, std::string_view name) {
  const auto names = NamesLeavingNoTrace(folder);
  if (!names) return std::nullopt;
  const auto found = std::find_if(names->begin(), names->end(), [&](const std::string& each) {
    const auto text = Utf8ToCodePage(each);
    return text && EqualFileNames(*text, name);
  });
  if (found == names->end()) return std::nullopt;
  return folder / *found;
}

// What the home clock shows, if there is one.
std::string HomeClockText(const fs::path& folder) {
  const auto file = FileIn(folder, "CLOCKS.DAT");
  if (!file) return {};
  const auto bytes = ReadNativeFile(*file, kLargestClockFile);
  if (!bytes || bytes->size() < clocks::kFileSize) return {};
  ByteReader in(*bytes);
  for (std::size_t i = 0; i < clocks::kClocks; ++i) {
    const WMClock clock = clocks::DecodeClock(in);
    if (clock.notHome == 0) return std::string(clock.CityText());
  }
  return {};
}

// A clock has the city's name, and may have a comma and more behind it.
bool ShowsCity(std::string_view clock, std::string_view city) {
  return clock.substr(0, city.size()) == city &&
         (clock.size() == city.size() || clock[city.size()] == ',');
}

std::vector<WMCityRecord> CitiesIn(const fs::path& file) {
  const auto bytes = ReadNativeFile(file, kLargestCityFile);
  if (!bytes) return {};
  auto listing = ListCities(*bytes);
  return listing ? std::move(listing->cities) : std::vector<WMCityRecord>();
}

// The city of the longest name that fits; empty for none.
template <class Fits>
std::string LongestName(const std::vector<WMCityRecord>& cities, Fits fits) {
  std::string longest;
  for (const WMCityRecord& city : cities) {
    if (city.Name().size() > longest.size() && fits(city.Name())) longest = city.Name();
  }
  return longest;
}

}  // namespace

std::string HomeCityOfClocks(const fs::path& folder) {
  const auto file = FileIn(folder, kCityFile);
  if (!file) return {};
  const std::string clock = HomeClockText(folder);
  return LongestName(CitiesIn(*file),
                     [&](std::string_view city) { return ShowsCity(clock, city); });
}

Outcome<std::string> FindCity(const fs::path& folder, const std::string& name) {
  const auto wanted = Utf8ToCodePage(name);
  const auto file = FileIn(folder, kCityFile);
  if (!file) return Failure{folder.string() + ": no cityinfo.dat is there to find a city in"};
  const std::string found = LongestName(CitiesIn(*file), [&](std::string_view city) {
    return wanted && EqualFileNames(city, *wanted);
  });
  if (!found.empty()) return found;
  return Failure{file->string() + ": has no city '" + name +
                 "'; `pairwise cities` lists those that it has"};
}

}  // namespace pw

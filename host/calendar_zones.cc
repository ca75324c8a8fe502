#include "host/calendar_zones.h"

#include <algorithm>
#include <string_view>

#include "base/codepage.h"
#include "host/formats/vtimezone.h"

namespace pw {

std::string ZoneNameOf(const WMCityRecord& city) {
  constexpr std::string_view kUnfit = ",;:\"\\";
  std::string clean;
  for (const char c : city.Name()) {
    const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    if (!isControl && kUnfit.find(c) == std::string_view::npos) clean += c;
  }
  return clean.empty() ? "City" : CodePageToUtf8(clean);
}

const std::string& CalendarZones::NameOf(const WMCityRecord& city) {
  const auto known = names.find(&city);
  if (known != names.end()) return known->second;
  const std::string clean = ZoneNameOf(city);
  std::string name = clean;
  for (int number = 2; IsTaken(name); ++number) name = clean + " " + std::to_string(number);
  return names.emplace(&city, std::move(name)).first->second;
}

bool CalendarZones::IsTaken(const std::string& name) const {
  return std::any_of(names.begin(), names.end(),
                     [&](const auto& known) { return known.second == name; });
}

void CalendarZones::Append(std::string& out) const {
  for (const auto& [city, name] : names) AppendVTimezone(out, name, *city);
}

}  // namespace pw

#include "host/import/calendar_moments.h"

#include <algorithm>

#include "base/text.h"
#include "host/formats/stamp_text.h"
#include "host/series_events.h"
#include "timeplace/date.h"

namespace pw {
namespace {

namespace chrono = std::chrono;

constexpr std::size_t kDateLength = 8;

std::int32_t Number(const std::string& text, std::size_t at, std::size_t length) {
  return ParseLong(std::string_view(text).substr(at, length));
}

// The fields of a date, or of a date and a time; nothing where they aren't such.
std::optional<PWDateTimeStamp> FieldsOf(const std::string& text) {
  const bool isUtc = !text.empty() && text.back() == 'Z';
  const std::string_view digits = std::string_view(text).substr(0, text.size() - (isUtc ? 1 : 0));
  const bool isDate = digits.size() == kDateLength;
  if (!HasForm(digits, isDate ? "99999999" : "99999999T999999")) return std::nullopt;
  const std::string date = text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2);
  if (!IsDate(date)) return std::nullopt;
  PWDateTimeStamp stamp(static_cast<std::uint16_t>(Number(text, 0, 4)),
                        static_cast<std::uint8_t>(Number(text, 4, 2)),
                        static_cast<std::uint8_t>(Number(text, 6, 2)), 0, 0, 0);
  if (isDate) return stamp;
  stamp.hour = static_cast<std::uint8_t>(Number(text, 9, 2));
  stamp.minute = static_cast<std::uint8_t>(Number(text, 11, 2));
  stamp.second = static_cast<std::uint8_t>(Number(text, 13, 2));
  // A leap second may stand there.
  if (stamp.hour > 23 || stamp.minute > 59 || stamp.second > 60) return std::nullopt;
  return stamp;
}

bool IsUtc(const CalendarTime& time) {
  return !time.text.empty() && time.text.back() == 'Z';
}

}  // namespace

LocalStart LocalOf(const PWDateTimeStamp& stamp) {
  return {DateOf(stamp), chrono::hours(stamp.hour) + chrono::minutes(stamp.minute) +
                             chrono::seconds(stamp.second)};
}

CalendarMoments::CalendarMoments(const CalendarFile& file, const CityClocks& cities)
    : file(file), cities(cities) {}

bool CalendarMoments::IsDate(const CalendarTime& time) {
  return time.text.size() == kDateLength;
}

const WMCityRecord* CalendarMoments::CityOfZone(const std::string& name) const {
  if (const WMCityRecord* city = cities.Named(name)) return city;
  const auto zone = std::find_if(file.zones.begin(), file.zones.end(), [&](const ReadZone& each) {
    return each.name == name && each.standard;
  });
  if (zone == file.zones.end()) return nullptr;
  return cities.WithOffset(*zone->standard, zone->daylight.has_value());
}

const WMCityRecord* CalendarMoments::CityOf(const CalendarTime& time) {
  if (time.zone.empty() || IsUtc(time)) return cities.Home();
  const auto [place, isNew] = known.emplace(time.zone, nullptr);
  if (isNew) {
    place->second = CityOfZone(time.zone);
    if (place->second == nullptr) {
      unknown.push_back(time.zone);
      place->second = cities.Home();
    }
  }
  return place->second;
}

bool CalendarMoments::IsTime(const CalendarTime& time) {
  return FieldsOf(time.text).has_value();
}

std::optional<std::int32_t> CalendarMoments::UtcOf(const CalendarTime& time) {
  const auto fields = FieldsOf(time.text);
  if (!fields) return std::nullopt;
  return UtcWithin(IsUtc(time) ? nullptr : CityOf(time), *fields);
}

std::optional<LocalStart> CalendarMoments::LocalBy(const WMCityRecord* city,
                                                   const CalendarTime& time) {
  auto fields = FieldsOf(time.text);
  if (!fields) return std::nullopt;
  // A time by the same clocks needs no way there and back.
  const bool isLocal = IsDate(time) || (!IsUtc(time) && CityOf(time) == city);
  const auto utc = isLocal ? std::nullopt : UtcOf(time);
  if (utc) fields = LocalStamp(city, StampOf(BrokenTimeOf(*utc)));
  return LocalOf(*fields);
}

std::optional<chrono::sys_days> CalendarMoments::DateBy(const WMCityRecord* city,
                                                        const CalendarTime& time) {
  const auto local = LocalBy(city, time);
  if (!local) return std::nullopt;
  return local->first;
}

}  // namespace pw

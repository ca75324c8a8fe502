#include "timeplace/zones.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "base/process_wide.h"
#include "platform/platform.h"
#include "timeplace/bounds_cache.h"
#include "timeplace/city_catalogue.h"
#include "timeplace/city_index.h"
#include "timeplace/engine_zone.h"
#include "timeplace/software_value.h"
#include "timeplace/zone_rule.h"

namespace {

constexpr const char* kMainKey = "Main";
constexpr std::size_t kLongestCity = 26;
constexpr std::size_t kLongestFolder = 260;

constexpr std::string_view kCityFile = "cityinfo.dat";
constexpr std::string_view kZoneFile = "timezone.dat";
// An entry of the zone table, and as much of the table as counts. Nothing but its length does.
constexpr std::uint64_t kZoneSize = 34;
constexpr std::uint64_t kTableSize = 256 * kZoneSize;

constexpr std::int32_t kNoYear = -1;
constexpr std::int32_t kMostZoneId = 255;

// Ends the search for a zone; a text of its own, whatever language the other texts are in.
constexpr std::string_view kUnitedStates = "USA";

// All that the process knows of zones.
struct ZoneState {
  WMCityRecord homeCity;
  WMCityRecord workingCity;
  std::int32_t zoneOffset = 0;  // seconds to add to local standard time for UTC
  pw::DaylightBounds daylight;  // of the cached year
  std::int32_t cachedYear = kNoYear;
  std::int32_t zoneCount = 0;  // zone numbers to try, one more than the highest
  bool loadTried = false;
  pw::BoundsCache bounds;

  // The city file's content, and its state when that was read; looked at again where that isn't
  // `fresh`.
  bool fresh = false;
  std::optional<pw::FileState> cityFile;
  pw::CityCatalogue cities;
};

pw::ProcessWide<ZoneState> state;

// The path of a file of the organiser's folder; nothing if the registry names no folder.
std::optional<std::string> PathOf(std::string_view file) {
  const auto folder = pw::ReadSoftwareValue(kMainKey, "DATA", kLongestFolder);
  if (!folder) return std::nullopt;
  return pw::PathInFolder(*folder, file);
}

void Remember(WMCityIndex& index, std::optional<pw::FileState> file) {
  if (file != state->cityFile) state->cities = pw::CityCatalogue(index);
  state->cityFile = std::move(file);
  state->fresh = true;
}

const pw::CityCatalogue& Cities() {
  if (state->fresh) return state->cities;
  const auto path = PathOf(kCityFile);
  auto found = path ? pw::StateOf(*path) : std::nullopt;
  if (!found) {
    state->cities = pw::CityCatalogue();
    state->cityFile.reset();
    state->fresh = true;
  } else if (found == state->cityFile) {
    state->fresh = true;
  } else {
    WMCityIndex index(*path);
    Remember(index, std::move(found));
  }
  return state->cities;
}

void CountZones() {
  state->zoneCount = 0;
  const auto path = PathOf(kZoneFile);
  if (!path) return;
  const auto file =
      pw::CurrentPlatform().files->Open(*path, pw::OpenMode::kRead, pw::Sharing::kReadWrite);
  if (file == nullptr) return;
  const std::uint64_t size = std::min<std::uint64_t>(file->Size().value_or(0), kTableSize);
  state->zoneCount = static_cast<std::int32_t>(size / kZoneSize);
}

void EnsureZone() {
  if (state->cachedYear == kNoYear && !state->loadTried) LoadHomeZone();
}

// A mode that isn't known leaves the bounds of whatever zone was before.
bool HasDaylight() {
  return state->workingCity.dstMode != kNoDaylight;
}

void CacheYear(std::int32_t year) {
  if (year != state->cachedYear) ComputeDaylightBounds(year);
}

// What the working city's clocks show now. The bounds are those of the year in Greenwich.
pw::LocalTime Now() {
  const std::int32_t utc = UtcNowSeconds();
  const std::int32_t standard = WrappingSum(utc, -state->zoneOffset);
  if (!HasDaylight()) return {standard, false};
  CacheYear(YearOf(utc));
  return pw::StandardToLocal(standard, state->daylight);
}

void SetWorkingCity(const WMCityRecord& city) {
  state->workingCity = city;
  state->bounds.Use(pw::RuleOf(city));
}

// Bounds and offset of the working city, for the present year in Greenwich.
void FollowWorkingCity() {
  ComputeDaylightBounds(YearOf(UtcNowSeconds()));
  state->zoneOffset = pw::ZoneOffsetSeconds(state->workingCity.offset);
}

}  // namespace

bool LoadHomeZone() {
  state->loadTried = true;
  const auto city = pw::ReadSoftwareValue(kMainKey, "LocalCity", kLongestCity);
  const auto path = PathOf(kCityFile);
  if (!path || !pw::CurrentPlatform().files->Exists(*path)) return false;

  auto file = pw::StateOf(*path);
  WMCityIndex index(*path);
  if (const WMCityRecord* found = index.Find(city.value_or(std::string()))) {
    const bool changes = found->zone != state->workingCity.zone;
    SetWorkingCity(*found);
    if (changes) {
      FollowWorkingCity();
      state->homeCity = state->workingCity;
    }
  }
  Remember(index, std::move(file));
  CountZones();
  return true;
}

void ZoneFilesMayHaveChanged() {
  state->fresh = false;
  state->loadTried = false;
}

std::int32_t WorkingZoneId() {
  return state->workingCity.zone;
}

std::int32_t HomeZoneId() {
  return state->homeCity.zone;
}

bool SwitchZone(std::int32_t id, bool makeHome) {
  const WMCityRecord* city = &state->homeCity;
  if (id != 0) {
    if (id == WorkingZoneId()) return true;
    if (id < 0 || id > kMostZoneId) return false;
    city = Cities().ByZone(static_cast<std::uint8_t>(id));
    if (city == nullptr) return false;
  }
  const bool same = city->zone == state->workingCity.zone;
  SetWorkingCity(*city);
  if (same) return false;
  FollowWorkingCity();
  if (makeHome) state->homeCity = state->workingCity;
  return true;
}

void ComputeDaylightBounds(std::int32_t year) {
  state->cachedYear = year;
  if (state->bounds.Rule().IsKnown()) state->daylight = state->bounds.Of(year);
}

WMBrokenTime SecondsToLocal(std::int32_t seconds) {
  EnsureZone();
  pw::LocalTime local{WrappingSum(seconds, -state->zoneOffset), false};
  if (HasDaylight()) {
    CacheYear(YearOf(local.seconds));
    local = pw::StandardToLocal(local.seconds, state->daylight);
  }
  WMBrokenTime broken = BrokenTimeOf(local.seconds);
  broken.isdst = local.isDaylight ? 1 : 0;
  return broken;
}

std::int32_t LocalToSeconds(WMBrokenTime& local) {
  pw::LocalTime time{NormalSeconds(local), false};
  EnsureZone();
  std::int32_t standard = time.seconds;
  if (HasDaylight()) {
    CacheYear(YearOf(time.seconds));
    standard = pw::LocalToStandard(time, state->daylight);
  }
  local = BrokenTimeOf(time.seconds);
  local.isdst = time.isDaylight ? 1 : 0;
  return WrappingSum(standard, state->zoneOffset);
}

WMBrokenTime SecondsToPlain(std::int32_t seconds) {
  EnsureZone();
  WMBrokenTime broken = BrokenTimeOf(seconds);
  broken.isdst = 0;
  return broken;
}

PWDateTimeStamp SecondsToStamp(std::int32_t seconds) {
  return StampOf(SecondsToPlain(seconds));
}

std::int32_t LocalStampToSeconds(const PWDateTimeStamp& stamp) {
  WMBrokenTime local;
  local.year = stamp.year - 1900;
  local.mon = stamp.month - 1;
  local.mday = stamp.day;
  local.hour = stamp.hour;
  local.min = stamp.minute;
  local.sec = stamp.second;
  local.isdst = -1;
  return LocalToSeconds(local);
}

PWDateTimeStamp SecondsToLocalStamp(std::int32_t seconds) {
  return StampOf(SecondsToLocal(seconds));
}

void LocalNow(SYSTEMTIME& now) {
  EnsureZone();
  const WMBrokenTime broken = BrokenTimeOf(Now().seconds);
  now.wYear = static_cast<std::uint16_t>(broken.year + 1900);
  now.wMonth = static_cast<std::uint16_t>(broken.mon + 1);
  now.wDayOfWeek = static_cast<std::uint16_t>(broken.wday);
  now.wDay = static_cast<std::uint16_t>(broken.mday);
  now.wHour = static_cast<std::uint16_t>(broken.hour);
  now.wMinute = static_cast<std::uint16_t>(broken.min);
  now.wSecond = static_cast<std::uint16_t>(broken.sec);
  now.wMilliseconds = 0;
}

std::int32_t UtcNowSeconds() {
  return static_cast<std::int32_t>(pw::CurrentPlatform().clock->Now());
}

bool HomeToTimeZone(TIME_ZONE_INFORMATION& zone) {
  return state->cachedYear != kNoYear && CityToTimeZone(state->workingCity, zone);
}

bool CityToTimeZone(const WMCityRecord& city, TIME_ZONE_INFORMATION& zone) {
  SYSTEMTIME now;
  if (city.dstMode == kDaylightByDate) LocalNow(now);
  const TIME_ZONE_INFORMATION found = pw::EngineZoneOf(city, now.wYear);
  zone.Bias = found.Bias;
  zone.StandardDate = found.StandardDate;
  zone.StandardBias = found.StandardBias;
  zone.DaylightDate = found.DaylightDate;
  zone.DaylightBias = found.DaylightBias;
  return true;
}

bool ZoneIdOfTimeZone(PWTimeZone& zone, std::int32_t& id) {
  id = WorkingZoneId();
  TIME_ZONE_INFORMATION candidate;
  if (HomeToTimeZone(candidate) && zone == candidate) return true;
  bool found = false;
  for (std::int32_t i = 1; i < state->zoneCount; ++i) {
    const WMCityRecord* city = Cities().ByZone(static_cast<std::uint8_t>(i));
    if (city == nullptr || !CityToTimeZone(*city, candidate) || !(zone == candidate)) continue;
    id = i;
    found = true;
    if (city->Country() == kUnitedStates) break;
  }
  return found;
}

#include "host/check/clock_check.h"

#include <string>

#include "base/cursor.h"
#include "host/city_table.h"
#include "host/counted.h"
#include "timeplace/clock_format.h"
#include "timeplace/place_format.h"

namespace pw {
namespace {

constexpr std::size_t kZoneRecordSize = 34;

}  // namespace

FileCheck CheckClocks(std::string_view bytes) {
  FileCheck check;
  check.holds = "clocks: " + Counted(bytes.size() / clocks::kClockSize, "clock", "clocks");
  if (bytes.size() < clocks::kFileSize) {
    check.Add(bytes.size(), "eight clocks of " + std::to_string(clocks::kClockSize) +
                                " bytes were expected; none can be read");
    return check;
  }
  ByteReader in(bytes);
  bool hasHome = false;
  for (std::size_t i = 0; i < clocks::kClocks; ++i) {
    hasHome = clocks::DecodeClock(in).notHome == 0 || hasHome;
  }
  if (!hasHome) check.Add(std::nullopt, "no clock is the home clock");
  return check;
}

FileCheck CheckCities(std::string_view bytes) {
  FileCheck check;
  check.holds = "city file";
  const auto listing = ListCities(bytes);
  if (!listing) {
    check.Add(std::nullopt, listing.Why().message);
    return check;
  }
  check.holds += ": " + Counted(listing->cities.size(), "city", "cities");
  if (listing->isCutOff) check.Add(bytes.size(), "the file ends within a city");
  return check;
}

FileCheck CheckZoneTable(std::string_view bytes) {
  FileCheck check;
  check.holds = "zone table: " + Counted(bytes.size() / kZoneRecordSize, "zone", "zones");
  if (bytes.size() % kZoneRecordSize != 0) {
    check.Add(bytes.size(), "the file ends within a zone");
  }
  return check;
}

FileCheck CheckPlaces(std::string_view bytes) {
  FileCheck check;
  const places::PlaceFile file = places::Decode(bytes);
  check.holds = "place list: " + Counted(file.places.size(), "place", "places");
  if (!file.hasMagic) {
    check.Add(0, "\"WMW400\" was expected here; an empty list takes its place");
  } else if (file.places.size() < file.count) {
    check.Add(bytes.size(), Counted(file.count, "place", "places") + " were expected",
              file.count - file.places.size());
  }
  return check;
}

}  // namespace pw

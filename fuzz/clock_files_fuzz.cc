#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "timeplace/clock_format.h"
#include "timeplace/place_format.h"

// Reads anything as the file of clocks and as the list of places. A clock is written as it was
// read, also after its own texts were set again; what was read of places comes back, but for a last
// character that a save has no room for.
namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

std::string Encoded(const WMClock& clock) {
  pw::ByteWriter out;
  pw::clocks::EncodeClock(out, clock);
  return std::string(out.Written());
}

void CheckClocks(std::string_view bytes) {
  for (; bytes.size() >= pw::clocks::kClockSize; bytes.remove_prefix(pw::clocks::kClockSize)) {
    pw::ByteReader in(bytes);
    WMClock clock = pw::clocks::DecodeClock(in);
    Require(Encoded(clock) == bytes.substr(0, pw::clocks::kClockSize));
    const std::string city(clock.CityText());
    const std::string label(clock.Label());
    clock.SetCityText(city);
    clock.SetLabel(label);
    Require(clock.CityText() == city && clock.Label() == label);
  }
}

void CheckPlaces(std::string_view bytes) {
  pw::places::PlaceFile file = pw::places::Decode(bytes);
  Require(file.places.size() <= bytes.size() / pw::places::kEntrySize);
  const pw::places::PlaceFile again = pw::places::Decode(pw::places::Encode(file.places));
  for (std::string& place : file.places) {
    place.resize(std::min(place.size(), pw::places::kLongestPlace));
  }
  Require(again.hasMagic && again.places == file.places);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckClocks(bytes);
  CheckPlaces(bytes);
  return 0;
}

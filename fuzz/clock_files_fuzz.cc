#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "framework/source.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/zone_files.h"
#include "timeplace/clock_format.h"
#include "timeplace/place_format.h"

// Reads anything as the file of clocks and as the list of places. A clock is written as it was
// read, also after its own texts were set again; a source over all of them leaves what it can't
// read, and else the file's size; what was read of places comes back, but for a last character that
// a save has no room for.
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

void CheckSource(std::string_view bytes) {
  constexpr const char* kPath = "C:\\Data\\CLOCKS.DAT";
  constexpr const char* kMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";
  pw::TestPlatform platform;
  pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "Lima");
  platform.registry.Set(kMain, "PRODUCT", pw::NumberValue(2));
  platform.files.Put(kPath, bytes);
  PWConfig config;
  config.String(PWConfig::kProductKey, kMain);
  WMSourceManager manager(0);
  manager.Config = &config;
  const std::unique_ptr<PWSource> source(manager.CreateSource("timezone"));
  if (source->Open(0) != kResultOk) return Require(platform.files.Get(kPath) == bytes);
  for (PWRESULT at = source->FirstRecord(); at == kResultOk; at = source->NextRecord()) {
    PWRecord record;
    Require(source->ReadRecord(&record) == kResultOk);
    Require(source->UpdateRecord(record) == kResultOk);
  }
  Require(source->CloseSource() == kResultOk);
  Require(platform.files.Get(kPath)->size() == bytes.size());
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
  CheckSource(bytes);
  CheckPlaces(bytes);
  return 0;
}

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/testing/test_platform.h"
#include "timeplace/city_catalogue.h"
#include "timeplace/city_index.h"

// Reads anything as a city file. Every search ends and finds what it looked for, all ways to a city
// agree, and nodes are written as they were read.
namespace {

constexpr const char* kPath = "C:\\cityinfo.dat";

// Linear searches for each of more cities would take the fuzzer's time for nothing new.
constexpr std::uint32_t kCitiesLookedUp = 64;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckNodes(std::string_view bytes) {
  for (std::uint16_t number = 1; number <= pw::city::NodeCount(bytes.size()); ++number) {
    const std::size_t offset = pw::city::NodeOffset(number);
    pw::ByteReader in(bytes.substr(offset));
    const pw::city::Node node = pw::city::DecodeNode(in);
    if (in.Short() || number == UINT16_MAX) return;
    pw::ByteWriter out;
    pw::city::EncodeNode(out, node);
    Require(out.Written() == bytes.substr(offset, pw::city::kNodeSize));
  }
}

void CheckCity(WMCityIndex& index, const pw::CityCatalogue& cities, std::uint32_t number) {
  const WMCityRecord* read = index.Read(number);
  if (read == nullptr) return;
  const WMCityRecord city = *read;
  const std::string name(city.Name());
  Require(index.Find("no city's name, being longer") == nullptr);
  Require(index.Current().Name() == name);
  const WMCityRecord* inTree = index.Find(name);
  Require(inTree == nullptr || inTree->Name() == name);

  WMCityRecord found;
  Require(index.FindByName(name, found) && found.Name() == name);
  Require(index.FindByZone(city.zone, found) && found.zone == city.zone);
  const WMCityRecord* kept = cities.ByZone(city.zone);
  Require(kept != nullptr && kept->zone == city.zone && kept->Name() == found.Name());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckNodes(bytes);
  pw::TestPlatform platform;
  platform.files.Put(kPath, bytes);
  WMCityIndex index(kPath);
  const pw::CityCatalogue cities(index);
  Require(index.Read(0) == nullptr);
  Require(index.Read(index.Count() + 1U) == nullptr);
  for (std::uint32_t i = 1; i <= std::min<std::uint32_t>(index.Count(), kCitiesLookedUp); ++i) {
    CheckCity(index, cities, i);
  }
  Require(!index.Delete(1));
  Require(platform.files.Get(kPath) == bytes);
  return 0;
}

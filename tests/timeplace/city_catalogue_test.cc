#include "timeplace/city_catalogue.h"

#include <utility>

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "tests/support/city_file_builder.h"
#include "timeplace/city_index.h"

namespace pw {
namespace {

constexpr const char* kPath = "C:\\Data\\cityinfo.dat";

// A catalogue is to give what the index gives by walking through the file.
TEST(CityCatalogueTest, FindsWhatTheIndexFinds) {
  TestPlatform platform;
  test::CityFileBytes file = test::SevenCities();
  file.nodes.push_back({"London", 0, 0, 4});
  file.nodes.push_back({"London", 0, 0, 13});
  file.nodes.push_back({std::string(26, 'L'), 0, 0, 255});
  file.nodes.push_back({"", 0, 0, 0});
  platform.files.Put(kPath, file.Build());
  WMCityIndex index(kPath);
  CityCatalogue first(index);
  const WMCityRecord* berlin = first.ByName("Berlin");
  const CityCatalogue catalogue = std::move(first);
  EXPECT_EQ(catalogue.ByName("Berlin"), berlin) << "records stay where they are";

  for (const char* name : {"Madrid", "Berlin", "London", "Dublin", "Z\xFCrich",
                           "LLLLLLLLLLLLLLLLLLLLLLLLLL", "", "berlin", "Paris"}) {
    WMCityRecord expected;
    const bool known = index.FindByName(name, expected);
    const WMCityRecord* found = catalogue.ByName(name);
    ASSERT_EQ(found != nullptr, known) << name;
    if (!known) continue;
    EXPECT_EQ(found->Name(), name);
    EXPECT_EQ(found->zone, expected.zone) << name;
  }
  for (std::uint32_t zone = 0; zone <= UINT8_MAX; ++zone) {
    WMCityRecord expected;
    const bool known = index.FindByZone(static_cast<std::uint8_t>(zone), expected);
    const WMCityRecord* found = catalogue.ByZone(static_cast<std::uint8_t>(zone));
    ASSERT_EQ(found != nullptr, known) << zone;
    if (!known) continue;
    EXPECT_EQ(found->Name(), expected.Name()) << zone;
  }
}

TEST(CityCatalogueTest, AnEmptyOneKnowsNothing) {
  TestPlatform platform;
  platform.files.Put(kPath, "");
  WMCityIndex index(kPath);
  CityCatalogue catalogue;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(catalogue.ByName(""), nullptr);
    EXPECT_EQ(catalogue.ByZone(0), nullptr);
    EXPECT_EQ(catalogue.ByZone(255), nullptr);
    catalogue = CityCatalogue(index);
  }
}

TEST(FileStateTest, TellsWhetherAFileIsTheSame) {
  TestPlatform platform;
  platform.files.Put(kPath, "abc");
  platform.files.Put("C:\\Data\\other.dat", "abc");
  const auto before = StateOf(kPath);
  ASSERT_NE(before, std::nullopt);
  EXPECT_EQ(before->size, 3U);
  EXPECT_EQ(StateOf(kPath), before);
  EXPECT_NE(StateOf("C:\\Data\\other.dat"), before);

  platform.files.SetLastWrite(kPath, before->lastWrite + 1);
  EXPECT_NE(StateOf(kPath), before);
  platform.files.Put(kPath, "abcd");
  platform.files.SetLastWrite(kPath, before->lastWrite);
  EXPECT_NE(StateOf(kPath), before);
  EXPECT_EQ(StateOf("C:\\Data\\none.dat"), std::nullopt);
}

}  // namespace
}  // namespace pw

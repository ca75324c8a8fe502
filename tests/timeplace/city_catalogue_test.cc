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
  file.nodes.push_back({std::string(26, 'L'), 0, 0, 255});
  file.nodes.push_back({"", 0, 0, 0});
  platform.files.Put(kPath, file.Build());
  WMCityIndex index(kPath);
  CityCatalogue first(index);
  const WMCityRecord* last = first.ByZone(255);
  const CityCatalogue catalogue = std::move(first);
  EXPECT_EQ(catalogue.ByZone(255), last) << "records stay where they are";
  const CityCatalogue none;
  for (std::uint32_t number = 0; number <= UINT8_MAX; ++number) {
    const auto zone = static_cast<std::uint8_t>(number);
    EXPECT_EQ(none.ByZone(zone), nullptr);
    WMCityRecord expected;
    const WMCityRecord* found = catalogue.ByZone(zone);
    ASSERT_EQ(found != nullptr, index.FindByZone(zone, expected)) << number;
    EXPECT_EQ(found != nullptr ? found->Name() : "", expected.Name()) << number;
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

#include "timeplace/city_index.h"

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"
#include "tests/support/city_file_builder.h"
#include "tests/support/damage.h"
#include "tests/support/other_files.h"

namespace {

using pw::test::CityFileBytes;
using pw::test::SevenCities;

constexpr const char* kPath = "C:\\Data\\cityinfo.dat";
constexpr std::uint16_t kSeven = 7;

std::string NameOf(const WMCityRecord* record) {
  return record == nullptr ? "(none)" : std::string(record->Name());
}

class CityIndexTest : public testing::Test {
 protected:
  CityIndexTest() { platform.files.Put(kPath, SevenCities().Build()); }

  pw::TestPlatform platform;
};

TEST_F(CityIndexTest, OfAMissingFileThePersonIsTold) {
  WMCityIndex index("C:\\Data\\none.dat");
  ASSERT_EQ(platform.dialogs.boxes.size(), 1U);
  EXPECT_EQ(platform.dialogs.boxes[0].text,
            "Cannot find the file C:\\Data\\none.dat, \nwhich is required for running "
            "Wingmate/PairWise Desktop.");
  EXPECT_EQ(platform.dialogs.boxes[0].title, "Warning");
  EXPECT_EQ(platform.dialogs.boxes[0].flags, pw::kBoxOk);

  WMCityRecord record;
  EXPECT_FALSE(index.IsOpen());
  EXPECT_EQ(index.Count(), 0);
  EXPECT_EQ(index.Read(1), nullptr);
  EXPECT_EQ(index.Find("Madrid"), nullptr);
  EXPECT_FALSE(index.FindByName("", record));
  EXPECT_FALSE(index.Write());
}

TEST_F(CityIndexTest, AFileThatCannotBeOpenedHasNoCities) {
  platform.files.FailOpen(kPath);
  WMCityIndex index(kPath);
  EXPECT_FALSE(index.IsOpen());
  EXPECT_EQ(index.Count(), 0);
  EXPECT_TRUE(platform.dialogs.boxes.empty());
}

TEST_F(CityIndexTest, NodesAreReadByTheirNumbers) {
  WMCityIndex index(kPath);
  EXPECT_EQ(index.Count(), kSeven);
  EXPECT_EQ(index.Current().Name(), "Madrid") << "the root is the first current node";
  const struct {
    std::uint32_t number;
    const char *name, *current;
  } cases[] = {
      {1, "Madrid", "Madrid"}, {7, "(none)", "Z\xFCrich"},  // deleted, but read
      {4, "Aachen", "Aachen"}, {0, "(none)", "Aachen"},
      {8, "(none)", "Aachen"}, {65537, "(none)", "Aachen"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(NameOf(index.Read(c.number)), c.name) << c.number;
    EXPECT_EQ(index.Current().Name(), c.current) << c.number;
    EXPECT_EQ(index.IsDeleted(), c.number == 7);
  }
}

TEST_F(CityIndexTest, NamesAreFoundThroughTheTree) {
  const struct {
    std::string key;
    const char *found, *current;
  } cases[] = {
      {"Madrid", "Madrid", "Madrid"},
      {"Aachen", "Aachen", "Aachen"},
      {"Zagreb", "Zagreb", "Zagreb"},
      {"Dublin", "Dublin", "Dublin"},  // below a deleted city
      {"London", "(none)", "London"},  // deleted: current nevertheless
      {"Z\xFCrich", "(none)", "Z\xFCrich"},
      {"madrid", "(none)", "Berlin"},  // bytes, not letters
      {"Madri", "(none)", "Berlin"},
      {"Madrid ", "(none)", "Berlin"},
      {"", "(none)", "Berlin"},
      {std::string(300, 'M'), "(none)", "Berlin"},
  };
  for (const auto& c : cases) {
    WMCityIndex index(kPath);
    index.Read(2);
    EXPECT_EQ(NameOf(index.Find(c.key)), c.found) << c.key;
    EXPECT_EQ(index.Current().Name(), c.current) << c.key;
  }
}

TEST_F(CityIndexTest, AfterAMissTheNodeOfBeforeIsReadAnew) {
  WMCityIndex index(kPath);
  index.Read(4);
  index.SetMark(7);
  EXPECT_EQ(index.Find("Paris"), nullptr);
  EXPECT_EQ(index.Current().Name(), "Aachen");
  EXPECT_EQ(index.Current().mark, 0x4D4D);
}

TEST_F(CityIndexTest, LinearSearchesTakeTheFirstThatIsNotDeleted) {
  CityFileBytes file = SevenCities();
  file.nodes.push_back({"London", 0, 0, 4});
  file.nodes.push_back({"London", 0, 0, 12});
  file.nodes.push_back({std::string(26, 'L'), 0, 0, 77});
  platform.files.Put(kPath, file.Build());
  const struct {
    std::string name;
    int zone;  // of the city found, -1 for none
  } names[] = {{"London", 4},  {"Madrid", 5}, {"Z\xFCrich", -1}, {std::string(26, 'L'), 77},
               {"madrid", -1}, {"Madri", -1}, {"", -1}};
  WMCityIndex index(kPath);
  for (const auto& c : names) {
    WMCityRecord record;
    EXPECT_EQ(index.FindByName(c.name, record), c.zone >= 0) << c.name;
    EXPECT_EQ(record.zone, std::max(c.zone, 0)) << c.name;
    EXPECT_EQ(index.Current().Name(), c.zone >= 0 ? c.name : std::string(26, 'L')) << "the last";
  }
  const struct {
    std::uint8_t zone;
    const char* name;
  } zones[] = {{5, "Madrid"}, {4, "Dublin"}, {12, "London"}, {0, ""}, {255, ""}};
  for (const auto& c : zones) {
    WMCityRecord record;
    EXPECT_EQ(index.FindByZone(c.zone, record), *c.name != '\0') << int{c.zone};
    EXPECT_EQ(record.Name(), c.name) << int{c.zone};
  }
}

TEST_F(CityIndexTest, TheFileIsReadOnce) {
  WMCityIndex index(kPath);
  platform.files.Put(kPath, "");
  const std::size_t opens = platform.files.Opens();
  WMCityRecord record;
  EXPECT_EQ(NameOf(index.Find("Dublin")), "Dublin");
  EXPECT_TRUE(index.FindByZone(9, record));
  EXPECT_EQ(platform.files.Opens(), opens);
}

// Opens what is asked for reading so that it can be written.
class WritableFiles : public pw::FilesWrapper {
 public:
  using FilesWrapper::FilesWrapper;
  std::unique_ptr<pw::File> Open(const std::string& path, pw::OpenMode /*mode*/,
                                 pw::Sharing sharing) override {
    return FilesWrapper::Open(path, pw::OpenMode::kReadWriteExisting, sharing);
  }
};

class CityIndexWriteTest : public CityIndexTest {
 protected:
  pw::test::InPlaceOfFiles<WritableFiles> writable;
};

TEST_F(CityIndexWriteTest, ANodeIsWrittenInItsPlace) {
  std::string expected = SevenCities().Build();
  WMCityIndex index(kPath);
  index.Read(3);
  index.SetMark(0xBEEF);
  ASSERT_TRUE(index.Write());
  expected.replace(CityFileBytes::OffsetOf(3) + 6 + 192, 2, "\xEF\xBE");
  EXPECT_EQ(platform.files.Get(kPath), expected);

  // Another record keeps the node's links; no record keeps all.
  const WMCityRecord zagreb = index.Current();
  index.Read(1);
  index.Replace(nullptr);
  EXPECT_EQ(index.Current().Name(), "Madrid");
  index.Replace(&zagreb);
  ASSERT_TRUE(index.Write());
  expected.replace(CityFileBytes::OffsetOf(1) + 6, 196,
                   expected.substr(CityFileBytes::OffsetOf(3) + 6, 196));
  EXPECT_EQ(platform.files.Get(kPath), expected);
  EXPECT_EQ(NameOf(index.Read(1)), "Zagreb") << "what was read follows";
}

TEST_F(CityIndexWriteTest, DeletedCitiesStayInTheTree) {
  WMCityIndex index(kPath);
  EXPECT_TRUE(index.Delete(2));
  EXPECT_TRUE(index.DeleteKey("Zagreb"));
  EXPECT_FALSE(index.Delete(2)) << "already";
  EXPECT_FALSE(index.Delete(8));
  EXPECT_FALSE(index.DeleteKey("London"));
  EXPECT_FALSE(index.DeleteKey("Paris"));

  CityFileBytes expected = SevenCities();
  expected.nodes[1].deleted = true;
  expected.nodes[2].deleted = true;
  EXPECT_EQ(platform.files.Get(kPath), expected.Build());
  WMCityIndex again(kPath);
  EXPECT_EQ(again.Find("Berlin"), nullptr);
  EXPECT_EQ(NameOf(again.Find("Aachen")), "Aachen");
}

TEST_F(CityIndexTest, WhatCannotBeWrittenStaysAsItWas) {
  WMCityIndex index(kPath);
  EXPECT_FALSE(index.Delete(2)) << "it is open for reading only";
  EXPECT_TRUE(index.IsDeleted()) << "in the buffer";
  EXPECT_EQ(NameOf(index.Find("Berlin")), "Berlin");
  EXPECT_EQ(platform.files.Get(kPath), SevenCities().Build());
}

class CityIndexDamageTest : public CityIndexTest {
 protected:
  // The number of cities that can be read.
  std::size_t CountReadable(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    WMCityIndex index(kPath);
    std::size_t readable = 0;
    for (std::uint32_t number = 0; number <= index.Count() + 1U; ++number) {
      if (index.Read(number) != nullptr) ++readable;
    }
    return readable;
  }
};

TEST_F(CityIndexDamageTest, CutAtEveryLength) {
  CityFileBytes file = SevenCities();
  for (auto& city : file.nodes) city.deleted = false;
  pw::test::ForEachCut(file.Build(), [&](const std::string& cut) {
    const bool hasHeader = cut.size() >= 4;
    EXPECT_EQ(CountReadable(cut), hasHeader ? (cut.size() - 4) / 202 : 0);
    EXPECT_EQ(WMCityIndex(kPath).Count(), hasHeader ? (cut.size() - 3) / 202 : 0);
  });
}

TEST_F(CityIndexDamageTest, LinksThatLeadNowhereOrInCircles) {
  constexpr std::size_t kRoot = 0;
  const std::size_t madrid = CityFileBytes::OffsetOf(1);
  const std::size_t berlin = CityFileBytes::OffsetOf(2);
  const struct {
    std::size_t at;
    const char *link, *berlinFound, *dublinFound;
  } cases[] = {
      {kRoot, "\0\0", "(none)", "(none)"},    // an empty tree
      {kRoot, "\x08\0", "(none)", "(none)"},  // a root beyond the file
      {kRoot, "\xFF\xFF", "(none)", "(none)"},
      {madrid, "\x01\0", "(none)", "(none)"},  // its own child
      {berlin + 4, "\x02\0", "Berlin", "(none)"},
      {berlin + 4, "\x01\0", "Berlin", "(none)"},  // its own grandchild
      {berlin + 4, "\x08\0", "Berlin", "(none)"},
      {madrid, "\0\0", "(none)", "(none)"},
  };
  for (const auto& c : cases) {
    std::string damaged = SevenCities().Build();
    damaged.replace(c.at, 2, c.link, 2);
    EXPECT_EQ(CountReadable(damaged), 5U);
    WMCityIndex index(kPath);
    EXPECT_EQ(NameOf(index.Find("Berlin")), c.berlinFound) << c.at;
    EXPECT_EQ(NameOf(index.Find("Dublin")), c.dublinFound) << c.at;
  }
  // Nothing is current under such a root that could be written.
  CityFileBytes rootless = SevenCities();
  rootless.root = 8;
  platform.files.Put(kPath, rootless.Build());
  EXPECT_FALSE(WMCityIndex(kPath).Write());
}

TEST_F(CityIndexDamageTest, MoreNodesThanNumbers) {
  CityFileBytes file;
  file.nodes.assign(66000, {"x", 0, 0, 1, true});
  file.nodes[65534] = {"last", 0, 0, 3};
  file.nodes[65535] = {"beyond", 0, 0, 4};
  platform.files.Put(kPath, file.Build());
  WMCityIndex index(kPath);
  WMCityRecord record;
  EXPECT_EQ(index.Count(), 65535);
  EXPECT_TRUE(index.FindByName("last", record));
  EXPECT_FALSE(index.FindByName("beyond", record));
  EXPECT_FALSE(index.FindByZone(4, record));
}

}  // namespace

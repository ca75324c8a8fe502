#include "timeplace/place_list.h"

#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "base/text.h"
#include "platform/testing/test_platform.h"
#include "plugin/discovery.h"
#include "tests/support/damage.h"

namespace {

using Places = std::vector<std::string>;

constexpr const char* kPath = "C:\\Data\\Place List.dat";
constexpr const char* kMainKey = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

std::string Entry(std::string text) {
  text.resize(64);
  return text;
}

std::string FileOf(const Places& places) {
  std::string bytes = "WMW400";
  bytes += static_cast<char>(places.size());
  bytes += std::string(3, '\0');
  for (const std::string& place : places) bytes += Entry(place);
  return bytes;
}

class PlaceListTest : public testing::Test {
 protected:
  PlaceListTest() {
    platform.registry.Set(kMainKey, "Data", pw::TextValue("C:\\Data"));
    platform.files.PutFolder("C:\\Data");
  }

  void Load(const std::string& bytes) {
    platform.files.Put(kPath, bytes);
    EXPECT_TRUE(list.Load());
    EXPECT_EQ(platform.files.Get(kPath), bytes) << "loading leaves it";
  }
  std::string Saved() {
    EXPECT_TRUE(list.Save());
    return platform.files.Get(kPath).value();
  }

  pw::TestPlatform platform;
  WMPlaceList list;
};

TEST_F(PlaceListTest, LoadsWhatIsThere) {
  const std::string three = FileOf({"Bar", "caf\xE9", "Office"});
  std::string tooMany = three;
  tooMany.replace(6, 4, "\xFF\xFF\xFF\xFF");
  std::string fewer = three;
  fewer[6] = 2;
  const struct {
    const char* what;
    std::string bytes;
    Places places;
  } cases[] = {
      {"all", three, {"Bar", "caf\xE9", "Office"}},
      {"none", FileOf({}), {}},
      {"a count beyond the end", tooMany, {"Bar", "caf\xE9", "Office"}},
      {"a count before it", fewer, {"Bar", "caf\xE9"}},
      {"nothing behind the magic", "WMW400", {}},
      {"an entry without a zero", FileOf({std::string(64, 'x')}), {std::string(63, 'x')}},
      {"bytes behind a zero", FileOf({std::string("a\0b", 3)}), {"a"}},
  };
  for (const auto& c : cases) {
    Load(c.bytes);
    EXPECT_EQ(Saved(), FileOf(c.places)) << c.what;
  }
}

TEST_F(PlaceListTest, OfACutFileTheWholeEntriesAreRead) {
  const std::string whole = FileOf({"Attic", "Cellar"});
  const auto use = [&](const std::string& cut) {
    Load(cut);
    EXPECT_EQ((Saved().size() - 10) / 64, cut.size() < 10 ? 0 : (cut.size() - 10) / 64);
  };
  pw::test::ForEachCut(whole, use, 6);
}

TEST_F(PlaceListTest, AFileThatIsNoneIsReplaced) {
  const std::optional<std::string> files[] = {std::nullopt, "", "WMW40", "WMW300\1\0\0\0"};
  for (const auto& bytes : files) {
    platform.files.Delete(kPath);
    if (bytes) platform.files.Put(kPath, *bytes);
    list.Add("of before");
    EXPECT_TRUE(list.Load());
    EXPECT_EQ(platform.files.Get(kPath), FileOf({}));
    EXPECT_EQ(Saved(), FileOf({})) << "nothing is left of before";
  }
}

TEST_F(PlaceListTest, SavesItsEntriesInOrder) {
  Load(FileOf({"Bar", "Office"}));
  const std::string seventy(70, 'm');
  for (const std::string& place : {std::string("office"), seventy, std::string("alley"), seventy}) {
    list.Add(place);
  }
  const std::string saved = FileOf({"alley", "Bar", std::string(63, 'm'), "Office"});
  EXPECT_EQ(Saved(), saved);
  // A longer text is still known after it was cut.
  Load(saved);
  list.Add(seventy);
  EXPECT_EQ(Saved(), saved);
}

// Where the organiser's own walk from the front puts a text.
void AddByWalking(Places& places, const std::string& text) {
  const auto at = std::find_if(places.begin(), places.end(), [&](const std::string& place) {
    return pw::AsciiLower(place) >= pw::AsciiLower(text);
  });
  if (at != places.end() && pw::AsciiLower(*at) == pw::AsciiLower(text)) return;
  places.insert(at, text);
}

TEST_F(PlaceListTest, AddsWhereAWalkFromTheFrontWould) {
  // In every order of the file, most of them wrong; with doubles, and letters beyond ASCII.
  Places order = {"bar", "Dock", "dock", "\xE9tage"};
  std::sort(order.begin(), order.end());
  do {
    Load(FileOf(order));
    Places expected = order;
    for (const char* text : {"DOCK", "Alley", "cafe", "\xC9tage", "zoo", "", "BAR", "cafe"}) {
      list.Add(text);
      AddByWalking(expected, text);
      ASSERT_EQ(Saved(), FileOf(expected)) << text;
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(PlaceListTest, WithoutAFolderNothingIsLoadedOrSaved) {
  EXPECT_FALSE(list.Save()) << "not loaded";
  CalendarKeyPath() = "SOFTWARE\\Gullwing\\none";
  EXPECT_FALSE(list.Load());
  EXPECT_FALSE(list.Save());
  EXPECT_EQ(platform.files.Opens(), 0U);
}

TEST_F(PlaceListTest, AFileThatCannotBeWrittenIsTold) {
  platform.files.FailOpen(kPath);
  EXPECT_FALSE(list.Load());
  platform.files.StopFailing();
  Load(FileOf({"Bar"}));
  platform.files.FailWritesAfter(20);
  EXPECT_FALSE(list.Save());
}

}  // namespace

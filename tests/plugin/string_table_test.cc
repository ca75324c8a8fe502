#include "plugin/string_table.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "framework/crc.h"

namespace {

TEST(StringTableTest, HoldsItsNumbersInOrder) {
  const std::set<std::uint32_t> numbers = {
      100,  101,  102,  110,  111,  112,  120,  121,  122,  130,  131,  132,  140,  2000, 2001,
      2002, 2100, 2101, 2102, 2103, 2104, 2106, 2107, 2108, 2109, 2110, 2111, 2112, 2113, 2114,
      2115, 2117, 2118, 2119, 2120, 2121, 2122, 2123, 2124, 2125, 2127, 2128, 2129, 2130, 2131,
      2132, 2133, 3000, 3001, 3002, 3003, 3010, 3011, 3012, 3013, 8100, 8101, 8102, 8103, 8104,
      8105, 8106, 8107, 8108, 8109, 8110, 8111, 8112, 8115, 8116, 8117, 8118, 8119, 8120, 8121,
      8122, 8123, 8124, 8125, 8126, 8127, 8128, 8129, 8130, 8131};
  ASSERT_EQ(numbers.size(), 85U);
  EXPECT_EQ(ModuleInstance()->stringCount, 85U);
  for (std::uint32_t number = 0; number < 9000; ++number) {
    PWString text;
    EXPECT_EQ(text.Load(ModuleInstance(), number), numbers.count(number) != 0) << number;
  }
}

// Over "number=text" and a zero byte for each, in their order: no letter of the table may change.
TEST(StringTableTest, EveryTextIsAsItWas) {
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < ModuleInstance()->stringCount; ++i) {
    const PWModuleString& entry = ModuleInstance()->strings[i];
    crc = pw::FoldText(crc, std::to_string(entry.number) + "=" + entry.text);
  }
  EXPECT_EQ(crc, 0xACEF206EU);
}

// What the files and keys hang on, and texts with something in them that is easily lost.
TEST(StringTableTest, TextsStandAsTheyAre) {
  const struct {
    std::uint32_t number;
    const char* text;
  } cases[] = {
      {140, "New cardfile: %1"},
      {2101, "&%s folder:"},
      {2109, "Cannot find the file "},
      {2112, ", \nwhich is required for running Wingmate/PairWise Desktop."},
      {2119, "Even.WMW"},
      {2129,
       "PairWise cannot connect to %s because it is busy.\n\nPlease close any open dialogs and try "
       "this operation again."},
      {3002, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
      {3003, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
      {8112,
       "PWDesktop-W2012: The date range for the recurring event \"%s\" is too long and has been "
       "truncated by Wingmate/PairWise Desktop."},
      {8121, "Contact Log"},
  };
  for (const auto& c : cases) EXPECT_STREQ(LoadString(c.number), c.text);
}

TEST(StringTableTest, ValuesAreFilledInAsTheyStand) {
  EXPECT_EQ(FormatString(strings::kOrganiserBusy, "100 %s"),
            "PWDesktop-E0001: All dialogs in 100 %s must be closed before PairWise can synchronize "
            "its data.");
  EXPECT_EQ(FormatString(2102, nullptr), " data");
  EXPECT_EQ(FormatString(1, "x"), "");
}

}  // namespace

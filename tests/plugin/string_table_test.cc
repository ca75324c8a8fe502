#include "plugin/string_table.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "framework/crc.h"

namespace {

// Over "number=text" and a zero byte for each, in their order: no letter of the table may change.
TEST(StringTableTest, EveryTextIsAsItWasAndLoadsByItsNumberAlone) {
  std::uint32_t crc = 0;
  std::map<std::uint32_t, std::string> texts;
  for (std::size_t i = 0; i < ModuleInstance()->stringCount; ++i) {
    const PWModuleString& entry = ModuleInstance()->strings[i];
    crc = pw::FoldText(crc, std::to_string(entry.number) + "=" + entry.text);
    texts.emplace(entry.number, entry.text);
  }
  EXPECT_EQ(crc, 0xACEF206EU);
  ASSERT_EQ(texts.size(), 85U);
  for (std::uint32_t number = 0; number < 9000; ++number) {
    PWString text;
    const auto expected = texts.find(number);
    EXPECT_EQ(text.Load(ModuleInstance(), number), expected != texts.end()) << number;
    if (expected == texts.end()) continue;
    EXPECT_STREQ(LoadString(number), expected->second.c_str());
  }
}

TEST(StringTableTest, ValuesAreFilledInAsTheyStand) {
  EXPECT_EQ(FormatString(strings::kOrganiserBusy, "100 %s"),
            "PWDesktop-E0001: All dialogs in 100 %s must be closed before PairWise can synchronize "
            "its data.");
  EXPECT_EQ(FormatString(2102, nullptr), " data");
  EXPECT_EQ(FormatString(1, "x"), "");
}

}  // namespace

#include "host/system_zones/compiled_zone.h"

#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/compiled_zone_builder.h"
#include "tests/support/damage.h"
#include "timeplace/date.h"

namespace pw {
namespace {

using test::CompiledZoneBytes;

constexpr std::int32_t kHour = kSecondsPerHour;

TEST(RuleLine, SaysWhenOffsetsChange) {
  const struct {
    const char* line;
    std::int32_t change;
    std::int32_t before;
    std::int32_t after;
  } cases[] = {
      {"EST5EDT,M3.2.0,M11.1.0", PlainSeconds(2026, 3, 8, 7, 0, 0), -5 * kHour, -4 * kHour},
      {"EST5EDT,M3.2.0,M11.1.0", PlainSeconds(2026, 11, 1, 6, 0, 0), -4 * kHour, -5 * kHour},
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", PlainSeconds(2026, 4, 4, 16, 0, 0), 11 * kHour, 10 * kHour},
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", PlainSeconds(2026, 10, 3, 16, 0, 0), 10 * kHour, 11 * kHour},
      {"IST-1GMT0,M10.5.0,M3.5.0/1", PlainSeconds(2026, 3, 29, 1, 0, 0), 0, kHour},
      {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", PlainSeconds(2026, 3, 29, 1, 0, 0), -2 * kHour, -kHour},
      {"<-04>4<-03>,M9.1.6/24,M4.1.6/24", PlainSeconds(2026, 4, 5, 3, 0, 0), -3 * kHour,
       -4 * kHour},
      {"<+1030>-10:30:00<+11>-11,M10.1.0,M4.1.0", PlainSeconds(2026, 4, 4, 15, 0, 0), 11 * kHour,
       10 * kHour + 1800},
      {"EST+5EDT,J60/2,300/2:30", PlainSeconds(2028, 3, 1, 7, 0, 0), -5 * kHour, -4 * kHour},
      {"EST+5EDT,J60/2,300/2:30", PlainSeconds(2028, 10, 27, 6, 30, 0), -4 * kHour, -5 * kHour},
      {"EST+5EDT,J60/2,300/2:30", PlainSeconds(2027, 10, 28, 6, 30, 0), -4 * kHour, -5 * kHour},
      {"EST+5EDT,J59/2,300/2", PlainSeconds(2028, 2, 28, 7, 0, 0), -5 * kHour, -4 * kHour},
      // Daylight time all year long, and none at all.
      {"EST5EDT,0/0,J365/25", PlainSeconds(2027, 1, 1, 5, 0, 0), -4 * kHour, -4 * kHour},
      {"<-0930>9:30", PlainSeconds(2027, 7, 1, 0, 0, 0), -34200, -34200},
      // A change that falls into the year before.
      {"AAA0BBB,0/-25,M3.1.0", PlainSeconds(2026, 12, 30, 23, 0, 0), 0, kHour},
  };
  for (const auto& each : cases) {
    const auto rule = ParseRuleLine(each.line);
    ASSERT_TRUE(rule) << each.line;
    EXPECT_EQ(OffsetAt(*rule, each.change - 1), each.before) << each.line;
    EXPECT_EQ(OffsetAt(*rule, each.change), each.after) << each.line;
  }
}

TEST(RuleLine, ThatIsNoneIsRefused) {
  std::istringstream lines(
      " EST ES5 <+1>-1 <EST5 EST25 EST5:60 EST5: EST5EDT EST5EDT4 EST5EDT,M3.2.0 EST5EDT,M3.2.0, "
      "EST5EDT,M13.2.0,M11.1.0 EST5EDT,M3.0.0,M11.1.0 EST5EDT,M3.6.0,M11.1.0 "
      "EST5EDT,M3.2.7,M11.1.0 EST5EDT,M3.2,M11.1.0 EST5EDT,J0,J300 EST5EDT,J366,J300 "
      "EST5EDT,366,J300 EST5EDT,J1/168,J300 EST5EDT,J1/,J300 EST5EDT,M3.2.0,M11.1.0, "
      "EST5EDT,M3.2.0,M11.1.0/2x EST5EDT,M0000003.2.0,M11.1.0 :America/New_York");
  int tried = 0;
  for (std::string line; std::getline(lines, line, ' '); ++tried) {
    EXPECT_FALSE(ParseRuleLine(line)) << line;
  }
  EXPECT_EQ(tried, 26);
}

// Two hours east until 1000, one until 2000, and then as the rule says.
CompiledZoneBytes SmallZone() {
  CompiledZoneBytes zone;
  zone.types = {2 * kHour, kHour, 3 * kHour};
  zone.changes = {{1000, 1}, {2000, 2}};
  zone.rule = "AAA-4";
  return zone;
}

TEST(CompiledZone, HasItsListedChangesAndThenTheRule) {
  const auto zone = ParseCompiledZone(SmallZone().Build());
  ASSERT_TRUE(zone);
  EXPECT_EQ(OffsetAt(*zone, std::numeric_limits<std::int32_t>::min()), 2 * kHour);
  EXPECT_EQ(OffsetAt(*zone, 999), 2 * kHour);
  EXPECT_EQ(OffsetAt(*zone, 1000), kHour);
  EXPECT_EQ(OffsetAt(*zone, 1999), kHour);
  EXPECT_EQ(OffsetAt(*zone, 2000), 4 * kHour) << "the rule holds from the last change on";
  EXPECT_EQ(OffsetAt(*zone, std::numeric_limits<std::int32_t>::max()), 4 * kHour);

  // Times beyond 32 bits tell that the second part is the one that is read.
  CompiledZoneBytes late = SmallZone();
  late.changes = {{std::int64_t{1} << 33, 1}};
  EXPECT_EQ(OffsetAt(*ParseCompiledZone(late.Build()), 2000), 2 * kHour);
}

TEST(CompiledZone, ThatIsCutDamagedOrOfAnotherKindIsRefused) {
  const std::string whole = SmallZone().Build();
  test::ForEachCut(whole, [](const std::string& cut) { EXPECT_FALSE(ParseCompiledZone(cut)); });
  test::ForEachFlip(whole, [](const std::string& damaged, std::size_t) {
    if (const auto zone = ParseCompiledZone(damaged)) OffsetAt(*zone, 1500);
  });
  const auto isRefused = [](void (*change)(CompiledZoneBytes & zone)) {
    CompiledZoneBytes zone = SmallZone();
    change(zone);
    return !ParseCompiledZone(zone.Build());
  };
  EXPECT_TRUE(isRefused([](auto& zone) { zone.version = '\0'; })) << "the oldest version";
  EXPECT_TRUE(isRefused([](auto& zone) { zone.leapSeconds = 1; }));
  EXPECT_TRUE(isRefused([](auto& zone) { zone.changes[1].type = 3; })) << "it isn't there";
  EXPECT_TRUE(isRefused([](auto& zone) { zone.changes[1].at = 999; })) << "out of order";
  EXPECT_TRUE(isRefused([](auto& zone) { zone.rule = ""; }));
  EXPECT_TRUE(isRefused([](auto& zone) {
    zone.types.clear();
    zone.changes.clear();
  }));

  // Each count as high as it can be, in either header.
  constexpr std::size_t kCounts = 20;
  constexpr std::size_t kHeaders = 44;
  const std::size_t second = whole.find("TZif", 1);
  for (const std::size_t header : {std::size_t{0}, second}) {
    for (std::size_t at = kCounts; at < kHeaders; at += 4) {
      std::string damaged = whole;
      damaged.replace(header + at, 4, "\xFF\xFF\xFF\xFF");
      EXPECT_FALSE(ParseCompiledZone(damaged)) << header + at;
    }
  }
}

}  // namespace
}  // namespace pw

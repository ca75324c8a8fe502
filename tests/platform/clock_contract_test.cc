#include <stdlib.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/posix/posix_clock.h"
#include "platform/testing/fake_clock.h"

namespace pw {
namespace {

// The C library's zone, for as long as it lives.
class ZoneSetting {
 public:
  explicit ZoneSetting(const char* zone) {
    if (const char* set = getenv("TZ")) before = set;
    setenv("TZ", zone, 1);
  }
  ~ZoneSetting() {
    if (before) setenv("TZ", before->c_str(), 1);
    if (!before) unsetenv("TZ");
  }
  ZoneSetting(const ZoneSetting&) = delete;
  ZoneSetting& operator=(const ZoneSetting&) = delete;

 private:
  std::optional<std::string> before;
};

struct Case {
  std::int64_t seconds;
  CivilTime time;
};

constexpr std::int64_t kFirst = -62'135'596'800;
constexpr std::int64_t kLast = 253'402'300'799;

template <class T>
class ClockContract : public testing::Test {
 protected:
  T clock;
};
using Implementations = testing::Types<PosixClock, FakeClock>;
TYPED_TEST_SUITE(ClockContract, Implementations);

TYPED_TEST(ClockContract, BreaksDownMomentsOfAllYears) {
  const Case cases[] = {
      {0, {1970, 1, 1, 0, 0, 0, 4}},
      {-1, {1969, 12, 31, 23, 59, 59, 3}},
      {951'827'696, {2000, 2, 29, 12, 34, 56, 2}},
      {4'107'542'400, {2100, 3, 1, 0, 0, 0, 1}},  // no leap year
      {kFirst, {1, 1, 1, 0, 0, 0, 1}},
      {kLast, {9999, 12, 31, 23, 59, 59, 5}},
      {kFirst - 1, {1, 1, 1, 0, 0, 0, 1}},
      {kLast + 1, {9999, 12, 31, 23, 59, 59, 5}},
      {std::numeric_limits<std::int64_t>::min(), {1, 1, 1, 0, 0, 0, 1}},
      {std::numeric_limits<std::int64_t>::max(), {9999, 12, 31, 23, 59, 59, 5}},
  };
  const ZoneSetting zone("UTC0");
  for (const Case& c : cases) {
    EXPECT_EQ(this->clock.Utc(c.seconds), c.time) << c.seconds;
    EXPECT_EQ(this->clock.Local(c.seconds), c.time) << c.seconds;
  }
}

TYPED_TEST(ClockContract, CanBeMadeToStandStill) {
  SettableClock settable(this->clock);
  EXPECT_GT(settable.Now(), 800'000'000);
  settable.FixNow(-5);
  settable.FixTicks(4'000'000'000);
  EXPECT_EQ(settable.Now(), -5);
  EXPECT_EQ(settable.Ticks(), 4'000'000'000);
}

TEST(PosixClock, LocalTimeFollowsTheZoneAndItsDaylightRules) {
  PosixClock clock;
  {
    const ZoneSetting zone("EST5EDT,M3.2.0,M11.1.0");
    const Case cases[] = {
        {1'710'053'999, {2024, 3, 10, 1, 59, 59, 0}},
        {1'710'054'000, {2024, 3, 10, 3, 0, 0, 0}},
        {1'730'613'599, {2024, 11, 3, 1, 59, 59, 0}},
        {1'730'613'600, {2024, 11, 3, 1, 0, 0, 0}},
        {kFirst, {1, 1, 1, 0, 0, 0, 1}},  // local time would be in the year 0
    };
    for (const Case& c : cases) EXPECT_EQ(clock.Local(c.seconds), c.time) << c.seconds;
    EXPECT_EQ(clock.Utc(1'710'054'000), (CivilTime{2024, 3, 10, 7, 0, 0, 0}));
  }
  const ZoneSetting zone("EAST-12");
  EXPECT_EQ(clock.Local(0), (CivilTime{1970, 1, 1, 12, 0, 0, 4}));
  EXPECT_EQ(clock.Local(kLast), (CivilTime{9999, 12, 31, 23, 59, 59, 5}));
}

}  // namespace
}  // namespace pw

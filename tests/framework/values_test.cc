#include "framework/values.h"

#include <memory>

#include <gtest/gtest.h>

#include "platform/testing/test_platform.h"

namespace {

TEST(ValuesTest, BitsAreSetAndClearedOneByOne) {
  PWBitField field;
  field.Bit(0, true);
  field.Bit(31, true);
  EXPECT_EQ(field.bits, 0x80000001U);
  field.Bit(5, false);
  EXPECT_EQ(field.bits, 0x80000001U);
  field.Bit(31, false);
  field.Bit(32, true);
  field.Bit(255, true);
  EXPECT_EQ(field.bits, 1U);
}

TEST(ValuesTest, NumbersCompareAndClonesHoldTheSame) {
  PWNumber two(2);
  PWNumber three(3);
  PWBitField field(6);
  TIME_ZONE_INFORMATION information;
  information.Bias = 7;
  PWTimeZone zone(information);
  const std::unique_ptr<PWObject> number(two.Clone());
  const std::unique_ptr<PWObject> bits(field.Clone());
  const std::unique_ptr<PWObject> copy(zone.Clone());
  EXPECT_LT(two.Compare(&three), 0);
  EXPECT_GT(three.Compare(&two), 0);
  EXPECT_EQ(two.Compare(number.get()), 0);
  EXPECT_EQ(two.Compare(&field), -1);
  EXPECT_EQ(static_cast<PWBitField*>(bits.get())->bits, 6U);
  EXPECT_EQ(field.Compare(bits.get()), -1);
  EXPECT_TRUE(*static_cast<PWTimeZone*>(copy.get()) == information);
}

TEST(ValuesTest, AFreshStampIsZeroAndThePresentTimeIsLocal) {
  EXPECT_EQ(PWDateTimeStamp(), PWDateTimeStamp(0, 0, 0, 0, 0, 0));
  pw::TestPlatform platform;
  platform.clock.now = 951782399;  // 2000-02-28 23:59:59 UTC
  platform.clock.localOffset = 3600;
  EXPECT_EQ(PWDateTimeStamp::CurrentTime(), PWDateTimeStamp(2000, 2, 29, 0, 59, 59));
}

TEST(ValuesTest, ZonesAreEqualInBiasesAndDatesButNotNames) {
  using Zone = TIME_ZONE_INFORMATION;
  Zone zone;
  zone.Bias = 300;
  zone.DaylightBias = -60;
  zone.StandardDate.wMonth = 10;
  const PWTimeZone wrapped(zone);
  Zone same = zone;
  same.StandardName[0] = u'E';
  same.DaylightName[0] = u'D';
  EXPECT_TRUE(wrapped == same);
  for (const auto bias : {&Zone::Bias, &Zone::StandardBias, &Zone::DaylightBias}) {
    Zone other = zone;
    ++(other.*bias);
    EXPECT_FALSE(wrapped == other);
  }
  for (const auto date : {&Zone::StandardDate, &Zone::DaylightDate}) {
    for (const auto word : {&SYSTEMTIME::wYear, &SYSTEMTIME::wMonth, &SYSTEMTIME::wDayOfWeek,
                            &SYSTEMTIME::wDay, &SYSTEMTIME::wHour, &SYSTEMTIME::wMinute,
                            &SYSTEMTIME::wSecond, &SYSTEMTIME::wMilliseconds}) {
      Zone other = zone;
      ++(other.*date.*word);
      EXPECT_FALSE(wrapped == other);
    }
  }
}

TEST(ValuesTest, ArchivesGiveBackTheirNumbers) {
  PWArchive archive;
  archive << -1 << 0x12345678;
  std::int32_t first = 0;
  std::int32_t second = 0;
  std::int32_t beyond = 9;
  archive >> first >> second >> beyond;
  EXPECT_EQ(first, -1);
  EXPECT_EQ(second, 0x12345678);
  EXPECT_EQ(beyond, 0);
}

}  // namespace

#include "calendar/event_item.h"

#include <gtest/gtest.h>

#include "calendar/calendar_state.h"
#include "tests/support/event_file_builder.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace {

class EventItemTest : public testing::Test {
 protected:
  void SetUp() override {
    pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "New York, NY");
    ASSERT_TRUE(LoadHomeZone());
    platform.clock.now = 888847200;
    platform.clock.ticks = 0xABCD1234;
  }

  pw::TestPlatform platform;
};

TEST_F(EventItemTest, ANewItemIsMadeNowInTheHomeZone) {
  ASSERT_TRUE(SwitchZone(2, false));  // not in the working zone
  const WMEventItem first;
  const WMEventItem second;
  EXPECT_EQ(first.Id(), 0x00001234);
  EXPECT_EQ(second.Id(), 0x00011234);
  pw::test::ItemBytes bytes;
  bytes.created = bytes.modified = 888847200;
  bytes.id = 0x00011234;
  bytes.start = bytes.end = 0;
  bytes.zone = 1;
  bytes.timeWord = bytes.flagWord = 0x80808080;
  bytes.subject = "";
  pw::ByteWriter out;
  second.Encode(out);
  EXPECT_EQ(out.Written(), bytes.Build());
  SwitchZone(0, false);

  for (int i = 2; i < 0xFFFF; ++i) NewItemId();
  EXPECT_EQ(WMEventItem().Id(), static_cast<std::int32_t>(0xFFFF1234));
  EXPECT_EQ(WMEventItem().Id(), 0x00001234);
}

TEST_F(EventItemTest, NoDateAndNoKeyIsSetToZero) {
  WMEventItem item;
  const struct {
    std::int32_t (WMEventItem::*set)(std::int32_t);
    std::int32_t (WMEventItem::*get)() const;
  } fields[] = {{&WMEventItem::SetStart, &WMEventItem::Start},
                {&WMEventItem::SetEnd, &WMEventItem::End},
                {&WMEventItem::SetModified, &WMEventItem::Modified},
                {&WMEventItem::SetCreated, &WMEventItem::Created}};
  std::int32_t value = -1;
  for (const auto& field : fields) {
    EXPECT_EQ((item.*field.set)(--value), 0);
    EXPECT_EQ((item.*field.set)(0), -1);
    EXPECT_EQ((item.*field.get)(), value);
  }
  EXPECT_EQ(item.Start(), -2) << "each sets its own";
}

TEST_F(EventItemTest, SensitivityClearsWhatItsMaskLeavesOut) {
  WMEventItem item;
  item.header.flags = 0xFFFFFFFF;
  for (const std::int32_t value : {-1, 3}) {
    EXPECT_EQ(item.SetSensitivity(value), -1);
    EXPECT_EQ(item.header.flags, 0xFFFFFFFF);
  }
  EXPECT_EQ(item.SetSensitivity(2), 0);
  EXPECT_EQ(item.header.flags, 0x02111111U);
  EXPECT_FALSE(item.IsChanged());
  item.SetChanged(true);
  EXPECT_EQ(item.header.flags, 0x02111115U);
  EXPECT_TRUE(item.IsChanged());
  item.SetChanged(false);
  EXPECT_EQ(item.header.flags, 0x02111111U);
  EXPECT_EQ(item.SetSensitivity(0), 0);
  EXPECT_EQ(item.header.flags, 0x00111111U);
}

TEST_F(EventItemTest, TimesAreThoseOfTheLocalClocks) {
  WMEventItem item;
  item.detail.timeWord = 0xFFFFFFFF;
  item.SetStartTime(888847200);  // 14:00 in winter, five hours behind
  EXPECT_EQ(item.detail.timeWord, 0xE9C0FFFF);
  item.SetEndTime(899307840);  // 15:44 on 1 July, four hours behind
  EXPECT_EQ(item.detail.timeWord, 0xE9C0EBEC);
  EXPECT_EQ(item.Start(), 0);
}

TEST_F(EventItemTest, WordsFollowTheirSetters) {
  WMEventItem item;
  item.detail.SetSubject("a\x09z\x7F~");
  item.detail.SetNotes(std::string(3000, 'n'));
  EXPECT_EQ(item.Subject(), "a z ~");
  EXPECT_EQ(item.Notes().size(), 3000U);
  EXPECT_EQ(item.detail.flagWord, 0x808080E0U);
  item.detail.SetSubject("");
  item.detail.SetAlarm(true);
  item.detail.SetAlarmHours(31);
  item.detail.SetAlarmMinutes(59);
  EXPECT_EQ(item.detail.flagWord, 0x9FBB80A2U);
  item.detail.SetNotes("");
  item.detail.SetAlarmHours(2);  // over the bits of the one before
  item.detail.SetAlarmMinutes(4);
  item.detail.SetOccurrence(true);
  EXPECT_EQ(item.detail.flagWord, 0x82848083U);
  item.detail.SetAlarm(false);
  EXPECT_EQ(item.detail.flagWord, 0x82848081U);
}

}  // namespace

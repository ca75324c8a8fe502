#include "calendar/mapping/event_fields.h"

#include "calendar/calendar_state.h"
#include "tests/calendar/mapping_fixture.h"

namespace pw::test {
namespace {

constexpr std::int32_t kStart = 925999200;  // 6 May 1999, 14:00, which is 9:00 in Lima

class EventFieldsTest : public MappingTest {
 protected:
  PWRecord record = EventRecord("E", kStart, kStart + 3600);
  PWEventRecord event{&record};
  WMEventItem item;
  PWRecord read;
  PWEventRecord found{&read};
};

TEST_F(EventFieldsTest, GoThereAndBack) {
  event.Subject("a\tb\x7F~");
  event.Location("Caf\xE9\t~");
  event.Notes("two\r\nlines", PWRecord::kWholeText);
  event.Alarm(true);
  event.AlarmAdvance(23 * 60 + 59);
  platform.clock.now += 77;
  FillItemFromEvent(event, item);
  EXPECT_EQ(item.Modified(), platform.clock.now);
  EXPECT_EQ(item.Created(), platform.clock.now - 77) << "it was made before";
  EXPECT_EQ(item.Zone(), static_cast<std::uint32_t>(HomeZoneId()));
  EXPECT_EQ(item.detail.StartHour() * 100 + item.detail.StartMinute(), 900) << "of Lima's clocks";
  EXPECT_EQ(item.detail.EndHour() * 100 + item.detail.EndMinute(), 1000);
  FillEventFromItem(item, found);
  EXPECT_EQ(found.Subject().Str(), "a b ~");
  EXPECT_EQ(found.Location().Str(), "Caf\xE9\t~") << "it is taken as it is";
  EXPECT_EQ(found.Notes().Str(), "two\r\nlines");
  EXPECT_EQ(found.StartDate(), event.StartDate());
  EXPECT_EQ(found.EndDate(), event.EndDate());
  EXPECT_TRUE(found.Alarm());
  EXPECT_EQ(found.AlarmAdvance(), 23 * 60 + 59);
  EXPECT_FALSE(found.AllDay());
  EXPECT_FALSE(found.Recurring());

  event.Alarm(false);
  event.AlarmAdvance(10);
  event.StartDate(UtcStamp(0));
  event.EndDate(UtcStamp(0));
  FillItemFromEvent(event, item);
  FillEventFromItem(item, found);
  EXPECT_FALSE(found.Alarm());
  EXPECT_EQ(found.AlarmAdvance(), 23 * 60 + 59) << "the old one, as no other is written";
  EXPECT_EQ(item.Start(), kStart) << "a moment of zero leaves the old one";
  EXPECT_EQ(item.End(), kStart + 3600);
}

TEST_F(EventFieldsTest, Sensitivities) {
  const struct {
    int engine;
    int stored;
    int readAgain;
  } cases[] = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 2, 2}, {4, 0, 0}, {-1, 0, 0}};
  for (const auto& each : cases) {
    event.Sensitivity(static_cast<EPWEventRecordSensitivity>(each.engine));
    FillItemFromEvent(event, item);
    EXPECT_EQ(item.Sensitivity(), each.stored) << each.engine;
    FillEventFromItem(item, found);
    EXPECT_EQ(found.Sensitivity(), each.readAgain) << each.engine;
  }
  item.header.flags = 0x07000000;
  FillEventFromItem(item, found);
  EXPECT_EQ(found.Sensitivity(), 0) << "what the organiser doesn't know";
}

TEST_F(EventFieldsTest, NotesAreKeptToA2048thByte) {
  for (const std::size_t size : {2048U, 2049U}) {
    NotesShortened() = false;
    event.Notes(std::string(size, 'n').c_str(), PWRecord::kWholeText);
    FillItemFromEvent(event, item);
    EXPECT_EQ(item.Notes().size(), 2048U);
    EXPECT_EQ(NotesShortened(), size > 2048);
  }
  item.detail.notes = std::string(3000, 'n');
  FillEventFromItem(item, found);
  EXPECT_EQ(found.Notes().View().size(), 2048U);
}

}  // namespace
}  // namespace pw::test

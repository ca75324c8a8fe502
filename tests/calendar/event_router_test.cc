#include "calendar/mapping/event_router.h"

#include "calendar/calendar_state.h"
#include "tests/calendar/mapping_fixture.h"

namespace pw::test {
namespace {

constexpr std::int32_t kNine = 925999200;  // 6 May 1999, 9:00 in Lima, 14:00 in Greenwich
constexpr std::int32_t kMinute = 60;
constexpr std::int32_t kHour = 3600;
const PWDateTimeStamp kMay8(1999, 5, 8, 0, 0, 0);
const PWDateTimeStamp kMay9(1999, 5, 9, 0, 0, 0);

PWRecord Plain(const std::string& subject, std::int32_t start = kNine,
               std::int32_t end = kNine + kHour) {
  return EventRecord(subject, start, end);
}
PWRecord Birthday(const std::string& subject) {
  PWRecord record = DatesRecord(subject, kMay8, kMay8);
  *Recur(record, kRecurranceYearlyByDate).YearlyByDate() = {4, 7};
  return record;
}

class EventRouterTest : public MappingTest {
 protected:
  // The subjects of all records in their order, "|" between the lists.
  std::string Shown() {
    std::string shown;
    for (std::uint32_t i = 0; i < store->recordEnd; ++i) {
      for (const std::uint32_t end :
           {store->data.MultiDayCount(), store->dataEnd, store->eventEnd}) {
        if (i == end) shown += "|";
      }
      PWRecord record;
      EXPECT_EQ(Read(i, record), 0);
      shown += PWEventRecord(&record).Subject().Str();
    }
    return shown;
  }

  // One of each: two days, a date, a birthday, a plain event, and a series.
  void AddOfEach() {
    Add(DatesRecord("m", kMay8, kMay9));
    Add(DatesRecord("d", kMay8, kMay8));
    Add(Birthday("b"));
    Add(Plain("p"));
    Add(Daily("s", kNine, kNine + kHour, kMay8));
    EXPECT_EQ(Shown(), "m|db|p|s");
  }
};

TEST_F(EventRouterTest, EachShapeGoesToItsList) {
  const struct {
    PWRecord record;
    std::uint32_t current;
    const char* shown;
  } cases[] = {
      {Daily("s", kNine, kNine + kHour, kMay8), 0, "|||s"},
      {Plain("p"), 0, "||p|s"},
      {Birthday("b"), 0, "|b|p|s"},
      {DatesRecord("m", kMay8, kMay9), 0, "m|b|p|s"},
      {DatesRecord("d", kMay8, kMay8), 2, "m|bd|p|s"},
      {Plain("q", kNine + kHour, kNine + 2 * kHour), 4, "m|bd|pq|s"},
      {Plain("n", kNine - 5 * kHour, kNine + 20 * kHour), 1, "mn|bd|pq|s"},
      {Daily("t", kNine, kNine + kHour, kMay8), 7, "mn|bd|pq|st"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Add(each.record), 0);
    EXPECT_EQ(store->currentRecord, each.current) << each.shown;
    EXPECT_EQ(Shown(), each.shown);
  }
  EXPECT_EQ(store->RecordCount(), 8U);
}

TEST_F(EventRouterTest, AnEventOfNoLengthIsNotStored) {
  Add(Plain("p"));
  store->currentRecord = 17;
  EXPECT_EQ(Add(Plain("none", kNine, kNine + 59)), 0) << "seconds don't count";
  EXPECT_EQ(message, "");
  EXPECT_EQ(store->currentRecord, 17U);
  EXPECT_EQ(Shown(), "||p");
}

TEST_F(EventRouterTest, AFourthEventAtOneTimeIsRefused) {
  Add(Plain("a", kNine, kNine + 30 * kMinute));
  Add(Plain("b", kNine + 30 * kMinute, kNine + kHour));
  Add(Plain("touches", kNine + kHour, kNine + 2 * kHour));
  Add(Daily("series", kNine, kNine + kHour, kMay8));
  EXPECT_EQ(Add(Plain("c", kNine + 10 * kMinute, kNine + kHour)), 0)
      << "two of its time, though not of one moment";
  EXPECT_EQ(Add(Plain("50% d\t", kNine + 20 * kMinute, kNine + kHour)), 1);
  EXPECT_EQ(message,
            "PWDesktop-W2013: Three events overlap with the event '50% d ', and it cannot be added "
            "into Wingmate/PairWise Desktop.");
  EXPECT_EQ(Shown(), "||abtouchesc|series");
  EXPECT_EQ(Update(0, Plain("a too", kNine, kNine + 2 * kHour)), 0);
  EXPECT_EQ(message, "") << "a change in place isn't looked at";
  EXPECT_EQ(Add(Plain("e", kNine + 90 * kMinute, kNine + 2 * kHour)), 0);
  EXPECT_EQ(Add(Plain("f", kNine + 95 * kMinute, kNine + 2 * kHour)), 1)
      << "it counts at its new time";
}

TEST_F(EventRouterTest, AnUpdateGoesWhereTheEventBelongs) {
  const struct {
    const char* what;
    std::uint32_t index;
    PWRecord record;
    std::uint32_t current;
    const char* shown;
  } cases[] = {
      {"in place: several days", 0, DatesRecord("M", kMay8, kMay9), 0, "M|db|p|s"},
      {"in place: a date", 1, DatesRecord("D", kMay9, kMay9), 1, "m|Db|p|s"},
      {"in place: a birthday", 1, Birthday("D"), 1, "m|Db|p|s"},
      {"in place: an hour", 3, Plain("P", kNine + kHour, kNine + 2 * kHour), 3, "m|db|P|s"},
      {"a series", 4, Daily("S", kNine, kNine + kHour, kMay9), 4, "m|db|p|S"},
      {"several days to a date", 0, DatesRecord("M", kMay8, kMay8), 2, "|dbM|p|s"},
      {"a date to several days", 1, DatesRecord("D", kMay8, kMay9), 1, "mD|b|p|s"},
      {"a date to an hour", 1, Plain("D"), 3, "m|b|pD|s"},
      {"an hour to several days", 3, Plain("P", kNine, kNine + 24 * kHour), 1, "mP|db||s"},
      {"an hour to a series", 3, Daily("P", kNine, kNine + kHour, kMay8), 4, "m|db||sP"},
      {"an hour to nothing", 3, Plain("P", kNine, kNine), 4, "m|db||s"},
      {"a series to an hour", 4, Plain("S"), 4, "m|db|pS"},
      {"a series to a birthday", 4, Birthday("S"), 3, "m|dbS|p"},
      {"behind the end", 5, Plain("X"), 4, "m|db|pX|s"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    while (DeleteByIndex(*store, 0) == 0) {
    }
    AddOfEach();
    EXPECT_EQ(Update(each.index, each.record), 0);
    EXPECT_EQ(store->currentRecord, each.current);
    EXPECT_EQ(Shown(), each.shown);
    const bool hadNoSeries = store->recurring.Count() == 0;
    EXPECT_EQ(store->occurrenceItems.Count() == 0, hadNoSeries);
  }
}

TEST_F(EventRouterTest, AnUpdateInPlaceKeepsTheKeyAndAnotherDoesNot) {
  Add(Plain("p"));
  const std::int32_t created = store->plainItems.Item(0).Created();
  const std::int32_t id = store->plainItems.Item(0).Id();
  platform.clock.now += 100;
  Update(0, Plain("q"));
  EXPECT_EQ(store->plainItems.Item(0).Created(), created);
  EXPECT_EQ(store->plainItems.Item(0).Id(), id);
  EXPECT_EQ(store->plainItems.Item(0).Modified(), platform.clock.now);
  Update(0, DatesRecord("m", kMay8, kMay9));
  EXPECT_EQ(message.substr(0, 15), "PWDesktop-W2016");
  Update(0, DatesRecord("m", kMay8, PWDateTimeStamp(1999, 5, 10, 0, 0, 0)));
  EXPECT_EQ(message, "") << "nothing is lost any more";
  Update(0, Plain("p"));
  EXPECT_EQ(store->plainItems.Item(0).Created(), created + 100);
}

TEST_F(EventRouterTest, AnUpdateThatFindsNoRoomLosesTheEvent) {
  for (const char* subject : {"a", "b", "c"}) Add(Plain(subject));
  Add(DatesRecord("m", kMay8, kMay9));
  EXPECT_EQ(Update(0, Plain("m")), 1);
  EXPECT_EQ(message.substr(0, 15), "PWDesktop-W2013");
  EXPECT_EQ(Shown(), "||abc");
}

TEST_F(EventRouterTest, KeysOfSeriesAreThePresentOrTheOneBehindTheLast) {
  LastSeriesKey() = 0;
  const auto now = static_cast<std::int32_t>(platform.clock.now);
  for (int i = 0; i < 3; ++i) Add(Daily("s", kNine, kNine + kHour, kMay8));
  platform.clock.now += 1000;
  Add(Daily("s", kNine, kNine + kHour, kMay8));
  for (const auto& [index, key] :
       {std::pair(0U, now), {1U, now + 1}, {2U, now + 2}, {3U, now + 1000}}) {
    EXPECT_EQ(store->recurring.Key(index), key);
  }
}

TEST_F(EventRouterTest, PlacesOfNewEventsAreRememberedOnce) {
  PWRecord record = Plain("p");
  PWEventRecord(&record).Location("Caf\xE9");
  Add(record);
  Add(record);
  PWEventRecord(&record).Location("elsewhere");
  Update(0, record);
  store->Save();
  const std::string places = Saved("C:\\Data\\Place List.dat");
  const std::size_t first = places.find("Caf\xE9");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(places.find("Caf\xE9", first + 1), std::string::npos);
  EXPECT_EQ(places.find("elsewhere"), std::string::npos) << "a change doesn't add one";
}

TEST_F(EventRouterTest, AReadReplacesTheRecordAndBehindTheEndThereIsNothing) {
  AddOfEach();
  PWRecord record;
  for (std::uint32_t index = 0; index < 5; ++index) ReadByIndex(*store, index, &record, message);
  ASSERT_EQ(ReadByIndex(*store, 3, &record, message), 0);
  const PWEventRecord plain(&record);
  EXPECT_FALSE(plain.AllDay() || plain.Recurring()) << "nothing is left of the records before";
  for (const std::uint32_t index : {5U, 0xFFFFFFFFU}) {
    EXPECT_EQ(DeleteByIndex(*store, index), 1);
    EXPECT_EQ(Read(index, record), 1);
  }
  EXPECT_EQ(Shown(), "m|db|p|s");
}

}  // namespace
}  // namespace pw::test

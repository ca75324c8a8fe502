#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "cardfile/new_file.h"
#include "framework/event_record.h"
#include "framework/memo_record.h"
#include "framework/source.h"
#include "framework/task_record.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/house/hex_dump.h"
#include "tests/support/test_log.h"
#include "timeplace/city_format.h"
#include "timeplace/clock_format.h"
#include "timeplace/engine_zone.h"

// The pages of docs/formats/ show files byte by byte: they are what the module writes, once the
// engine has had its records added, and what the codecs read and write.
namespace pw {
namespace {

constexpr std::int32_t kMade = 888840000;  // 2 March 1998, 12:00, when all of them were
constexpr std::uint32_t kTicks = 4711;

std::string DumpOf(const char* page, const char* name) {
  auto dumps = test::DumpsOf(std::filesystem::path(SOURCE_FOLDER) / "docs" / "formats" / page);
  EXPECT_TRUE(dumps.contains(name)) << page << " shows no " << name;
  return dumps[name];
}

void ExpectSame(std::string_view written, std::string_view file) {
  const auto differing = std::mismatch(written.begin(), written.end(), file.begin(), file.end());
  EXPECT_TRUE(written == file) << "at " << differing.second - file.begin();
}

std::vector<WMCityRecord> ShownCities() {
  const std::string file = DumpOf("cities.md", "cityinfo.dat");
  std::vector<WMCityRecord> cities;
  for (std::uint16_t i = 1; i <= city::NodeCount(file.size()); ++i) {
    ByteReader node(std::string_view(file).substr(city::NodeOffset(i)));
    cities.push_back(city::DecodeNode(node).record);
  }
  return cities;
}

// An engine's records in the data folder of somebody in London.
class WrittenByTheModuleTest : public testing::Test {
 protected:
  WrittenByTheModuleTest() {
    constexpr const char* kMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";
    platform.clock.now = kMade;
    platform.clock.ticks = kTicks;
    platform.registry.Set(kMain, "PRODUCT", NumberValue(2));
    platform.registry.Set(kMain, "Version", NumberValue(50));
    platform.registry.Set(kMain, "Data", TextValue("C:\\Data"));
    platform.registry.Set(kMain, "LocalCity", TextValue("London"));
    platform.files.Put("C:\\Data\\cityinfo.dat", DumpOf("cities.md", "cityinfo.dat"));
    platform.files.Put("C:\\Data\\timezone.dat", DumpOf("cities.md", "timezone.dat"));
    config.String(PWConfig::kProductKey, kMain);
    config.String(PWConfig::kDataFolder, "C:\\Data");
    manager.Config = &config;
    manager.Log = new test::TestLog;
  }

  // A run of one source that adds them.
  void Add(const char* type, const char* location, std::vector<PWRecord> records) {
    PWSourceCategory category;
    category.Location = location;
    const std::unique_ptr<PWSource> source(manager.CreateSource(type));
    source->Category = &category;
    ASSERT_EQ(source->Open(0), 0);
    for (PWRecord& record : records) EXPECT_EQ(source->AddRecord(record), 0);
    ASSERT_EQ(source->CloseSource(), 0);
  }
  void ExpectShown(const char* page, const std::vector<const char*>& names) {
    for (const char* name : names) {
      SCOPED_TRACE(name);
      ExpectSame(platform.files.Get("C:\\Data\\" + std::string(name)).value_or("none"),
                 DumpOf(page, name));
    }
  }

  TestPlatform platform;
  PWConfig config;
  WMSourceManager manager{0};
};

TEST_F(WrittenByTheModuleTest, Cardfile) {
  constexpr const char* kPath = "C:\\Data\\Friends.WMCard";
  const std::vector<std::string> keys = {"Last Name", "First Name", "Phone"};
  platform.files.Put(kPath, NewCardFile({"First Name", "Last Name", "Phone"}, keys));
  PWRecord card;
  card.SetField("First Name", "Zo\xEB");
  card.SetField("Last Name", "Lindqv\xE5st");
  card.SetField("Phone", "+46 60 555 01 02");
  card.SetField("Contact Log", "Lens no. 7 is late.");
  Add("contact", kPath, {card});
  ExpectShown("cardfile.md", {"Friends.WMCard"});
}

TEST_F(WrittenByTheModuleTest, Binder) {
  PWString location;
  ASSERT_EQ(manager.NewCategory("Notebook", "memo", &location), 0);
  PWRecord record;
  PWMemoRecord memo(&record);
  memo.Subject("Gold leaf", PWRecord::kWholeText);
  memo.Body("Never in a draught.", PWRecord::kWholeText);
  Add("memo", location, {record});
  ExpectShown("binder.md", {"Notebook.WMWrite", "Notebook.WMNoteHeader", "Notebook.WMContent"});
}

TEST_F(WrittenByTheModuleTest, CallsAndTasks) {
  PWRecord first;
  const PWDateTimeStamp today(1998, 3, 2, 0, 0, 0);
  PWTaskRecord task(&first);
  task.Subject("Order lenses");
  task.Note("No. 7");
  task.StartDate(today);
  task.DueDate(PWDateTimeStamp(1998, 3, 20, 0, 0, 0));
  task.Priority(kPriorityHigh);
  PWRecord second;
  PWTaskRecord call(&second);
  call.Call(true);
  call.Subject("Ask G\xFCnther");
  call.Note("Tower clock");
  call.StartDate(today);
  call.DueDate(PWDateTimeStamp(1998, 3, 6, 0, 0, 0));
  call.Priority(kPriorityHigh);
  call.Completed(true);
  Add("todo", "C:\\Data\\", {first, second});
  ExpectShown("calltask.md", {"TASK.WMW", "CALL.WMW"});
}

PWRecord Event(const char* subject, const PWDateTimeStamp& start, const PWDateTimeStamp& end) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject(subject);
  event.StartDate(start);
  event.EndDate(end);
  return record;
}

PWRecord Dentist() {
  PWRecord record = Event("Dentist", {1998, 3, 18, 9, 45, 0}, {1998, 3, 18, 10, 15, 0});
  PWEventRecord event(&record);
  event.Location("Mill Lane");
  event.Notes("Card", PWRecord::kWholeText);
  event.Alarm(true);
  event.AlarmAdvance(60);
  event.Sensitivity(kSensitivityPrivate);
  return record;
}

// Not on the second date, and otherwise on the third.
PWRecord Choir() {
  PWRecord record = Event("Choir", {1998, 3, 4, 19, 30, 0}, {1998, 3, 4, 21, 0, 0});
  PWEventRecord event(&record);
  event.Alarm(true);
  event.AlarmAdvance(45);
  event.Recurring(true, kRecurranceWeekly);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.EndDate = PWDateTimeStamp(1998, 3, 18, 0, 0, 0);
  pattern.TimeZone = PWTimeZone(EngineZoneOf(ShownCities()[0], 1998));
  pattern.Weekly()->Interval = 1;
  pattern.Weekly()->Days.bits = 1U << 4;
  auto* left = new PWRecurranceException;
  left->Date = PWDateTimeStamp(1998, 3, 11, 0, 0, 0);
  left->Changes.bits = 1U << PWRecurranceException::kDeleted;
  pattern.AddException(left);
  auto* moved = new PWRecurranceException;
  moved->Date = PWDateTimeStamp(1998, 3, 18, 0, 0, 0);
  moved->StartDate = PWDateTimeStamp(1998, 3, 18, 18, 0, 0);
  moved->EndDate = PWDateTimeStamp(1998, 3, 18, 20, 0, 0);
  moved->Changes.bits = 1U << PWRecurranceException::kSubjectChanged;
  moved->Subject = "Dress rehearsal";
  pattern.AddException(moved);
  return record;
}

TEST_F(WrittenByTheModuleTest, Calendar) {
  PWRecord birthday = Event("Zo\xEB's birthday", {1961, 6, 21, 0, 0, 0}, {1961, 6, 21, 0, 0, 0});
  PWEventRecord(&birthday).AllDay(true);
  PWEventRecord(&birthday).Recurring(true, kRecurranceYearlyByDate);
  PWRecurrancePattern& yearly = *PWEventRecord(&birthday).RecurrancePattern();
  *yearly.YearlyByDate() = {5, 20};
  yearly.Options.bits = 1U << PWRecurrancePattern::kNeverEnds;
  PWRecord journey = Event("Villaseca", {1998, 5, 18, 0, 0, 0}, {1998, 5, 23, 0, 0, 0});
  PWEventRecord(&journey).AllDay(true);
  Add("calendar", "C:\\Data\\", {Dentist(), Choir(), birthday, journey});
  ExpectShown("events.md", {"EVEN.WMW"});
  ExpectShown("recurring.md", {"RECR.WMW"});
  ExpectShown("data.md", {"DATA.WMW"});
  ExpectShown("cities.md", {"Place List.dat"});
}

TEST(FormatsDocsTest, ClocksAndCities) {
  const std::string clockFile = DumpOf("clocks.md", "CLOCKS.DAT");
  ByteReader in(clockFile);
  ByteWriter out;
  std::string home;
  for (std::size_t i = 0; i < clocks::kClocks; ++i) {
    const WMClock clock = clocks::DecodeClock(in);
    if (clock.notHome == 0) home += clock.Label();
    clocks::EncodeClock(out, clock);
  }
  ExpectSame(out.Written(), clockFile);
  EXPECT_EQ(home, "New York");

  const std::vector<WMCityRecord> cities = ShownCities();
  ExpectSame(city::EncodeCityFile(cities), DumpOf("cities.md", "cityinfo.dat"));
  EXPECT_EQ(cities.at(1).offset, -500);
}

}  // namespace
}  // namespace pw

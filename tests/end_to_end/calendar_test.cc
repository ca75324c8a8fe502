#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/text.h"
#include "calendar/event_days.h"
#include "calendar/recurring_format.h"
#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/support/bytes.h"
#include "tests/support/clock_file_builder.h"
#include "tests/support/ical_reading.h"
#include "tests/support/zone_files.h"
#include "timeplace/date.h"
#include "timeplace/engine_zone.h"
#include "timeplace/zone_rule.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

using test::Moments;

const std::string kOpen =
    "{\"op\":\"now\",\"seconds\":888840000}\n"  // 1998-03-02 12:00
    "{\"op\":\"open\",\"type\":\"calendar\",\"location\":\"C:\\\\Data\\\\Ada\"}\n";
const std::string kClose = "{\"op\":\"close\"}\n";

std::string Add(const std::string& members) {
  return "{\"op\":\"add\",\"record\":{" + members + "}}\n";
}

std::string Times(const std::string& start, const std::string& end) {
  return "\"StartDate\":\"" + start + "\",\"EndDate\":\"" + end + "\"";
}

// The sample of somebody in New York, without a calendar yet.
class CalendarSample : public Sample {
 public:
  CalendarSample() {
    folder.Put("registry.reg", folder.Get("registry.reg") +
                                   "\"Data\"=\"C:\\\\Data\"\r\n\"LocalCity\"=\"New York, NY\"\r\n"
                                   "\"Version\"=dword:00000032\r\n");
    folder.Put("c/Data/cityinfo.dat", city::EncodeCityFile(test::SomeCities()));
    folder.Put("c/Data/timezone.dat", std::string(340, '\0'));
    std::string profile = folder.Get("profile.toml");
    profile.replace(profile.find("5 = ''"), 6, "5 = 'Ada'");
    folder.Put("profile.toml", profile);
  }

  Finished Drive(const std::string& calls) const { return Run({"drive"}, kOpen + calls + kClose); }

  // The starts of the occurrences in the event file that are as their series has them, by their
  // subjects.
  std::map<std::string, Moments> StoredStarts() const {
    const std::string file = folder.Get("c/Data/AdaEven.WMW");
    std::map<std::string, Moments> starts;
    const auto take = [&](ByteReader& in) {
      WMEventHeader header;
      WMEventDetail detail;
      auto damage = events::DecodeItem(in, header, detail);
      const bool isUnchanged = (header.flags & events::kChangedOccurrence) == 0;
      if (isUnchanged) starts[detail.subject].insert(header.start);
      return damage;
    };
    EXPECT_TRUE(events::ReadDays(file, take, [](bool counts) { EXPECT_TRUE(counts); }));
    return starts;
  }
};

// Of a weekly series: one date left out, one a day later with a subject of its own.
constexpr const char* kExceptions =
    "\"Exceptions\":[{\"Date\":\"1998-04-15\",\"Changes\":16},{\"Date\":\"1998-04-29\","
    "\"Changes\":3,\"StartDate\":\"1998-04-30T18:00:00\",\"EndDate\":\"1998-04-30T19:00:00\","
    "\"Subject\":\"Rehearsal\",\"AlarmAdvance\":5}]";

std::string Choir() {
  return Add("\"Subject\":\"Choir\",\"Notes\":\"two\\r\\nlines\"," +
             Times("1998-03-04T23:30:00", "1998-03-05T01:00:00") +
             ",\"Pattern\":{\"Type\":2,\"Days\":16,\"EndDate\":\"1998-05-27\"," + kExceptions +
             "}");
}

TEST(CalendarRecords, AreListedShownAndExported) {
  const CalendarSample sample;
  const Finished driven = sample.Drive(
      Add("\"Subject\":\"Dentist\",\"Location\":\"Zo\xC3\xAB's\",\"Alarm\":true,"
          "\"AlarmAdvance\":15,\"Sensitivity\":2," +
          Times("1998-04-06T13:00:00", "1998-04-06T13:30:00")) +
      Add("\"Subject\":\"Trip\",\"AllDay\":true," + Times("1998-05-18", "1998-05-24")) +
      Add("\"Subject\":\"Bea\",\"AllDay\":true,\"StartDate\":\"1960-02-29\",\"Alarm\":true,"
          "\"AlarmAdvance\":1439,\"Pattern\":{\"Type\":5,\"Month\":1,\"Day\":28}") +
      Choir());
  EXPECT_EQ(driven.code, 0) << driven.out << driven.messages;
  EXPECT_TRUE(Has(sample.Run({"info"}).out, "\ncalendar  1 category, 4 records\n"));

  const Finished list = sample.Run({"list", "calendar"});
  EXPECT_EQ(list.code, 0) << list.messages;
  std::string rows;
  std::istringstream lines(list.out);
  for (std::string row; std::getline(lines, row);) {
    rows += row.substr(row.find('\t', row.find('\t') + 1) + 1) + "\n";  // behind the id
  }
  EXPECT_EQ(
      rows,
      "Subject\tStart\tEnd\tRepeats\tLocation\tAlarm\tAccess\tLeft out\tOtherwise\tNotes\n"
      "Trip\t1998-05-18\t1998-05-24\t\t\t\t\t\t\t\n"
      "Bea\t1980-02-29\t1980-02-29\tevery year on 29 Feb\t\t1 day before\t\t\t\t\n"
      "Dentist\t1998-04-06 09:00\t1998-04-06 09:30\t\tZo\xC3\xAB's\t15 min before\tprivate\t\t"
      "\t\n"
      "Choir\t1998-03-04 18:30\t1998-03-04 20:00\tevery week on Wed until 1998-05-27\t\t\t\t"
      "1998-04-15\t1998-04-29: now 1998-04-30 14:00 to 1998-04-30 15:00, Rehearsal\t"
      "two lines\n");
  EXPECT_TRUE(
      Has(sample.Run({"show", "calendar", "Recurring:888840000"}).out, "\nLeft out   1998-"));

  const Finished json = sample.Run({"export", "calendar"});
  EXPECT_TRUE(Has(json.out,
                  "\"Pattern\":{\"Type\":2,\"Interval\":1,\"Days\":16,\"EndDate\":"
                  "\"1998-05-27T00:00:00\",\"Options\":0,\"TimeZone\":{\"Bias\":300,"
                  "\"StandardBias\":0,\"DaylightBias\":-60,\"StandardDate\":{\"Month\":10,"
                  "\"Day\":5,\"Hour\":2},\"DaylightDate\":{\"Month\":4,\"Day\":1,\"Hour\":2}"
                  "},\"Exceptions\":[{\"Date\":\"1998-04-15\",\"Changes\":16},{\"Date\":"
                  "\"1998-04-29\",\"Changes\":15,\"StartDate\":\"1998-04-30T18:00:00\""));

  const Finished ics = sample.Run({"export", "calendar", "--format", "ics"});
  EXPECT_EQ(ics.code, 0) << ics.messages;
  for (const char* part :
       {"\r\nDTSTART;VALUE=DATE:19980518\r\nDTEND;VALUE=DATE:19980525\r\nSUMMARY:Trip\r\n",
        "\r\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=29\r\n", "\r\nTRIGGER:-PT1440M\r\n",
        "\r\nDTSTART:19980406T130000Z\r\nDTEND:19980406T133000Z\r\n", "\r\nCLASS:CONFIDENTIAL\r\n",
        "\r\nTZID:New York NY\r\n", "\r\nDTSTART;TZID=New York NY:19980304T183000\r\n",
        "\r\nRRULE:FREQ=WEEKLY;WKST=WE;BYDAY=WE;UNTIL=19980528T035959Z\r\n"
        "EXDATE;TZID=New York NY:19980415T183000\r\n",
        "\r\nRECURRENCE-ID;TZID=New York NY:19980429T183000\r\n"
        "DTSTART;TZID=New York NY:19980430T140000\r\n"}) {
    EXPECT_TRUE(Has(ics.out, part));
  }
}

std::string ZoneMembers(const char* name, const SYSTEMTIME& date) {
  return Format("\"%s\":{\"Month\":%u,\"DayOfWeek\":%u,\"Day\":%u,\"Hour\":%u,\"Year\":%u}", name,
                date.wMonth, date.wDayOfWeek, date.wDay, date.wHour, date.wYear);
}

std::string ZoneOf(const WMCityRecord& city) {
  const TIME_ZONE_INFORMATION zone = EngineZoneOf(city, 1998);
  return Format("\"TimeZone\":{\"Bias\":%d,\"DaylightBias\":%d,", zone.Bias, zone.DaylightBias) +
         ZoneMembers("StandardDate", zone.StandardDate) + "," +
         ZoneMembers("DaylightDate", zone.DaylightDate) + "}";
}

// Half an hour's worth of a morning by a city's clocks, a series each, as the organiser's days have
// room for three at a time. No clocks change then.
std::string MorningOf(const WMCityRecord& city, std::int32_t number) {
  const std::int32_t local = PlainSeconds(1998, 3, 29, 5, number * 30, 0);
  const std::int32_t utc = LocalToUtc(city, local);
  const auto text = [](std::int32_t seconds) {
    const PWDateTimeStamp stamp = StampOf(BrokenTimeOf(seconds));
    return Format("%u-%02u-%02uT%02u:%02u:00", stamp.year, stamp.month, stamp.day, stamp.hour,
                  stamp.minute);
  };
  return Times(text(utc), text(utc + 300));
}

// Every pattern with and without end, by the clocks of every city: another program finds the very
// occurrences that the organiser's file holds.
TEST(CalendarRecords, TakePlaceWhenAnotherProgramReadsThatTheyDo) {
  const char* const patterns[] = {
      "\"Type\":1,\"Interval\":9",
      "\"Type\":2,\"Interval\":2,\"Days\":42",
      "\"Type\":3,\"Interval\":2,\"Days\":1073741824",
      "\"Type\":3,\"Days\":2147483664",
      "\"Type\":4,\"Interval\":3,\"Week\":1,\"Day\":0",
      "\"Type\":4,\"Week\":4,\"Day\":5",
      "\"Type\":5,\"Month\":2,\"Day\":28",
      "\"Type\":6,\"Month\":2,\"Week\":4,\"Day\":1",
  };
  for (const WMCityRecord& city : test::SomeCities()) {
    const CalendarSample sample;
    std::string calls;
    std::int32_t count = 0;
    for (const char* pattern : patterns) {
      for (const char* end : {"", ",\"EndDate\":\"2000-06-14\""}) {
        calls += Add("\"Subject\":\"" + std::to_string(count) + "\"," + MorningOf(city, count) +
                     ",\"Pattern\":{" + pattern + end + "," + ZoneOf(city) +
                     ",\"Exceptions\":[{\"Date\":\"1998-04-29\",\"Changes\":16}]}");
        ++count;
      }
    }
    sample.Drive(calls);
    const Finished ics = sample.Run({"export", "calendar", "--format", "ics"});
    EXPECT_EQ(ics.code, 0) << ics.messages;
    EXPECT_TRUE(Has(ics.out, "RRULE"));
    const test::Calendar calendar = test::ParseCalendar(ics.out);
    const auto starts = test::UnchangedStarts(calendar.get());
    EXPECT_EQ(starts.size(), count);
    EXPECT_EQ(starts, sample.StoredStarts()) << city.Name();
  }
}

// The recurring file as the organiser wrote it before its series had keys.
std::string WithoutKeys(const std::string& file) {
  constexpr auto kOlder = recurring::FormatVersion::k30;
  const recurring::Frame frame = recurring::ReadFrame(file);
  std::vector<recurring::Record> records;
  for (const auto& stored : frame.records) {
    records.push_back(recurring::DecodeRecord(frame.version, stored.bytes).record);
  }
  std::vector<const recurring::Record*> pointers(records.size());
  std::transform(records.begin(), records.end(), pointers.begin(),
                 [](const recurring::Record& record) { return &record; });
  recurring::Header header = frame.header;
  recurring::SetMagic(header, kOlder);
  ByteWriter out;
  recurring::EncodeHeader(out, header);
  return out.Release() + recurring::EncodeBody(kOlder, pointers);
}

// Its occurrences then have the time at which each was written.
TEST(CalendarRecords, OfAnOlderCalendarTakePlaceAsItsModuleFindsThem) {
  const CalendarSample sample;
  sample.Drive(Choir() +
               Add("\"Subject\":\"Daily\"," + Times("1998-03-05T14:00:00", "1998-03-05T15:00:00") +
                   ",\"Pattern\":{\"Type\":1,\"EndDate\":\"1998-03-20\"}"));
  const std::string series = "c/Data/AdaRecr.WMW";
  const std::string events = "c/Data/AdaEven.WMW";
  sample.folder.Put(series, WithoutKeys(sample.folder.Get(series)));
  std::string items = sample.folder.Get(events);
  const std::string key = test::Word(888840000 + 1, 4);
  int count = 0;
  for (std::size_t at = items.find(key); at != std::string::npos; at = items.find(key, at + 4)) {
    if (++count > 8) items.replace(at, 4, test::Word(888840000 + 4, 4));
  }
  ASSERT_EQ(count, 16) << "the daily ones";
  sample.folder.Put(events, items);

  const Finished ics = sample.Run({"export", "calendar", "--format", "ics"});
  EXPECT_EQ(ics.code, 0) << ics.messages;
  auto starts = test::UnchangedStarts(test::ParseCalendar(ics.out).get());
  auto stored = sample.StoredStarts();
  EXPECT_EQ(starts["Daily"], stored["Daily"]);
  EXPECT_EQ(starts["Daily"].size(), 16U);
  EXPECT_EQ(starts["Choir"], stored["Choir"]);
}

TEST(CalendarRecords, ShowInACalendarProgram) {
  const CalendarSample sample;
  sample.Drive(Choir() +
               Add("\"Subject\":\"Trip\",\"AllDay\":true," + Times("1998-04-19", "1998-04-20")));
  const std::string ics = sample.Folder() + "/calendar.ics";
  EXPECT_EQ(sample.Run({"export", "calendar", "--format", "ics", "-o", ics}).code, 0);
  sample.folder.Put("khal.conf", "[calendars]\n[[ada]]\npath = " + sample.Folder() +
                                     "/khal\n[locale]\nlocal_timezone = America/New_York\n"
                                     "default_timezone = America/New_York\ntimeformat = %H:%M\n"
                                     "dateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
                                     "datetimeformat = %Y-%m-%d %H:%M\n"
                                     "longdatetimeformat = %Y-%m-%d %H:%M\n[sqlite]\npath = " +
                                     sample.Folder() + "/khal.db\n");
  const std::string khal = "khal -c " + sample.Folder() + "/khal.conf ";
  OutputOf(khal + "import --batch -a ada " + ics);
  EXPECT_EQ(OutputOf(khal + "list --day-format {date} -f '{start-time} {title}' 1998-04-01 30d"),
            "1998-04-01\n18:30 Choir\n1998-04-08\n18:30 Choir\n1998-04-19\n Trip\n"
            "1998-04-20\n Trip\n1998-04-22\n18:30 Choir\n1998-04-30\n14:00 Rehearsal\n");
}

TEST(CalendarRecords, ThatCannotBeReadAreToldByFile) {
  const CalendarSample sample;
  EXPECT_EQ(sample.Run({"list", "calendar"}).messages, "") << "a calendar that isn't there yet";
  sample.Drive(Choir());
  const std::string prefix = "pairwise: " + sample.Folder() + "/c/Data/Ada";
  const struct {
    const char* file;
    std::size_t size;  // that is left of it
  } cases[] = {
      {"Even.WMW", 7000},
      {"Recr.WMW", 60},
      {"Data.WMW", 40},
  };
  for (const auto& each : cases) {
    const std::string path = std::string("c/Data/Ada") + each.file;
    const std::string whole = sample.folder.Get(path);
    sample.folder.Put(path, whole.substr(0, each.size));
    const Finished list = sample.Run({"list", "calendar"});
    EXPECT_EQ(list.code, 4) << each.file;
    EXPECT_EQ(list.messages, prefix + each.file +
                                 ": damaged, so that not all of it is read; see `pairwise "
                                 "check`\n");
    sample.folder.Put(path, whole);
  }
  fs::remove(sample.folder.Path() / "c/Data/AdaEven.WMW");
  EXPECT_EQ(sample.Run({"list", "calendar"}).messages,
            prefix + "EVEN.WMW: not there, so that nothing of the calendar is read\n");
  fs::remove(sample.folder.Path() / "c/Data/cityinfo.dat");
  const Finished list = sample.Run({"list", "calendar"});
  EXPECT_EQ(list.code, 1);
  EXPECT_EQ(list.messages, "pairwise: " + sample.Folder() +
                               "/c/Data/cityinfo.dat: not there, and without its cities no "
                               "calendar can be opened; `pairwise cities --from-system` makes such "
                               "a file\n");
}

TEST(CalendarRecords, GoByTheCityOfTheHomeClockOrAnotherOne) {
  const CalendarSample sample;
  sample.Drive(Choir());
  const std::string data = sample.Folder() + "/c/Data";
  const auto listed = [&](const std::string& profile, std::vector<std::string> more) {
    const std::string folder = sample.Folder() + "/" + profile;
    more.insert(more.begin(), {"-p", folder, "init", "--data", data});
    const Finished made = RunPairwise(more);
    if (made.code != 0) return made.messages;
    const Finished list = RunPairwise({"-p", folder, "list", "calendar"});
    return list.messages + sample.folder.Get(profile + "/registry.reg");
  };
  EXPECT_EQ(listed("a", {}).substr(0, 39), "pairwise: the home city isn't known, so");
  std::string clocks = test::Clock("Lima", "Peru", false, false) +
                       test::Clock("New York, NY, USA", "USA", true, true);
  for (int i = 0; i < 6; ++i) clocks += test::Clock("Lima", "Peru", false, false);
  sample.folder.Put("c/Data/Clocks.dat", clocks);
  EXPECT_TRUE(Has(listed("b", {}), "\"LocalCity\"=\"New York, NY\""));
  EXPECT_TRUE(Has(listed("c", {"--city", "SYDNEY"}), "\"LocalCity\"=\"Sydney\""));
  // An export from the old machine, with another edition's key that is asked before.
  const std::string old = sample.Folder() + "/old.reg";
  const std::string key = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\";
  const std::string head = "REGEDIT4\r\n\r\n" + key +
                           "Wingmate 98\\Version 1\\Main]\r\n\"PRODUCT\"=dword:00000001\r\n"
                           "\"Data\"=\"C:\\\\Data\"\r\n";
  sample.folder.Put("old.reg", head);
  const std::vector<std::string> byOld = {"--registry", old, "--product", "98"};
  EXPECT_FALSE(Has(listed("e", byOld), "pairwise:")) << "the home clock's";
  sample.folder.Put("old.reg",
                    head + "\"LocalCity\"=\"Lima\"\r\n\r\n" + key +
                        "PairWise Desktop\\Version 1\\Main]\r\n\"LocalCity\"=\"Lima\"\r\n");
  EXPECT_FALSE(Has(listed("f", byOld), "New York")) << "the registry's own stays";
  std::vector<std::string> andCity = byOld;
  andCity.insert(andCity.end(), {"--city", "Sydney"});
  const std::string named = listed("g", andCity);
  EXPECT_FALSE(Has(named, "Lima"));
  EXPECT_EQ(listed("d", {"--city", "Sydne"}),
            "pairwise: " + data +
                "/cityinfo.dat: has no city 'Sydne'; `pairwise cities` lists "
                "those that it has\n");
}

}  // namespace
}  // namespace pw

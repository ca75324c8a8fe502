#include "timeplace/timezone_source.h"

#include <gtest/gtest.h>

#include "framework/timezone_record.h"
#include "tests/support/clock_file_builder.h"
#include "tests/support/source_fixture.h"
#include "tests/support/zone_files.h"

namespace {

using pw::test::Change;
using pw::test::City;
using pw::test::Clock;
using pw::test::kClockSize;
using pw::test::Lines;
using pw::test::Steps;

constexpr const char* kClocks = "C:\\Data\\CLOCKS.DAT";

class TimezoneSourceTest : public pw::test::SourceTest {
 protected:
  TimezoneSourceTest() : SourceTest("timezone", 3) {
    auto cities = pw::test::SomeCities();
    cities.push_back(
        City("Utopia", "Utopia", 9, -330, 2, Change(2, 14, 3, 3), Change(12, 30, 3, 9)));
    pw::test::PutZoneFiles(platform, cities, "Lima");
    clocks = Clock("New York , NY, more", "USA", false, false) +
             Clock(" Sydney,  ,x", "Australia", true, false) + Clock("Lima", "Peru", false, true) +
             Clock("Caracas", "Venezuela", false, false) +
             Clock("Calcutta", "India", false, false) + Clock("Nowhere,", "nowhere", false, false) +
             Clock("Adelaide", "Australia", false, false) + Clock("Utopia", "Utopia", false, false);
  }

  PWRESULT Open() {
    platform.files.Put(kClocks, clocks);
    return source->Open(0);
  }
  PWRecord Read(const char* id) {
    PWRecord record;
    EXPECT_EQ(source->FindRecord(id), 0);
    EXPECT_EQ(source->ReadRecord(&record), 0);
    return record;
  }
  // The flags of all clocks: home, world, active.
  std::string Flags() {
    std::string flags;
    PWRecord record;
    for (PWRESULT at = source->FirstRecord(); at == 0; at = source->NextRecord()) {
      source->ReadRecord(&record);
      const PWTimezoneRecord clock(&record);
      flags += clock.Home() ? 'h' : '-';
      flags += clock.World() ? 'w' : '-';
      flags += clock.Active() ? 'a' : '-';
      flags += ' ';
    }
    return flags;
  }
  PWRESULT Update(const char* id, bool home, bool active) {
    PWRecord record = Read(id);
    PWTimezoneRecord clock(&record);
    clock.Home(home);
    clock.World(active);
    clock.Active(active);
    return source->UpdateRecord(record);
  }
  // The CRC over these texts.
  static std::uint32_t CrcOf(const Lines& texts) {
    PWCrc crc;
    for (const std::string& text : texts) crc.Add(PWString(text.c_str()));
    return crc.value;
  }

  std::string clocks;
};

TEST_F(TimezoneSourceTest, ShowsEachClockWithItsZone) {
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(source->RecordCount(), 8U);
  const struct {
    const char *city, *state, *country;
    std::int32_t bias;
    std::uint32_t daylightBias, daylightSwitch, standardSwitch;
  } expected[] = {
      {"New York", "NY", "USA", -300, 60, 0x04010102, 0x0A050102},
      {"Sydney", "", "Australia", 600, 60, 0x0A050102, 0x03050103},
      {"Lima", "", "Peru", -300, 0, 0, 0},
      {"Caracas", "", "Venezuela", -270, 0, 0, 0},
      {"Calcutta", "", "India", 330, 0, 0, 0},
      {"Nowhere", "", "nowhere", 120, 60, 0x04000102, 0x0A001F0F},
      {"Adelaide", "", "Australia", 570, 60, 0x0A050102, 0x03050103},
      {"Utopia", "", "Utopia", -210, 60, 0x04000F02, 0x0A001F0C},
  };
  ASSERT_EQ(source->FirstRecord(), 0);
  for (const auto& each : expected) {
    PWRecord record;
    ASSERT_EQ(source->ReadRecord(&record), 0);
    const PWTimezoneRecord clock(&record);
    EXPECT_EQ(clock.City(), each.city);
    EXPECT_EQ(clock.State(), each.state);
    EXPECT_EQ(clock.Country(), each.country);
    EXPECT_EQ(static_cast<std::int32_t>(clock.Bias()), each.bias) << each.city;
    EXPECT_EQ(clock.StandardBias(), 0U);
    EXPECT_EQ(clock.DaylightBias(), each.daylightBias) << each.city;
    EXPECT_EQ(clock.DaylightSwitch(), each.daylightSwitch) << each.city;
    EXPECT_EQ(clock.StandardSwitch(), each.standardSwitch) << each.city;
    source->NextRecord();
  }
  EXPECT_EQ(Flags(), "--- -wa h-- --- --- --- --- --- ");
  EXPECT_EQ(source->RecordTimeStamp(), PWDateTimeStamp());
}

TEST_F(TimezoneSourceTest, TheCursorIsAnEntryOrNone) {
  ASSERT_EQ(Open(), 0);
  PWRecord record;
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(source->NextRecord(), 1);
  for (const char* id : {"8", "-1", "4294967295"}) {
    ASSERT_EQ(source->FindRecord("6"), 0);
    EXPECT_EQ(source->RecordID(), "6");
    EXPECT_EQ(source->FindRecord(id), 1) << id;
    EXPECT_EQ(source->ReadRecord(&record), 1);
  }
  EXPECT_EQ(source->FindRecord(" 7x"), 0);
  EXPECT_EQ(source->NextRecord(), 1);
  EXPECT_EQ(source->FindRecord(nullptr), 0);
  EXPECT_EQ(source->RecordID(), "0");
  EXPECT_EQ(source->AddRecord(record), 1);
  EXPECT_EQ(source->DeleteRecord(), 1);
}

TEST_F(TimezoneSourceTest, AnUpdateCarriesTheFlagsAndNoCity) {
  ASSERT_EQ(Open(), 0);
  const std::uint32_t before = source->RecordCRC();
  EXPECT_EQ(Update("0", true, false), 0);
  EXPECT_EQ(Update("3", true, true), 0);
  EXPECT_EQ(Flags(), "--- --- --- hwa --- --- --- --- ");
  EXPECT_NE(source->RecordCRC(), before);
  EXPECT_EQ(Update("3", false, false), 0);
  EXPECT_EQ(Update("2", true, false), 0);
  EXPECT_EQ(Update("1", false, true), 0);
  EXPECT_EQ(source->RecordCRC(), before) << "the CRC hangs on cities and flags alone";

  PWRecord record = Read("0");
  PWTimezoneRecord clock(&record);
  clock.Home(true);
  clock.City("Lima");
  clock.State("");
  EXPECT_EQ(source->UpdateRecord(record), 0) << "another city's update is taken, to no effect";
  clock.City("Atlantis");
  EXPECT_EQ(source->UpdateRecord(record), 1);
  EXPECT_EQ(Flags(), "--- -wa h-- --- --- --- --- --- ");
  // Letter case counts for the city that is named, not for the one that it is compared with.
  record = Read("5");
  clock.Country("NOWHERE, or so");
  EXPECT_EQ(source->UpdateRecord(record), 0);
  EXPECT_EQ(PWTimezoneRecord(&record).Country(), "NOWHERE, or so");
  record = Read("5");
  EXPECT_EQ(PWTimezoneRecord(&record).Country(), "NOWHERE, or so") << "what was taken stays";
  EXPECT_EQ(source->UpdateRecord(record), 0);
}

TEST_F(TimezoneSourceTest, TheCRCIsThatOfCitiesAndFlagWords) {
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(source->RecordCRC(), CrcOf({"New York", "Sydney", "-65536", "Lima", "65535", "Caracas",
                                        "Calcutta", "Nowhere", "Adelaide", "Utopia"}));
  EXPECT_EQ(Update("2", true, true), 0);
  EXPECT_EQ(Update("1", false, false), 0);
  EXPECT_EQ(source->RecordCRC(), CrcOf({"New York", "Sydney", "Lima", "-1", "Caracas", "Calcutta",
                                        "Nowhere", "Adelaide", "Utopia"}));
}

TEST_F(TimezoneSourceTest, ACloseWritesOneHomeAndOneActiveClock) {
  const struct {
    std::vector<std::pair<const char*, std::pair<bool, bool>>> updates;
    std::size_t home, active;
  } cases[] = {
      {{}, 2, 1},
      {{{"2", {false, false}}, {"1", {false, false}}}, 0, 0},
      {{{"2", {false, false}}}, 0, 1},
      {{{"1", {false, false}}}, 2, 2},
      {{{"4", {true, true}}}, 4, 4},
  };
  for (const auto& each : cases) {
    MakeSource();
    ASSERT_EQ(Open(), 0);
    for (const auto& [id, flags] : each.updates) {
      ASSERT_EQ(Update(id, flags.first, flags.second), 0);
    }
    ASSERT_EQ(source->CloseSource(), 0);
    const std::string saved = *platform.files.Get(kClocks);
    std::string expected = clocks;
    // Texts are filled with zeros but for the last byte of their field; a number is 0 or 1.
    const auto put = [&](std::size_t at, std::string text, std::size_t width) {
      text.resize(width, '\0');
      expected.replace(at, width, text);
    };
    const char* cities[] = {"New York, NY", "Sydney",  "Lima",     "Caracas",
                            "Calcutta",     "Nowhere", "Adelaide", "Utopia"};
    const char* countries[] = {"USA",   "Australia", "Peru",      "Venezuela",
                               "India", "nowhere",   "Australia", "Utopia"};
    for (std::size_t i = 0; i < 8; ++i) {
      put(i * kClockSize, cities[i], 25);
      put(i * kClockSize + 26, countries[i], 35);
      put(i * kClockSize + 128, i == each.active ? "" : "\x01", 4);
      put(i * kClockSize + 132, i == each.home ? "" : "\x01", 4);
    }
    EXPECT_EQ(saved, expected);
  }
}

TEST_F(TimezoneSourceTest, OfSeveralHomeOrActiveClocksTheLastStays) {
  const std::string yes(4, '\0');
  for (const std::size_t clock : {1, 4}) clocks.replace(clock * kClockSize + 132, 4, yes);
  for (const std::size_t clock : {0, 6}) clocks.replace(clock * kClockSize + 128, 4, yes);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(Flags(), "-wa hwa h-- --- h-- --- -wa --- ");
  ASSERT_EQ(source->CloseSource(), 0);
  MakeSource();
  ASSERT_EQ(source->Open(0), 0);
  EXPECT_EQ(Flags(), "--- --- --- --- h-- --- -wa --- ");
  // A world clock needn't be the active one until the close.
  PWRecord record = Read("2");
  PWTimezoneRecord(&record).World(true);
  EXPECT_EQ(source->UpdateRecord(record), 0);
  EXPECT_EQ(Flags(), "--- --- -w- --- h-- --- --a --- ");
}

TEST_F(TimezoneSourceTest, BytesBehindTheClocksStayAndALabelWithoutEndToo) {
  clocks.replace(62, 66, std::string(66, 'L'));
  clocks += "more";
  ASSERT_EQ(Open(), 0);
  ASSERT_EQ(source->CloseSource(), 0);
  const std::string saved = *platform.files.Get(kClocks);
  EXPECT_EQ(saved.substr(62, 66), std::string(66, 'L'));
  EXPECT_EQ(saved.substr(1216), "more");
}

TEST_F(TimezoneSourceTest, AnOrganiserThatDoesNotLetGoLeavesTheClocksToBeRead) {
  platform.windows.SetAnswer(platform.windows.Add("Wingmate_95", true), 5);
  ASSERT_EQ(Open(), 0);
  EXPECT_EQ(log->lines, Lines{"9 PWDesktop-W0003: Timezone information cannot be modified in "
                              "Wingmate 99 while it is running."});
  EXPECT_EQ(Update("0", true, true), 1);
  EXPECT_EQ(source->CloseSource(), 0);
  EXPECT_EQ(*platform.files.Get(kClocks), clocks);
  platform.files.Delete(kClocks);
  MakeSource();
  EXPECT_EQ(source->Open(0), 1);
  EXPECT_EQ(Sent(), (Steps{0, 0})) << "nothing to give back";
}

TEST_F(TimezoneSourceTest, WhatIsMissingFailsTheOpenAndLetsGo) {
  platform.windows.Add("Wingmate_95", true);
  const auto fails = [&](const char* what, const Steps& steps) {
    platform.windows.sent.clear();
    MakeSource();
    EXPECT_EQ(source->Open(0), 1) << what;
    EXPECT_EQ(source->CloseSource(), 1) << what;
    EXPECT_EQ(Sent(), steps) << what;
  };
  platform.files.Put(kClocks, clocks.substr(0, 1215));
  fails("cut clock file", {0, 1, 3});
  platform.files.Put(kClocks, clocks.replace(7 * kClockSize, 6, "Utopie"));
  fails("unknown city", {0, 1, 3});
  EXPECT_EQ(source->RecordCount(), 7U);
  EXPECT_EQ(*platform.files.Get(kClocks), clocks);
  platform.files.Delete("C:\\Data\\CITYINFO.DAT");
  fails("no city file", {0, 1, 3});
  ASSERT_EQ(platform.dialogs.boxes.size(), 1U);
  EXPECT_EQ(platform.dialogs.boxes[0].text,
            "Cannot find the file C:\\Data\\CITYINFO.DAT, \nwhich is required for running "
            "Wingmate/PairWise Desktop.");
  const char* main = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";
  platform.registry.Set(main, "DATA", pw::TextValue("C:\\" + std::string(253, 'D')));
  fails("folder too long", {});
  manager.Product = 7;
  fails("unknown edition", {});
  manager.Product = -1;
  config.String(PWConfig::kProductKey, "");
  fails("edition not known", {});
}

TEST_F(TimezoneSourceTest, AFileThatCannotBeWrittenFailsTheClose) {
  platform.windows.Add("Wingmate_95", true);
  ASSERT_EQ(Open(), 0);
  platform.files.FailWritesAfter(0);
  EXPECT_EQ(source->CloseSource(), 1);
  EXPECT_EQ(Sent(), (Steps{0, 1, 2})) << "the organiser looks for itself";
  EXPECT_EQ(*platform.files.Get(kClocks), clocks);
}

}  // namespace

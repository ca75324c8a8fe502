#include <gtest/gtest.h>

#include "host/check/card_check.h"
#include "host/check/clock_check.h"
#include "host/check/folder_check.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/card_file_builder.h"

namespace pw {
namespace {

// Each finding as a person reads it.
std::vector<std::string> Texts(const FileCheck& check) {
  std::vector<std::string> texts;
  for (const Finding& finding : check.findings) {
    texts.push_back((finding.offset ? std::to_string(*finding.offset) : "-") + " " + finding.text +
                    " (" + std::to_string(finding.lost) + ")");
  }
  return texts;
}

using Lines = std::vector<std::string>;

TEST(CheckTest, ACardfileIsReadAsTheModuleDoes) {
  const test::CardFileBytes sample = test::ThreeCards();
  const std::string whole = sample.Build();
  EXPECT_EQ(CheckCardfile(whole).holds, "cardfile: 3 cards of 4 fields");
  EXPECT_EQ(Texts(CheckCardfile(whole)), Lines());
  EXPECT_EQ(Texts(CheckCardfile("")), Lines());
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 59))),
            Lines{"59 a header of 60 bytes was expected; the file can't be opened (0)"});
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 1360))),
            Lines{"1360 the file ends before its cards (3)"});
  EXPECT_EQ(Texts(CheckCardfile(whole.substr(0, 1361 + 64))).back(),
            "1425 3 cards were expected (2)");

  // The last body is cut; the second card has none.
  const std::string cut = whole.substr(0, whole.size() - 1);
  ASSERT_EQ(Texts(CheckCardfile(cut)).size(), 1U);
  EXPECT_EQ(CheckCardfile(cut).findings[0].lost, 1U);
  std::string bodiless = whole;
  bodiless.replace(1361 + 64, 4, std::string(4, '\0'));
  EXPECT_EQ(CheckCardfile(bodiless).findings.at(0).offset, 1361U + 64);
  EXPECT_EQ(CheckCardfile(bodiless).findings.at(0).lost, 2U);
  std::string other = whole;
  other[0] = 'X';
  other.replace(60, 4, test::Word(0xFFFFFFFF, 4));
  EXPECT_EQ(CheckCardfile(other).findings.size(), 2U);
}

TEST(CheckTest, ClocksCitiesAndPlaces) {
  EXPECT_EQ(Texts(CheckClocks(std::string(1215, '\0'))),
            Lines{"1215 eight clocks of 152 bytes were expected; none can be read (0)"});
  EXPECT_EQ(Texts(CheckClocks(std::string(1216, '\0'))), Lines());
  EXPECT_EQ(Texts(CheckClocks(std::string(1216, 'x'))), Lines{"- no clock is the home clock (0)"});
  EXPECT_EQ(CheckCities("").findings.size(), 1U);
  EXPECT_EQ(Texts(CheckZoneTable(std::string(35, 'z'))),
            Lines{"35 the file ends within a zone (0)"});
  const std::string places = "WMW400" + test::Word(2, 4) + test::Padded("Pier 4", 64);
  EXPECT_EQ(CheckPlaces(places).holds, "place list: 1 place");
  EXPECT_EQ(Texts(CheckPlaces(places)), Lines{"74 2 places were expected (1)"});
  EXPECT_EQ(Texts(CheckPlaces("WMW401")),
            Lines{"0 \"WMW400\" was expected here; an empty list takes its place (0)"});
}

TEST(CheckTest, FilesAreKnownByTheirNames) {
  const TempFolder folder;
  folder.Put("friends.wmcard", test::ThreeCards().Build());
  folder.Put("Clocks.dat", std::string(1216, '\0'));
  folder.Put("letter.txt", "");
  folder.Put("AdaRecr.wmw", "");
  const auto check = CheckFolder(folder.Path());
  ASSERT_TRUE(check);
  ASSERT_EQ(check->files.size(), 2U);
  EXPECT_EQ(check->files[1].name, "friends.wmcard");
  EXPECT_EQ(check->others, 2U);
  EXPECT_EQ(check->together, Lines{"there is no event file beside AdaRecr.wmw; the next save would "
                                   "overwrite it with an empty calendar"});
  EXPECT_FALSE(CheckFolder(folder.Path() / "none"));
}

}  // namespace
}  // namespace pw

#include "calltask/frame_format.h"

#include <gtest/gtest.h>

#include "calltask/block_reader.h"
#include "calltask/call_format.h"
#include "tests/support/calltask_builder.h"

namespace {

namespace calltask = pw::calltask;
using calltask::DayBlock;
using calltask::FormatVersion;
using calltask::Frame;
using calltask::Header;
using pw::test::CallTaskBytes;
using pw::test::Word;

CallTaskBytes ThreeDays() {
  CallTaskBytes bytes;
  bytes.magic = "WMWCALL20";
  bytes.days = {{1992, 0, {"first"}}, {1992, 365, {"second", "third"}}, {2001, 31, {"fourth"}}};
  return bytes;
}

Header HeaderOf(const std::string& text) {
  Header header{};
  std::copy(text.begin(), text.end(), header.begin());
  return header;
}

TEST(FrameFormatTest, YearsAndDaysStandWhereTheTablesSay) {
  const std::string bytes = ThreeDays().Build();
  ASSERT_EQ(bytes.substr(26, 12),
            Word(92, 2) + Word(626, 4) + Word(101, 2) + Word(626 + 6222 + 100 + 105, 4));
  const Frame frame = calltask::ReadFrame(bytes);
  EXPECT_TRUE(frame.hasHeader);
  EXPECT_TRUE(frame.isWhole);
  ASSERT_EQ(frame.days.size(), 3U);
  EXPECT_EQ(frame.days[0].key, 2 * 366);
  EXPECT_EQ(frame.days[1].key, 2 * 366 + 365);
  EXPECT_EQ(frame.days[2].key, 11 * 366 + 31);
  EXPECT_EQ(frame.days[0].bytes, "first" + std::string(95, '\x09'));
  EXPECT_EQ(frame.days[1].bytes, "secondthird" + std::string(94, '\x09'));
  EXPECT_EQ(calltask::WriteFrame(frame.header, frame.days), bytes);
  EXPECT_EQ(calltask::WriteFrame(frame.header, {}), bytes.substr(0, 26) + std::string(600, '\0'));
}

TEST(FrameFormatTest, TheMagicIsAWholeText) {
  const struct {
    std::string header;
    std::optional<FormatVersion> version;
  } cases[] = {
      {"WMWCALL20", FormatVersion::k30},
      {"WMWCALL50", FormatVersion::k50},
      {std::string("WMWCALL50\0!", 11), FormatVersion::k50},
      {"WMWCALL501", std::nullopt},
      {"WMWCALL5", std::nullopt},
      {"WMWTASK50", std::nullopt},
      {"wmwcall50", std::nullopt},
      {"WMWCALL30", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& each : cases) {
    Header header = HeaderOf(each.header);
    EXPECT_EQ(calltask::VersionOf(header, calltask::kCallMagics), each.version) << each.header;
  }
  Header header = HeaderOf("abcdefghijklmnopqrstuvwxyz");
  calltask::SetMagic(header, calltask::kCallMagics, FormatVersion::k30);
  EXPECT_EQ(header, HeaderOf(std::string("WMWCALL20\0klmnopqrstuvwxyz", 26)));
}

TEST(FrameFormatTest, KeysCountDaysFrom1990In16Bits) {
  const struct {
    std::int16_t since1900;
    std::uint16_t key;
    std::int32_t year, day;
  } cases[] = {
      {90, 0, 1990, 0},         {91, 366, 1991, 0},    {105, 5490, 2005, 0},
      {269, 65514, 2169, 0},    {89, 65170, 2168, 22}, {300, 11324, 2020, 344},
      {32767, 32230, 2078, 22},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(calltask::FirstKeyOf(each.since1900), each.key) << each.since1900;
    EXPECT_EQ(calltask::YearOfKey(each.key), each.year) << each.since1900;
    EXPECT_EQ(calltask::DayOfKey(each.key), each.day) << each.since1900;
  }
  EXPECT_EQ(calltask::FilingKey(1990, 1), 1);
  EXPECT_EQ(calltask::FilingKey(2004, 365), 14 * 366 + 365);
  EXPECT_EQ(calltask::FilingKey(2005, 364), 15 * 366 + 364);
  for (const int year : {1989, 2006, 1900, -5}) EXPECT_EQ(calltask::FilingKey(year, 7), 0);
}

TEST(FrameFormatTest, EntriesMayComeInAnyOrderAndLeaveGaps) {
  const std::string bytes = ThreeDays().Build();
  const std::string first = bytes.substr(26, 6);
  const std::string second = bytes.substr(32, 6);
  const auto noYear = Word(0, 2) + Word(626, 4);
  const auto negative = Word(0xFFFF, 2) + Word(626, 4);
  const auto noOffset = Word(92, 2) + Word(0, 4);
  std::string index = noYear + second + negative + noOffset + first;
  index.resize(600, '\0');
  const std::string shuffled = bytes.substr(0, 26) + index + bytes.substr(626);
  const Frame frame = calltask::ReadFrame(shuffled);
  EXPECT_TRUE(frame.isWhole);
  ASSERT_EQ(frame.days.size(), 3U);
  EXPECT_EQ(frame.days[0].key, 11 * 366 + 31);
  EXPECT_EQ(frame.days[1].key, 2 * 366);
}

TEST(FrameFormatTest, WhatIsNotWithinTheFileIsLeftOut) {
  const std::string whole = ThreeDays().Build();
  const std::size_t secondYear = 626 + 6222 + 205;
  const std::size_t february = 31;
  const struct {
    std::size_t at;
    std::string bytes;
    bool isWhole;
    std::size_t days, outside;
  } cases[] = {
      {28, Word(0xFFFFFFFF, 4), false, 1, 0},           // a table beyond the end
      {28, Word(whole.size() - 6221, 4), false, 1, 0},  // and one that is cut
      {626, Word(0xFFFFFFFF, 4), true, 2, 1},           // a block beyond the end
      {626 + 9, Word(0xFFFFFFFF, 4), true, 2, 1},       // and one that is too long
      {626 + 9, Word(whole.size() - 6848 + 1, 4), true, 2, 1},
      {626 + 9, Word(whole.size() - 6848, 4), true, 3, 0},
      {626, Word(whole.size(), 4), true, 2, 1},
      {secondYear + 17 * february + 9, Word(0, 4), true, 2, 0},
  };
  for (const auto& each : cases) {
    std::string damaged = whole;
    damaged.replace(each.at, each.bytes.size(), each.bytes);
    const Frame frame = calltask::ReadFrame(damaged);
    EXPECT_EQ(frame.isWhole, each.isWhole) << each.at;
    EXPECT_EQ(frame.days.size(), each.days) << each.at;
    EXPECT_EQ(frame.blocksOutside.size(), each.outside) << each.at;
  }
}

// Every day of a hundred years names the same bytes.
TEST(BlockReaderTest, NoMoreIsReadThanTwiceTheFile) {
  const std::string block = "r" + std::string(99, calltask::kEmptySlot);
  calltask::BlockReader reader(block.size());
  int taken = 0;
  int read = 0;
  for (int day = 0; day < 36600; ++day) {
    read += reader.Read(block, [&](std::string_view& rest) {
      ++taken;
      rest.remove_prefix(1);
      return true;
    });
  }
  EXPECT_EQ(taken, 3) << "96 bytes each";
  EXPECT_EQ(read, 3);
}

TEST(FrameFormatTest, ThereIsRoomForAHundredYears) {
  std::vector<DayBlock> days(102);
  for (std::size_t year = 0; year < days.size(); ++year) {
    days[year] = {static_cast<std::uint16_t>(year * 366 + year), "r"};
  }
  const auto bytes = calltask::WriteFrame(Header{}, days);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(bytes->size(), 626U + 100 * 6223);
  const Frame frame = calltask::ReadFrame(*bytes);
  ASSERT_EQ(frame.days.size(), 100U);
  EXPECT_EQ(frame.days.back().key, days[99].key);
}

// A block of 16 MiB, 256 times, is 4 GiB: one less leaves room for the tables.
TEST(FrameFormatTest, AFileThatOutgrowsItsOffsetsIsNotWritten) {
  const std::string block(16 << 20, 'r');
  std::vector<DayBlock> days(256);
  for (std::size_t day = 0; day < days.size(); ++day) {
    days[day] = {static_cast<std::uint16_t>(day), block};
  }
  EXPECT_EQ(calltask::WriteFrame(Header{}, days), std::nullopt);
}

}  // namespace

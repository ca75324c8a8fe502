#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/cursor.h"

// One end of daylight saving in a city record: when clocks change to or from it.
struct WMDaylightChange {
  std::int8_t pm = 0;       // non-zero: 12 more on `hour`
  std::int8_t hour = 0;     // of the clocks before the change
  std::int8_t week = 0;     // mode 1: of the month, from 0, from 4 on the last; mode 2: day, from 0
  std::int8_t weekday = 0;  // mode 1: 0 for Sunday
  std::int8_t month = 0;    // from 0

  // The month from 1; one outside the year counts as the nearest.
  std::int32_t MonthOfYear() const {
    if (month < 0) return 1;
    return month > 11 ? 12 : month + 1;
  }

  // The hour of the day, as stored: a damaged record may have any.
  std::int32_t HourOfDay() const { return pm != 0 ? hour + 12 : hour; }

  friend bool operator==(const WMDaylightChange&, const WMDaylightChange&) = default;
};

// What `dstMode` may say; any other value is not understood.
inline constexpr std::int8_t kNoDaylight = 0;
inline constexpr std::int8_t kDaylightByWeekday = 1;
inline constexpr std::int8_t kDaylightByDate = 2;

// A city as the organiser's tables have it. A fresh one has no name, lies at Greenwich and knows no
// daylight saving.
struct WMCityRecord {
  static constexpr std::size_t kNameSize = 26;
  static constexpr std::size_t kCountrySize = 46;
  static constexpr std::size_t kUnknownSize = 105;

  std::array<char, kNameSize> name{};
  std::array<char, kCountrySize> country{};
  std::uint8_t zone = 0;
  std::uint8_t byte73 = 0;
  std::int16_t offset = 0;  // from Greenwich, hours * 100 + minutes, east positive
  std::int8_t dstMode = kNoDaylight;
  WMDaylightChange dstStart;
  WMDaylightChange dstEnd;
  std::array<char, kUnknownSize> unknown{};
  std::uint16_t mark = 0;
  std::int8_t deleted = 0;
  std::uint8_t byte195 = 0;

  // The texts up to their first zero, or to the end of the field.
  std::string_view Name() const;
  std::string_view Country() const;

  // Cut to 25 and 45 characters, zeros behind them.
  void SetName(std::string_view text);
  void SetCountry(std::string_view text);
};

// The bytes of the city file, "cityinfo.dat": a binary search tree of cities by their names. All
// numbers are little-endian; texts are single bytes.
//
//   file := header node{n}
//
//   offset         size     part
//   0              4        header
//   202 * k - 198  202      node k, from 1
namespace pw::city {

// Header.
//
//   offset  width  field    meaning
//   0       2      root     number of the tree's root node; 0 for an empty tree
//   2       2      word2    carried
struct Header {
  std::uint16_t root = 0;
  std::uint16_t word2 = 0;
};
inline constexpr std::size_t kHeaderSize = 2 + 2;
Header DecodeHeader(ByteReader& in);
void EncodeHeader(ByteWriter& out, const Header& header);

// City record.
//
//   offset  width  field      meaning
//   0       26     name       the city, and for some ", " and the state; at most 25 characters
//   26      46     country    text, zeros behind it
//   72      1      zone       zone number; never 0 for a city
//   73      1      byte73     carried
//   74      2      offset     from Greenwich, hours * 100 + minutes, east positive
//   76      1      dstMode    0 no daylight saving, 1 by weekday of a month, 2 by fixed date
//   77      5      dstStart   pm, hour, week, weekday, month
//   82      5      dstEnd     the same
//   87      105    unknown    carried
//   192     2      mark
//   194     1      deleted    non-zero: the city is deleted, its node stays in the tree
//   195     1      byte195    carried
inline constexpr std::size_t kDaylightChangeSize = 1 + 1 + 1 + 1 + 1;
inline constexpr std::size_t kRecordSize = WMCityRecord::kNameSize + WMCityRecord::kCountrySize +
                                           1 + 1 + 2 + 1 + 2 * kDaylightChangeSize +
                                           WMCityRecord::kUnknownSize + 2 + 1 + 1;
WMCityRecord DecodeRecord(ByteReader& in);
void EncodeRecord(ByteWriter& out, const WMCityRecord& record);

// Node.
//
//   offset  width  field    meaning
//   0       2      left     node with smaller names; 0 for none
//   2       2      parent   not used for searching
//   4       2      right    node with greater names; 0 for none
//   6       196    record
struct Node {
  std::uint16_t left = 0;
  std::uint16_t parent = 0;
  std::uint16_t right = 0;
  WMCityRecord record;
};
inline constexpr std::size_t kNodeSize = 2 + 2 + 2 + kRecordSize;
Node DecodeNode(ByteReader& in);
void EncodeNode(ByteWriter& out, const Node& node);

// How many nodes a file of so many bytes counts, at most 65,535 as their numbers have 16 bits; and
// where a node, counted from 1, stands. The organiser counts a last node too that lacks its last
// byte alone, though it can't be read.
std::uint16_t NodeCount(std::uint64_t fileSize);
std::uint64_t NodeOffset(std::uint16_t number);

// A whole city file over these cities, as a balanced tree. They are in ascending order of their
// names, bytes unsigned, without doubles, and at most 65,535.
std::string EncodeCityFile(const std::vector<WMCityRecord>& cities);

}  // namespace pw::city

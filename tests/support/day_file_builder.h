#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/bytes.h"

// The frame of the files by days, laid out byte by byte, apart from the codec that it tests.
namespace pw::test {

inline std::uint32_t NumberAt(const std::string& bytes, std::size_t at, int width) {
  std::uint32_t value = 0;
  for (int i = width; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(i)));
  }
  return value;
}

// The day of the year counts from 0.
struct DayBytes {
  int year = 1990;
  int day = 0;
  std::string block;
};

// Days of one year stand together, ascending; the years stand as they are given.
struct DayFileBytes {
  std::string header;  // 26 bytes
  std::vector<DayBytes> days = {};

  std::string Build() const {
    std::string index;
    std::string rest;
    for (std::size_t i = 0; i < days.size();) {
      std::size_t end = i;
      while (end < days.size() && days[end].year == days[i].year) ++end;
      index +=
          Word(static_cast<std::uint64_t>(days[i].year - 1900), 2) + Word(626 + rest.size(), 4);
      rest += Year(626 + rest.size(), i, end);
      i = end;
    }
    index.resize(600, '\0');
    return header + index + rest;
  }

 private:
  std::string Year(std::size_t offset, std::size_t first, std::size_t end) const {
    std::string table;
    std::string blocks;
    for (int day = 0; day < 366; ++day) {
      const bool has = first < end && days[first].day == day;
      const std::string block = has ? days[first].block : "";
      table +=
          Word(offset + 6222 + blocks.size(), 4) + Word(0, 5) + Word(block.size(), 4) + Word(0, 4);
      blocks += block;
      if (has) ++first;
    }
    return table + blocks;
  }
};

// Holds a whole file to its frame: years ascending and without gaps, every offset, every size.
// Gives the blocks of the days that have one, in their order.
inline std::vector<std::string> CheckedBlocks(const std::string& bytes) {
  std::size_t position = 626;
  std::uint32_t yearBefore = 0;
  std::vector<std::string> blocks;
  for (std::size_t at = 26; at < 626; at += 6) {
    const std::uint32_t year = NumberAt(bytes, at, 2);
    if (year == 0) {
      EXPECT_EQ(bytes.substr(at, 626 - at), std::string(626 - at, '\0'));
      break;
    }
    EXPECT_GT(year, yearBefore);
    EXPECT_EQ(NumberAt(bytes, at + 2, 4), position);
    yearBefore = year;
    const std::size_t table = position;
    position += 6222;
    for (std::size_t entry = table; entry < table + 6222; entry += 17) {
      const std::size_t size = NumberAt(bytes, entry + 9, 4);
      EXPECT_EQ(NumberAt(bytes, entry, 4), position);
      EXPECT_EQ(bytes.substr(entry + 4, 5), std::string(5, '\0'));
      EXPECT_EQ(bytes.substr(entry + 13, 4), std::string(4, '\0'));
      if (size > 0) blocks.push_back(bytes.substr(position, size));
      position += size;
    }
  }
  EXPECT_EQ(bytes.size(), position);
  return blocks;
}

}  // namespace pw::test

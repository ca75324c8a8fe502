#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/bytes.h"

// Call and task files laid out byte by byte, apart from the codecs that they test.
namespace pw::test {

// The mask and the four words: bit i of a mask byte is the top bit of that byte of word i.
inline std::string Escaped(const std::array<std::uint32_t, 4>& words) {
  std::string mask(4, '\x80');
  std::string rest;
  for (int i = 0; i < 4; ++i) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
      const auto value = static_cast<unsigned char>(words[i] >> (8 * byte));
      if (value >= 0x80) mask[byte] = static_cast<char>(mask[byte] | 1 << i);
      rest.push_back(static_cast<char>(value | 0x80));
    }
  }
  return mask + rest;
}

inline std::string Texts(const std::string& subject, const std::string& note) {
  return subject + "\x7F" + note + "\x09";
}

// A record's words with their top bits set, where no test says otherwise.
constexpr std::uint32_t kNewWord = 0x80808080;

inline std::string Call30(const std::string& subject, const std::string& note,
                          std::uint32_t flags = kNewWord) {
  return Word(flags, 4) + Texts(subject, note);
}
inline std::string Call50(std::uint32_t id1, std::uint32_t id2, const std::string& subject,
                          const std::string& note, std::uint32_t flags = kNewWord,
                          std::uint32_t changed = 917000000, std::uint32_t due = 0) {
  return Escaped({id1, id2, changed, due}) + Word(flags, 4) + Texts(subject, note);
}
inline std::string Task30(const std::string& subject, const std::string& note,
                          std::uint32_t a = kNewWord, std::uint32_t b = kNewWord,
                          std::uint32_t c = kNewWord) {
  return Word(a, 4) + Word(b, 4) + Word(c, 4) + Texts(subject, note);
}
inline std::string Task50(std::uint32_t id1, std::uint32_t id2, const std::string& subject,
                          const std::string& note, std::uint32_t a = kNewWord,
                          std::uint32_t b = kNewWord, std::uint32_t c = kNewWord,
                          std::uint32_t changed = 917000000) {
  return Escaped({id1, id2, changed, 0}) + Task30(subject, note, a, b, c);
}

// Word B of a task with these dates: the year from 1990, the month from 0.
inline std::uint32_t WordB(std::array<std::uint32_t, 3> start, std::array<std::uint32_t, 3> due) {
  const auto half = [](const std::array<std::uint32_t, 3>& date) {
    return 0x8080 | date[1] | (date[0] % 8) << 4 | date[2] << 8 | (date[0] / 8) << 14;
  };
  return half(start) | half(due) << 16;
}

// The records of one day, the day of the year counted from 0.
struct DayOfRecords {
  int year = 1990;
  int day = 0;
  std::vector<std::string> records;

  std::string Block() const {
    std::string block;
    for (const std::string& record : records) block += record;
    return block + std::string(96 - records.size(), '\x09');
  }
};

struct CallTaskBytes {
  std::string magic;
  std::string behindMagic = "carried to 26...";  // 16 bytes behind the magic's zero
  std::vector<DayOfRecords> days = {};           // ascending

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
    return magic + '\0' + behindMagic + index + rest;
  }

 private:
  std::string Year(std::size_t offset, std::size_t first, std::size_t end) const {
    std::string table;
    std::string blocks;
    for (int day = 0; day < 366; ++day) {
      const bool has = first < end && days[first].day == day;
      const std::string block = has ? days[first].Block() : "";
      table +=
          Word(offset + 6222 + blocks.size(), 4) + Word(0, 5) + Word(block.size(), 4) + Word(0, 4);
      blocks += block;
      if (has) ++first;
    }
    return table + blocks;
  }
};

inline std::uint32_t NumberAt(const std::string& bytes, std::size_t at, int width) {
  std::uint32_t value = 0;
  for (int i = width; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(i)));
  }
  return value;
}

// Holds a whole file to its frame: years ascending and without gaps, every offset, every size, the
// 96 slots of each block, unless its records are damaged. Gives the number of days with records.
inline int CheckFrame(const std::string& bytes, bool damaged = false) {
  std::size_t position = 626;
  std::uint32_t yearBefore = 0;
  int found = 0;
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
      const std::string block = bytes.substr(position, size);
      // Each record ends with the byte that an empty slot has.
      const auto ends = std::count(block.begin(), block.end(), '\x09');
      EXPECT_TRUE(size == 0 || damaged || ends == 96) << ends;
      found += size > 0 ? 1 : 0;
      position += size;
    }
  }
  EXPECT_EQ(bytes.size(), position);
  return found;
}

}  // namespace pw::test

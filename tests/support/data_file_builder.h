#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/bytes.h"

// Data files laid out byte by byte, apart from the codec that they test.
namespace pw::test {

// The parts of a record: `DayKey` only in version 50, then the fields of its kind, then the text.
inline std::string DayKey(std::int64_t created, std::int64_t id, std::int64_t stamp) {
  return Word(created, 4) + Word(id, 4) + Word(stamp, 4);
}
inline std::string DateFields(int year, int month, int day) {
  const char fields[] = {1, static_cast<char>(year), static_cast<char>(month),
                         static_cast<char>(day), 1};
  return std::string(fields, sizeof fields) + std::string(5, '\0');
}
inline std::string SpanFields(std::int64_t start, std::int64_t end) {
  return Word(start, 4) + Word(end, 4) + std::string("\0\5", 2);
}
inline std::string DayText(std::string text) {
  text.resize(49);
  return text;
}

constexpr int kSpecialDays = 0x32DB;
constexpr int kMultiDays = 0x32DC;

struct DataSectionBytes {
  int tag = 0;
  std::vector<std::string> records = {};
  std::string stray = {};  // behind them
};

struct DataFileBytes {
  std::string magic = "WMWDATA50";
  std::vector<DataSectionBytes> sections = {};
  std::string behindMagic = "carried to 26...";  // 16 bytes behind the magic's zero
  bool offsetsBy71 = true;                       // or where the sections are

  std::string Build() const {
    std::string table;
    std::string rest;
    std::size_t stated = 126;
    for (std::size_t i = 0; i < 10; ++i) {
      const DataSectionBytes section = i < sections.size() ? sections[i] : DataSectionBytes();
      const std::size_t count = section.records.size();
      const std::size_t offset = offsetsBy71 ? stated : 126 + rest.size();
      table += Word(section.tag, 2) + Word(static_cast<std::int64_t>(count), 2) +
               Word(static_cast<std::int64_t>(71 * count), 2) +
               Word(static_cast<std::int64_t>(offset), 4);
      for (const std::string& record : section.records) rest += record;
      rest += section.stray;
      stated += 71 * count;
    }
    return magic + '\0' + behindMagic + table + rest;
  }
};

}  // namespace pw::test

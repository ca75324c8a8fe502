#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/bytes.h"

// Recurring files laid out byte by byte, apart from the codec that they test.
namespace pw::test {

// A series, by default daily at 9:15 on the two days from 2 March 1998.
struct SeriesBytes {
  std::int64_t firstDay = 888829200;  // 9:00
  std::int64_t lastDay = 888915600;
  std::int64_t startOfFirstDay = 888796800;
  std::int64_t zone = 0, key = 0, modified = 890000000, reserved1 = 0, reserved2 = 0;
  std::int64_t startSlot = 37, kind = 4, interval = 1;
  std::int64_t weekMask = 0, dayMask = 0, weekdayMask = 0, reserved3 = 0;
  std::vector<std::array<std::int64_t, 5>> exceptions = {};
  std::int64_t timeWord = 0x898F8A80;  // 9:15 to 10:00
  std::int64_t flagWord = 0x808080C0;
  std::string subject = "subject", notes = "notes";

  std::string Build50() const {
    const std::int64_t first = startOfFirstDay + 33300;  // 9:15
    std::string bytes = Words({firstDay, lastDay, first, first, zone, key, modified}) +
                        Words({reserved1, reserved2}) + Pattern();
    bytes += Word(static_cast<std::int64_t>(exceptions.size()), 4);
    for (const auto& [created, id, deleted, date, stamp] : exceptions) {
      bytes += Words({created, id, deleted, date, stamp});
    }
    return bytes + Detail() + std::string("\x01\x02\x00\x04", 4);  // carried
  }
  std::string Build30() const { return Words({firstDay, lastDay}) + Pattern() + Detail(); }

 private:
  static std::string Words(std::initializer_list<std::int64_t> words) {
    std::string bytes;
    for (const std::int64_t word : words) bytes += Word(word, 4);
    return bytes;
  }
  std::string Pattern() const {
    return Word(startSlot, 2) + Word(kind, 2) + Word(interval, 2) + Word(weekMask, 1) +
           Word(dayMask, 4) + Word(weekdayMask, 1) + Word(reserved3, 2);
  }
  std::string Detail() const {
    return Words({timeWord, flagWord}) + subject + '\x7F' + notes + '\x09';
  }
};

// A file of records as they are given, without gaps.
struct RecurringFileBytes {
  std::string magic = "WMWREC50";
  std::string behindMagic = std::string(18, '\0');
  std::optional<std::int64_t> count = {};
  std::vector<std::string> records = {};
  std::vector<std::int64_t> tags = {};  // 0x32C9 where there is none

  std::string Build() const {
    std::string index;
    std::string rest;
    std::size_t offset = 28 + 8 * records.size();
    for (std::size_t i = 0; i < records.size(); ++i) {
      const auto size = static_cast<std::int64_t>(records[i].size());
      index += Word(i < tags.size() ? tags[i] : 0x32C9, 2) + Word(size, 2) +
               Word(static_cast<std::int64_t>(offset), 4);
      rest += records[i];
      offset += records[i].size();
    }
    const std::int64_t counted = count.value_or(static_cast<std::int64_t>(records.size()));
    return magic + behindMagic + Word(counted, 2) + index + rest;
  }
};

// Files with every field, kind and number of exceptions, and what is carried.
inline RecurringFileBytes SomeSeries(bool is50) {
  SeriesBytes weekly{.kind = 3, .interval = 2, .weekdayMask = 0x2A, .subject = "s"};
  weekly.zone = 2;
  weekly.key = -7;
  weekly.reserved1 = 0x01020304;
  weekly.reserved2 = 0xF1F2F3F4;
  weekly.reserved3 = 0x0F0E;
  weekly.exceptions = {
      {0x11223344, 0xFFEEDDCC, 1, 888829200, 888832800}, {5, 6, 0, 888915600, -1}, {0, 0, 0, 0, 0}};
  SeriesBytes byDate{.kind = 2, .interval = 12, .dayMask = 0x80004001, .notes = ""};
  byDate.key = 0x7FFFFFFF;
  byDate.flagWord = 0x8F9E80E2;
  SeriesBytes byWeekday{.kind = 1, .interval = -1, .weekMask = 0x1F, .weekdayMask = 0x7F};
  byWeekday.subject = "a\x10z";
  byWeekday.notes = std::string(2000, 'n') + "\r\n\xE4";
  byWeekday.modified = 0x35957F4A;
  byWeekday.key = 8;
  RecurringFileBytes file;
  if (!is50) file.magic = "XQXREC30";
  file.behindMagic = std::string("\0carried bytes 17.", 18);
  for (const SeriesBytes& series : {weekly, byDate, SeriesBytes(), byWeekday}) {
    file.records.push_back(is50 ? series.Build50() : series.Build30());
  }
  return file;
}

}  // namespace pw::test

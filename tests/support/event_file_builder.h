#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/day_file_builder.h"

// Event files laid out byte by byte, apart from the codec that they test.
namespace pw::test {

inline std::string CountedString(const std::string& text) {
  return text.empty() ? std::string(1, '\0') : '\x01' + Word(text.size(), 4) + text;
}

struct PairBytes {
  std::string first = "Place";
  std::string second;
  std::array<std::uint32_t, 3> words = {};

  std::string Build() const {
    return '\x01' + CountedString(first) + CountedString(second) + Word(words[0], 4) +
           Word(words[1], 4) + Word(words[2], 4);
  }
};

// 2 March 1998, 09:00.
constexpr std::int64_t kMonday = 888829200;

// A stored item, by default an hour without anything but a subject.
struct ItemBytes {
  std::int64_t created = 880000001, id = 0x0001ABCD;
  std::int64_t start = kMonday, end = kMonday + 3600;
  std::int64_t modified = 890000000, reserved = 0;
  std::uint32_t flags = 0;
  std::string label;
  std::uint32_t zone = 0;
  std::optional<PairBytes> place = std::nullopt;
  std::vector<PairBytes> places = {};
  std::uint32_t timeWord = 0x89808A80;  // 9:00 to 10:00
  std::uint32_t flagWord = 0x808080C0;
  std::string subject = "subject", notes;

  // The parts of the header block that have no fixed size, and what is between them.
  std::string Parts() const {
    std::string parts = CountedString(label) + Word(zone, 4);
    parts += place ? place->Build() : std::string(1, '\0');
    if (places.empty()) return parts + '\0';
    parts += '\x01';
    for (const PairBytes& pair : places) parts += pair.Build();
    return parts + '\0';
  }
  std::string Words() const {
    std::string words;
    for (const std::int64_t word : {created, id, start, end, modified, reserved}) {
      words += Word(static_cast<std::uint64_t>(word), 4);
    }
    return words + Word(flags, 4);
  }
  std::string Header() const {
    const std::string rest = Words() + Parts() + Word(0xFFFEEFFF, 4);
    return Word(0xFFFEFEFF, 4) + Word(rest.size() - 4, 4) + rest;
  }
  std::string Build() const {
    return Header() + Word(timeWord, 4) + Word(flagWord, 4) + subject + '\x7F' + notes + '\x7E';
  }
};

// A slot with the items in its first columns.
inline std::string Slot(const std::vector<std::string>& items) {
  std::string slot;
  for (const std::string& item : items) slot += item;
  return slot + std::string(3 - std::min<std::size_t>(3, items.size()), '\x7E') + '\x09';
}

// A day's blob, of slots by their positions from 0.
inline std::string Day(const std::map<int, std::string>& slots) {
  std::string blob = Word(0xFFEFEFFF, 4);
  for (int position = 0; position < 96; ++position) {
    const auto slot = slots.find(position);
    blob += slot == slots.end() ? "\x09" : slot->second;
  }
  return blob;
}

struct EventFileBytes {
  std::string magic = "WMWCALE50";
  std::string carried = "carried to 26...";  // 16 bytes behind the magic's zero
  std::vector<DayBytes> days = {};

  std::string Build() const { return DayFileBytes{magic + '\0' + carried, days}.Build(); }
};

// An item on each of some days, which are leap days, ends and beginnings of years, with all that an
// item can hold.
inline EventFileBytes SomeEvents() {
  constexpr std::int64_t kLeapDay = 951782400;  // 29 February 2000
  constexpr std::int64_t kLastDay = 978220800;  // 31 December 2000
  const auto at = [](std::int64_t start, std::int64_t id) {
    ItemBytes item;
    item.start = start;
    item.end = start + 60;
    item.id = id;
    return item;
  };
  ItemBytes full = at(kLeapDay + 780, -2);
  full.reserved = -1;
  full.flags = 0x02000080;
  full.label = std::string("la\0\x09\x7E", 5);
  full.zone = 2560;
  full.place = PairBytes{"Caf\xE9", "second", {1, 0x80000000, 0xFFFFFFFF}};
  full.timeWord = 0xFFFFFFFF;
  full.flagWord = 0xFFFFFFDE;
  full.subject = "a\x10z";
  full.notes = std::string("no\0tes\r\n", 8);
  ItemBytes occurrence = at(kLeapDay + 840, 3);
  occurrence.flagWord = 0x808080C1;
  ItemBytes changed = occurrence;
  changed.flags = 4;
  changed.flagWord = 0x808080C0;
  changed.place = PairBytes{"", "second", {}};
  EventFileBytes file;
  file.days = {{1970, 0, Day({{0, Slot({at(0, 1).Build(), at(60, 2).Build()})}})},
               {2000, 59,
                Day({{0, Slot({full.Build()})},
                     {1, Slot({occurrence.Build(), changed.Build()})},
                     {95, Slot({at(kLeapDay + 86279, 4).Build()})}})},
               {2000, 365, Day({{52, Slot({at(kLastDay + 46800, 5).Build()})}})},
               {2001, 0, Day({{4, Slot({at(kLastDay + 86400 + 3600, 6).Build()})}})},
               {2038, 18, Day({{12, Slot({at(0x7FFFFFFF - 600, 7).Build()})}})}};
  return file;
}

}  // namespace pw::test

#include "calendar/event_format.h"

#include <gtest/gtest.h>

#include "tests/support/event_file_builder.h"

namespace {

namespace events = pw::events;
using pw::test::Day;
using pw::test::ItemBytes;
using pw::test::PairBytes;
using pw::test::Slot;
using pw::test::Word;

struct Item {
  WMEventHeader header;
  WMEventDetail detail;
};

std::string Encoded(const Item& item) {
  pw::ByteWriter out;
  events::EncodeItem(out, item.header, item.detail);
  EXPECT_EQ(events::EncodedSize(item.header, item.detail), out.Size());
  return out.Release();
}

std::string TextOf(const std::optional<events::Damage>& damage) {
  return damage ? damage->expected + std::string(" at ") + std::to_string(damage->offset) : "";
}

// What is expected where in bytes that can't be read; nothing, and the item, in those that can.
std::string DamageOf(const std::string& bytes, Item* item = nullptr) {
  Item ours;
  pw::ByteReader in(bytes);
  Item& read = item != nullptr ? *item : ours;
  return TextOf(events::DecodeItem(in, read.header, read.detail));
}

// The same of a day's blob, and how many items were begun.
std::string DayDamage(const std::string& bytes, std::size_t* count = nullptr) {
  std::size_t taken = 0;
  pw::ByteReader in(bytes);
  const auto damage = events::DecodeDay(in, [&](pw::ByteReader& rest) {
    ++taken;
    Item item;
    return events::DecodeItem(rest, item.header, item.detail);
  });
  if (count != nullptr) *count = taken;
  return TextOf(damage);
}

const std::string kGolden(
    "\xFF\xFE\xFE\xFF"               // magic
    "\x3C\x00\x00\x00"               // size: 72 less 12
    "\x01\x02\x03\x34"               // created
    "\x05\x06\x07\x88"               // id
    "\x10\x75\xFA\x34"               // start
    "\x20\x83\xFA\x34"               // end
    "\x80\x53\x0C\x35"               // modified
    "\x09\x0A\x0B\x8C"               // reserved
    "\x84\x00\x00\x02"               // changed, private, and a flag that is carried
    "\x01\x02\x00\x00\x00LA"         // label
    "\x00\x0A\x00\x00"               // zone
    "\x01\x01\x01\x00\x00\x00P\x00"  // place
    "\x01\x00\x00\x00\x02\x00\x00\x00\x03\x00\x00\x80"  // its words
    "\x00"                                              // places
    "\xFF\xEF\xFE\xFF"                                  // end
    "\x80\x8A\x80\x89"                                  // 9:00 to 10:00
    "\xE0\x80\x80\x80"                                  // subject and notes
    "a\x10z\x7F"
    "b\x10\x7E",
    87);

TEST(EventFormatTest, AnItemsBytes) {
  Item item;
  ASSERT_EQ(DamageOf(kGolden, &item), "");
  EXPECT_EQ(item.header.size, 60);
  EXPECT_EQ(item.header.created, 0x34030201);
  EXPECT_EQ(item.header.id, static_cast<std::int32_t>(0x88070605));
  EXPECT_EQ(item.header.start, pw::test::kMonday);
  EXPECT_EQ(item.header.end, pw::test::kMonday + 3600);
  EXPECT_EQ(item.header.modified, 890000256);
  EXPECT_EQ(item.header.reserved, static_cast<std::int32_t>(0x8C0B0A09));
  EXPECT_EQ(item.header.flags, 0x02000084U);
  EXPECT_EQ(item.header.label.text, "LA");
  EXPECT_EQ(item.header.zone, 2560U);
  EXPECT_EQ(item.header.place.first.text, "P");
  EXPECT_EQ(item.header.place.c, 0x80000003U);
  EXPECT_EQ(item.detail.timeWord, 0x89808A80U);
  EXPECT_EQ(item.detail.flagWord, 0x808080E0U);
  EXPECT_EQ(item.detail.subject, "a~z");
  EXPECT_EQ(item.detail.notes, "b~");
  item.header.size = 7;  // isn't looked at
  EXPECT_EQ(Encoded(item), kGolden);
  for (std::size_t length = 0; length < kGolden.size(); ++length) {
    EXPECT_NE(DamageOf(kGolden.substr(0, length)), "") << length;
  }
}

TEST(EventFormatTest, WhatMakesAnItemUnreadable) {
  const auto changed = [](std::size_t at, const std::string& bytes) {
    return std::string(kGolden).replace(at, bytes.size(), bytes);
  };
  ItemBytes list;
  list.places = {PairBytes{}};
  const struct {
    std::string bytes;
    const char* damage;
  } cases[] = {
      {changed(0, "\xFE"), "an item, 0xFFFEFEFF at 0"},
      {changed(33, "\x01"), "an item with the bits 8 to 23 of its flags 0 at 0"},
      {changed(34, "\x80"), "an item with the bits 8 to 23 of its flags 0 at 0"},
      {changed(36, "\x02"), "a label at 36"},
      {changed(40, "\x01"), "a label at 36"},  // 16 MiB long
      {changed(43, "\x01"), "a zone of 2560 at most at 43"},
      {changed(46, "\x80"), "a zone of 2560 at most at 43"},
      {changed(49, "\xFF"), "the item's places at 47"},
      {changed(67, "\xFE"), "the item's places at 47"},
      {changed(70, "\xFF"), "the end of an item's head, 0xFFFEEFFF at 68"},
      {list.Build(), "the end of an item's head, 0xFFFEEFFF at 67"},
      {kGolden.substr(0, kGolden.size() - 1), "texts that end in 0x7F and 0x7E at 72"},
  };
  for (const auto& each : cases) EXPECT_EQ(DamageOf(each.bytes), each.damage);

  // Inside a pair any byte but 0 opens a text, and in the flags the outer bits are carried.
  EXPECT_EQ(DamageOf(changed(47, "\x80\x80")), "");
  EXPECT_EQ(DamageOf(changed(32, std::string("\xFF\0\0\xFF", 4))), "");
}

TEST(EventFormatTest, TextsAsTheOrganiserReadsThem) {
  const struct {
    std::string stored, subject, notes, again;
  } cases[] = {
      {"s\x7Fn\x7E", "s", "n", "s\x7Fn\x7E"},
      {"s\x7F\x7E", "s", "", "s\x7F\x7E"},
      // Without a subject its end belongs to the notes, and is a blank when it is written.
      {"\x7Fn\x7E", "", "\x7Fn", "\x7F n\x7E"},
      {"\x7F\x7E", "", "\x7F", "\x7F \x7E"},
      {"\x7E", "", "", "\x7F\x7E"},
      {"s\x7En\x7E", "s", "n", "s\x7Fn\x7E"},
      {"s\x09n\x7E", "s", "n", "s\x7Fn\x7E"},
      {"s\x7Fm\x7Fn\x7E", "s", "m\x7Fn", "s\x7Fm n\x7E"},
      {"s\x7Fn\x09", "s", "n", "s\x7Fn\x7E"},
      {"\x09", "", "", "\x7F\x7E"},
      {"\x10\xE4\x7F\x10\x10\x7E", "~\xE4", "~~", "\x10\xE4\x7F\x10\x10\x7E"},
  };
  const std::string head = ItemBytes{}.Header() + Word(0x8989898980808080, 8);
  for (const auto& each : cases) {
    const std::string bytes = head + each.stored;
    Item item;
    pw::ByteReader in(bytes);
    ASSERT_FALSE(events::DecodeItem(in, item.header, item.detail)) << each.stored;
    EXPECT_EQ(item.detail.subject, each.subject);
    EXPECT_EQ(item.detail.notes, each.notes);
    EXPECT_EQ(in.Remaining(), each.stored.back() == '\x09' ? 1U : 0U) << each.stored;
    EXPECT_EQ(Encoded(item), head + each.again);
  }
  Item item;
  item.detail.subject = "\x09\x7F~";
  EXPECT_EQ(Encoded(item).substr(47 + 8), "  \x10\x7F\x7E");
}

TEST(EventFormatTest, AnItemWithoutADetailBlockKeepsItsWords) {
  Item item;
  item.detail.subject = "gone";
  ASSERT_EQ(DamageOf(ItemBytes{}.Header() + "\x09", &item), "");
  EXPECT_EQ(item.detail.timeWord, 0x80808080U);
  EXPECT_EQ(item.detail.flagWord, 0x80808080U);
  EXPECT_EQ(item.detail.subject, "");
  EXPECT_EQ(DamageOf(ItemBytes{}.Header()), "texts that end in 0x7F and 0x7E at 47");
}

TEST(EventFormatTest, ADayHas96PositionsOfThreeColumns) {
  const std::string item = ItemBytes{}.Build();
  const std::string bare = ItemBytes{}.Header() + "\x09";
  const std::string none(95, '\x09');
  const std::string magic = Word(0xFFEFEFFF, 4);
  const std::size_t size = item.size();
  const struct {
    std::string bytes;
    std::size_t items;
    std::string damage;
  } cases[] = {
      {Day({}), 0, ""},
      {Day({{0, Slot({item})}, {95, Slot({item, item, item})}}), 4, ""},
      {Day({{7, "~" + item + item + "\x09"}}), 2, ""},
      // The byte at a slot's end may be missing, but not before a position of that one byte.
      {Day({{7, "~~~"}, {8, Slot({item})}}), 1, ""},
      {Day({{7, "~~~"}}), 0, "96 positions at 102"},
      {Day({{95, "~~~"}}), 0, ""},
      {Day({{95, Slot({item})}}) + "more", 1, ""},
      {magic + "~~" + bare + none, 1, ""},  // the next byte ends the slot
      {magic + bare + none + "\x09", 1, "an item or an empty column, 0x7E at 51"},
      {magic + none, 0, "96 positions at 99"},
      {magic + none + "~~", 0, "an item or an empty column, 0x7E at 101"},
      {magic + item + "~\x09", 1,
       "an item or an empty column, 0x7E at " + std::to_string(size + 5)},
      {magic + item + item + item + item + none, 3 + 1,
       "an item or an empty column, 0x7E at " + std::to_string(4 * size + 4)},
      {magic + item.substr(0, size - 2), 1, "texts that end in 0x7F and 0x7E at 51"},
      {"\xFE" + magic.substr(1) + none + "\x09", 0, "a day, 0xFFEFEFFF at 0"},
      {"\xFF\xEF", 0, "a day, 0xFFEFEFFF at 0"},
  };
  for (const auto& each : cases) {
    std::size_t items = 0;
    EXPECT_EQ(DayDamage(each.bytes, &items), each.damage);
    EXPECT_EQ(items, each.items) << each.damage;
  }
}

}  // namespace

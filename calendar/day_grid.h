#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/cursor.h"
#include "calendar/event_item.h"

// The grid of a day as the event file has it: 96 quarters of an hour with room for three items
// each. Nothing here owns an item.

// The quarter that an item from 1970 on stands in, from 1. Each begins a minute early, so that
// 00:14 is in the second; 23:59 is in the 97th, which the file has no room for.
std::int32_t SlotNumber(const WMEventItem& item);

class WMTimeSlot {
 public:
  explicit WMTimeSlot(const WMEventItem& item) : number(SlotNumber(item)) { Add(item); }

  // 0, or -1 if the slot is full.
  std::int32_t Add(const WMEventItem& item);

  std::int32_t Number() const { return number; }

  // Null for a column that is empty.
  const WMEventItem* Item(std::size_t column) const { return items[column]; }

  void Encode(pw::ByteWriter& out) const;
  std::size_t EncodedSize() const;

 private:
  std::int32_t number;
  std::array<const WMEventItem*, pw::events::kColumns> items{};
  std::size_t count = 0;
};

// One day's slots, by ascending numbers. The date is that of its items, which all have the same.
class WMDayRecord {
 public:
  // 0, or -1 if the item's slot is full: it stays out.
  std::int32_t Add(const WMEventItem& item);

  // The start of the first item of the first slot; not for a day without one. Then the year since
  // 1900, and the day of the year from 1.
  std::int32_t Date() const { return slots.front().Item(0)->Start(); }
  std::int32_t Year() const;
  std::int32_t DayOfYear() const;

  void ClearSlots() { slots.clear(); }
  bool IsEmpty() const { return slots.empty(); }

  // Writes as many bytes as `EncodedSize` says. An item in the 97th slot is one byte longer, which
  // is cut off; a reader doesn't come that far.
  void Encode(pw::ByteWriter& out) const;
  std::size_t EncodedSize() const;

 private:
  void EncodeWhole(pw::ByteWriter& out) const;

  std::vector<WMTimeSlot> slots;
};

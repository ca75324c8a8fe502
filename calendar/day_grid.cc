#include "calendar/day_grid.h"

#include <algorithm>
#include <string_view>

#include "timeplace/date.h"

namespace {

constexpr std::int32_t kMinutesOfHour = 60;
constexpr std::int32_t kMinutesOfSlot = 15;
constexpr std::int32_t kSlotsOfHour = 4;
constexpr std::size_t kDayMagicSize = 4;

}  // namespace

std::int32_t SlotNumber(const WMEventItem& item) {
  const std::int32_t minute = item.Start() % kSecondsPerDay / kSecondsPerMinute;
  return kSlotsOfHour * (minute / kMinutesOfHour) + (minute % kMinutesOfHour + 1) / kMinutesOfSlot +
         1;
}

std::int32_t WMTimeSlot::Add(const WMEventItem& item) {
  if (count == items.size()) return -1;
  items[count++] = &item;
  return 0;
}

void WMTimeSlot::Encode(pw::ByteWriter& out) const {
  for (const WMEventItem* item : items) {
    if (item == nullptr) {
      out.U8(static_cast<std::uint8_t>(pw::events::kEmptyColumn));
    } else {
      item->Encode(out);
    }
  }
  out.U8(static_cast<std::uint8_t>(pw::events::kEndOfPosition));
}

std::size_t WMTimeSlot::EncodedSize() const {
  std::size_t size = 1;
  for (const WMEventItem* item : items) size += item == nullptr ? 1 : item->EncodedSize();
  return size;
}

std::int32_t WMDayRecord::Add(const WMEventItem& item) {
  const std::int32_t number = SlotNumber(item);
  const auto isBefore = [](const WMTimeSlot& slot, std::int32_t wanted) {
    return slot.Number() < wanted;
  };
  const auto slot = std::lower_bound(slots.begin(), slots.end(), number, isBefore);
  if (slot != slots.end() && slot->Number() == number) return slot->Add(item);
  slots.insert(slot, WMTimeSlot(item));
  return 0;
}

std::int32_t WMDayRecord::Year() const {
  return BrokenTimeOf(Date()).year;
}

std::int32_t WMDayRecord::DayOfYear() const {
  return BrokenTimeOf(Date()).yday + 1;
}

void WMDayRecord::Encode(pw::ByteWriter& out) const {
  const bool isLate =
      !slots.empty() && slots.back().Number() > std::int32_t{pw::events::kPositions};
  if (!isLate) return EncodeWhole(out);
  pw::ByteWriter whole;
  EncodeWhole(whole);
  out.Bytes(std::string_view(whole.Written()).substr(0, EncodedSize()));
}

void WMDayRecord::EncodeWhole(pw::ByteWriter& out) const {
  out.U32(pw::events::kDayMagic);
  std::size_t position = 0;
  const auto passOver = [&](std::size_t until) {
    for (; position < until; ++position) {
      out.U8(static_cast<std::uint8_t>(pw::events::kEndOfPosition));
    }
  };
  for (const WMTimeSlot& slot : slots) {
    passOver(static_cast<std::size_t>(slot.Number()) - 1);
    slot.Encode(out);
    ++position;
  }
  passOver(pw::events::kPositions);
}

std::size_t WMDayRecord::EncodedSize() const {
  std::size_t size = kDayMagicSize + pw::events::kPositions - slots.size();
  for (const WMTimeSlot& slot : slots) size += slot.EncodedSize();
  return size;
}

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "calendar/day_grid.h"
#include "calendar/event_file.h"
#include "platform/testing/test_platform.h"
#include "timeplace/date.h"

// Reads anything as an event file, as a day's blob in a file that is whole, and as an item. What
// was read is written as a whole file, all of which is read again, and is found by its keys
// whatever changes; an item is as long when it is read again.
namespace {

constexpr std::size_t kLookedAt = 16;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

struct Calendar {
  pw::frame::Header header{};
  ItemList plainItems;
  ItemList occurrenceItems;

  bool Read(std::string_view file) {
    pw::ByteReader(file).TakeInto(header);
    return ReadEvents(file, plainItems, occurrenceItems);
  }
  std::string Written() const { return EncodeEvents(header, plainItems, occurrenceItems).value(); }
  std::size_t Count() const { return plainItems.Count() + occurrenceItems.Count(); }
};

// How many of the items find room in their slots, by the days and slots that they are in.
using Taken = std::map<std::pair<std::int32_t, std::int32_t>, std::size_t>;

std::size_t CountKept(const ItemList& items, Taken& taken) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < items.Count(); ++i) {
    const std::int32_t start = items.Item(i).Start();
    const std::int32_t slot = SlotNumber(items.Item(i));
    if (start < 0 || slot > 96) continue;
    kept += ++taken[{start / kSecondsPerDay, slot}] <= 3 ? 1 : 0;
  }
  return kept;
}

void CheckWritten(const Calendar& calendar) {
  Taken taken;
  const std::size_t kept =
      CountKept(calendar.plainItems, taken) + CountKept(calendar.occurrenceItems, taken);
  const std::string bytes = calendar.Written();
  Calendar again;
  Require(again.Read(bytes) && again.header == calendar.header);
  Require(again.Count() == kept);
}

void CheckLookups(ItemList& items) {
  for (std::size_t i = 0; i < std::min(items.Count(), kLookedAt); ++i) {
    const WMEventItem& item = items.Item(i);
    const auto found = items.Find(item.Created(), item.Id());
    Require(found && *found <= i && items.Item(*found).Created() == item.Created());
    const auto same = items.WithCreated(item.Created());
    Require(std::binary_search(same.begin(), same.end(), i));
  }
}

void Change(ItemList& items) {
  CheckLookups(items);
  for (std::size_t i = 0; i < std::min(items.Count(), kLookedAt); ++i) {
    items.SetCreated(i, static_cast<std::int32_t>(i));
    items.Change(i, [&](WMEventItem& item) {
      item.SetStart(item.End());
      item.SetSensitivity(static_cast<std::int32_t>(i) % 4);
      item.detail.SetNotes(item.Subject() + item.Notes());
    });
  }
  while (items.Count() > kLookedAt) items.Remove(items.Count() / 2);
  items.Append(std::make_unique<WMEventItem>());
  CheckLookups(items);
}

void CheckFile(std::string_view file) {
  pw::TestPlatform platform;
  Calendar calendar;
  if (!calendar.Read(file)) return;
  CheckWritten(calendar);
  Change(calendar.plainItems);
  Change(calendar.occurrenceItems);
  CheckWritten(calendar);
}

std::optional<WMEventItem> ReadItem(std::string_view bytes) {
  pw::ByteReader in(bytes);
  WMEventItem item;
  if (item.Parse(in)) return std::nullopt;
  return item;
}

void CheckItem(std::string_view bytes) {
  const pw::TestPlatform platform;
  const auto item = ReadItem(bytes);
  if (!item) return;
  pw::ByteWriter out;
  item->Encode(out);
  Require(out.Size() == item->EncodedSize());
  const auto again = ReadItem(out.Written());
  Require(again && again->EncodedSize() == item->EncodedSize());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckFile(bytes);
  CheckItem(bytes);
  if (!bytes.empty()) {
    const auto encode = [&](pw::ByteWriter& out, std::size_t) { out.Bytes(bytes); };
    CheckFile(*pw::frame::WriteFile({}, {{98, 60, bytes.size()}}, encode));
  }
  return 0;
}

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "calendar/calendar_state.h"
#include "calendar/calendar_store.h"
#include "platform/testing/test_platform.h"
#include "tests/support/zone_files.h"

// Reads anything as a recurring file and an event file that belong together: two bytes, of which
// the first bit is set for version 30, give the length of the first. What loads has found out which
// occurrence is of which series; it is saved and loaded again, whole.
namespace {

constexpr const char* kStem = "C:\\Data\\";
constexpr const char* kMain = "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main";

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void CheckLinks(WMCalendarStore& store) {
  Require(store.RecordCount() == store.recordEnd);
  Require(store.dataEnd <= store.eventEnd && store.eventEnd <= store.recordEnd);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
  const std::size_t length = std::min<std::size_t>(data[0] | (data[1] & 0x7F) << 8, bytes.size());

  pw::TestPlatform platform;
  platform.files.PutFolder("C:\\Data");
  platform.registry.Set(kMain, "Version", pw::NumberValue((data[1] & 0x80) != 0 ? 30 : 50));
  pw::test::PutZoneFiles(platform, pw::test::SomeCities(), "Lima");
  platform.files.Put(std::string(kStem) + "Recr.WMW", std::string(bytes.substr(0, length)));
  platform.files.Put(std::string(kStem) + "Even.WMW", std::string(bytes.substr(length)));

  std::size_t items = 0;
  std::uint32_t series = 0;
  {
    WMCalendarStore store;
    if (store.Load(kStem) != 0) return 0;
    CheckLinks(store);
    series = store.recordEnd - store.eventEnd;
    store.Save();
    items = store.plainItems.Count() + store.occurrenceItems.Count();
    store.Close();
  }
  WMCalendarStore again;
  Require(again.Load(kStem) == 0);
  CheckLinks(again);
  Require(again.recordEnd - again.eventEnd <= series);
  Require(again.plainItems.Count() + again.occurrenceItems.Count() <= items);
  return 0;
}

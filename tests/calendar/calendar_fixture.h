#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "calendar/calendar_state.h"
#include "calendar/calendar_store.h"
#include "calendar/event_file.h"
#include "platform/testing/test_platform.h"
#include "tests/support/zone_files.h"
#include "timeplace/zones.h"

namespace pw::test {

inline constexpr const char* kCalendar = "C:\\Data\\Ada";
inline constexpr const char* kEventPath = "C:\\Data\\AdaEven.WMW";
inline constexpr const char* kDataPath = "C:\\Data\\AdaData.WMW";
inline constexpr const char* kRecurringPath = "C:\\Data\\AdaRecr.WMW";

class CalendarTest : public testing::Test {
 protected:
  CalendarTest() {
    platform.files.PutFolder("C:\\Data");
    platform.clock.now = PlainSeconds(1999, 5, 5, 12, 0, 0);
    platform.registry.Set("SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main", "Version",
                          NumberValue(50));
    PutZoneFiles(platform, SomeCities(), "Lima");
  }

  static std::unique_ptr<WMEventItem> NewItem(const std::string& subject, std::int32_t start,
                                              std::int32_t created = 0) {
    auto item = std::make_unique<WMEventItem>();
    item->detail.SetSubject(subject);
    item->SetStart(start);
    item->SetEnd(start + kSecondsPerHour);
    item->SetStartTime(start);
    item->SetEndTime(start + kSecondsPerHour);
    item->SetCreated(created);
    return item;
  }

  // An event file of these items.
  static std::string Events(std::int32_t version, const ItemList& plain, const ItemList& others) {
    frame::Header header{};
    events::SetMagic(header, version);
    return *EncodeEvents(header, plain, others);
  }

  std::string Saved(const char* path) { return platform.files.Get(path).value_or("none"); }

  TestPlatform platform;
};

}  // namespace pw::test

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/text.h"
#include "calendar/mapping/event_router.h"
#include "framework/event_record.h"
#include "tests/calendar/calendar_fixture.h"
#include "timeplace/zone_rule.h"

namespace pw::test {

inline PWDateTimeStamp UtcStamp(std::int32_t seconds) {
  return StampOf(BrokenTimeOf(seconds));
}

// The first city of SomeCities() with that name.
inline WMCityRecord CityNamed(const std::string& name) {
  for (const WMCityRecord& city : SomeCities()) {
    if (city.Name() == name) return city;
  }
  ADD_FAILURE() << name;
  return {};
}

// An event of these moments, in seconds.
inline PWRecord EventRecord(const std::string& subject, std::int32_t start, std::int32_t end) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject(subject.c_str());
  event.StartDate(UtcStamp(start));
  event.EndDate(UtcStamp(end));
  return record;
}

inline PWRecord DatesRecord(const std::string& subject, PWDateTimeStamp first,
                            PWDateTimeStamp last) {
  PWRecord record;
  PWEventRecord event(&record);
  event.Subject(subject.c_str());
  event.AllDay(true);
  event.StartDate(first);
  event.EndDate(last);
  return record;
}

// Makes it recur, until the end of a year, or for ever for 0.
inline PWRecurrancePattern& Recur(PWRecord& record, ERecurranceType type,
                                  std::uint16_t lastYear = 0) {
  PWEventRecord event(&record);
  event.Recurring(true, type);
  PWRecurrancePattern& pattern = *event.RecurrancePattern();
  pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, lastYear == 0);
  pattern.EndDate = PWDateTimeStamp(lastYear, 12, 31, 0, 0, 0);
  return pattern;
}

inline PWRecord Daily(const std::string& subject, std::int32_t start, std::int32_t end,
                      PWDateTimeStamp lastDate) {
  PWRecord record = EventRecord(subject, start, end);
  PWRecurrancePattern& pattern = Recur(record, kRecurranceDaily, 1);
  pattern.Daily()->Interval = 1;
  pattern.EndDate = lastDate;
  return record;
}

// A calendar that was opened, in Lima on 5 May 1999 at noon in Greenwich.
class MappingTest : public CalendarTest {
 protected:
  MappingTest() { Open(); }

  void Open() {
    store = std::make_unique<WMCalendarStore>();
    EXPECT_EQ(store->Load(kCalendar), 0);
    store->RecountSections();
  }
  void Reopen() {
    store->Save();
    store->Close();
    Open();
  }

  std::int32_t Add(PWRecord record) {
    message.clear();
    return AddEvent(*store, record, message);
  }
  std::int32_t Update(std::uint32_t index, PWRecord record) {
    message.clear();
    return UpdateEvent(*store, index, record, message);
  }
  std::int32_t Read(std::uint32_t index, PWRecord& record) {
    message.clear();
    record = PWRecord();
    return ReadByIndex(*store, index, &record, message);
  }

  std::unique_ptr<WMCalendarStore> store;
  std::string message;  // of the last call
};

// "1999-05-05 12:00"
inline std::string Shown(const PWDateTimeStamp& stamp) {
  return Format("%04u-%02u-%02u %02u:%02u", unsigned{stamp.year}, unsigned{stamp.month},
                unsigned{stamp.day}, unsigned{stamp.hour}, unsigned{stamp.minute});
}

// What the clocks of a city show then.
inline std::string ShownIn(const WMCityRecord& city, std::int32_t seconds) {
  return Shown(UtcStamp(UtcToLocal(city, seconds).seconds));
}

}  // namespace pw::test

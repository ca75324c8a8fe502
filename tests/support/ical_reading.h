#pragma once

#include <libical/ical.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

// iCalendar files as another program reads them.
namespace pw::test {

using Moments = std::set<std::int64_t>;  // seconds since 1970 UTC

struct FreeComponent {
  void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Calendar = std::unique_ptr<icalcomponent, FreeComponent>;

// Null, and a failure, for a file that isn't valid.
inline Calendar ParseCalendar(const std::string& text) {
  Calendar calendar(icalparser_parse_string(text.c_str()));
  EXPECT_NE(calendar, nullptr) << text;
  if (calendar == nullptr) return calendar;
  EXPECT_EQ(icalcomponent_count_errors(calendar.get()), 0) << text;
  EXPECT_EQ(icalrestriction_check(calendar.get()), 1) << text;
  EXPECT_EQ(icalcomponent_count_errors(calendar.get()), 0)
      << icalcomponent_as_ical_string(calendar.get());
  return calendar;
}

inline std::int64_t MomentOf(icalproperty* property, icalcomponent* event) {
  const icaltimetype time = icalproperty_get_datetime_with_component(property, event);
  return icaltime_as_timet_with_zone(time, time.zone);
}

// Of all properties of that kind.
inline Moments MomentsOf(icalcomponent* event, icalproperty_kind kind) {
  Moments moments;
  for (icalproperty* each = icalcomponent_get_first_property(event, kind); each != nullptr;
       each = icalcomponent_get_next_property(event, kind)) {
    moments.insert(MomentOf(each, event));
  }
  return moments;
}

// When an event takes place, as far as its own component says.
inline Moments StartsOf(icalcomponent* event) {
  icalproperty* startProperty = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
  const icaltimetype start = icalproperty_get_datetime_with_component(startProperty, event);
  Moments starts = MomentsOf(event, ICAL_RDATE_PROPERTY);
  starts.insert(MomentOf(startProperty, event));
  if (icalproperty* rule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY)) {
    icalrecur_iterator* iterator = icalrecur_iterator_new(icalproperty_get_rrule(rule), start);
    EXPECT_NE(iterator, nullptr) << icalcomponent_as_ical_string(event);
    constexpr int kLastYear = 2040;
    for (icaltimetype next = icalrecur_iterator_next(iterator);
         !icaltime_is_null_time(next) && next.year < kLastYear;
         next = icalrecur_iterator_next(iterator)) {
      starts.insert(icaltime_as_timet_with_zone(next, start.zone));
    }
    icalrecur_iterator_free(iterator);
  }
  for (const std::int64_t deleted : MomentsOf(event, ICAL_EXDATE_PROPERTY)) starts.erase(deleted);
  return starts;
}

// When the events of a file take place, by the summaries of those that aren't changed occurrences,
// and without these.
inline std::map<std::string, Moments> UnchangedStarts(icalcomponent* calendar) {
  std::map<std::string, Moments> starts;
  std::map<std::string, Moments> replaced;
  std::map<std::string, std::string> summaries;
  for (icalcomponent* event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
       event != nullptr;
       event = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
    const std::string uid = icalcomponent_get_uid(event);
    const Moments ids = MomentsOf(event, ICAL_RECURRENCEID_PROPERTY);
    if (!ids.empty()) {
      replaced[uid].insert(ids.begin(), ids.end());
    } else {
      summaries[uid] = icalcomponent_get_summary(event);
      starts[summaries[uid]].merge(StartsOf(event));
    }
  }
  for (const auto& [uid, ids] : replaced) {
    for (const std::int64_t id : ids) {
      EXPECT_EQ(starts[summaries[uid]].erase(id), 1U) << summaries[uid] << " at " << id;
    }
  }
  return starts;
}

}  // namespace pw::test

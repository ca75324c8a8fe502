#include "host/sample_events.h"

#include <memory>
#include <string_view>

#include "base/codepage.h"
#include "base/text.h"
#include "calendar/data_format.h"
#include "calendar/event_format.h"
#include "framework/event_record.h"
#include "host/city_clocks.h"
#include "timeplace/date.h"
#include "timeplace/year_frame.h"

namespace pw {
namespace {

constexpr std::int32_t kNoAlarm = -1;

// Moments are "YYYY-MM-DD HH:MM", dates "YYYY-MM-DD"; texts are UTF-8.
struct Appointment {
  const char* subject;
  const char* start;
  const char* end;
  const char* location;
  const char* notes;
  std::int32_t alarmLead;
  EPWEventRecordSensitivity sensitivity;
};

constexpr Appointment kAppointments[] = {
    {"Tower clock: Günther", "1998-03-10 09:30", "1998-03-10 10:30", "St. Wilfrid's",
     "Only in the mornings.\r\nKey at the parish office.", 30, kSensitivityNormal},
    {"Bookbinder", "1998-03-12 14:00", "1998-03-12 15:00", "Cutler's Row",
     "Blue morocco, if there is any left.", kNoAlarm, kSensitivityNormal},
    {"Ferry meeting", "1998-03-12 14:15", "1998-03-12 16:00", "Harbour office", "", 15,
     kSensitivityNormal},
    {"Zoë rings about the lenses", "1998-03-12 14:30", "1998-03-12 14:45", "", "", 5,
     kSensitivityNormal},
    {"Dentist", "1998-03-18 08:45", "1998-03-18 09:15", "", "", 60, kSensitivityPrivate},
};

PWDateTimeStamp Parse(std::string_view text) {
  const auto part = [&](std::size_t at) {
    return static_cast<std::uint8_t>(at < text.size() ? ParseLong(text.substr(at, 2)) : 0);
  };
  return {static_cast<std::uint16_t>(ParseLong(text)), part(5), part(8), part(11), part(14), 0};
}

class Sampler {
 public:
  explicit Sampler(const WMCityRecord* home) : home(home) {}

  PWRecord Timed(const Appointment& what) const {
    PWRecord record;
    PWEventRecord event(&record);
    event.Subject(Utf8ToCodePageLossy(what.subject).c_str());
    event.Location(Utf8ToCodePageLossy(what.location).c_str());
    event.Notes(Utf8ToCodePageLossy(what.notes).c_str(), PWRecord::kWholeText);
    event.StartDate(Utc(what.start));
    event.EndDate(Utc(what.end));
    event.Alarm(what.alarmLead != kNoAlarm);
    if (what.alarmLead != kNoAlarm) event.AlarmAdvance(what.alarmLead);
    event.Sensitivity(what.sensitivity);
    return record;
  }

  // Wednesdays, over the last Sunday of March; one is left out, and one takes place a day later.
  PWRecord Choir() const {
    PWRecord record = Timed(
        {"Choir practice", "1998-03-04 19:30", "1998-03-04 21:00", "", "", 45, kSensitivityNormal});
    PWEventRecord event(&record);
    PWRecurrancePattern& pattern = Recur(event, kRecurranceWeekly);
    pattern.Weekly()->Interval = 1;
    pattern.Weekly()->Days.Bit(kWednesday, true);
    pattern.EndDate = Parse("1998-05-27");

    auto deleted = std::make_unique<PWRecurranceException>();
    deleted->Date = Parse("1998-04-15");
    deleted->Changes.Bit(PWRecurranceException::kDeleted, true);
    pattern.AddException(deleted.release());

    auto changed = std::make_unique<PWRecurranceException>();
    changed->Date = Parse("1998-04-29");
    changed->StartDate = Utc("1998-04-30 18:00");
    changed->EndDate = Utc("1998-04-30 20:00");
    changed->Changes.Bit(PWRecurranceException::kSubjectChanged, true);
    changed->Subject = "Choir: dress rehearsal";
    changed->Changes.Bit(PWRecurranceException::kLocationChanged, true);
    changed->Location = "St. Wilfrid's";
    changed->Changes.Bit(PWRecurranceException::kHasAlarm, true);
    changed->AlarmAdvance.value = 90;
    pattern.AddException(changed.release());
    return record;
  }

  // The last Thursday of every month, for ever.
  PWRecord Committee() const {
    PWRecord record = Timed({"Harbour committee", "1998-03-26 17:00", "1998-03-26 18:30", "", "",
                             kNoAlarm, kSensitivityPersonal});
    PWEventRecord event(&record);
    PWRecurrancePattern& pattern = Recur(event, kRecurranceMonthlyByDay);
    pattern.MonthlyByDay()->Interval = 1;
    pattern.MonthlyByDay()->Week = kLastWeek;
    pattern.MonthlyByDay()->Day = kThursday;
    pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, true);
    return record;
  }

  static PWRecord Birthday() {
    PWRecord record = AllDay("Zoë's birthday", "1964-06-21", "1964-06-21");
    PWEventRecord event(&record);
    PWRecurrancePattern& pattern = Recur(event, kRecurranceYearlyByDate);
    pattern.YearlyByDate()->Month = 5;
    pattern.YearlyByDate()->Day = 20;
    pattern.Options.Bit(PWRecurrancePattern::kNeverEnds, true);
    event.Alarm(true);
    event.AlarmAdvance(24 * 60 - 1);
    return record;
  }

  static PWRecord AllDay(const char* subject, const char* first, const char* last) {
    PWRecord record;
    PWEventRecord event(&record);
    event.Subject(Utf8ToCodePageLossy(subject).c_str());
    event.AllDay(true);
    event.StartDate(Parse(first));
    event.EndDate(Parse(last));
    return record;
  }

 private:
  // As the engine counts weekdays, and weeks of a month.
  static constexpr std::uint8_t kWednesday = 4;
  static constexpr std::uint8_t kThursday = 5;
  static constexpr std::uint8_t kLastWeek = 4;

  PWDateTimeStamp Utc(std::string_view local) const {
    return StampOf(BrokenTimeOf(UtcSeconds(home, Parse(local))));
  }

  static PWRecurrancePattern& Recur(PWEventRecord& event, ERecurranceType type) {
    event.Recurring(true, type);
    return *event.RecurrancePattern();
  }

  const WMCityRecord* home;
};

constexpr std::int32_t kHolidaysMade = 852'076'800;  // 1997-01-01

// Of every year: a day of a month, or a weekday of a week, of which 5 is the last.
WMSpecialDay Holiday(const char* name, std::uint8_t month, std::uint8_t day) {
  WMSpecialDay holiday;
  holiday.month = static_cast<std::uint8_t>(month - 1);
  holiday.day = day;
  holiday.week = 1;
  holiday.subject = datafile::MakeSubject(name);
  return holiday;
}

WMSpecialDay Holiday(const char* name, std::uint8_t month, std::uint8_t week,
                     std::uint8_t weekday) {
  WMSpecialDay holiday = Holiday(name, month, 0);
  holiday.byDate = 0;
  holiday.week = week;
  holiday.weekday = weekday;
  return holiday;
}

}  // namespace

std::vector<PWRecord> SampleEvents(const WMCityRecord* home) {
  const Sampler sampler(home);
  std::vector<PWRecord> records;
  for (const Appointment& each : kAppointments) records.push_back(sampler.Timed(each));
  records.push_back(sampler.Choir());
  records.push_back(sampler.Committee());
  records.push_back(Sampler::Birthday());
  records.push_back(Sampler::AllDay("Villaseca, by boat and train", "1998-05-18", "1998-05-24"));
  records.push_back(Sampler::AllDay("Papeterie du Pont: stocktaking", "1998-04-06", "1998-04-06"));
  return records;
}

std::string SampleEventFile() {
  frame::Header header{};
  frame::SetMagic(header, events::kMagic50);
  return frame::WriteEmptyFile(header);
}

std::string SampleHolidays() {
  constexpr std::uint8_t kMonday = 1;
  constexpr std::uint8_t kLast = 5;
  std::vector<WMSpecialDay> days = {
      Holiday("New Year's Day", 1, 1), Holiday("Early May holiday", 5, 1, kMonday),
      Holiday("Spring holiday", 5, kLast, kMonday), Holiday("Summer holiday", 8, kLast, kMonday),
      Holiday("Christmas Day", 12, 25)};
  for (std::size_t i = 0; i < days.size(); ++i) {
    days[i].created = kHolidaysMade;
    days[i].id = static_cast<std::uint32_t>(i + 1);
  }
  datafile::Header header{};
  datafile::SetMagic(header, datafile::FormatVersion::k50);
  datafile::SectionTable table = datafile::NewTable();
  datafile::PlaceSections(table, days.size(), 0);
  return datafile::EncodeFile(header, table, datafile::FormatVersion::k50, days, {});
}

}  // namespace pw

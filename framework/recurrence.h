#pragma once

#include <cstdint>

#include "framework/property.h"
#include "framework/string.h"
#include "framework/values.h"
#include "framework/vector.h"

// How an event recurs. A value outside the list is passed on as it is.
enum ERecurranceType : std::int32_t {
  kRecurranceDaily = 1,
  kRecurranceWeekly = 2,
  kRecurranceMonthlyByDate = 3,  // on given days of the month
  kRecurranceMonthlyByDay = 4,   // on the k-th weekday
  kRecurranceYearlyByDate = 5,
  kRecurranceYearlyByDay = 6,  // on the k-th weekday of a month
};

// The six variants. All fields are 0 when fresh, and none is checked. In all of them:
// - `Interval`: every so many days, weeks or months.
// - A weekday: 1 for Sunday to 6 for Friday, and 0 for Saturday.
// - `Week`: 0 for the first to 3 for the fourth, and 4 for the last.
// - `Month`: 0 for January to 11.

struct PWDailyRecurrance {
  std::int16_t Interval = 0;
};

struct PWWeeklyRecurrance {
  std::int16_t Interval = 0;
  PWBitField Days;  // the bit of each weekday
};

struct PWMonthlyByDateRecurrance {
  std::int16_t Interval = 0;
  PWBitField Days;  // the days of the month, in the bits of the organiser's day mask
};

struct PWMonthlyByDayRecurrance {
  std::int16_t Interval = 0;
  std::uint8_t Week = 0;
  std::uint8_t Day = 0;  // a weekday
};

struct PWYearlyByDateRecurrance {
  std::uint8_t Month = 0;
  std::uint8_t Day = 0;  // the number of the day's bit in the organiser's day mask
};

struct PWYearlyByDayRecurrance {
  std::uint8_t Month = 0;
  std::uint8_t Week = 0;
  std::uint8_t Day = 0;  // a weekday
};

// A change to one occurrence of a recurring event.
class PWRecurranceException : public PWObject {
 public:
  // Bits of `Changes`. Where a text's bit is clear, the event's own text holds. The engine sets
  // further bits, which are carried.
  static constexpr std::uint8_t kHasAlarm = 0;
  static constexpr std::uint8_t kSubjectChanged = 1;
  static constexpr std::uint8_t kLocationChanged = 2;
  static constexpr std::uint8_t kNotesChanged = 3;
  static constexpr std::uint8_t kDeleted = 4;
  bool HasChange(std::uint8_t bit) const { return (Changes.bits >> bit & 1U) != 0; }

  void Serialize(PWArchive& archive) override;
  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override { return new PWRecurranceException(*this); }

  PWDateTimeStamp Date;       // the local date of the occurrence that this one replaces
  PWDateTimeStamp StartDate;  // the changed times, UTC: of no meaning for a deleted occurrence
  PWDateTimeStamp EndDate;
  PWBitField Changes;
  PWString Subject;
  PWString Location;
  PWString Notes;
  PWNumber AlarmAdvance;  // minutes before the start: of no meaning without an alarm
};

class PWRecurranceExceptionVector : public PWObjectVector {
 public:
  // Null beyond the end, and for an element of another class, as a foreign archive may hold.
  PWRecurranceException* At(std::uint32_t index) const {
    return dynamic_cast<PWRecurranceException*>(PWObjectVector::At(index));
  }

  PWObject* Clone() override;
};

// When an event recurs: its type, the rule of that type, and the occurrences that are otherwise.
//
// The six variants stand side by side, so that a pattern that is given another type, and then the
// first one again, has its values still. A copy is deep.
class PWRecurrancePattern : public PWObject {
 public:
  // The bit of `Options` by which the pattern never ends, whatever `EndDate` holds.
  static constexpr std::uint8_t kNeverEnds = 0;

  PWObject* Clone() override { return new PWRecurrancePattern(*this); }

  PWProperty<ERecurranceType> Type;     // 0, no type, when fresh
  PWProperty<PWDateTimeStamp> EndDate;  // the last local date, unless it never ends
  PWTimeZone TimeZone;                  // that the occurrences keep their clock time in
  PWBitField Options;

  bool NeverEnds() const { return (Options.bits & (1U << kNeverEnds)) != 0; }

  // Owned by the pattern, and valid for its life.
  PWRecurranceExceptionVector& Exceptions() { return exceptions; }

  // Takes the exception over. Null isn't added.
  void AddException(PWRecurranceException* exception) { exceptions.Append(exception, false); }

  // Frees them all.
  void ClearExceptions() { exceptions = PWRecurranceExceptionVector(); }

  // The variant if it is of the present type, else null. Owned by the pattern.
  PWDailyRecurrance* Daily();
  PWWeeklyRecurrance* Weekly();
  PWMonthlyByDateRecurrance* MonthlyByDate();
  PWMonthlyByDayRecurrance* MonthlyByDay();
  PWYearlyByDateRecurrance* YearlyByDate();
  PWYearlyByDayRecurrance* YearlyByDay();

 private:
  template <class Variant>
  Variant* IfOfType(ERecurranceType type, Variant& variant) {
    return Type == type ? &variant : nullptr;
  }

  PWRecurranceExceptionVector exceptions;
  PWDailyRecurrance daily;
  PWWeeklyRecurrance weekly;
  PWMonthlyByDateRecurrance monthlyByDate;
  PWMonthlyByDayRecurrance monthlyByDay;
  PWYearlyByDateRecurrance yearlyByDate;
  PWYearlyByDayRecurrance yearlyByDay;
};

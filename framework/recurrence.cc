#include "framework/recurrence.h"

#include <new>

namespace {

PWRuntimeClass exceptionClass("PWRecurranceException", []() -> PWObject* {
  return new (std::nothrow) PWRecurranceException;
});

void TransferStamp(PWArchive& archive, PWDateTimeStamp& stamp) {
  archive.Transfer(stamp.year);
  for (std::uint8_t* field :
       {&stamp.month, &stamp.day, &stamp.hour, &stamp.minute, &stamp.second}) {
    std::uint16_t word = *field;
    archive.Transfer(word);
    *field = static_cast<std::uint8_t>(word);
  }
}

}  // namespace

void PWRecurranceException::Serialize(PWArchive& archive) {
  TransferStamp(archive, Date);
  TransferStamp(archive, StartDate);
  TransferStamp(archive, EndDate);
  Changes.Serialize(archive);
  Subject.Serialize(archive);
  Location.Serialize(archive);
  Notes.Serialize(archive);
  AlarmAdvance.Serialize(archive);
}

PWRuntimeClass* PWRecurranceException::RuntimeClass() {
  return &exceptionClass;
}

PWObject* PWRecurranceExceptionVector::Clone() {
  return new PWRecurranceExceptionVector(*this);
}

PWDailyRecurrance* PWRecurrancePattern::Daily() {
  return IfOfType(kRecurranceDaily, daily);
}

PWWeeklyRecurrance* PWRecurrancePattern::Weekly() {
  return IfOfType(kRecurranceWeekly, weekly);
}

PWMonthlyByDateRecurrance* PWRecurrancePattern::MonthlyByDate() {
  return IfOfType(kRecurranceMonthlyByDate, monthlyByDate);
}

PWMonthlyByDayRecurrance* PWRecurrancePattern::MonthlyByDay() {
  return IfOfType(kRecurranceMonthlyByDay, monthlyByDay);
}

PWYearlyByDateRecurrance* PWRecurrancePattern::YearlyByDate() {
  return IfOfType(kRecurranceYearlyByDate, yearlyByDate);
}

PWYearlyByDayRecurrance* PWRecurrancePattern::YearlyByDay() {
  return IfOfType(kRecurranceYearlyByDay, yearlyByDay);
}

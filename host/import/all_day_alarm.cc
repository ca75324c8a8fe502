#include "host/import/all_day_alarm.h"

#include <cstdint>

#include "framework/event_record.h"

namespace pw {
namespace {

constexpr std::int32_t kDay = 24 * 60;
constexpr std::int32_t kLongestAlarm = kDay - 1;
constexpr std::int32_t kRoundedUp = kDay + kDay / 2;  // to two days

}  // namespace

void PassAlarmOfOneDay(PWRecord& record) {
  PWEventRecord event(&record);
  const std::int32_t minutes = event.AlarmAdvance();
  if (event.AllDay() && minutes > kLongestAlarm && minutes < kRoundedUp) {
    event.AlarmAdvance(kLongestAlarm);
  }
}

}  // namespace pw

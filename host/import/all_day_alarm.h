#pragma once

#include "framework/record.h"

namespace pw {

// Of an all-day event the organiser keeps the alarm in days, and a read gives them in minutes. On
// the way in the plug-in cuts every alarm to a minute less than a day, with a warning, and then
// rounds it to days. What it would round to one day is made that long before, so that it passes
// without one. `record` is an event.
void PassAlarmOfOneDay(PWRecord& record);

}  // namespace pw

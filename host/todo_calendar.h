#pragma once

#include <string>
#include <vector>

#include "host/record_reader.h"
#include "platform/clock.h"

namespace pw {

// To-do records as an iCalendar file. The clock tells the present, for records whose change isn't
// known, and what the machine's own clocks showed when.
std::string TodoCalendar(const std::vector<CategoryRecords>& categories, Clock& clock);

}  // namespace pw

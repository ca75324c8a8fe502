#pragma once

#include <functional>
#include <string_view>

#include "calendar/event_format.h"

namespace pw::events {

// The items of an event file as the organiser reads them, day by day. A day that isn't there, that
// shares bytes with one before it, or one of whose items is damaged, is left out; where a year's
// last day is left out, so are the years behind it.
//
// Each item is taken off the cursor by `take`, which gives its damage. `endDay` is called behind
// the items of each day, and told whether they count.
//
// False where the file is cut short before its first day, which is found before an item is taken.
using EndDay = std::function<void(bool counts)>;
bool ReadDays(std::string_view file, const TakeItem& take, const EndDay& endDay);

}  // namespace pw::events

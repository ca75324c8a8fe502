#pragma once

#include "framework/application.h"
#include "host/engine_objects.h"

namespace pw {

// Takes away all that `PWApplication::RefreshCategories` was asked for, and tells whether any of it
// was about this source. The others may be gone by now, and aren't looked at.
bool TakeRefreshRequests(const PWApplicationSource& source);

// Reads the category lists of the run's source again, those of all its types.
void RefreshCategories(EngineObjects& objects);

}  // namespace pw

#pragma once

#include <string_view>

#include "host/check/finding.h"

// The calendar's three files, and the template of holidays, which is as the data file.
namespace pw {

FileCheck CheckEvents(std::string_view bytes);
FileCheck CheckSeries(std::string_view bytes);

// Beside an event file of version 50 a save makes it one of that version too.
FileCheck CheckDataFile(std::string_view bytes, bool besideVersion50);
FileCheck CheckTemplate(std::string_view bytes);

}  // namespace pw

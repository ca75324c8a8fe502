#pragma once

#include <string_view>

#include "host/check/finding.h"

// The calendar's three files, and the template of holidays, which is as the data file.
namespace pw {

FileCheck CheckEvents(std::string_view bytes);
FileCheck CheckSeries(std::string_view bytes);

// Adds the occurrences of the event file whose series the recurring file hasn't got, to the check
// of the former. Series of the older version have no keys to tell that by.
void CheckOccurrences(std::string_view events, std::string_view series, FileCheck& check);

// Beside an event file of version 50 a save makes it one of that version too.
FileCheck CheckDataFile(std::string_view bytes, bool besideVersion50);
FileCheck CheckTemplate(std::string_view bytes);

}  // namespace pw

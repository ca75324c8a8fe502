#pragma once

#include <string_view>

#include "host/check/finding.h"

// The calendar's three files, and the template of holidays, which is as the data file.
namespace pw {

FileCheck CheckEvents(std::string_view bytes);
FileCheck CheckSeries(std::string_view bytes);
FileCheck CheckDataFile(std::string_view bytes);
FileCheck CheckTemplate(std::string_view bytes);

}  // namespace pw

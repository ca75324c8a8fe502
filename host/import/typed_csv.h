#pragma once

#include <string>
#include <string_view>

#include "host/city_clocks.h"
#include "host/import/incoming.h"

namespace pw {

// The records of a CSV file of our own export, of a type other than contact. Times of events are by
// the clocks of the home city; those of a series are taken from the column that has it whole. Rows
// that aren't well-formed are among the problems, as is a file of which no column is known.
Incoming ReadTypedCsv(std::string_view text, const std::string& type, const CityClocks& cities);

}  // namespace pw

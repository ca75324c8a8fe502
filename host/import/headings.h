#pragma once

#include <string>
#include <vector>

namespace pw {

// Why a CSV file with these headings holds nothing of the columns known: none of them is one. Empty
// if some are, and for a file without a heading.
std::string WhyNoneKnown(const std::vector<std::string>& headings,
                         const std::vector<std::string>& known);

}  // namespace pw

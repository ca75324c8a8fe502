#pragma once

#include <string>
#include <string_view>

#include "framework/record.h"

namespace pw {

// Why a record would damage the file that it goes into: the organiser writes the lengths of its
// parts into 16 bits. Empty where it wouldn't.
std::string WhyTooLong(PWRecord& record, std::string_view type);

}  // namespace pw

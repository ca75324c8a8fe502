#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/source.h"

namespace pw {

// Why a record would damage the file that it goes into: the organiser writes the lengths of its
// parts into 16 bits. Empty where it wouldn't.
std::string WhyTooLong(PWRecord& record, std::string_view type);

// The same for the card that a source stands at, once it has taken what the record names. The names
// are those of its fields in their order, in UTF-8, of which several may be one.
std::string WhyTooLongThen(PWSource& source, const std::vector<std::string>& names,
                           const PWRecord& record);

// Why no card goes into the source any more, as the organiser counts them in 16 bits; empty if one
// does.
std::string WhyFull(PWSource& source);

// Why a record can't be a new one, as there is nothing in it, or as it is a timed event from a
// moment to the same, for which the organiser has no form; empty if it can.
std::string WhyEmpty(PWRecord& record, std::string_view type);
std::string WhyWithoutLength(PWRecord& record, std::string_view type);

}  // namespace pw

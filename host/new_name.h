#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"

// Names that a person gives to something new, from UTF-8 into the organiser's code page. Nothing of
// them is replaced or left out without a word; a failure says what can't be in one.
namespace pw {

// Of a file, less the blanks around it, which the module leaves out as well: what it names is then
// the same for all who look for it.
Outcome<std::string> NewFileName(std::string_view given);

// Of a section of a binder, and so of the binder's files too.
Outcome<std::string> NewSectionName(std::string_view given);

// Of the fields of a cardfile, as they are given, if it has room for all of them.
Outcome<std::vector<std::string>> NewFieldNames(const std::vector<std::string>& given);

// Why the organiser can't read all of these names of a cardfile's fields, which are in its code
// page; nothing if it can.
std::optional<Failure> WhyNoRoomFor(const std::vector<std::string>& fields);

}  // namespace pw

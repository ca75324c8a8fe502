#pragma once

#include <string>
#include <string_view>

#include "host/outcome.h"

// Names that a person gives to something new, from UTF-8 into the organiser's code page. Nothing of
// them is replaced or left out without a word; a failure says what can't be in one.
namespace pw {

// Of a file, less the blanks around it, which the module leaves out as well: what it names is then
// the same for all who look for it.
Outcome<std::string> NewFileName(std::string_view given);

// Of a section of a binder, and so of the binder's files too.
Outcome<std::string> NewSectionName(std::string_view given);

// Of a field of a cardfile, as it is given.
Outcome<std::string> NewFieldName(std::string_view given);

}  // namespace pw

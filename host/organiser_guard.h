#pragma once

#include <optional>

#include "host/outcome.h"

namespace pw {

// The class of the window by which a running organiser is known.
inline constexpr const char* kOrganiserWindow = "Wingmate_95";

// Why nothing may be changed now: the organiser runs, and has a dialog open. Not every source of
// the module looks for that itself.
std::optional<Failure> OrganiserInTheWay();

}  // namespace pw

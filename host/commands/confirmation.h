#pragma once

#include <optional>
#include <string>

#include "host/console.h"

namespace pw {

// Asks before what can't be undone but by a restore; `agreed` is the person's word given
// beforehand, by --yes. Nothing if it may go on, else the exit code: nobody is there to be asked,
// or the answer wasn't yes.
std::optional<int> NotConfirmed(const Console& console, const std::string& question, bool agreed);

}  // namespace pw

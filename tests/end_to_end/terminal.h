#pragma once

#include <string>
#include <vector>

#include "tests/end_to_end/process.h"

namespace pw {

// Runs `pairwise` at a terminal where somebody types these lines. All that the terminal shows is
// `out`, what is typed too, with plain line ends.
Finished RunAtTerminal(const std::vector<std::string>& arguments, const std::string& typed);

}  // namespace pw

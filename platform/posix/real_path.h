#pragma once

#include <optional>
#include <string>

namespace pw {

// Where a path leads once all its links are followed. The last name may be missing, be it the
// path's own or that of what a link leads to. Nothing where a folder before it is missing or can't
// be looked into, or links go in a circle.
std::optional<std::string> RealPath(const std::string& path);

}  // namespace pw

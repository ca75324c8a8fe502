#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "platform/posix/descriptor.h"

// Looks at files of which not even the access times are to change. Only a file's owner may look so;
// for others it is as any look.
namespace pw {

// For reading; closed on an error, which errno tells. `folder` may be AT_FDCWD, `flags` add to
// those of the opening.
Descriptor OpenLeavingNoTrace(int folder, const char* name, int flags);

// The names of all that is in a folder, in no order.
Outcome<std::vector<std::string>> NamesLeavingNoTrace(const std::filesystem::path& folder);

}  // namespace pw

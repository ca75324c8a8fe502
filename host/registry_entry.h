#pragma once

#include <string>

#include "host/outcome.h"
#include "host/profile.h"
#include "platform/posix/posix_registry.h"

namespace pw {

// The profile's registry, to look at.
PosixRegistry ReadOnlyRegistry(const Profile& profile);

// Puts a text into the profile's registry. All is of the organiser's code page.
Outcome<Done> WriteRegistryText(const Profile& profile, const std::string& keyPath,
                                const std::string& name, const std::string& text);

}  // namespace pw

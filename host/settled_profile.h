#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/config.h"
#include "host/outcome.h"
#include "host/profile.h"

// What the option pages have settled, as a profile keeps it.
namespace pw {

// The profile with the settings that a page can change, and the sync mode.
Profile SettledProfile(const Profile& before, PWConfig& settings, std::int32_t syncMode);

// What is different, for the person; empty if nothing is.
std::string SettledChanges(const Profile& before, const Profile& after);

// Why nobody could work with what was settled; nothing if all is well.
std::optional<Failure> WhyUnusable(const Profile& before, const Profile& after);

// What the person should know of the files that the profile leads to now.
std::vector<std::string> SettledWarnings(const Profile& before, const Profile& after);

// Writes the description. What a person has written there beside the settings stays.
Outcome<Done> SaveSettled(const Profile& before, const Profile& after);

}  // namespace pw

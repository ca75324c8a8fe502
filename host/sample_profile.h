#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "host/outcome.h"
#include "host/profile.h"

namespace pw {

// A profile to try things on: the cardfile "Friends" Ada's tasks, calls and calendar and a binder
// in a data folder of its own, added through the module, and the eight clocks.
struct SampleProfile {
  Profile profile;
  std::filesystem::path cardfile;
  std::vector<std::string> ids;       // of the sample cards, in their order
  std::vector<std::string> todoIds;   // of the tasks and calls likewise
  std::vector<std::string> memoIds;   // of the notes
  std::vector<std::string> eventIds;  // of the events
  std::string noClocks;               // why it has no clocks and no events; empty if it has
};

// The moment in which the sample's first card was changed, in seconds since 1970-01-01 UTC. The
// others follow, and whatever comes after them is given by `SampleTimeAfterCards`.
inline constexpr std::int64_t kSampleTime = 888'840'000;  // 1998-03-02 12:00
std::int64_t SampleTimeAfterCards();

// Makes the sample in a folder that is missing or empty, or anew where an earlier sample is.
// Anything else in the folder is a failure that changes nothing.
Outcome<SampleProfile> MakeSampleProfile(const std::filesystem::path& folder,
                                         std::ostream& messages);

}  // namespace pw

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Backups are named by their moment in UTC: "2026-11-25T21-49-01", and behind it those of the same
// second, "2026-11-25T21-49-01-02" up to "-99". Sorted by name they are sorted by age.
namespace pw {

// Whether it is such a name, of a moment that there is. All else in the folder of the backups is
// the person's own.
bool IsBackupName(std::string_view name);

// A name for a new one that comes behind `latest`, the last one that is there, or empty. `now` is
// in seconds since 1970 UTC; should the clock have been set back the name is of a later moment.
std::string NextBackupName(std::int64_t now, const std::string& latest);

}  // namespace pw

#pragma once

#include <optional>
#include <string>

#include "host/outcome.h"
#include "host/profile.h"

// The calendar that the registry names as the default user's. Where a profile names none (entry 5
// of the settings is empty) the module takes this one, and its folder in place of the data folder.
namespace pw {

struct DefaultCalendar {
  std::string folder;  // the organiser's path, empty for the profile's own folder
  std::string stem;    // what stands before the fixed part of the files' names
};

// That of the edition as the module finds it; nothing where the registry names no user.
std::optional<DefaultCalendar> DefaultCalendarOf(const Profile& profile);

// Has the registry name that one.
Outcome<Done> SetDefaultCalendar(const Profile& profile, const DefaultCalendar& calendar);

// The folder, where the profile leaves the calendar to the registry.
std::optional<std::string> FolderOfDefaultCalendar(const Profile& profile);

}  // namespace pw

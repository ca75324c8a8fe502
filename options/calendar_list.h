#pragma once

#include <string>
#include <vector>

// The calendars that a data folder offers. Each is a set of files that share a stem, before the
// fixed names of the calendar and task files.
namespace pw::options {

// The stem of each event file in the folder, in the folder's order. A file of the plain name has
// the empty stem.
std::vector<std::string> CalendarStems(const std::string& folder);

// The entry to be selected: the one that equals what is wanted, letter case included, else the
// first; empty if there is none.
std::string SelectedStem(const std::vector<std::string>& stems, const std::string& wanted);

}  // namespace pw::options

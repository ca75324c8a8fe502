#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pw {

// A card on its way out of the organiser or into it, as plain values. All text is UTF-8; a line
// break in a value is the organiser's own, CR LF.
struct Contact {
  std::string id;     // the record's id in its cardfile; empty where there is none yet
  std::string stamp;  // last change, "YYYY-MM-DDTHH:MM:SS" in local time; empty if none is known

  // Name and value, in the cardfile's order. A name is never empty, but may occur more than once.
  std::vector<std::pair<std::string, std::string>> fields;

  friend bool operator==(const Contact&, const Contact&) = default;
};

// As many as a cardfile can have. Of a file with more no reader keeps those behind.
inline constexpr std::size_t kMostContacts = 65'535;
inline constexpr const char* kTooManyContacts =
    "a cardfile holds 65,535 cards at most, and this one is left out";

// What of the contacts of a file doesn't come along, for a person, by their places from 0.
using ContactRemarks = std::map<std::size_t, std::vector<std::string>>;

}  // namespace pw

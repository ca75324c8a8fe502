#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pw {

// An edition of the organiser, as the host names it and the registry knows it.
struct Product {
  const char* name;  // on the command line
  std::uint32_t number;
  const char* mainKey;
};

inline constexpr Product kProducts[] = {
    {"desktop", 2, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
    {"99", 3, "SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main"},
    {"98", 1, "SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main"},
    {"orb", 0, "SOFTWARE\\Gullwing\\ORB PairWise Information Manager\\Version 1\\Main"},
};

// Null for a name that isn't in the table.
const Product* FindProduct(std::string_view name);

// The key where the edition notes where it was installed, and the one where it notes where the
// files of its default user are: the value `kDefaultUser`.
std::string InstallKey(const Product& product);
std::string CalendarKey(const Product& product);
inline constexpr const char* kDefaultUser = "DefUserName";

// What a registry knows of an organiser. Texts are in its code page, empty for unknown.
struct OrganiserFacts {
  std::string dataFolder;
  std::string calendar;      // what the names of the calendar and to-do files are appended to
  std::string localCity;     // of the organiser's own
  bool isVersion50 = false;  // files that are missing are made of version 50
};

// A registry that knows of the edition and of this, and no more, in the registry editor's export
// format.
std::string FreshRegistry(const Product& product, const OrganiserFacts& facts);

}  // namespace pw

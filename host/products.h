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

// The key where the edition notes where it was installed.
std::string InstallKey(const Product& product);

// A registry that knows of the edition, of its data folder and of the organiser's own city, which
// may be empty, and no more, in the registry editor's export format. Folder and city are in the
// organiser's code page.
std::string FreshRegistry(const Product& product, const std::string& dataFolder,
                          const std::string& localCity = "");

}  // namespace pw

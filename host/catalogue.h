#pragma once

#include <optional>
#include <string>

#include "framework/source_manager.h"
#include "host/outcome.h"

// What a person names on the command line, looked up in what the module offers.
namespace pw {

// A failure names the types that there are.
Outcome<Done> CheckType(PWSourceManager& manager, const std::string& type);

// Whether a type's records lie in categories. The clocks have none: an empty one, without name and
// location, stands for them wherever categories are asked for.
bool HasCategories(const std::string& type);

// All categories of a type.
Outcome<PWSourceCategoryVector> ListCategories(PWSourceManager& manager, const std::string& type);

// The category that a word of UTF-8 names: by its location, by its name, or by its name in another
// letter case if there is only one such. Without a word all of them.
Outcome<PWSourceCategoryVector> ChooseCategories(PWSourceManager& manager, const std::string& type,
                                                 const std::optional<std::string>& word);

}  // namespace pw

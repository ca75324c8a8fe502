#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/category.h"

// Memo binders behind the organiser's paths.
namespace pw {

// What a look at a binder's files says before its notes are read.
struct BinderLook {
  bool isDamaged = false;    // a note is of no section, or its text isn't all there
  bool sharesTexts = false;  // read one by one the notes take much more room than the files
};

// Of the binder of a memo category's location. A file that can't be read counts as empty.
BinderLook LookAtBinder(const std::string& location);

// The names of a binder's sections, of the three files with that stem. Nothing where one of them is
// missing or can't be read.
std::optional<std::vector<std::string>> SectionNames(const std::string& stem);

// The bodies of a section's notes, in their order, as rich text; none where they can't be read.
std::vector<std::string> RichBodies(const std::string& location);

// The binders of a folder that are the categories of none, as they can't be opened: the organiser's
// paths of their files of sections.
std::vector<std::string> UnlistedBinders(const std::string& folder,
                                         const PWSourceCategoryVector& categories);

}  // namespace pw

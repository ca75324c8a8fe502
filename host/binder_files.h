#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/category.h"
#include "platform/files.h"

namespace pw {

// A memo binder as its three files have it.
struct BinderFiles {
  std::string sections;
  std::string headers;
  std::string contents;
};

// Those of the binder of a memo category's location; a file that can't be read is empty.
BinderFiles ReadBinderFiles(Files& files, std::string_view location);

// The bodies of a section's notes, in their order, as rich text. They point into the files.
std::vector<std::string_view> RichBodies(const BinderFiles& binder, std::string_view section);

// What a memo category's location is made of: what stands before the first ";", which is what the
// names of the binder's files begin with, and the section's name behind it.
std::string_view BinderStem(std::string_view location);
std::string_view BinderSection(std::string_view location);

// The binders of a folder that are the categories of none, as they can't be opened: the organiser's
// paths of their files of sections.
std::vector<std::string> UnlistedBinders(Files& files, const std::string& folder,
                                         const PWSourceCategoryVector& categories);

}  // namespace pw

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "framework/category.h"
#include "host/engine_objects.h"
#include "host/engine_run.h"

// What there is of some types, as a person is told before and after it is deleted.
namespace pw {

struct CategoryLook {
  std::string name;      // the category's, in the organiser's code page as the location
  std::string location;  // of none that the module lists if it is empty
  std::uint32_t records = 0;
  bool isOpen = false;                // whether the module opens it
  std::vector<std::string> problems;  // what can't be read of it, a line each
  std::vector<std::string> closed;    // why its files can't be emptied, a line each
};

struct TypeLook {
  std::string type;
  std::vector<CategoryLook> categories;
};

// Of the types that are named, in the module's order. The run is one that reads: opening and
// leaving a source is nothing that a running organiser may hear of.
std::vector<TypeLook> LookAtTypes(EngineRun& run, const std::vector<std::string>& types);

// "contact (3 records; 'Old' can't be read whole), memo (0 records; 'Mine' can't be changed)": all
// that there is, or only as many records as can be deleted. Types without any category are left
// out.
enum class Counting { kAll, kDeletable };
std::string SummaryOf(const std::vector<TypeLook>& looks, Counting counting);

// What can't be read and what can't be emptied, a line each.
std::vector<std::string> ProblemsOf(const std::vector<TypeLook>& looks);

// The locations of what was to be emptied, by the first look, and has records by the second.
std::vector<std::string> NotEmptied(const std::vector<TypeLook>& before,
                                    const std::vector<TypeLook>& after);

// The types of a run that deletes what was looked at, with the categories that are to be emptied:
// a cardfile or binder that can't be read whole isn't one of them, as the module would pass it by
// or spoil it, nor is one whose files can't be changed. A type that is left with none takes no
// part, as it would end the module's walk.
std::vector<TypeCategories> WhatCanBeEmptied(const std::vector<TypeLook>& looks);

}  // namespace pw

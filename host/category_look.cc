#include "host/category_look.h"

#include <algorithm>
#include <utility>

#include "base/codepage.h"
#include "host/binder_files.h"
#include "host/calendar_files.h"
#include "host/catalogue.h"
#include "host/counted.h"
#include "host/record_reader.h"
#include "host/text_table.h"
#include "memo/format.h"

namespace pw {
namespace {

CategoryLook LookAt(EngineRun& run, const std::string& type, const PWSourceCategory& category) {
  CategoryLook look{category.Name.Str(), category.Location.Str(), 0, false, {}};
  const auto opened = OpenForReading(run, type, category);
  if (!opened) {
    look.problems = {opened.Why().message};
    return look;
  }
  look.isOpen = true;
  look.records = opened->source->RecordCount();
  look.problems = opened->problems;
  return look;
}

CategoryLook LookAtUnlisted(EngineRun& run, const std::string& sectionFile) {
  const std::size_t begin = sectionFile.find_last_of('\\') + 1;
  const std::size_t end = sectionFile.size() - std::string_view(memo::kSectionFile).size();
  return {sectionFile.substr(begin, end - begin),
          "",
          0,
          false,
          {run.NativePathOf(sectionFile) + ": the binder can't be opened; see `pairwise check`"}};
}

TypeLook LookAtType(EngineRun& run, const std::string& type) {
  TypeLook look{type, {}};
  const auto categories = ListCategories(run.Manager(), type);
  if (!categories) return look;
  for (std::uint32_t i = 0; i < categories->Count(); ++i) {
    const PWSourceCategory& category = *categories->At(i);
    if (type == kCalendarType && !HasCalendar(category.Location.Str())) continue;
    look.categories.push_back(LookAt(run, type, category));
  }
  if (type != kMemoType) return look;
  const std::string folder = run.Objects().config.String(PWConfig::kDataFolder).Str();
  for (const std::string& file : UnlistedBinders(folder, *categories)) {
    look.categories.push_back(LookAtUnlisted(run, file));
  }
  return look;
}

std::string SummaryOf(const TypeLook& look) {
  std::uint32_t records = 0;
  std::string notWhole;
  for (const CategoryLook& category : look.categories) {
    records += category.records;
    if (category.problems.empty()) continue;
    notWhole += (notWhole.empty() ? "'" : ", '") + OneLine(CodePageToUtf8(category.name)) + "'";
  }
  if (!notWhole.empty()) notWhole = "; " + notWhole + " can't be read whole";
  return look.type + " (" + Counted(records, "record", "records") + notWhole + ")";
}

// Files of the calendar and of to-do items are made anew, whatever is in them.
bool CanBeEmptied(const std::string& type, const CategoryLook& category) {
  if (category.location.empty()) return false;
  if (type == kCalendarType || type == kTodoType) return true;
  return category.isOpen && category.problems.empty();
}

}  // namespace

std::vector<TypeLook> LookAtTypes(EngineRun& run, const std::vector<std::string>& types) {
  std::vector<TypeLook> looks;
  for (const std::string& type : TypeNames(run.Manager())) {
    if (std::find(types.begin(), types.end(), type) == types.end()) continue;
    looks.push_back(LookAtType(run, type));
  }
  return looks;
}

std::string SummaryOf(const std::vector<TypeLook>& looks) {
  std::string text;
  for (const TypeLook& look : looks) {
    if (look.categories.empty()) continue;
    text += (text.empty() ? "" : ", ") + SummaryOf(look);
  }
  return text;
}

std::vector<std::string> ProblemsOf(const std::vector<TypeLook>& looks) {
  std::vector<std::string> problems;
  for (const TypeLook& look : looks) {
    for (const CategoryLook& category : look.categories) {
      problems.insert(problems.end(), category.problems.begin(), category.problems.end());
    }
  }
  return problems;
}

std::vector<TypeCategories> WhatCanBeEmptied(const std::vector<TypeLook>& looks) {
  std::vector<TypeCategories> types;
  for (const TypeLook& look : looks) {
    TypeCategories type{look.type, false, {}};
    for (const CategoryLook& category : look.categories) {
      if (!CanBeEmptied(look.type, category)) continue;
      auto* paired = new PWSourceCategory;
      paired->Name = category.name.c_str();
      paired->Location = category.location.c_str();
      type.categories.Append(paired, false);
      type.takesPart = true;
    }
    if (type.takesPart) types.push_back(std::move(type));
  }
  return types;
}

}  // namespace pw

#include "host/category_look.h"

#include <algorithm>
#include <utility>

#include "base/codepage.h"
#include "host/binder_files.h"
#include "host/calendar_files.h"
#include "host/catalogue.h"
#include "host/closed_files.h"
#include "host/counted.h"
#include "host/record_reader.h"
#include "host/text_table.h"
#include "memo/format.h"

namespace pw {
namespace {

CategoryLook LookAt(EngineRun& run, const std::string& type, const PWSourceCategory& category) {
  CategoryLook look{category.Name.Str(), category.Location.Str(), 0, false, {}, {}};
  look.closed = ClosedFiles(run, type, look.location, FileChange::kMadeAnew);
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
          {run.NativePathOf(sectionFile) + ": the binder can't be opened; see `pairwise check`"},
          {}};
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

// "; 'Old', 'Bad' can't be read whole" of the categories that have such lines; empty if none has.
std::string NamesWith(const TypeLook& look, std::vector<std::string> CategoryLook::*lines,
                      const char* what) {
  std::string names;
  for (const CategoryLook& category : look.categories) {
    if ((category.*lines).empty()) continue;
    names += (names.empty() ? "; '" : ", '") + OneLine(CodePageToUtf8(category.name)) + "'";
  }
  return names.empty() ? names : names + what;
}

// Files of the calendar and of to-do items are made anew, whatever is in them.
bool CanBeEmptied(const std::string& type, const CategoryLook& category) {
  if (category.location.empty() || !category.closed.empty()) return false;
  if (type == kCalendarType || type == kTodoType) return true;
  return category.isOpen && category.problems.empty();
}

std::string SummaryOf(const TypeLook& look, Counting counting) {
  std::uint32_t records = 0;
  for (const CategoryLook& category : look.categories) {
    const bool counts = counting == Counting::kAll || CanBeEmptied(look.type, category);
    if (counts) records += category.records;
  }
  return look.type + " (" + Counted(records, "record", "records") +
         NamesWith(look, &CategoryLook::problems, " can't be read whole") +
         NamesWith(look, &CategoryLook::closed, " can't be changed") + ")";
}

// Several categories may be of one file.
void AddNew(const std::vector<std::string>& lines, std::vector<std::string>& all) {
  for (const std::string& line : lines) {
    if (std::find(all.begin(), all.end(), line) == all.end()) all.push_back(line);
  }
}

std::uint32_t RecordsAt(const std::vector<TypeLook>& looks, const std::string& type,
                        const std::string& location) {
  for (const TypeLook& look : looks) {
    if (look.type != type) continue;
    for (const CategoryLook& category : look.categories) {
      if (category.location == location) return category.records;
    }
  }
  return 0;
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

std::string SummaryOf(const std::vector<TypeLook>& looks, Counting counting) {
  std::string text;
  for (const TypeLook& look : looks) {
    if (look.categories.empty()) continue;
    text += (text.empty() ? "" : ", ") + SummaryOf(look, counting);
  }
  return text;
}

std::vector<std::string> ProblemsOf(const std::vector<TypeLook>& looks) {
  std::vector<std::string> problems;
  for (const TypeLook& look : looks) {
    for (const CategoryLook& category : look.categories) {
      AddNew(category.problems, problems);
      AddNew(category.closed, problems);
    }
  }
  return problems;
}

std::vector<std::string> NotEmptied(const std::vector<TypeLook>& before,
                                    const std::vector<TypeLook>& after) {
  std::vector<std::string> locations;
  for (const TypeLook& look : before) {
    for (const CategoryLook& category : look.categories) {
      const bool isLeft =
          CanBeEmptied(look.type, category) && RecordsAt(after, look.type, category.location) > 0;
      if (isLeft) locations.push_back(category.location);
    }
  }
  return locations;
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

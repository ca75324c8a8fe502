#include "host/catalogue.h"

#include <algorithm>
#include <vector>

#include "base/codepage.h"
#include "host/engine_objects.h"

namespace pw {
namespace {

using Matches = bool (*)(PWSourceCategory& category, const std::string& word);

// From the surest to the most lenient: the first kind of match that finds any decides.
constexpr Matches kMatches[] = {
    [](PWSourceCategory& category, const std::string& word) {
      return EqualFileNames(category.Location.View(), word);
    },
    [](PWSourceCategory& category, const std::string& word) {
      return category.Name().View() == word;
    },
    [](PWSourceCategory& category, const std::string& word) {
      return EqualFileNames(category.Name().View(), word);
    },
};

std::string NamesOf(const PWSourceCategoryVector& categories) {
  std::string names;
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    names += (i == 0 ? "'" : ", '") + CodePageToUtf8(categories.At(i)->Name().View()) + "'";
  }
  return names.empty() ? "none" : names;
}

}  // namespace

Outcome<Done> CheckType(PWSourceManager& manager, const std::string& type) {
  const std::vector<std::string> names = TypeNames(manager);
  if (std::find(names.begin(), names.end(), type) != names.end()) return Done{};
  std::string known;
  for (const std::string& name : names) known += (known.empty() ? "" : ", ") + name;
  return Failure{"there is no type '" + type + "'; the types are " + known};
}

bool HasCategories(const std::string& type) {
  return type != "timezone";
}

Outcome<PWSourceCategoryVector> ListCategories(PWSourceManager& manager, const std::string& type) {
  const auto known = CheckType(manager, type);
  if (!known) return known.Why();
  PWSourceCategoryVector categories;
  if (manager.ListCategories(type.c_str(), categories) != kResultOk) {
    return Failure{"the categories of type '" + type + "' can't be listed"};
  }
  return categories;
}

Outcome<PWSourceCategoryVector> ChooseCategories(PWSourceManager& manager, const std::string& type,
                                                 const std::optional<std::string>& word) {
  auto all = ListCategories(manager, type);
  if (all && !HasCategories(type)) {
    if (word) return Failure{type + " records have no categories"};
    all->Append(new PWSourceCategory, false);
  }
  if (!all || !word) return all;
  const std::string name = Utf8ToCodePageLossy(*word);
  for (const Matches matches : kMatches) {
    PWSourceCategoryVector found;
    for (std::uint32_t i = 0; i < all->Count(); ++i) {
      if (matches(*all->At(i), name)) found.Append(all->At(i)->Clone(), false);
    }
    if (found.Count() == 1) return found;
    if (found.Count() > 1) {
      return Failure{"'" + *word + "' could be any of " + NamesOf(found) + "; give its location"};
    }
  }
  return Failure{"there is no " + type + " category '" + *word + "'; there is " + NamesOf(*all)};
}

}  // namespace pw

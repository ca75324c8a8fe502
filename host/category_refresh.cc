#include "host/category_refresh.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "framework/engine_context.h"
#include "host/catalogue.h"

namespace pw {

bool TakeRefreshRequests(const PWApplicationSource& source) {
  const std::vector<PendingRefresh> requests = std::exchange(Engine().pendingRefreshes, {});
  return std::any_of(requests.begin(), requests.end(),
                     [&](const PendingRefresh& request) { return request.source == &source; });
}

void RefreshCategories(EngineObjects& objects) {
  std::vector<TypeCategories> types;
  for (const std::string& type : TypeNames(objects.manager)) {
    const auto categories = ListCategories(objects.manager, type);
    // A type whose files nobody names has none.
    types.push_back({type, false, categories ? *categories : PWSourceCategoryVector()});
  }
  PairTypes(objects, types);
}

}  // namespace pw

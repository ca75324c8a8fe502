#include "host/engine_objects.h"

#include <memory>
#include <utility>

#include "framework/engine_context.h"

namespace pw {
namespace {

// Each category with the number that pairs it, counted from 1 as 0 is not paired.
PWSourceCategoryVector Numbered(const PWSourceCategoryVector& categories) {
  PWSourceCategoryVector numbered(categories);
  for (std::uint32_t i = 0; i < numbered.Count(); ++i) numbered.At(i)->AppID = i + 1;
  return numbered;
}

}  // namespace

std::vector<std::string> TypeNames(PWSourceManager& manager) {
  PWStringVector types;
  manager.GetTypes(types);
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < types.Count(); ++i) names.push_back(types.At(i)->Str());
  return names;
}

void RegisterTypes(EngineObjects& objects) {
  std::vector<TypeCategories> types;
  for (const std::string& name : TypeNames(objects.manager)) {
    objects.applicationSource.Types.Append(new PWAppSrcTypeInfo(name.c_str()), false);
    types.push_back({name, false, {}});
  }
  PairTypes(objects, types);
}

void PairTypes(EngineObjects& objects, const std::vector<TypeCategories>& types) {
  Engine().types.clear();
  Engine().nextType = 0;
  for (const TypeCategories& type : types) {
    auto engineType = std::make_unique<PWApplicationType>(type.type.c_str(), type.takesPart);
    engineType->CategoryVector() = Numbered(type.categories);
    PWAppSrcTypeInfo* info = objects.applicationSource.FindTypeInfo(type.type.c_str());
    if (info != nullptr) info->Categories = Numbered(type.categories);
    Engine().types.push_back(std::move(engineType));
  }
}

}  // namespace pw

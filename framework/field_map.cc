#include "framework/field_map.h"

#include <unordered_set>

#include "framework/vector.h"

PWFieldMap PWFieldMap::Identity(const PWStringVector& names) {
  PWFieldMap map;
  std::unordered_set<std::string> seen;
  for (std::uint32_t i = 0; i < names.Count(); ++i) {
    std::string name = names.At(i)->Str();
    if (seen.insert(name).second) map.entries.push_back({name, name});
  }
  return map;
}

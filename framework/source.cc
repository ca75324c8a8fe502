#include "framework/source.h"

#include "base/crc32.h"
#include "framework/crc.h"
#include "framework/engine_context.h"

namespace {

// Only contacts cross the border by a field map.
constexpr const char* kMappedType = "contact";

}  // namespace

PWSource::~PWSource() = default;

PWRESULT PWSource::Open(std::uint32_t /*word*/) {
  fieldMap.reset();
  return OpenSource();
}

std::uint32_t PWSource::GenerateCRC(std::uint32_t crc, const PWDateTimeStamp& stamp) {
  return pw::FoldStamp(crc, stamp);
}

std::uint32_t PWSource::GenerateCRC(std::uint32_t crc, const PWString& text) {
  return pw::FoldText(crc, text.View());
}

std::uint32_t PWSource::GenerateCRC(std::uint32_t crc, const void* data, std::uint32_t size) {
  return pw::Crc32(crc, std::string_view(static_cast<const char*>(data), size));
}

PWRESULT PWSource::ApplyMapToSource(PWRecord& record) {
  const PWFieldMap* map = FieldMap();
  if (map == nullptr) return kResultFailed;
  for (const PWFieldMapEntry& entry : map->entries) {
    const PWString* value = record.FindField(entry.engineField);
    if (value == nullptr) continue;
    const std::int32_t column = FindField(entry.sourceField.c_str());
    if (column < 0) continue;
    PWField field(value->View());
    if (SetField(column, field) != kResultOk) return kResultFailed;
  }
  return kResultOk;
}

PWRESULT PWSource::ApplyMapFromSource(PWRecord* record) {
  const PWFieldMap* map = FieldMap();
  if (map == nullptr) return kResultFailed;
  for (const PWFieldMapEntry& entry : map->entries) {
    const std::int32_t column = FindField(entry.sourceField.c_str());
    if (column < 0) continue;
    PWField field;
    if (GetField(column, field) != kResultOk) return kResultFailed;
    record->SetField(entry.engineField, field.text.View());
  }
  return kResultOk;
}

const PWFieldMap* PWSource::FieldMap() {
  if (fieldMap != nullptr) return fieldMap.get();
  const std::string location = Category->Location.Str();
  const auto& chosen = pw::Engine().fieldMaps;
  const auto found = chosen.find({kMappedType, location});
  if (found != chosen.end()) {
    fieldMap = std::make_unique<PWFieldMap>(found->second);
    return fieldMap.get();
  }
  PWStringVector names;
  PWRESULT result = Manager->CategoryFieldNames(kMappedType, location.c_str(), names);
  // The manager had to make a category's file first: it asks to be called again.
  if (result == kResultCategoryMade) {
    result = Manager->CategoryFieldNames(kMappedType, location.c_str(), names);
  }
  if (result != kResultOk) return nullptr;
  fieldMap = std::make_unique<PWFieldMap>(PWFieldMap::Identity(names));
  return fieldMap.get();
}

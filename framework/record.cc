#include "framework/record.h"

#include <cstring>

PWRecord::PWRecord(const PWRecord& other) : PWObject(other) {
  *this = other;
}

PWRecord& PWRecord::operator=(const PWRecord& other) {
  if (this == &other) return *this;
  texts = other.texts;
  stamps = other.stamps;
  numbers = other.numbers;
  pattern.reset(other.pattern == nullptr ? nullptr : other.pattern->Clone());
  fields = other.fields;
  fieldIndex = other.fieldIndex;
  return *this;
}

void PWRecord::SetText(PWPropertyId id, const char* text, std::uint32_t size) {
  const std::size_t length = text == nullptr ? 0 : strnlen(text, size);
  Text(id) = std::string_view(text, length);
}

const PWString* PWRecord::FindField(std::string_view name) const {
  const auto found = fieldIndex.find(name);
  return found == fieldIndex.end() ? nullptr : &fields[found->second].value;
}

void PWRecord::SetField(std::string_view name, std::string_view value) {
  const auto [at, isNew] = fieldIndex.try_emplace(std::string(name), fields.size());
  if (isNew) fields.push_back({std::string(name), PWString()});
  fields[at->second].value = value;
}

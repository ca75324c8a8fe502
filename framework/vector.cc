#include "framework/vector.h"

namespace {

PWRuntimeClass stringVectorClass("PWStringVector",
                                 []() -> PWObject* { return new PWStringVector; });

}  // namespace

PWObjectVector::PWObjectVector(const PWObjectVector& other) : PWObject(other) {
  *this = other;
}

PWObjectVector& PWObjectVector::operator=(const PWObjectVector& other) {
  if (this == &other) return *this;
  objects.clear();
  next = 0;
  walking = false;
  for (const auto& object : other.objects) Append(object->Clone(), false);
  return *this;
}

PWRESULT PWObjectVector::Append(PWObject* object, bool /*flag*/) {
  if (object == nullptr) return kResultFailed;
  objects.emplace_back(object);
  return kResultOk;
}

PWObject* PWObjectVector::First() {
  walking = true;
  next = 0;
  return Next();
}

PWObject* PWObjectVector::Next() {
  if (!walking || next >= objects.size()) return nullptr;
  return objects[next++].get();
}

std::uint32_t PWObjectVector::Index(const PWObject* object) const {
  for (std::uint32_t i = 0; i < objects.size(); ++i) {
    if (objects[i].get() == object) return i;
  }
  return kNotFound;
}

void PWObjectVector::Delete(std::uint32_t index) {
  if (index >= objects.size()) return;
  objects.erase(objects.begin() + index);
  if (index < next) --next;
}

void PWObjectVector::Serialize(PWArchive& archive) {
  archive << static_cast<std::int32_t>(objects.size());
  for (const auto& object : objects) object->Serialize(archive);
}

PWString* PWStringVector::FindString(const char* text) const {
  for (std::uint32_t i = 0; i < Count(); ++i) {
    if (*At(i) == text) return At(i);
  }
  return nullptr;
}

PWRuntimeClass* PWStringVector::RuntimeClass() {
  return &stringVectorClass;
}

PWObject* PWStringVector::Clone() {
  auto* copy = new PWStringVector;
  copy->PWObjectVector::operator=(*this);
  return copy;
}

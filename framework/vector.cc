#include "framework/vector.h"

#include <new>

namespace {

PWRuntimeClass stringVectorClass("PWStringVector",
                                 []() -> PWObject* { return new (std::nothrow) PWStringVector; });

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
  auto count = static_cast<std::int32_t>(objects.size());
  archive.Transfer(count);
  if (archive.IsLoading()) return Load(archive, count);
  for (const auto& object : objects) {
    const PWRuntimeClass* record = object->RuntimeClass();
    std::string name = record == nullptr ? "" : record->Name();
    archive.Transfer(name);
    object->Serialize(archive);
  }
}

void PWObjectVector::Load(PWArchive& archive, std::int32_t count) {
  *this = PWObjectVector();
  for (std::int32_t i = 0; i < count; ++i) {
    std::string name;
    archive.Transfer(name);
    if (name.empty()) return;
    const PWRuntimeClass* record = PWRuntimeClass::Find(name);
    PWObject* object = record == nullptr ? nullptr : record->Create();
    if (object == nullptr) return;
    object->Serialize(archive);
    Append(object, false);
  }
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

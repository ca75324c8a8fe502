#include "framework/string.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/text.h"

namespace {

PWRuntimeClass stringClass("PWString", []() -> PWObject* { return new (std::nothrow) PWString; });

}  // namespace

PWString& PWString::operator=(std::int32_t value) {
  return Assign(pw::FormatLong(value));
}

void PWString::Clear() {
  delete[] buffer;
  buffer = nullptr;
  length = 0;
  capacity = 0;
}

void PWString::Reserve(std::uint32_t size) {
  Clear();
  if (size == 0) return;
  buffer = new char[size]();
  capacity = size;
}

std::string_view PWString::View() const {
  if (IsEmpty()) return {};
  return pw::UpToZero(std::string_view(buffer, capacity));
}

PWString PWString::operator+(const char* text) const {
  PWString sum(*this);
  sum += text;
  return sum;
}

bool PWString::Load(const PWModuleRecord* instance, std::uint32_t id) {
  Clear();
  if (instance == nullptr) return false;
  const PWModuleString* end = instance->strings + instance->stringCount;
  const PWModuleString* found = std::lower_bound(
      instance->strings, end, id,
      [](const PWModuleString& entry, std::uint32_t n) { return entry.number < n; });
  if (found == end || found->number != id) return false;
  Assign(found->text);
  return true;
}

void PWString::Serialize(PWArchive& archive) {
  std::string text = Str();
  archive.Transfer(text);
  Assign(text);
}

PWRuntimeClass* PWString::RuntimeClass() {
  return &stringClass;
}

PWString& PWString::Assign(std::string_view text) {
  text = pw::UpToZero(text);
  // The new text may lie in the old buffer.
  char* made = nullptr;
  if (!text.empty()) {
    made = new char[text.size() + 1];
    std::memcpy(made, text.data(), text.size());
    made[text.size()] = '\0';
  }
  Clear();
  buffer = made;
  length = made == nullptr ? 0 : static_cast<std::uint32_t>(text.size() + 1);
  capacity = length;
  return *this;
}

PWString& PWString::Append(std::string_view text) {
  std::string sum;
  sum.reserve(View().size() + text.size());
  sum += View();
  sum += text;
  return Assign(sum);
}

void PWString::Swap(PWString& other) noexcept {
  std::swap(buffer, other.buffer);
  std::swap(length, other.length);
  std::swap(capacity, other.capacity);
}

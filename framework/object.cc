#include "framework/object.h"

#include "base/cursor.h"

namespace {

// Not a `ProcessWide`: the records are static objects, made and gone with their modules.
PWRuntimeClass* latestClass = nullptr;

}  // namespace

PWArchive& PWArchive::operator<<(std::int32_t value) {
  pw::ByteWriter writer;
  writer.I32(value);
  bytes += writer.Written();
  return *this;
}

PWArchive& PWArchive::operator>>(std::int32_t& value) {
  pw::ByteReader reader(bytes);
  reader.Seek(position);
  value = reader.I32();
  position = reader.Position();
  return *this;
}

void PWArchive::Transfer(std::int32_t& value) {
  if (loading) {
    *this >> value;
  } else {
    *this << value;
  }
}

void PWArchive::Transfer(std::uint16_t& value) {
  std::int32_t number = value;
  Transfer(number);
  value = static_cast<std::uint16_t>(number);
}

void PWArchive::Transfer(std::string& text) {
  auto size = static_cast<std::int32_t>(text.size());
  Transfer(size);
  if (!loading) {
    bytes += text;
    return;
  }
  pw::ByteReader reader(bytes);
  reader.Seek(position);
  text = reader.Take(static_cast<std::uint32_t>(size));
  position = reader.Position();
}

PWRuntimeClass::PWRuntimeClass(const char* name, Factory factory)
    : name(name), factory(factory), older(latestClass) {
  latestClass = this;
}

PWRuntimeClass::~PWRuntimeClass() {
  PWRuntimeClass** link = &latestClass;
  while (*link != this) link = &(*link)->older;
  *link = older;
}

PWRuntimeClass* PWRuntimeClass::Find(std::string_view name) {
  for (PWRuntimeClass* record = latestClass; record != nullptr; record = record->older) {
    if (record->name == name) return record;
  }
  return nullptr;
}

#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/object.h"
#include "framework/result.h"
#include "framework/string.h"

// An ordered collection that owns its objects and has one cursor.
class PWObjectVector : public PWObject {
 public:
  // `Index` of an object that isn't in the vector.
  static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;

  PWObjectVector() = default;
  PWObjectVector(const PWObjectVector& other);
  PWObjectVector& operator=(const PWObjectVector& other);

  // Adds at the end and takes the object over. Null isn't added: result 1. The flag has no meaning
  // here.
  PWRESULT Append(PWObject* object, bool flag);

  // Puts the cursor on the first object and returns it, or null.
  PWObject* First();

  // Moves the cursor on and returns the object there; null at the end, where it stays, and before
  // any `First`.
  PWObject* Next();

  std::uint32_t Index(const PWObject* object) const;

  // Removes and frees that object. A walk that stands on it or behind it goes on where it was. A
  // position beyond the end changes nothing.
  void Delete(std::uint32_t index);

  std::uint32_t Count() const { return static_cast<std::uint32_t>(objects.size()); }

  // The object at a position, or null beyond the end. Leaves the cursor alone.
  PWObject* At(std::uint32_t index) const {
    return index < objects.size() ? objects[index].get() : nullptr;
  }

  // Each object's class name and content, in order. Loading replaces what is there, and ends before
  // an object whose class isn't known.
  void Serialize(PWArchive& archive) override;

 private:
  void Load(PWArchive& archive, std::int32_t count);

  std::vector<std::unique_ptr<PWObject>> objects;
  std::uint32_t next = 0;  // of the walk
  bool walking = false;
};

// Elements are `PWString`.
class PWStringVector : public PWObjectVector {
 public:
  using PWObjectVector::Append;

  // Adds a new string of that text.
  void AppendText(std::string_view text) { Append(new PWString(text), false); }

  // The first string of exactly that text, or null. Leaves the cursor alone.
  PWString* FindString(const char* text) const;

  PWString* At(std::uint32_t index) const {
    return static_cast<PWString*>(PWObjectVector::At(index));
  }

  PWRuntimeClass* RuntimeClass() override;
  PWObject* Clone() override;
};

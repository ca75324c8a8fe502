#pragma once

#include <cstdint>
#include <string>

class PWArchive;
class PWRuntimeClass;

// Base of all that passes between the engine and the module. The five operations stand first in every
// class, in this order; the defaults are those of a class that has nothing to serialise or compare.
class PWObject {
 public:
  virtual ~PWObject() = default;

  virtual void Serialize(PWArchive& /*archive*/) {}

  // The class's record, or null where it has none. Not owned by the caller.
  virtual PWRuntimeClass* RuntimeClass() { return nullptr; }

  // A new object of the same class and content, owned by the caller; null where the class can't be
  // cloned.
  virtual PWObject* Clone() { return nullptr; }

  // 0 for equal content. The default is never equal.
  virtual std::int32_t Compare(PWObject* /*other*/) { return -1; }
};

// A stream of serialised values, in memory: 32-bit numbers, little-endian.
class PWArchive {
 public:
  PWArchive& operator<<(std::int32_t value);

  // Reads the next number; beyond the end it is 0.
  PWArchive& operator>>(std::int32_t& value);

 private:
  std::string bytes;
  std::size_t position = 0;
};

// What the engine knows of a class: its name, and how to make one.
class PWRuntimeClass {
 public:
  using Factory = PWObject* (*)();

  // `name` must outlive the record.
  PWRuntimeClass(const char* name, Factory factory) : name(name), factory(factory) {}
  virtual ~PWRuntimeClass() = default;

  const char* Name() const { return name; }

  // A new default object, owned by the caller, or null.
  PWObject* Create() const { return factory(); }

 private:
  const char* name;
  Factory factory;
};

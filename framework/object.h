#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

class PWArchive;
class PWRuntimeClass;

// Base of all that passes between the engine and the module. The five operations stand first in
// every class, in this order; the defaults are those of a class that has nothing to serialise or
// compare.
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

// A stream of serialised values, in memory: 32-bit numbers, little-endian, and texts with their
// length before them. It either stores or loads.
class PWArchive {
 public:
  PWArchive() = default;  // to store into
  explicit PWArchive(std::string stored) : bytes(std::move(stored)), loading(true) {}

  bool IsLoading() const { return loading; }
  const std::string& Bytes() const { return bytes; }

  PWArchive& operator<<(std::int32_t value);

  // Reads the next number; beyond the end it is 0.
  PWArchive& operator>>(std::int32_t& value);

  // Stores the value, or loads it from what comes next: what is beyond the end is 0, or empty.
  void Transfer(std::int32_t& value);
  void Transfer(std::uint16_t& value);
  void Transfer(std::string& text);

 private:
  std::string bytes;
  std::size_t position = 0;
  bool loading = false;
};

// What the engine knows of a class: its name, and how to make one.
class PWRuntimeClass {
 public:
  using Factory = PWObject* (*)();

  // `name` must outlive the record. A record is known to `Find` for as long as it lives.
  PWRuntimeClass(const char* name, Factory factory);
  virtual ~PWRuntimeClass();
  PWRuntimeClass(const PWRuntimeClass&) = delete;
  PWRuntimeClass& operator=(const PWRuntimeClass&) = delete;

  // The latest record of that name, or null.
  static PWRuntimeClass* Find(std::string_view name);

  const char* Name() const { return name; }

  // A new default object, owned by the caller, or null.
  PWObject* Create() const { return factory(); }

 private:
  const char* name;
  Factory factory;
  PWRuntimeClass* older;  // the records form a list, the latest first
};

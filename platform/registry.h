#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

// The registry's local-machine part: keys that hold named, typed values.
//
// Key paths have backslashes between their parts ("SOFTWARE\Gullwing\..."), without the name of the
// root. Key and value names ignore letter case and keep the one that they were made with. A store
// that can't hold a name, as one with a line break in a text file, refuses to make it. No operation
// throws; all are called on the engine's one thread.
namespace pw {

// The registry's own type numbers. A value may have one that isn't listed here.
enum class RegistryType : std::uint32_t {
  kNone = 0,
  kText = 1,            // REG_SZ
  kExpandableText = 2,  // REG_EXPAND_SZ
  kBinary = 3,          // REG_BINARY
  kNumber = 4,          // REG_DWORD, four bytes, little-endian
};

struct RegistryValue {
  RegistryType type = RegistryType::kNone;
  std::string data;  // a text is single-byte, exactly as long as it was set, without a terminator

  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

RegistryValue TextValue(std::string_view text);
RegistryValue NumberValue(std::uint32_t number);

// Whether a text can be kept in one line: it holds no control character but the tab. Names of keys
// and values that can't are refused by the stores here.
bool IsRegistryLine(std::string_view text);

enum class RegistryAccess { kRead, kReadWrite };

// An open key. Destruction closes it; what was written is then in the store for other processes to
// see.
class RegistryKey {
 public:
  virtual ~RegistryKey() = default;

  // Nothing if there is no value of that name. The empty name is the key's default value.
  virtual std::optional<RegistryValue> Read(const std::string& name) = 0;

  // False if the key was opened for reading only, or the store didn't take the value or its name.
  virtual bool Write(const std::string& name, const RegistryValue& value) = 0;
};

class Registry {
 public:
  virtual ~Registry() = default;

  // Null if there is no such key, or it was asked for writing and the store can only be read. The
  // caller owns the key, and closes it before the registry goes.
  virtual std::unique_ptr<RegistryKey> Open(const std::string& path, RegistryAccess access) = 0;

  // Opens a key for reading and writing, and makes it, with those above it, where it is missing.
  // Null if the store can only be read, or can't hold the name.
  virtual std::unique_ptr<RegistryKey> Create(const std::string& path) = 0;
};

// A text value of at most `limit` bytes, up to its first zero byte; nothing if there is none, it is
// of another type, or it is longer.
std::optional<std::string> ReadText(RegistryKey& key, const std::string& name,
                                    std::size_t limit = SIZE_MAX);

// A number value; nothing if there is none or it is of another type.
std::optional<std::uint32_t> ReadNumber(RegistryKey& key, const std::string& name);

// Passes everything on, so that a test overrides only what is to differ.
class RegistryWrapper : public Registry {
 public:
  explicit RegistryWrapper(Registry& target) : target(target) {}

  std::unique_ptr<RegistryKey> Open(const std::string& path, RegistryAccess access) override {
    return target.Open(path, access);
  }
  std::unique_ptr<RegistryKey> Create(const std::string& path) override {
    return target.Create(path);
  }

 private:
  Registry& target;
};

// The same for one open key, which it owns.
class RegistryKeyWrapper : public RegistryKey {
 public:
  explicit RegistryKeyWrapper(std::unique_ptr<RegistryKey> target) : target(std::move(target)) {}

  std::optional<RegistryValue> Read(const std::string& name) override { return target->Read(name); }
  bool Write(const std::string& name, const RegistryValue& value) override {
    return target->Write(name, value);
  }

 private:
  std::unique_ptr<RegistryKey> target;
};

}  // namespace pw

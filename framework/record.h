#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/string.h"
#include "framework/values.h"

// A slot of the generic record. The typed records give the numbers their meaning; texts, stamps and
// numbers are counted apart.
enum class PWPropertyId : std::int32_t {};

// The engine's generic record: typed properties, one owned object, and a contact's named fields. A
// property that was never set is the fresh one: an empty text, a stamp or a number of zeros.
class PWRecord : public PWObject {
 public:
  struct Field {
    std::string name;
    PWString value;
  };

  // The size of a text that is to be taken whole.
  static constexpr std::uint32_t kWholeText = 0xFFFFFFFF;

  PWRecord() = default;
  PWRecord(const PWRecord& other);

  // A deep copy.
  PWRecord& operator=(const PWRecord& other);

  // Live references, valid until the record is assigned or destroyed.
  PWString& Text(PWPropertyId id) { return texts[id]; }
  PWDateTimeStamp& Stamp(PWPropertyId id) { return stamps[id]; }
  std::int32_t& Number(PWPropertyId id) { return numbers[id]; }

  // Copies a text in: up to its zero byte, and `size` bytes at most. Null is the empty text.
  void SetText(PWPropertyId id, const char* text, std::uint32_t size = kWholeText);

  // A number as yes or no: yes is stored as 1, and all but 0 is yes.
  bool Flag(PWPropertyId id) { return Number(id) != 0; }
  void SetFlag(PWPropertyId id, bool value) { Number(id) = value ? 1 : 0; }

  // The recurrence pattern of an event, or null. It must be cloneable.
  PWObject* Pattern() const { return pattern.get(); }
  void SetPattern(std::unique_ptr<PWObject> newPattern) { pattern = std::move(newPattern); }

  // A contact's fields in the order in which they were first set.
  const std::vector<Field>& Fields() const { return fields; }

  // Null for a name that was never set. Valid until a field is set.
  const PWString* FindField(std::string_view name) const;
  void SetField(std::string_view name, std::string_view value);

 private:
  std::map<PWPropertyId, PWString> texts;
  std::map<PWPropertyId, PWDateTimeStamp> stamps;
  std::map<PWPropertyId, std::int32_t> numbers;
  std::unique_ptr<PWObject> pattern;
  std::vector<Field> fields;
  std::map<std::string, std::size_t, std::less<>> fieldIndex;
};

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "framework/values.h"

namespace pw {

using Json = nlohmann::ordered_json;

// What was read. Its members have no order, as finding a place for each in one would take a time
// that grows with the square of their number.
using JsonInput = nlohmann::json;

// Reads the members of one JSON object as the engine's values.
//
// The first member that is missing or isn't what it should be is remembered, and that read and all
// later ones give empty values: a caller reads all it needs and asks once. Texts are given in the
// organiser's code page. The object isn't owned and must outlive the reader.
class JsonFields {
 public:
  explicit JsonFields(const JsonInput& object);

  bool Has(const char* name) const { return object.is_object() && object.contains(name); }

  std::string Text(const char* name);
  std::vector<std::string> Texts(const char* name);
  bool Bool(const char* name);

  // An array of numbers from 0 to 255.
  std::string Bytes(const char* name);

  std::int32_t Signed(const char* name);

  // A whole number within these bounds.
  std::int64_t Whole(const char* name, std::int64_t least, std::int64_t most);

  // As `StampText` writes it, or the date alone. The fields needn't be a date of the calendar.
  PWDateTimeStamp Stamp(const char* name);

  // A negative number is taken modulo 2^32.
  std::uint32_t Unsigned(const char* name);

  // The object of that name, or an empty one.
  const JsonInput& Object(const char* name);

  // The objects of an array, which live as long as what is read.
  std::vector<const JsonInput*> Objects(const char* name);

  // Pairs of texts, each written as an array of two.
  std::vector<std::pair<std::string, std::string>> Pairs(const char* name);

  bool Failed() const { return !problem.empty(); }
  const std::string& Problem() const { return problem; }
  void Fail(std::string what);

 private:
  // Null if it is missing, or something has failed before.
  const JsonInput* Member(const char* name);
  std::string ToText(const JsonInput& value, const char* name);

  const JsonInput& object;
  std::string problem;
};

// Whether brackets outside of texts stand deeper in each other than any call or record has them.
// What is deeper isn't to be parsed, as that would take far more memory than the text itself.
bool IsTooDeep(std::string_view json);

// A text of the organiser's code page as JSON writes it.
Json JsonText(std::string_view text);

// "YYYY-MM-DDTHH:MM:SS" from the bare fields, and the date alone.
std::string StampText(const PWDateTimeStamp& stamp);
std::string DateText(const PWDateTimeStamp& stamp);

// One line, whatever bytes are in it.
std::string JsonLine(const Json& value);

}  // namespace pw

#include "host/json_fields.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"
#include "host/formats/stamp_text.h"

namespace pw {
namespace {

constexpr int kDeepest = 32;

std::string Quoted(const char* name) {
  return "\"" + std::string(name) + "\"";
}

const JsonInput& EmptyObject() {
  static const JsonInput empty = JsonInput::object();
  return empty;
}

}  // namespace

JsonFields::JsonFields(const JsonInput& object) : object(object) {
  if (!object.is_object()) Fail("not a JSON object");
}

void JsonFields::Fail(std::string what) {
  if (problem.empty()) problem = std::move(what);
}

const JsonInput* JsonFields::Member(const char* name) {
  if (Failed()) return nullptr;
  const auto found = object.find(name);
  if (found != object.end()) return &*found;
  Fail(Quoted(name) + " is missing");
  return nullptr;
}

std::string JsonFields::ToText(const JsonInput& value, const char* name) {
  if (!value.is_string()) {
    Fail(Quoted(name) + " must be a text");
    return {};
  }
  const auto& utf8 = value.get_ref<const std::string&>();
  const auto text = Utf8ToCodePage(utf8);
  if (!text) {
    Fail(Quoted(name) + " has a character outside of code page 1252");
    return {};
  }
  // The engine's texts end at a zero byte, so it can't be passed on.
  if (text->find('\0') != std::string::npos) {
    Fail(Quoted(name) + " holds a zero character");
    return {};
  }
  return *text;
}

std::string JsonFields::Text(const char* name) {
  const JsonInput* value = Member(name);
  return value == nullptr ? std::string() : ToText(*value, name);
}

std::vector<std::string> JsonFields::Texts(const char* name) {
  std::vector<std::string> texts;
  const JsonInput* value = Member(name);
  if (value == nullptr) return texts;
  if (!value->is_array()) {
    Fail(Quoted(name) + " must be an array of texts");
    return texts;
  }
  const bool allTexts = std::all_of(value->begin(), value->end(),
                                    [](const JsonInput& item) { return item.is_string(); });
  if (!allTexts) {
    Fail(Quoted(name) + " must be an array of texts");
    return texts;
  }
  for (const JsonInput& item : *value) texts.push_back(ToText(item, name));
  return texts;
}

std::string JsonFields::Bytes(const char* name) {
  const JsonInput* value = Member(name);
  if (value == nullptr) return {};
  const bool areBytes =
      value->is_array() && std::all_of(value->begin(), value->end(), [](const JsonInput& item) {
        return item.is_number_unsigned() && item.get<std::uint64_t>() <= 0xFF;
      });
  if (!areBytes) {
    Fail(Quoted(name) + " must be an array of numbers from 0 to 255");
    return {};
  }
  std::string bytes;
  for (const JsonInput& item : *value) {
    bytes += static_cast<char>(static_cast<unsigned char>(item.get<std::uint64_t>()));
  }
  return bytes;
}

bool JsonFields::Bool(const char* name) {
  const JsonInput* value = Member(name);
  if (value == nullptr) return false;
  if (!value->is_boolean()) {
    Fail(Quoted(name) + " must be true or false");
    return false;
  }
  return value->get<bool>();
}

std::int32_t JsonFields::Signed(const char* name) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Whole(name, Limits::min(), Limits::max()));
}

std::int64_t JsonFields::Whole(const char* name, std::int64_t least, std::int64_t most) {
  const JsonInput* value = Member(name);
  if (value == nullptr) return 0;
  // What was read without a sign may be too large for a signed number of 64 bits.
  const bool fits = value->is_number_unsigned()
                        ? value->get<std::uint64_t>() <= static_cast<std::uint64_t>(most)
                        : value->is_number_integer() && value->get<std::int64_t>() >= least;
  if (!fits) {
    Fail(Quoted(name) + " must be a whole number from " + std::to_string(least) + " to " +
         std::to_string(most));
    return 0;
  }
  return value->get<std::int64_t>();
}

std::uint32_t JsonFields::Unsigned(const char* name) {
  const JsonInput* value = Member(name);
  if (value == nullptr) return 0;
  if (value->is_number_unsigned()) {
    const auto number = value->get<std::uint64_t>();
    if (number <= std::numeric_limits<std::uint32_t>::max()) {
      return static_cast<std::uint32_t>(number);
    }
  } else if (value->is_number_integer()) {
    const auto number = value->get<std::int64_t>();
    if (number < 0) return static_cast<std::uint32_t>(number);
  }
  Fail(Quoted(name) + " must be a whole number below 4294967296");
  return 0;
}

PWDateTimeStamp JsonFields::Stamp(const char* name) {
  constexpr std::size_t kDateLength = 10;
  std::string text = Text(name);
  if (Failed()) return {};
  if (text.size() == kDateLength) text += "T00:00:00";
  if (!HasForm(text, "9999-99-99T99:99:99")) {
    Fail(Quoted(name) + " must be a date as 1998-03-02, or 1998-03-02T12:00:00");
    return {};
  }
  const auto part = [&](std::size_t at) {
    return static_cast<std::uint8_t>(ParseLong(std::string_view(text).substr(at, 2)));
  };
  return {
      static_cast<std::uint16_t>(ParseLong(text)), part(5), part(8), part(11), part(14), part(17)};
}

const JsonInput& JsonFields::Object(const char* name) {
  const JsonInput* value = Member(name);
  if (value == nullptr) return EmptyObject();
  if (value->is_object()) return *value;
  Fail(Quoted(name) + " must be an object");
  return EmptyObject();
}

std::vector<const JsonInput*> JsonFields::Objects(const char* name) {
  std::vector<const JsonInput*> objects;
  const JsonInput* value = Member(name);
  if (value == nullptr) return objects;
  const bool allObjects =
      value->is_array() && std::all_of(value->begin(), value->end(),
                                       [](const JsonInput& item) { return item.is_object(); });
  if (!allObjects) {
    Fail(Quoted(name) + " must be an array of objects");
    return objects;
  }
  for (const JsonInput& item : *value) objects.push_back(&item);
  return objects;
}

std::vector<std::pair<std::string, std::string>> JsonFields::Pairs(const char* name) {
  std::vector<std::pair<std::string, std::string>> pairs;
  const JsonInput* value = Member(name);
  if (value == nullptr) return pairs;
  if (!value->is_array()) {
    Fail(Quoted(name) + " must be an array of pairs");
    return pairs;
  }
  for (const JsonInput& pair : *value) {
    if (!pair.is_array() || pair.size() != 2) {
      Fail("each of " + Quoted(name) + " must be a pair of texts");
      return pairs;
    }
    std::string first = ToText(pair[0], name);
    pairs.emplace_back(std::move(first), ToText(pair[1], name));
  }
  return pairs;
}

bool IsTooDeep(std::string_view json) {
  int depth = 0;
  bool inText = false;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (inText && c == '\\') ++i;
    if (c == '"') inText = !inText;
    if (inText) continue;
    if (c == '[' || c == '{') ++depth;
    if (c == ']' || c == '}') --depth;
    if (depth > kDeepest) return true;
  }
  return false;
}

Json JsonText(std::string_view text) {
  return CodePageToUtf8(text);
}

std::string StampText(const PWDateTimeStamp& stamp) {
  return DateText(stamp) + Format("T%02u:%02u:%02u", unsigned{stamp.hour}, unsigned{stamp.minute},
                                  unsigned{stamp.second});
}

std::string DateText(const PWDateTimeStamp& stamp) {
  return Format("%04u-%02u-%02u", unsigned{stamp.year}, unsigned{stamp.month}, unsigned{stamp.day});
}

std::string JsonLine(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace pw

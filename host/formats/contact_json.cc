#include "host/formats/contact_json.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <utility>

#include <nlohmann/json.hpp>

namespace pw {
namespace {

using Json = nlohmann::ordered_json;

void AppendText(std::string& out, const std::string& text) {
  out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool HasRepeatedName(const Contact& contact) {
  std::unordered_set<std::string_view> names;
  return std::any_of(contact.fields.begin(), contact.fields.end(),
                     [&](const auto& field) { return !names.insert(field.first).second; });
}

void AppendFields(std::string& out, const Contact& contact) {
  const bool pairs = HasRepeatedName(contact);
  out += pairs ? '[' : '{';
  std::string_view separator;
  for (const auto& [name, value] : contact.fields) {
    out += std::exchange(separator, ", ");
    if (pairs) out += '[';
    AppendText(out, name);
    out += pairs ? ", " : ": ";
    AppendText(out, value);
    if (pairs) out += ']';
  }
  out += pairs ? ']' : '}';
}

// Follows the file as it is parsed, so that names which repeat aren't lost and no tree is built.
// Each call returns whether to go on.
class Reader final : public nlohmann::json_sax<Json> {
 public:
  explicit Reader(JsonContacts& file) : file(file) {}

  bool null() override { return OtherValue(); }
  bool boolean(bool) override { return OtherValue(); }
  bool number_integer(std::int64_t) override { return OtherValue(); }
  bool number_unsigned(std::uint64_t) override { return OtherValue(); }
  bool number_float(double, const std::string&) override { return OtherValue(); }
  bool binary(Json::binary_t&) override { return OtherValue(); }

  bool string(std::string& text) override {
    switch (place) {
      case Place::kId:
        contact.id = std::move(text);
        return Enter(Place::kContact);
      case Place::kStamp:
        contact.stamp = std::move(text);
        return Enter(Place::kContact);
      case Place::kFieldValue:
        contact.fields.back().second = std::move(text);
        return Enter(Place::kFieldsObject);
      case Place::kPairName:
        contact.fields.emplace_back(std::move(text), std::string());
        return Enter(Place::kPairValue);
      case Place::kPairValue:
        contact.fields.back().second = std::move(text);
        return Enter(Place::kPairEnd);
      default:
        return OtherValue();
    }
  }

  bool start_object(std::size_t) override {
    if (place == Place::kContacts) {
      contact = Contact();
      return Enter(Place::kContact);
    }
    if (place == Place::kFields) return Enter(Place::kFieldsObject);
    return StartOther();
  }

  bool start_array(std::size_t) override {
    if (place == Place::kFile) return Enter(Place::kContacts);
    if (place == Place::kFields) return Enter(Place::kFieldsPairs);
    if (place == Place::kFieldsPairs) return Enter(Place::kPairName);
    return StartOther();
  }

  bool key(std::string& name) override {
    if (place == Place::kOther) return true;
    if (place == Place::kFieldsObject) {
      contact.fields.emplace_back(std::move(name), std::string());
      return Enter(Place::kFieldValue);
    }
    if (name == "id") return Enter(Place::kId);
    if (name == "changed") return Enter(Place::kStamp);
    return Enter(name == "fields" ? Place::kFields : Place::kOther);
  }

  bool end_object() override {
    if (place == Place::kOther) return EndOther();
    if (place == Place::kFieldsObject) return Enter(Place::kContact);
    file.contacts.push_back(std::move(contact));
    return Enter(Place::kContacts);
  }

  bool end_array() override {
    switch (place) {
      case Place::kOther:
        return EndOther();
      case Place::kPairEnd:
        return Enter(Place::kFieldsPairs);
      case Place::kFieldsPairs:
        return Enter(Place::kContact);
      case Place::kContacts:
        return Enter(Place::kFile);
      default:
        return Unexpected();
    }
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception&) override {
    badPosition = position;
    file.error = "no JSON";
    return false;
  }

  // Where the parser met what is no JSON, in bytes from 1; 0 if it is JSON.
  std::size_t BadPosition() const { return badPosition; }

 private:
  enum class Place {
    kFile,
    kContacts,
    kContact,
    kId,
    kStamp,
    kFields,
    kFieldsObject,
    kFieldValue,
    kFieldsPairs,
    kPairName,
    kPairValue,
    kPairEnd,
    kOther,  // in the value of an unknown member
  };

  bool Enter(Place next) {
    place = next;
    return true;
  }

  bool OtherValue() {
    if (place != Place::kOther) return Unexpected();
    if (depth == 0) place = Place::kContact;
    return true;
  }

  bool StartOther() {
    if (place != Place::kOther) return Unexpected();
    ++depth;
    return true;
  }

  bool EndOther() {
    --depth;
    return OtherValue();
  }

  bool Unexpected() {
    const char* wanted = "two texts, name and value, for each field";
    if (place == Place::kFile) wanted = "an array of contacts";
    if (place == Place::kContacts) wanted = "an object";
    if (place == Place::kId) wanted = "a text as id";
    if (place == Place::kStamp) wanted = "a text as time of change";
    if (place == Place::kFields) wanted = "fields as an object or as pairs";
    if (place == Place::kFieldValue) wanted = "a text as each field's value";
    file.error = "contact " + std::to_string(file.contacts.size() + 1) + ": expected " + wanted;
    return false;
  }

  JsonContacts& file;
  Contact contact;
  Place place = Place::kFile;
  std::size_t depth = 0;
  std::size_t badPosition = 0;
};

}  // namespace

std::string WriteContactsJson(const std::vector<Contact>& contacts) {
  std::string out = "[";
  std::string_view separator;
  for (const Contact& contact : contacts) {
    out += std::exchange(separator, ",");
    out += "\n  {\"id\": ";
    AppendText(out, contact.id);
    out += ", \"changed\": ";
    AppendText(out, contact.stamp);
    out += ", \"fields\": ";
    AppendFields(out, contact);
    out += '}';
  }
  return out + (contacts.empty() ? "]\n" : "\n]\n");
}

JsonContacts ReadContactsJson(std::string_view text) {
  JsonContacts file;
  Reader reader(file);
  Json::sax_parse(text, &reader);
  if (reader.BadPosition() != 0) {
    const std::string_view before = text.substr(0, reader.BadPosition() - 1);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    file.error = "line " + std::to_string(line) + ": " + file.error;
  }
  return file;
}

}  // namespace pw

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
  Reader(std::string_view text, JsonContacts& file) : text(text), file(file) {}

  bool null() override { return OtherValue(); }
  bool boolean(bool) override { return OtherValue(); }
  bool number_integer(std::int64_t) override { return OtherValue(); }
  bool number_unsigned(std::uint64_t) override { return OtherValue(); }
  bool number_float(double, const std::string&) override { return OtherValue(); }
  bool binary(Json::binary_t&) override { return OtherValue(); }

  bool string(std::string& value) override {
    switch (place) {
      case Place::kId:
        contact.id = std::move(value);
        return Enter(Place::kContact);
      case Place::kStamp:
        contact.stamp = std::move(value);
        return Enter(Place::kContact);
      case Place::kFieldValue:
        contact.fields.back().second = std::move(value);
        return Enter(Place::kFieldsObject);
      case Place::kPairName:
        contact.fields.emplace_back(std::move(value), std::string());
        return Enter(Place::kPairValue);
      case Place::kPairValue:
        contact.fields.back().second = std::move(value);
        return Enter(Place::kPairEnd);
      default:
        return OtherValue();
    }
  }

  bool start_object(std::size_t) override {
    ++depth;
    if (place == Place::kContacts) return BeginContact();
    if (place == Place::kFields) return BeginFields(Place::kFieldsObject);
    return StartOther();
  }

  bool start_array(std::size_t) override {
    ++depth;
    if (place == Place::kFile) return Enter(Place::kContacts);
    if (place == Place::kFields) return BeginFields(Place::kFieldsPairs);
    if (place == Place::kFieldsPairs) return Enter(Place::kPairName);
    return StartOther();
  }

  bool key(std::string& name) override {
    if (place == Place::kOther || place == Place::kWrong) return true;
    if (place == Place::kFieldsObject) {
      contact.fields.emplace_back(std::move(name), std::string());
      return Enter(Place::kFieldValue);
    }
    if (name == "id") return Enter(Place::kId);
    if (name == "changed") return Enter(Place::kStamp);
    if (name == "fields") return Enter(Place::kFields);
    remarks.push_back("\"" + name + "\" is no member of a contact, and is left out");
    return Enter(Place::kOther);
  }

  bool end_object() override {
    --depth;
    if (place == Place::kOther) return OtherValue();
    if (place == Place::kWrong) return EndWrong();
    if (place == Place::kFieldsObject) return Enter(Place::kContact);
    EndContact();
    return Enter(Place::kContacts);
  }

  bool end_array() override {
    --depth;
    switch (place) {
      case Place::kOther:
        return OtherValue();
      case Place::kWrong:
        return EndWrong();
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
    file.errors.Add(LineOf(text, position), "no JSON, and reading ends there");
    return false;
  }

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
    kWrong,  // in what is left of a contact that isn't of the form
  };

  bool Enter(Place next) {
    place = next;
    return true;
  }

  bool BeginContact() {
    ++number;
    contact = Contact();
    remarks.clear();
    hasFields = false;
    return Enter(Place::kContact);
  }

  bool BeginFields(Place next) {
    hasFields = true;
    return Enter(next);
  }

  void EndContact() {
    if (!hasFields) return Report("it has no \"fields\", and is left out");
    if (file.contacts.size() == kMostContacts) return Report(kTooManyContacts);
    if (!remarks.empty()) file.remarks[file.contacts.size()] = std::move(remarks);
    file.contacts.push_back(std::move(contact));
  }

  bool OtherValue() {
    if (place == Place::kWrong) return true;
    if (place != Place::kOther) return Unexpected();
    if (depth == kDepthInContact) place = Place::kContact;
    return true;
  }

  bool StartOther() { return place == Place::kOther || place == Place::kWrong || Unexpected(); }

  bool EndWrong() { return Enter(depth < kDepthInContact ? Place::kContacts : Place::kWrong); }

  // The rest of the contact is passed over.
  bool Unexpected() {
    const char* wanted = "two texts, name and value, for each field";
    if (place == Place::kFile) {
      file.errors.Add("this is no JSON array of contacts");
      return false;
    }
    if (place == Place::kContacts) {
      ++number;
      wanted = "an object";
    }
    if (place == Place::kId) wanted = "a text as id";
    if (place == Place::kStamp) wanted = "a text as time of change";
    if (place == Place::kFields) wanted = "fields as an object or as pairs";
    if (place == Place::kFieldValue) wanted = "a text as each field's value";
    Report(std::string("expected ") + wanted + ", and it is left out");
    return EndWrong();
  }

  void Report(const std::string& what) {
    file.errors.Add("contact " + std::to_string(number) + ": " + what);
  }

  static constexpr std::size_t kDepthInContact = 2;

  std::string_view text;
  JsonContacts& file;
  std::size_t number = 0;  // of the contact, from 1
  Contact contact;
  std::vector<std::string> remarks;
  bool hasFields = false;
  Place place = Place::kFile;
  std::size_t depth = 0;  // open brackets
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
  Reader reader(text, file);
  Json::sax_parse(text, &reader);
  return file;
}

}  // namespace pw

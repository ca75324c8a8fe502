#include <map>
#include <optional>
#include <utility>

#include "host/formats/content_line.h"
#include "host/formats/record_uid.h"
#include "host/formats/stamp_text.h"
#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"
#include "host/formats/vcard.h"
#include "host/formats/vcard_fields.h"
#include "host/formats/vcard_text.h"

namespace pw {
namespace {

using Parameters = std::vector<ContentParameter>;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// Whether the property can hold the text and give it back as it is.
bool Fits(CardProperty property, std::string_view text) {
  if (!IsPlainText(text)) return false;
  if (property == CardProperty::kBirthday) return IsDate(text);
  // Addresses of the web stand without escapes: a comma belongs to them.
  if (property == CardProperty::kWeb) return text.find_first_of("\\\r\n") == std::string_view::npos;
  // A card must show a name.
  if (property == CardProperty::kFormattedName) return !IsBlank(text);
  return true;
}

// Whether a field's name can stand in a line.
bool IsPlainName(std::string_view name) {
  return IsPlainText(name) && name.find('\n') == std::string_view::npos;
}

std::string ValueOf(CardProperty property, std::string_view text) {
  return property == CardProperty::kWeb ? std::string(text) : EscapeText(WithLineFeeds(text));
}

Parameters TypesOf(const CardSlot& slot) {
  std::vector<std::string> types;
  if (slot.property == CardProperty::kMail) types.emplace_back("INTERNET");
  if (slot.place == CardPlace::kHome) types.emplace_back("HOME");
  if (slot.place == CardPlace::kWork) types.emplace_back("WORK");
  if (slot.property == CardProperty::kPhone) {
    constexpr const char* kKinds[] = {"VOICE", "CELL", "FAX", "PAGER", "CAR"};
    types.emplace_back(kKinds[slot.part]);
  }
  if (types.empty()) return {};
  return {{"TYPE", std::move(types)}};
}

class CardWriter {
 public:
  CardWriter(std::string& out, const Contact& contact) : out(out), contact(contact) {
    for (const auto& [name, value] : contact.fields) names.push_back(name);
    slots = SlotsOfFields(names);
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string& value = contact.fields[i].second;
      if (!slots[i] || value.empty() || !Fits(slots[i]->property, value)) continue;
      taken.emplace(*slots[i], i);
    }
  }

  void Write(std::string_view fileIdentity) {
    Line("BEGIN", "VCARD");
    Line("VERSION", "3.0");
    Line("PRODID", "-//Pairwise//Contacts//EN");
    Line("UID", MakeRecordUid(fileIdentity, contact.id));
    if (IsStamp(contact.stamp)) Line("REV", contact.stamp);
    WriteFormattedName();
    WriteProperty({CardProperty::kName});
    WriteOtherProperties();
    WriteFieldList();
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (NeedsOwnLine(i)) WriteField(i);
    }
    Line("END", "VCARD");
  }

 private:
  void Line(std::string_view name, std::string value, Parameters parameters = {}) {
    AppendContentLine(out, {{}, std::string(name), std::move(parameters), std::move(value)});
  }

  // The text that a standard property holds there; empty if none does.
  std::string_view TextAt(const CardSlot& slot) const {
    const auto found = taken.find(slot);
    return found == taken.end() ? std::string_view() : contact.fields[found->second].second;
  }

  std::string PersonName() const {
    std::string name;
    for (const std::uint8_t part :
         {kNamePrefix, kGivenName, kMiddleName, kFamilyName, kNameSuffix}) {
      const std::string_view text = TextAt({CardProperty::kName, CardPlace::kAny, part});
      if (IsBlank(text)) continue;
      if (!name.empty()) name += ' ';
      name += text;
    }
    return name;
  }

  // The one property that must not be empty.
  void WriteFormattedName() {
    std::string name(TextAt({CardProperty::kFormattedName}));
    if (name.empty()) name = PersonName();
    if (name.empty()) name = TextAt({CardProperty::kOrganisation});
    if (IsBlank(name)) name = "Unnamed";
    Line("FN", ValueOf(CardProperty::kFormattedName, name));
  }

  void WriteOtherProperties() {
    std::optional<CardSlot> structured;  // the last one that was written
    for (const auto& [slot, field] : taken) {
      if (slot.property <= CardProperty::kName) continue;
      const CardSlot whole = {slot.property, slot.place};
      if (FormOf(slot.property).components == 1) {
        WriteProperty(slot);
      } else if (structured != whole) {
        WriteProperty(whole);
        structured = whole;
      }
    }
  }

  // A structured one with all its components, from part 0 on.
  void WriteProperty(CardSlot slot) {
    const CardPropertyForm& form = FormOf(slot.property);
    const Parameters types = TypesOf(slot);
    std::string value = ValueOf(slot.property, TextAt(slot));
    for (slot.part = 1; slot.part < form.components; ++slot.part) {
      value += ';';
      value += ValueOf(slot.property, TextAt(slot));
    }
    Line(form.name, std::move(value), types);
  }

  void WriteFieldList() {
    if (names.empty()) return;
    bool plain = true;
    std::string list;
    for (const std::string& name : names) {
      plain = plain && IsPlainName(name);
      if (&name != &names.front()) list += ',';
      list += EscapeText(name);
    }
    if (!plain) return Line(kFieldListProperty, EncodeBase64(list), {BinaryParameter()});
    Line(kFieldListProperty, std::move(list));
  }

  // Whether a reader who looks at the field's slot, or finds none, would get another value.
  bool NeedsOwnLine(std::size_t field) const {
    const std::string& value = contact.fields[field].second;
    if (!slots[field]) return !value.empty();
    const auto found = taken.find(*slots[field]);
    if (found != taken.end()) return found->second != field;
    return !value.empty() || slots[field]->property == CardProperty::kFormattedName;
  }

  void WriteField(std::size_t field) {
    const auto& [name, value] = contact.fields[field];
    Parameters parameters = {{std::string(kIndexParameter), {std::to_string(field + 1)}}};
    // For people and other programs: the list of all names has it in any case.
    if (IsPlainName(name)) parameters.push_back({std::string(kNameParameter), {name}});
    if (IsPlainText(value)) {
      return Line(kFieldProperty, EscapeText(WithLineFeeds(value)), std::move(parameters));
    }
    parameters.push_back(BinaryParameter());
    Line(kFieldProperty, EncodeBase64(value), std::move(parameters));
  }

  static ContentParameter BinaryParameter() { return {std::string(kEncodingParameter), {"b"}}; }

  std::string& out;
  const Contact& contact;
  std::vector<std::string> names;
  std::vector<std::optional<CardSlot>> slots;
  std::map<CardSlot, std::size_t> taken;  // by the first field that fits
};

}  // namespace

void AppendVCard(std::string& out, const Contact& contact, std::string_view fileIdentity) {
  CardWriter(out, contact).Write(fileIdentity);
}

}  // namespace pw

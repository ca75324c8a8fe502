#include "host/formats/vcard_card.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/codepage.h"
#include "base/text.h"
#include "host/formats/record_uid.h"
#include "host/formats/stamp_text.h"
#include "host/formats/text_value.h"
#include "host/formats/transfer_encoding.h"
#include "host/formats/vcard_text.h"

namespace pw {
namespace {

constexpr std::string_view kNoBase64 = "a value that isn't the base64 that it is said to be";

bool Equals(const std::string& text, std::string_view word) {
  return EqualIgnoringCase(text, word);
}

// Whether a parameter of that name has the value. The oldest cards leave the name out, the newest
// quote a list of values as one.
bool Tells(const ContentLine& line, std::string_view name, std::string_view value) {
  for (const ContentParameter& parameter : line.parameters) {
    if (parameter.values.empty() && Equals(parameter.name, value)) return true;
    if (!Equals(parameter.name, name)) continue;
    for (const std::string& list : parameter.values) {
      for (const std::string_view one : SplitValue(list, ',')) {
        if (EqualIgnoringCase(one, value)) return true;
      }
    }
  }
  return false;
}

bool IsBase64(const ContentLine& line) {
  return Tells(line, kEncodingParameter, "b") || Tells(line, kEncodingParameter, "base64");
}

// The value without its transfer encoding, in UTF-8; its escapes stay. Nothing if it is damaged.
std::optional<std::string> DecodeValue(const ContentLine& line) {
  std::optional<std::string> value = line.value;
  if (IsBase64(line)) value = DecodeBase64(line.value);
  if (Tells(line, kEncodingParameter, "quoted-printable")) {
    value = DecodeQuotedPrintable(line.value);
  }
  if (value) value = AsUtf8(std::move(*value));
  return value;
}

// The character set that a line tells, where it is neither UTF-8 nor the organiser's, nor a part
// of either.
std::string UnknownCharset(const ContentLine& line) {
  constexpr std::string_view kKnown[] = {"utf-8",        "utf8",       "us-ascii",   "ascii",
                                         "windows-1252", "iso-8859-1", "iso_8859-1", "cp1252"};
  const ContentParameter* charset = line.Find("CHARSET");
  if (charset == nullptr || charset->values.empty()) return {};
  const std::string& name = charset->values.front();
  const bool isKnown = std::any_of(std::begin(kKnown), std::end(kKnown),
                                   [&](std::string_view each) { return Equals(name, each); });
  return isKnown ? std::string() : name;
}

// Whether a property only tells of the card itself.
bool IsOfFormat(const std::string& name) {
  constexpr std::string_view kNames[] = {"VERSION", "PRODID", "PROFILE",
                                         "MAILER",  "SOURCE", "NAME"};
  return std::any_of(std::begin(kNames), std::end(kNames),
                     [&](std::string_view each) { return Equals(name, each); });
}

std::string Listed(const std::set<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

CardPlace PlaceOf(const ContentLine& line) {
  if (Tells(line, "TYPE", "home")) return CardPlace::kHome;
  return Tells(line, "TYPE", "work") ? CardPlace::kWork : CardPlace::kAny;
}

std::uint8_t KindOfPhone(const ContentLine& line) {
  constexpr std::pair<std::string_view, std::uint8_t> kKinds[] = {
      {"fax", kFax}, {"pager", kPager}, {"car", kCar}, {"cell", kMobile}};
  for (const auto& [type, kind] : kKinds) {
    if (Tells(line, "TYPE", type)) return kind;
  }
  return kVoice;
}

// "19700131" and a date with a time become "1970-01-31"; anything else stays.
std::string DateText(const std::string& text) {
  std::string date = text.substr(0, 10);
  if (IsDate(date)) return date;
  if (text.size() != 8) return text;
  std::string dashed = text.substr(0, 4) + '-' + text.substr(4, 2) + '-' + text.substr(6);
  return IsDate(dashed) ? dashed : text;
}

// Empty unless the text is a date and time without a zone, with or without its separators.
std::string StampText(const std::string& text) {
  if (IsStamp(text)) return text;
  if (text.size() != 15) return {};
  std::string separated = text.substr(0, 4) + '-' + text.substr(4, 2) + '-' + text.substr(6, 5) +
                          ':' + text.substr(11, 2) + ':' + text.substr(13);
  return IsStamp(separated) ? separated : std::string();
}

std::string PlainValue(CardProperty property, const ContentLine& line, std::string_view value) {
  std::string text = WithLineBreaks(UnescapeText(value));
  if (property == CardProperty::kBirthday) return DateText(text);
  const bool link = property == CardProperty::kPhone && Tells(line, "VALUE", "uri");
  return link && EqualIgnoringCase(text.substr(0, 4), "tel:") ? text.substr(4) : text;
}

// A component may be a list: of names, which a blank joins, or of lines of an address.
std::string ComponentText(CardProperty property, std::string_view component) {
  std::string text;
  bool first = true;
  for (const std::string_view piece : SplitValue(component, ',')) {
    if (!first) text += property == CardProperty::kName ? " " : ", ";
    text += UnescapeText(piece);
    first = false;
  }
  return WithLineBreaks(text);
}

}  // namespace

void VCardContent::Add(const ContentLine& line, std::size_t number, LineErrors& errors) {
  if (Equals(line.name, "UID")) {
    id = IdOfRecordUid(line.value);
  } else if (Equals(line.name, "REV")) {
    stamp = StampText(line.value);
  } else if (Equals(line.name, kFieldListProperty)) {
    AddFieldList(line, number, errors);
  } else if (Equals(line.name, kFieldProperty)) {
    AddOwnField(line, number, errors);
  } else if (const auto property = FindCardProperty(line.name)) {
    AddProperty(*property, line, number, errors);
  } else if (!line.value.empty() && !IsOfFormat(line.name)) {
    unknownProperties.insert(AsUtf8(line.name));
  }
}

std::vector<std::string> VCardContent::Remarks() const {
  std::vector<std::string> remarks;
  if (!unknownProperties.empty()) {
    remarks.push_back("no field is known for " + Listed(unknownProperties));
  }
  if (!unknownCharsets.empty()) {
    remarks.push_back("the character set " + Listed(unknownCharsets) +
                      " isn't known, so that letters may come in as others");
  }
  return remarks;
}

void VCardContent::AddFieldList(const ContentLine& line, std::size_t number, LineErrors& errors) {
  const std::optional<std::string> list = IsBase64(line) ? DecodeBase64(line.value) : line.value;
  if (!list) return errors.Add(number, kNoBase64);
  if (fieldNames) return errors.Add(number, "a second list of the card's fields");
  fieldNames.emplace();
  for (const std::string_view name : SplitValue(*list, ',')) {
    fieldNames->push_back(UnescapeText(name));
  }
}

void VCardContent::AddOwnField(const ContentLine& line, std::size_t number, LineErrors& errors) {
  OwnField field;
  field.text.line = number;
  if (IsBase64(line)) {
    auto bytes = DecodeBase64(line.value);
    if (!bytes) return errors.Add(number, kNoBase64);
    field.text.text = std::move(*bytes);
  } else {
    field.text.text = WithLineBreaks(UnescapeText(line.value));
  }
  const ContentParameter* name = line.Find(kNameParameter);
  if (name != nullptr && !name->values.empty()) field.name = name->values.front();
  const ContentParameter* index = line.Find(kIndexParameter);
  if (index != nullptr && !index->values.empty()) {
    field.index = static_cast<std::uint32_t>(std::max(ParseLong(index->values.front()), 0));
  }
  ownFields.push_back(std::move(field));
}

void VCardContent::AddProperty(CardProperty property, const ContentLine& line, std::size_t number,
                               LineErrors& errors) {
  const std::optional<std::string> value = DecodeValue(line);
  if (!value) return errors.Add(number, kNoBase64);
  const std::string charset = UnknownCharset(line);
  if (!charset.empty()) unknownCharsets.insert(AsUtf8(charset));
  const CardPropertyForm& form = FormOf(property);
  CardSlot slot = {property};
  if (form.hasPlace) slot.place = PlaceOf(line);
  if (property == CardProperty::kAddress) addresses.emplace_back(slot.place, number);
  if (form.components == 1) {
    if (property == CardProperty::kPhone) slot.part = KindOfPhone(line);
    std::string text = PlainValue(property, line, *value);
    if (!text.empty()) texts[slot].push_back({std::move(text), number});
    return;
  }
  for (const std::string_view component : SplitValue(*value, ';')) {
    if (slot.part == form.components) return errors.Add(number, "more parts than it can have");
    std::string text = ComponentText(property, component);
    if (!text.empty()) texts[slot].push_back({std::move(text), number});
    ++slot.part;
  }
}

}  // namespace pw

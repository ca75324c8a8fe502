#include "host/formats/vcard_fields.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "base/text.h"

namespace pw {
namespace {

using enum CardProperty;

constexpr std::array<CardPropertyForm, 12> kForms = {{
    {"FN", 1, false},
    {"N", 5, false},
    {"NICKNAME", 1, false},
    {"ORG", 2, false},
    {"TITLE", 1, false},
    {"ROLE", 1, false},
    {"ADR", 7, true},
    {"TEL", 1, true},
    {"EMAIL", 1, true},
    {"URL", 1, true},
    {"BDAY", 1, false},
    {"NOTE", 1, false},
}};

// The components of an organisation and of an address.
constexpr std::uint8_t kCompany = 0;
constexpr std::uint8_t kDepartment = 1;
constexpr std::uint8_t kPostBox = 0;
constexpr std::uint8_t kExtended = 1;
constexpr std::uint8_t kStreet = 2;
constexpr std::uint8_t kCity = 3;
constexpr std::uint8_t kState = 4;
constexpr std::uint8_t kPostalCode = 5;
constexpr std::uint8_t kCountry = 6;

// The first spelling of a slot is the one that people are shown.
struct Spelling {
  std::string_view text;
  CardProperty property;
  std::uint8_t part = 0;
};
constexpr Spelling kSpellings[] = {
    {"Name", kFormattedName},
    {"Full Name", kFormattedName},
    {"Display Name", kFormattedName},
    {"Contact Name", kFormattedName},
    {"First Name", kName, kGivenName},
    {"First", kName, kGivenName},
    {"Given Name", kName, kGivenName},
    {"Forename", kName, kGivenName},
    {"Last Name", kName, kFamilyName},
    {"Last", kName, kFamilyName},
    {"Family Name", kName, kFamilyName},
    {"Surname", kName, kFamilyName},
    {"Middle Name", kName, kMiddleName},
    {"Middle", kName, kMiddleName},
    {"Middle Initial", kName, kMiddleName},
    {"Prefix", kName, kNamePrefix},
    {"Name Prefix", kName, kNamePrefix},
    {"Salutation", kName, kNamePrefix},
    {"Mr/Mrs", kName, kNamePrefix},
    {"Suffix", kName, kNameSuffix},
    {"Name Suffix", kName, kNameSuffix},
    {"Nickname", kNickname},
    {"Company", kOrganisation, kCompany},
    {"Company Name", kOrganisation, kCompany},
    {"Organisation", kOrganisation, kCompany},
    {"Organization", kOrganisation, kCompany},
    {"Firm", kOrganisation, kCompany},
    {"Employer", kOrganisation, kCompany},
    {"Department", kOrganisation, kDepartment},
    {"Dept", kOrganisation, kDepartment},
    {"Division", kOrganisation, kDepartment},
    {"Job Title", kJobTitle},
    {"Title", kJobTitle},
    {"Position", kJobTitle},
    {"Role", kRole},
    {"Profession", kRole},
    {"Occupation", kRole},
    {"P.O. Box", kAddress, kPostBox},
    {"Address 2", kAddress, kExtended},
    {"Street 2", kAddress, kExtended},
    {"Street", kAddress, kStreet},
    {"Street Address", kAddress, kStreet},
    {"Address", kAddress, kStreet},
    {"Address 1", kAddress, kStreet},
    {"City", kAddress, kCity},
    {"Town", kAddress, kCity},
    {"State", kAddress, kState},
    {"Province", kAddress, kState},
    {"State/Province", kAddress, kState},
    {"Region", kAddress, kState},
    {"County", kAddress, kState},
    {"ZIP", kAddress, kPostalCode},
    {"ZIP Code", kAddress, kPostalCode},
    {"Postal Code", kAddress, kPostalCode},
    {"Postcode", kAddress, kPostalCode},
    {"ZIP/Postal Code", kAddress, kPostalCode},
    {"Country", kAddress, kCountry},
    {"Phone", kPhone, kVoice},
    {"Phone Number", kPhone, kVoice},
    {"Telephone", kPhone, kVoice},
    {"Tel", kPhone, kVoice},
    {"Mobile", kPhone, kMobile},
    {"Mobile Phone", kPhone, kMobile},
    {"Cell", kPhone, kMobile},
    {"Cell Phone", kPhone, kMobile},
    {"Cellular", kPhone, kMobile},
    {"Fax", kPhone, kFax},
    {"Fax Number", kPhone, kFax},
    {"Fax Phone", kPhone, kFax},
    {"Pager", kPhone, kPager},
    {"Pager Number", kPhone, kPager},
    {"Beeper", kPhone, kPager},
    {"Car Phone", kPhone, kCar},
    {"E-mail", kMail},
    {"E-mail Address", kMail},
    {"Internet Mail", kMail},
    {"Web Page", kWeb},
    {"Web Site", kWeb},
    {"Web Address", kWeb},
    {"Web", kWeb},
    {"Homepage", kWeb},
    {"URL", kWeb},
    {"WWW", kWeb},
    {"Birthday", kBirthday},
    {"Birth Date", kBirthday},
    {"Date of Birth", kBirthday},
    {"Contact Log", kNote},
    {"Notes", kNote},
    {"Note", kNote},
    {"Comments", kNote},
};

struct PlaceWord {
  std::string_view word;  // as `Simplified`
  CardPlace place;
};
constexpr PlaceWord kPlaceWords[] = {
    {"home", CardPlace::kHome},     {"private", CardPlace::kHome}, {"work", CardPlace::kWork},
    {"business", CardPlace::kWork}, {"office", CardPlace::kWork},
};

// What is left of a name when only letters, in lower case, and digits count. Bytes of other letters
// than A to Z count too.
std::string Simplified(std::string_view name) {
  std::string simple;
  for (const char c : name) {
    const unsigned char lower = AsciiLower(c);
    const bool counts = (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || lower >= 0x80;
    if (counts) simple += static_cast<char>(lower);
  }
  return simple;
}

std::optional<CardSlot> FindSpelling(const std::string& simple) {
  static const std::unordered_map<std::string, CardSlot> slots = [] {
    std::unordered_map<std::string, CardSlot> made;
    for (const Spelling& spelling : kSpellings) {
      made.emplace(Simplified(spelling.text),
                   CardSlot{spelling.property, CardPlace::kAny, spelling.part});
    }
    return made;
  }();
  const auto found = slots.find(simple);
  if (found == slots.end()) return std::nullopt;
  return found->second;
}

std::optional<CardSlot> FindAtPlace(const std::string& simple, CardPlace place) {
  std::optional<CardSlot> slot = FindSpelling(simple);
  if (!slot || !FormOf(slot->property).hasPlace) return std::nullopt;
  slot->place = place;
  return slot;
}

// The place may stand before or behind: "Home Fax", "Fax (home)".
std::optional<CardSlot> SlotOfField(const std::string& simple) {
  if (auto slot = FindSpelling(simple)) return slot;
  const std::string_view text = simple;
  for (const auto& [word, place] : kPlaceWords) {
    if (text.substr(0, word.size()) == word) {
      if (auto slot = FindAtPlace(simple.substr(word.size()), place)) return slot;
    }
    if (EndsWithIgnoringCase(text, word)) {
      if (auto slot = FindAtPlace(simple.substr(0, text.size() - word.size()), place)) return slot;
    }
  }
  return std::nullopt;
}

}  // namespace

const CardPropertyForm& FormOf(CardProperty property) {
  return kForms[static_cast<std::size_t>(property)];
}

std::optional<CardProperty> FindCardProperty(std::string_view name) {
  for (std::size_t i = 0; i < kForms.size(); ++i) {
    if (EqualIgnoringCase(kForms[i].name, name)) return static_cast<CardProperty>(i);
  }
  return std::nullopt;
}

std::vector<std::optional<CardSlot>> SlotsOfFields(const std::vector<std::string>& names) {
  std::vector<std::optional<CardSlot>> slots;
  std::vector<std::size_t> titles;
  bool otherJobTitle = false;
  for (const std::string& name : names) {
    const std::string simple = Simplified(name);
    slots.push_back(SlotOfField(simple));
    if (simple == "title") {
      titles.push_back(slots.size() - 1);
    } else if (slots.back() && slots.back()->property == kJobTitle) {
      otherJobTitle = true;
    }
  }
  if (otherJobTitle) {
    for (const std::size_t title : titles) {
      slots[title] = CardSlot{kName, CardPlace::kAny, kNamePrefix};
    }
  }
  return slots;
}

std::string LabelOf(const CardSlot& slot) {
  const auto* spelling =
      std::find_if(std::begin(kSpellings), std::end(kSpellings), [&](const Spelling& candidate) {
        return candidate.property == slot.property && candidate.part == slot.part;
      });
  std::string label;
  if (slot.place == CardPlace::kHome) label = "Home ";
  if (slot.place == CardPlace::kWork) label = "Work ";
  return label.append(spelling == std::end(kSpellings) ? FormOf(slot.property).name
                                                       : spelling->text);
}

}  // namespace pw

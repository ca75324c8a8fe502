#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

// How a cardfile's fields, which its owner names freely, and a vCard's properties, whose meaning is
// fixed, find each other.
namespace pw {

// In the order in which they stand in a card.
enum class CardProperty : std::uint8_t {
  kFormattedName,
  kName,
  kNickname,
  kOrganisation,
  kJobTitle,
  kRole,
  kAddress,
  kPhone,
  kMail,
  kWeb,
  kBirthday,
  kNote,
};

enum class CardPlace : std::uint8_t { kAny, kHome, kWork };

// Parts of a name, of an organisation and of an address count as the property's components do; a
// phone's part is its kind. Every other property has the one part 0.
constexpr std::uint8_t kFamilyName = 0;
constexpr std::uint8_t kGivenName = 1;
constexpr std::uint8_t kMiddleName = 2;
constexpr std::uint8_t kNamePrefix = 3;
constexpr std::uint8_t kNameSuffix = 4;

constexpr std::uint8_t kVoice = 0;
constexpr std::uint8_t kMobile = 1;
constexpr std::uint8_t kFax = 2;
constexpr std::uint8_t kPager = 3;
constexpr std::uint8_t kCar = 4;

// One place in a card that holds one text.
struct CardSlot {
  CardProperty property = CardProperty::kFormattedName;
  CardPlace place = CardPlace::kAny;
  std::uint8_t part = 0;

  friend bool operator==(const CardSlot&, const CardSlot&) = default;
  friend bool operator<(const CardSlot& a, const CardSlot& b) {
    return std::tie(a.property, a.place, a.part) < std::tie(b.property, b.place, b.part);
  }
};

// The form of a property in the file.
struct CardPropertyForm {
  std::string_view name;
  std::uint8_t components;  // 1 for a plain text, more for a structured value
  bool hasPlace;            // told by its types HOME and WORK
};
const CardPropertyForm& FormOf(CardProperty property);

// Nothing for a property that no field is known for. Letter case is ignored.
std::optional<CardProperty> FindCardProperty(std::string_view name);

// For each name the slot that a field of that name belongs to, nothing where the name isn't known.
// Letter case and all characters but letters and digits mean nothing: "E-mail" is "email". "Title"
// is the job's, unless another of the names is; then it is the one before a person's name.
std::vector<std::optional<CardSlot>> SlotsOfFields(const std::vector<std::string>& names);

// The slot for people: "Home Fax".
std::string LabelOf(const CardSlot& slot);

}  // namespace pw

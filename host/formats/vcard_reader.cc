#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/text.h"
#include "host/formats/content_line.h"
#include "host/formats/vcard.h"
#include "host/formats/vcard_card.h"
#include "host/formats/vcard_fields.h"

namespace pw {
namespace {

using Text = VCardContent::Text;
using Slots = std::vector<std::optional<CardSlot>>;

// Gives out a card's texts, each once.
class TextSupply {
 public:
  explicit TextSupply(const VCardContent& content) : texts(content.Texts()) {}

  // The slot's first text that wasn't taken yet, or null. A line other than 0 is where it must
  // stand.
  const Text* Take(const CardSlot& slot, std::size_t line = 0) {
    const auto found = texts.find(slot);
    if (found == texts.end()) return nullptr;
    std::size_t& next = taken[slot];
    if (next == found->second.size()) return nullptr;
    const Text& text = found->second[next];
    if (line != 0 && text.line != line) return nullptr;
    ++next;
    return &text;
  }

  std::size_t Taken(const CardSlot& slot) const {
    const auto found = taken.find(slot);
    return found == taken.end() ? 0 : found->second;
  }

  template <class Visit>
  void ForEachLeft(Visit visit) const {
    for (const auto& [slot, ofSlot] : texts) {
      for (std::size_t i = Taken(slot); i < ofSlot.size(); ++i) visit(slot, ofSlot[i]);
    }
  }

 private:
  const std::map<CardSlot, std::vector<Text>>& texts;
  std::map<CardSlot, std::size_t> taken;
};

void ReportLeft(LineErrors& errors, const std::string& label, const Text& text) {
  errors.Add(text.line, "no field takes \"" + label + '"');
}

// A card of ours: its fields are those that it lists.
class OwnCard {
 public:
  OwnCard(const VCardContent& content, Contact& contact, LineErrors& errors)
      : content(content), contact(contact), errors(errors) {}

  void Fill() {
    const std::vector<std::string>& names = *content.FieldNames();
    TakeOwnFields(names.size());
    const Slots slots = SlotsOfFields(names);
    TextSupply supply(content);
    for (std::size_t i = 0; i < names.size(); ++i) {
      const auto own = ownTexts.find(i + 1);
      const Text* text = nullptr;
      if (own != ownTexts.end()) {
        text = own->second;
      } else if (slots[i]) {
        text = supply.Take(*slots[i]);
      }
      contact.fields.emplace_back(names[i], text == nullptr ? std::string() : text->text);
    }
    // Only another program can have added something. The whole name is made up where no field is
    // it.
    supply.ForEachLeft([&](const CardSlot& slot, const Text& text) {
      if (slot.property != CardProperty::kFormattedName) ReportLeft(errors, LabelOf(slot), text);
    });
  }

 private:
  void TakeOwnFields(std::size_t count) {
    for (const VCardContent::OwnField& field : content.OwnFields()) {
      if (field.index == 0 || field.index > count) {
        errors.Add(field.text.line, "a field that isn't in the card's list");
      } else if (!ownTexts.emplace(field.index, &field.text).second) {
        errors.Add(field.text.line, "a field that the card holds already");
      }
    }
  }

  const VCardContent& content;
  Contact& contact;
  LineErrors& errors;
  std::unordered_map<std::size_t, const Text*> ownTexts;
};

// Any other card: its texts are fitted into fields that are there.
class ForeignCard {
 public:
  ForeignCard(const VCardContent& content, const std::vector<std::string>& names,
              const Slots& slots, Contact& contact, LineErrors& errors)
      : content(content), slots(slots), contact(contact), errors(errors), supply(content) {
    for (const std::string& name : names) contact.fields.emplace_back(name, std::string());
  }

  void Fill() {
    FillNamedFields();
    ForEachEmptyField([&](const CardSlot& slot) { return TakeExact(slot); });
    ForEachEmptyField([&](const CardSlot& slot) { return TakeNearby(slot); });
    SplitFormattedName();
    AddRest();
  }

 private:
  template <class TakeText>
  void ForEachEmptyField(TakeText take) {
    for (std::size_t i = 0; i < slots.size(); ++i) {
      std::string& value = contact.fields[i].second;
      if (!slots[i] || !value.empty()) continue;
      if (const Text* text = take(*slots[i])) value = WithoutLeadingSpace(text->text);
    }
  }

  // Lines of ours in a card that lost its list of fields.
  void FillNamedFields() {
    std::unordered_map<std::string_view, std::string*> empty;
    for (auto& [name, value] : contact.fields) empty.emplace(name, &value);
    for (const VCardContent::OwnField& field : content.OwnFields()) {
      const auto found = empty.find(field.name);
      if (found == empty.end() || !found->second->empty()) {
        rest.emplace_back(field.name, &field.text);
      } else {
        *found->second = field.text.text;
      }
    }
  }

  const Text* TakeExact(const CardSlot& slot) { return supply.Take(slot, LineFor(slot)); }

  // A place that isn't told goes with any; home and work never stand for each other.
  const Text* TakeNearby(CardSlot slot) {
    const std::size_t line = LineFor(slot);
    if (slot.place != CardPlace::kAny) {
      slot.place = CardPlace::kAny;
      return supply.Take(slot, line);
    }
    for (const CardPlace place : {CardPlace::kHome, CardPlace::kWork}) {
      slot.place = place;
      if (const Text* text = supply.Take(slot, line)) return text;
    }
    return nullptr;
  }

  // The fields of one address are filled from one line, so that no two addresses are mixed. 0 for a
  // slot of anything else.
  std::size_t LineFor(const CardSlot& slot) const {
    if (slot.property != CardProperty::kAddress) return 0;
    std::size_t nearby = 0;
    for (const auto& [place, line] : content.Addresses()) {
      if (place == slot.place) return line;
      const bool near = place == CardPlace::kAny || slot.place == CardPlace::kAny;
      if (near && nearby == 0) nearby = line;
    }
    return nearby;
  }

  bool Has(CardProperty property) const {
    const auto& texts = content.Texts();
    const auto first = texts.lower_bound({property});
    return first != texts.end() && first->first.property == property;
  }

  std::string* FieldAt(const CardSlot& slot) {
    const auto found = std::find(slots.begin(), slots.end(), slot);
    if (found == slots.end()) return nullptr;
    return &contact.fields[static_cast<std::size_t>(found - slots.begin())].second;
  }

  // The whole name of a card for a company, rather than for somebody there.
  bool IsNamedAfterCompany() const {
    const auto& texts = content.Texts();
    const auto name = texts.find({CardProperty::kFormattedName});
    const auto company = texts.find({CardProperty::kOrganisation});
    return name != texts.end() && company != texts.end() &&
           name->second.front().text == company->second.front().text;
  }

  // The newest cards may tell a person's whole name only.
  void SplitFormattedName() {
    if (Has(CardProperty::kName) || IsNamedAfterCompany()) return;
    std::string* given = FieldAt({CardProperty::kName, CardPlace::kAny, kGivenName});
    std::string* family = FieldAt({CardProperty::kName, CardPlace::kAny, kFamilyName});
    if (given == nullptr || family == nullptr || !given->empty() || !family->empty()) return;
    const Text* name = supply.Take({CardProperty::kFormattedName});
    if (name == nullptr) return;
    const std::size_t blank = name->text.rfind(' ');
    *family = blank == std::string::npos ? name->text : name->text.substr(blank + 1);
    if (blank != std::string::npos) *given = name->text.substr(0, blank);
  }

  // The whole name and its parts tell the same.
  bool IsToldElsewhere(CardProperty property) const {
    if (property == CardProperty::kFormattedName) {
      return Has(CardProperty::kName) || IsNamedAfterCompany();
    }
    return property == CardProperty::kName && supply.Taken({CardProperty::kFormattedName}) != 0;
  }

  void AddRest() {
    supply.ForEachLeft([&](const CardSlot& slot, const Text& text) {
      if (!IsToldElsewhere(slot.property)) rest.emplace_back(LabelOf(slot), &text);
    });
    std::string* notes = FieldAt({CardProperty::kNote});
    for (const auto& [label, text] : rest) {
      if (notes == nullptr) {
        ReportLeft(errors, label, *text);
        continue;
      }
      if (!notes->empty()) *notes += "\r\n";
      *notes += label + ": " + text->text;
    }
  }

  const VCardContent& content;
  const Slots& slots;
  Contact& contact;
  LineErrors& errors;
  TextSupply supply;
  std::vector<std::pair<std::string, const Text*>> rest;
};

bool IsOfCard(const ContentLine& line) {
  const std::string_view value = line.value;
  const std::size_t last = value.find_last_not_of(" \t\r");
  return last != std::string_view::npos && EqualIgnoringCase(value.substr(0, last + 1), "VCARD");
}

class FileReader {
 public:
  FileReader(std::string_view text, const std::vector<std::string>& names)
      : lines(text, SoftBreaks::kQuotedPrintable), names(names), slots(SlotsOfFields(names)) {}

  VCardFile Read() {
    for (auto result = lines.Next(); result != Result::kEnd; result = lines.Next()) {
      if (result == Result::kDamaged) {
        file.errors.Add(lines.Number(), lines.Problem());
      } else {
        Take(lines.Line());
      }
    }
    if (card) FinishOpenCard();
    return std::move(file);
  }

 private:
  using Result = ContentLineReader::Result;

  void Take(const ContentLine& line) {
    const bool agent = std::exchange(afterAgent, EqualIgnoringCase(line.name, "AGENT"));
    if (EqualIgnoringCase(line.name, "BEGIN")) {
      Begin(line, agent);
    } else if (EqualIgnoringCase(line.name, "END")) {
      End(line);
    } else if (!card) {
      file.errors.Add(lines.Number(), "outside of any card");
    } else if (nested == 0) {
      card->Add(line, lines.Number(), file.errors);
    }
  }

  // A card within a card is somebody's agent, which the organiser knows nothing of. Any other card
  // that begins shows that the one before has lost its end.
  void Begin(const ContentLine& line, bool agent) {
    const bool isCard = IsOfCard(line);
    if (card && (agent || nested != 0 || !isCard)) {
      ++nested;
      return;
    }
    if (!isCard) return file.errors.Add(lines.Number(), "outside of any card");
    if (card) FinishOpenCard();
    card.emplace(lines.Number());
  }

  void End(const ContentLine& line) {
    if (nested != 0) {
      --nested;
    } else if (!card || !IsOfCard(line)) {
      file.errors.Add(lines.Number(), "the end of what didn't begin");
    } else {
      Finish();
    }
  }

  void FinishOpenCard() {
    file.errors.Add(card->FirstLine(), "a card that doesn't end");
    Finish();
  }

  void Finish() {
    if (IsWithoutText()) {
      file.errors.Add(card->FirstLine(), "a card that holds nothing, and is left out");
    } else if (file.contacts.size() == kMostContacts) {
      file.errors.Add(card->FirstLine(), kTooManyContacts);
    } else {
      Keep();
    }
    card.reset();
    nested = 0;
  }

  // One of ours may be meant to empty a card that is there.
  bool IsWithoutText() const {
    return !card->FieldNames() && card->OwnFields().empty() && card->Texts().empty();
  }

  void Keep() {
    std::vector<std::string> remarks = card->Remarks();
    if (!remarks.empty()) file.remarks[file.contacts.size()] = std::move(remarks);
    file.ids.push_back(card->Id());
    Contact& contact = file.contacts.emplace_back();
    contact.id = card->Id().text;
    contact.stamp = card->Stamp();
    if (card->FieldNames()) {
      OwnCard(*card, contact, file.errors).Fill();
    } else {
      ForeignCard(*card, names, slots, contact, file.errors).Fill();
    }
  }

  ContentLineReader lines;
  const std::vector<std::string>& names;
  Slots slots;
  VCardFile file;
  std::optional<VCardContent> card;
  std::size_t nested = 0;
  bool afterAgent = false;
};

}  // namespace

VCardFile ReadVCards(std::string_view text, const std::vector<std::string>& fieldNames) {
  return FileReader(text, fieldNames).Read();
}

}  // namespace pw

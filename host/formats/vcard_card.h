#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/formats/content_line.h"
#include "host/formats/line_errors.h"
#include "host/formats/record_uid.h"
#include "host/formats/vcard_fields.h"

namespace pw {

// One card as its lines tell it: texts by slot, decoded, before they are fitted into fields.
class VCardContent {
 public:
  struct Text {
    std::string text;
    std::size_t line = 0;
  };

  // A field of ours with a line of its own.
  struct OwnField {
    std::size_t index = 0;  // among the card's fields, from 1; 0 if the line doesn't tell
    std::string name;       // empty if it doesn't tell
    Text text;
  };

  explicit VCardContent(std::size_t line) : firstLine(line) {}

  // Takes one line between the card's begin and end.
  void Add(const ContentLine& line, std::size_t number, LineErrors& errors);

  // Where the card begins.
  std::size_t FirstLine() const { return firstLine; }

  // The record's id, empty unless the card is one of ours; the stamp, empty unless in local time.
  const RecordId& Id() const { return id; }
  const std::string& Stamp() const { return stamp; }

  // The names of a card of ours.
  const std::optional<std::vector<std::string>>& FieldNames() const { return fieldNames; }
  const std::vector<OwnField>& OwnFields() const { return ownFields; }

  // All that the card holds for a slot, in the file's order; no text is empty.
  const std::map<CardSlot, std::vector<Text>>& Texts() const { return texts; }

  // The places and lines of its addresses, in the file's order.
  const std::vector<std::pair<CardPlace, std::size_t>>& Addresses() const { return addresses; }

  // What of it doesn't come along or may come along changed, for a person.
  std::vector<std::string> Remarks() const;

 private:
  void AddFieldList(const ContentLine& line, std::size_t number, LineErrors& errors);
  void AddOwnField(const ContentLine& line, std::size_t number, LineErrors& errors);
  void AddProperty(CardProperty property, const ContentLine& line, std::size_t number,
                   LineErrors& errors);

  std::size_t firstLine;
  RecordId id;
  std::string stamp;
  std::optional<std::vector<std::string>> fieldNames;
  std::vector<OwnField> ownFields;
  std::map<CardSlot, std::vector<Text>> texts;
  std::vector<std::pair<CardPlace, std::size_t>> addresses;
  std::set<std::string> unknownProperties;
  std::set<std::string> unknownCharsets;
};

}  // namespace pw

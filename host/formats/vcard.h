#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/formats/contact.h"
#include "host/formats/line_errors.h"
#include "host/formats/record_uid.h"

// Contacts as vCards.
//
// Fields whose names are known stand in the standard's properties, where other programs look for
// them. Each field that the standard has no place for, whose place another field of the card holds,
// or whose value would come back changed, stands in a property of our own, and the names of all
// fields, in their order, in one more. docs/formats/vcard.md has the whole map.
namespace pw {

// Appends one card of version 3.0. The identity names the cardfile, the same for each export of it:
// with the record's id it makes the card's UID. A value that isn't well-formed UTF-8 is kept too. A
// stamp that is no existing date and time is left out.
void AppendVCard(std::string& out, const Contact& contact, std::string_view fileIdentity);

struct VCardFile {
  std::vector<Contact> contacts;
  std::vector<RecordId> ids;  // of each of them, as its UID tells it
  ContactRemarks remarks;     // properties that no field is known for, unknown character sets
  LineErrors errors;
};

// Reads all cards of a file.
//
// One of our own that has fields gives back its id, stamp, fields and values exactly, whatever
// `fieldNames` are.
// Any other card, of version 2.1, 3.0 or 4.0, is fitted into fields of the names given, all of them
// in each contact: what no field takes is appended to the notes field, or reported where there is
// none. Pictures and other properties that no field is known for are remarked. Such a contact has
// no id, and a stamp only where the card tells one in local time. Text that isn't well-formed UTF-8
// is taken as the organiser's code page. One without any text is reported and left out.
//
// A damaged line is reported and the rest of its card kept; so is a card that doesn't end.
VCardFile ReadVCards(std::string_view text, const std::vector<std::string>& fieldNames);

}  // namespace pw

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/formats/contact.h"
#include "host/formats/line_errors.h"

// Contacts as JSON, a contact a line:
//
//   [
//     {"id": "17", "changed": "1999-12-31T23:59:59", "fields": {"First Name": "Ann", "Phone": ""}},
//     {"id": "18", "changed": "", "fields": [["Phone", "1"], ["Phone", "2"]]}
//   ]
//
// The fields are an object in the cardfile's order or, where two of them have the same name, which
// an object would lose, pairs of name and value.
namespace pw {

// Malformed UTF-8 becomes U+FFFD.
std::string WriteContactsJson(const std::vector<Contact>& contacts);

struct JsonContacts {
  std::vector<Contact> contacts;
  ContactRemarks remarks;
  LineErrors errors;
};

// Reads an array of such objects. Both forms of fields do, and names that an object repeats all
// count. "id" and "changed" may be missing, unknown members are remarked. An object that isn't of
// the form, or has no fields, is reported and left out; where the text is no JSON reading ends, and
// the contacts are those that were complete by then. Nesting however deep is harmless.
JsonContacts ReadContactsJson(std::string_view text);

}  // namespace pw

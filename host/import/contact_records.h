#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/import/incoming.h"

// The records of a file of contacts.
namespace pw {

enum class ContactFormat { kJson, kCsv, kVCard };

// `fieldNames` are those of the cardfile that they go to, in UTF-8. What has no field there, and
// the second field of a name, which a record of the engine has no room for, is remarked where it
// has a text. Line breaks become blanks in all fields but the last one with a name of its own and
// the contact log, as the others are a line each in the file.
Incoming ReadContacts(std::string_view text, ContactFormat format,
                      const std::vector<std::string>& fieldNames);

}  // namespace pw

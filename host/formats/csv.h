#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/contact.h"
#include "host/formats/line_errors.h"

// Contacts as comma-separated values: UTF-8 without a byte order mark, rows that end in CR LF,
// cells quoted where they must be. A quoted cell holds line breaks as they are.
namespace pw {

// A header row, then a row a contact. The columns are "id", "changed" and the contacts' field names
// in the order in which they first occur; no heading occurs twice: the second field of a name in
// one contact is headed "Phone (2)". A field that a contact lacks is an empty cell.
std::string WriteCsv(const std::vector<Contact>& contacts);

struct CsvFile {
  std::vector<std::string> names;  // the headings of the fields
  std::vector<Contact> contacts;
  LineErrors errors;
};

// Reads a header row and a contact from each row below it. The first columns "id" and "changed",
// letter case ignored and wherever they stand, are the contact's own; all others are its fields,
// the empty ones included. Takes CR LF and LF, skips a byte order mark and empty lines. A cell that
// isn't well-formed UTF-8 is taken as the organiser's code page.
//
// A row that isn't well-formed or hasn't as many cells as the header is reported and left out. A
// header of more than 4096 bytes, beyond what a cardfile can hold, ends the reading: each contact
// repeats its names. Of more than `most` rows those behind are reported.
CsvFile ReadCsv(std::string_view text, std::size_t most = SIZE_MAX);

}  // namespace pw

#pragma once

#include <string>
#include <string_view>
#include <vector>

// The list of templates for new cardfiles, "crdstyle.dat": a text of lines.
//
//   line := "[" name "]" field (0x09 field)* "\r\n"
//
// Read, either bracket stands for both, and what follows a name goes up to the end of its line.
namespace pw::cardfile {

// Names the fields of a new cardfile. Both point into the list's text.
struct CardTemplate {
  std::string_view name;
  std::string_view fields;
};

// A bracket among a template's fields begins another one, but not in the last line: the organiser
// goes on behind a name, and ends once nothing is left behind a line. A name that no bracket closes
// is all the rest. Takes a time and a room that are linear in the text.
std::vector<CardTemplate> ReadTemplates(std::string_view text);

// The fields without empty ones.
std::vector<std::string> FieldsOf(std::string_view fields);

}  // namespace pw::cardfile

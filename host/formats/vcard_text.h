#pragma once

#include <string>
#include <string_view>

// What the reader and the writer of vCards have to agree upon.
namespace pw {

// Holds one field that no standard property takes: its index among the card's fields, from 1, its
// name, and its value; in base64 where a text line can't hold the value.
constexpr std::string_view kFieldProperty = "X-PAIRWISE-FIELD";
constexpr std::string_view kIndexParameter = "X-INDEX";
constexpr std::string_view kNameParameter = "X-NAME";
constexpr std::string_view kEncodingParameter = "ENCODING";

// Lists the names of all fields of a card of ours, in their order.
constexpr std::string_view kFieldListProperty = "X-PAIRWISE-FIELDS";

// Whether a field's text can stand in a line and come back as it was: well-formed UTF-8, its line
// breaks all CR LF, without other control characters but tabs.
bool IsPlainText(std::string_view text);

// CR LF to LF, which is the line break that a line's escapes know, and back. The way back leaves a
// CR LF that is there already.
std::string WithLineFeeds(std::string_view text);
std::string WithLineBreaks(std::string_view text);

// The card's UID, and the record's id in one of ours; empty for a foreign one.
std::string MakeCardUid(std::string_view fileIdentity, std::string_view id);
std::string IdOfCardUid(std::string_view uid);

// Whether the text is "YYYY-MM-DD", of an existing day.
bool IsDate(std::string_view text);

// Whether the text is "YYYY-MM-DDTHH:MM:SS", of an existing day and a time of it.
bool IsStamp(std::string_view text);

}  // namespace pw

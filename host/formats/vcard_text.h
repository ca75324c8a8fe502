#pragma once

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

}  // namespace pw

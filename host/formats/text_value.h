#pragma once

#include <string>
#include <string_view>
#include <vector>

// What the value of a content line is made of: text with escapes, lists, structured values.
namespace pw {

// Backslash, comma, semicolon and line feed become "\\", "\,", "\;" and "\n". A text that holds no
// other control characters can then stand in a line.
std::string EscapeText(std::string_view text);

// The reverse; takes "\N" and "\:" too. A backslash before anything else, or at the end, stands for
// itself.
std::string UnescapeText(std::string_view value);

// Cuts a value at each separator that no backslash protects. The pieces keep their escapes and
// point into the value; there is always one at least.
std::vector<std::string_view> SplitValue(std::string_view value, char separator);

// Whether a text of the organiser's, in UTF-8, can stand in a line and come back as it was:
// well-formed, its line breaks all CR LF, without other control characters but tabs.
bool IsPlainText(std::string_view text);

// CR LF to LF, which is the line break that a line's escapes know, and back. The way back leaves a
// CR LF that is there already.
std::string WithLineFeeds(std::string_view text);
std::string WithLineBreaks(std::string_view text);

}  // namespace pw

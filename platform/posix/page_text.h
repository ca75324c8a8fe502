#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dialogs.h"

// How pages and their controls read on a terminal. All text is of the organiser's code page, in
// which a character is a byte and a column.
namespace pw {

// A control's caption without the mark of the key that reaches it: "&Browse" is "Browse", "&&" is
// "&".
std::string WithoutKeyMarks(std::string_view caption);

// The page's controls, a line each, in lines of at most `width` columns where its blanks allow it.
// All but the labels are numbered from 1; a label that ends in ":" stands before the field that
// follows it, and those fields below each other. The control that wants the input has a ">".
std::string PageText(PageModel& page, std::size_t width);

// What a list or a combo offers, numbered from 1, with the present one marked.
std::string ItemsText(const DialogControl& control);

// The text with its words on as many lines as it takes, of at most `width` columns where its blanks
// allow it; its own line breaks and what it ends in stay.
std::string Wrapped(std::string_view text, std::size_t width);

// A text, or a word for none.
std::string ShownText(const std::string& text);

}  // namespace pw

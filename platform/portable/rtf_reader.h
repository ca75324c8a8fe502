#pragma once

#include <string>
#include <string_view>

namespace pw::rtf {

// The text of a rich document, as a rich-edit control gives it, in the organiser's code page and up
// to its first zero byte. What isn't rich text comes out as it is; of a document that is cut short
// what there is of it.
//
//   document := "{\rtf" ...
//   group    := "{" (text | control | group)* "}"
//   control  := "\" word [number] [" "] | "\'" digit digit | "\" symbol
//
// Paragraphs and lines end in "\r\n", but the last paragraph has no end. Raw line ends are none.
// Text of fields that tell how to make them, of tables of fonts, colours and styles, of headers and
// footers, in lists' numbers, pictures, objects and whatever the reader doesn't know is left out.
//
// Takes a time linear in the document, and memory for its groups beside the text.
std::string PlainText(std::string_view document);

}  // namespace pw::rtf

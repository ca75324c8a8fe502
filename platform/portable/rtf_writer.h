#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/rich_text.h"

namespace pw::rtf {

// A rich document that holds the text, up to its first zero byte, in one font: what rich-edit
// controls and word processors read. Lines of the text, which end in "\r\n", "\r" or "\n", are
// paragraphs. A font without a name is "Arial". Nothing if it would have more than `limit` bytes.
std::optional<std::string> Document(std::string_view text, const RichTextFont& font,
                                    std::size_t limit);

}  // namespace pw::rtf

#pragma once

#include "platform/rich_text.h"

namespace pw {

// Needs nothing of the machine.
class PortableRichText : public RichText {
 public:
  std::string ToPlain(std::string_view rich) override;
  std::optional<std::string> FromPlain(std::string_view plain, const RichTextFont& font,
                                       std::size_t limit) override;
};

}  // namespace pw

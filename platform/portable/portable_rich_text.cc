#include "platform/portable/portable_rich_text.h"

#include "platform/portable/rtf_reader.h"
#include "platform/portable/rtf_writer.h"

namespace pw {

std::string PortableRichText::ToPlain(std::string_view rich) {
  return rtf::PlainText(rich);
}

std::optional<std::string> PortableRichText::FromPlain(std::string_view plain,
                                                       const RichTextFont& font,
                                                       std::size_t limit) {
  return rtf::Document(plain, font, limit);
}

}  // namespace pw

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The conversion between rich text and plain text, which a rich-edit control does on the organiser's
// own machine. Texts are single-byte, of the organiser's code page.
namespace pw {

struct RichTextFont {
  std::string name;
  std::int32_t halfPoints = 20;
  std::uint8_t characterSet = 0;
};

class RichText {
 public:
  virtual ~RichText() = default;

  // The plain text of a rich document, lines ending in "\r\n", without a zero byte.
  virtual std::string ToPlain(std::string_view rich) = 0;

  // A document that holds the text in one font, without a zero byte. Nothing if it would be larger
  // than `limit` bytes.
  virtual std::optional<std::string> FromPlain(std::string_view plain, const RichTextFont& font,
                                               std::size_t limit) = 0;
};

}  // namespace pw

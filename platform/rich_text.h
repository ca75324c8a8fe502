#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The conversion between rich text and plain text, which a rich-edit control does on the
// organiser's own machine. Texts are single-byte, of the organiser's code page. All operations are
// called on the engine's one thread.
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

// Passes everything on, so that a test overrides only what is to differ.
class RichTextWrapper : public RichText {
 public:
  explicit RichTextWrapper(RichText& target) : target(target) {}

  std::string ToPlain(std::string_view rich) override { return target.ToPlain(rich); }
  std::optional<std::string> FromPlain(std::string_view plain, const RichTextFont& font,
                                       std::size_t limit) override {
    return target.FromPlain(plain, font, limit);
  }

 private:
  RichText& target;
};

}  // namespace pw

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pw {

std::string EncodeBase64(std::string_view bytes);

// Skips blanks and line breaks; the padding may be missing. Nothing if a character is no digit of
// the encoding, or a lone digit is left over.
std::optional<std::string> DecodeBase64(std::string_view text);

// A "=" that isn't followed by two hexadecimal digits stands for itself. Soft line breaks are taken
// out by whoever reads the lines.
std::string DecodeQuotedPrintable(std::string_view text);

// Letters, digits and "-._~" as they are, every other byte as "%" and two hexadecimal digits.
std::string EncodePercent(std::string_view bytes);

// A "%" that isn't followed by two hexadecimal digits stands for itself.
std::string DecodePercent(std::string_view text);

}  // namespace pw

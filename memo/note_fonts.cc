#include "memo/note_fonts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/process_wide.h"
#include "platform/platform.h"
#include "plugin/string_table.h"

namespace pw {
namespace {

constexpr const char* kKey = "Software\\Gullwing\\PairWise Desktop\\Version 1\\Memo";
constexpr std::size_t kLongestName = 255;
constexpr std::uint32_t kFallbackPoints = 10;

struct SharedFonts {
  std::int32_t users = 0;
  NoteFonts fonts;
};
ProcessWide<SharedFonts> shared;

constexpr std::uint32_t kPointsPerInch = 72;
constexpr std::uint32_t kPixelsPerInch = 96;  // of a display, as nearly all of them have it
constexpr std::uint32_t kLargestPoints = 1638;

// The control is told a height in whole pixels, and writes the half points that it comes to: a font
// of 8 points is written as one of 17 half points. A size that no font can have is the organiser's
// own.
std::int32_t HalfPoints(std::uint32_t points) {
  if (points == 0 || points > kLargestPoints) points = kFallbackPoints;
  const std::uint32_t pixels = (points * kPixelsPerInch + kPointsPerInch / 2) / kPointsPerInch;
  return static_cast<std::int32_t>((pixels * 2 * kPointsPerInch + kPixelsPerInch / 2) /
                                   kPixelsPerInch);
}

// Both fonts, if the registry has all that is to be known of them. A subject's font name that is
// longer than that of the contents counts as none: the organiser reads it into a buffer of that
// size.
std::optional<NoteFonts> FontsOfRegistry() {
  const auto key = CurrentPlatform().registry->Open(kKey, RegistryAccess::kRead);
  if (key == nullptr) return std::nullopt;
  const auto contentName = ReadText(*key, "DefContentFont", kLongestName);
  const auto contentSize = ReadNumber(*key, "DefContentSize");
  if (!contentName || contentName->empty() || !contentSize) return std::nullopt;
  const auto subjectName = ReadText(*key, "DefSubjectFont", contentName->size());
  const auto subjectSize = ReadNumber(*key, "DefSubjectSize");
  if (!subjectName || subjectName->empty() || !subjectSize) return std::nullopt;
  return NoteFonts{{*contentName, HalfPoints(*contentSize), 0},
                   {*subjectName, HalfPoints(*subjectSize), 0}};
}

std::uint8_t FallbackCharacterSet() {
  constexpr std::uint8_t kAnsi = 0;
  constexpr std::uint8_t kSimplifiedChinese = 0x86;
  constexpr std::uint8_t kTraditionalChinese = 0x88;
  if (!(LoadString(strings::kCountry) == "China")) return kAnsi;
  return LoadString(strings::kRegion) == "Taiwan" ? kTraditionalChinese : kSimplifiedChinese;
}

// The subject's font keeps the name that it had last: the fallback's is given to the contents
// alone.
void FallBack(NoteFonts& fonts) {
  fonts.content = {LoadString(strings::kDefaultFont).Str(), HalfPoints(kFallbackPoints),
                   FallbackCharacterSet()};
  fonts.subject.halfPoints = HalfPoints(kFallbackPoints);
  fonts.subject.characterSet = FallbackCharacterSet();
}

void Choose(NoteFonts& fonts) {
  if (const auto found = FontsOfRegistry()) {
    fonts = *found;
  } else {
    FallBack(fonts);
  }
}

}  // namespace

NoteFontsUse::NoteFontsUse() {
  if (shared->users == 0) Choose(shared->fonts);
  ++shared->users;
}

NoteFontsUse::NoteFontsUse(const NoteFontsUse& /*other*/) : NoteFontsUse() {}

NoteFontsUse::~NoteFontsUse() {
  --shared->users;
}

const NoteFonts& NoteFontsUse::Fonts() {
  return shared->fonts;
}

}  // namespace pw

#include "host/backup_list.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/codepage.h"

namespace pw {
namespace {

constexpr std::string_view kHeading = "pairwise backup 1";
constexpr std::string_view kPart = "part ";
constexpr std::string_view kFile = "file ";
constexpr std::string_view kCount = "files ";

// In the order of the kinds.
constexpr std::string_view kKindWords[] = {"data", "calendar", "clocks"};

std::string Escaped(std::string_view name) {
  std::string text;
  for (const char c : name) {
    if (c == '%') {
      text += "%25";
    } else if (c == '\n') {
      text += "%0A";
    } else {
      text += c;
    }
  }
  return text;
}

std::string Unescaped(std::string_view text) {
  std::string name;
  while (!text.empty()) {
    const bool isPercent = text.starts_with("%25");
    const bool isEscape = isPercent || text.starts_with("%0A");
    name += isPercent ? '%' : isEscape ? '\n' : text.front();
    text.remove_prefix(isEscape ? 3 : 1);
  }
  return name;
}

// The text up to the sign, or all of it; both are taken away.
std::string_view TakeUpTo(std::string_view& text, char sign) {
  const std::size_t at = text.find(sign);
  const std::string_view word = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
  return word;
}

std::optional<std::uintmax_t> NumberOf(std::string_view digits) {
  std::uintmax_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

bool AddPart(std::string_view rest, BackupList& list) {
  const std::string_view word = TakeUpTo(rest, ' ');
  const auto* kind = std::find(std::begin(kKindWords), std::end(kKindWords), word);
  const auto location = Utf8ToCodePage(Unescaped(rest));
  if (kind == std::end(kKindWords) || !location) return false;
  list.push_back({static_cast<PlaceKind>(kind - std::begin(kKindWords)), *location, {}});
  return true;
}

bool AddFile(std::string_view rest, BackupList& list) {
  const auto size = NumberOf(TakeUpTo(rest, ' '));
  std::string name = Unescaped(rest);
  const bool isName = !name.empty() && name != "." && name != ".." &&
                      name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
  if (list.empty() || !size || !isName) return false;
  list.back().files.push_back({std::move(name), *size});
  return true;
}

}  // namespace

std::string RenderBackupList(const BackupList& list) {
  std::string text(kHeading);
  std::size_t count = 0;
  for (const BackupPart& part : list) {
    text.append("\n").append(kPart).append(kKindWords[static_cast<std::size_t>(part.kind)]);
    text.append(" ").append(Escaped(CodePageToUtf8(part.location)));
    for (const ListedFile& file : part.files) {
      text.append("\n").append(kFile).append(std::to_string(file.size));
      text.append(" ").append(Escaped(file.name));
    }
    count += part.files.size();
  }
  return text.append("\n").append(kCount).append(std::to_string(count)).append("\n");
}

std::optional<BackupList> ParseBackupList(std::string_view text) {
  if (!text.ends_with('\n') || TakeUpTo(text, '\n') != kHeading) return std::nullopt;
  BackupList list;
  std::size_t count = 0;
  while (!text.empty()) {
    std::string_view line = TakeUpTo(text, '\n');
    if (line.starts_with(kPart)) {
      if (!AddPart(line.substr(kPart.size()), list)) return std::nullopt;
    } else if (line.starts_with(kFile)) {
      if (!AddFile(line.substr(kFile.size()), list)) return std::nullopt;
      ++count;
    } else {
      const bool isEnd = line.starts_with(kCount) && NumberOf(line.substr(kCount.size())) == count;
      if (!isEnd || !text.empty() || list.empty()) return std::nullopt;
      return list;
    }
  }
  return std::nullopt;
}

}  // namespace pw

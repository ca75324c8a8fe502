#include "host/note_files.h"

#include <algorithm>
#include <system_error>

#include "base/codepage.h"
#include "host/native_file.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 60;  // up to 180 bytes, of the 255 that a name may have

bool IsTaken(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= ' ' && byte != 0x7F &&
         std::string_view("/\\:*?\"<>|").find(c) == std::string::npos;
}

std::string Cleaned(std::string_view text) {
  std::string name(text.substr(0, kLongestName));
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !IsTaken(c); }, '_');
  name.erase(name.find_last_not_of(". ") + 1);
  if (!name.empty() && name.front() == '.') name.front() = '_';
  return name.empty() ? "untitled" : name;
}

std::string Folded(std::string_view name) {
  std::string folded;
  for (const char c : name) {
    folded += static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
  }
  return folded;
}

}  // namespace

std::string FileNames::NameFor(std::string_view text) {
  const std::string name = Cleaned(text);
  if (Take(name)) return CodePageToUtf8(name);
  std::size_t& count = counts.try_emplace(Folded(name), 1).first->second;
  std::string numbered;
  do {
    numbered = name + " (" + std::to_string(++count) + ")";
  } while (!Take(numbered));
  return CodePageToUtf8(numbered);
}

bool FileNames::Take(const std::string& name) {
  return taken.insert(Folded(name)).second;
}

Outcome<Done> WriteNoteFiles(const fs::path& folder, const std::vector<NoteFile>& files) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) return SystemFailure(folder, error.value());
  const bool isEmpty = fs::is_empty(folder, error);
  if (error) return SystemFailure(folder, error.value());
  if (!isEmpty) {
    return Failure{folder.string() + ": not empty; name a new folder, so that no file is lost"};
  }
  for (const NoteFile& file : files) {
    fs::create_directories(folder / file.folder, error);
    if (error) return SystemFailure(folder / file.folder, error.value());
    const auto written = WriteNativeFile(folder / file.folder / file.name, file.bytes);
    if (!written) return written.Why();
  }
  return Done{};
}

}  // namespace pw

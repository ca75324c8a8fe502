#include "host/memo_export.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "base/codepage.h"
#include "framework/memo_record.h"
#include "host/binder_files.h"
#include "platform/platform.h"

namespace pw {
namespace {

constexpr std::size_t kLargestDocument = 1 << 30;

// Each of the organiser's line ends, and a carriage return by itself, becomes `end`.
std::string WithLineEnds(std::string_view text, char end) {
  std::string changed;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (isPair) continue;
    const bool isEnd = text[i] == '\r' || text[i] == '\n';
    changed += isEnd ? end : text[i];
  }
  return changed;
}

std::string TextOfMemo(PWRecord record) {
  const PWMemoRecord note(&record);
  std::string text = WithLineEnds(CodePageToUtf8(note.Subject().View()), ' ') + "\n\n" +
                     WithLineEnds(CodePageToUtf8(note.Body().View()), '\n');
  if (text.back() != '\n') text += '\n';
  return text;
}

std::string DocumentOfMemo(PWRecord record) {
  return CurrentPlatform()
      .richText->FromPlain(PWMemoRecord(&record).Body().View(), RichTextFont(), kLargestDocument)
      .value_or("");
}

bool IsRichText(std::string_view body) {
  return body.substr(0, 5) == "{\\rtf";
}

// What becomes of each memo of a category.
using Contents = std::vector<std::string>;

Contents TextsOf(const CategoryRecords& category) {
  Contents texts;
  for (const TypedRecord& memo : category.records) texts.push_back(TextOfMemo(memo.record));
  return texts;
}

Contents DocumentsOf(const CategoryRecords& category) {
  Contents documents = RichBodies(Utf8ToCodePageLossy(category.location));
  documents.resize(category.records.size());
  for (std::size_t i = 0; i < documents.size(); ++i) {
    if (!IsRichText(documents[i])) documents[i] = DocumentOfMemo(category.records[i].record);
  }
  return documents;
}

std::vector<NoteFile> FilesOf(const std::vector<CategoryRecords>& categories, const char* extension,
                              Contents (*contentsOf)(const CategoryRecords&)) {
  std::vector<NoteFile> files;
  FileNames folders;
  for (const CategoryRecords& category : categories) {
    const std::string folder = folders.NameFor(Utf8ToCodePageLossy(category.name));
    Contents contents = contentsOf(category);
    FileNames names;
    for (std::size_t i = 0; i < contents.size(); ++i) {
      PWRecord record = category.records[i].record;
      const std::string name = names.NameFor(PWMemoRecord(&record).Subject().View());
      files.push_back({folder, name + extension, std::move(contents[i])});
    }
  }
  return files;
}

}  // namespace

std::vector<NoteFile> MemosAsText(const std::vector<CategoryRecords>& categories) {
  return FilesOf(categories, ".txt", TextsOf);
}

std::vector<NoteFile> MemosAsRichText(const std::vector<CategoryRecords>& categories) {
  return FilesOf(categories, ".rtf", DocumentsOf);
}

}  // namespace pw

#include "host/memo_export.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/codepage.h"
#include "framework/memo_record.h"
#include "host/binder_files.h"

namespace pw {
namespace {

constexpr std::size_t kLargestDocument = 1 << 30;

// Of the memo at that place of its category.
using BytesOf = std::function<std::string(const TypedRecord& memo, std::size_t place)>;

// `bytesOf` gives for each category what gives a memo's bytes.
template <class BytesOfCategory>
std::vector<NoteFile> Collect(const std::vector<CategoryRecords>& categories, const char* extension,
                              const BytesOfCategory& bytesOf) {
  std::vector<NoteFile> files;
  FileNames folders;
  for (const CategoryRecords& category : categories) {
    const std::string folder = folders.NameFor(Utf8ToCodePageLossy(category.name));
    const BytesOf bytesOfMemo = bytesOf(category);
    FileNames names;
    for (std::size_t place = 0; place < category.records.size(); ++place) {
      const TypedRecord& memo = category.records[place];
      PWRecord record = memo.record;
      const std::string name = names.NameFor(PWMemoRecord(&record).Subject().View());
      files.push_back({folder, name + extension, bytesOfMemo(memo, place)});
    }
  }
  return files;
}

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

std::string TextOfMemo(const TypedRecord& memo, std::size_t /*place*/) {
  PWRecord record = memo.record;
  const PWMemoRecord note(&record);
  std::string text = WithLineEnds(CodePageToUtf8(note.Subject().View()), ' ') + "\n\n" +
                     WithLineEnds(CodePageToUtf8(note.Body().View()), '\n');
  if (text.back() != '\n') text += '\n';
  return text;
}

bool IsRichText(std::string_view body) {
  return body.substr(0, 5) == "{\\rtf";
}

}  // namespace

std::vector<NoteFile> MemosAsText(const std::vector<CategoryRecords>& categories) {
  return Collect(categories, ".txt", [](const CategoryRecords&) { return TextOfMemo; });
}

std::vector<NoteFile> MemosAsRichText(const std::vector<CategoryRecords>& categories,
                                      const Platform& platform) {
  return Collect(categories, ".rtf", [&](const CategoryRecords& category) -> BytesOf {
    const std::string location = Utf8ToCodePageLossy(category.location);
    const auto binder = std::make_shared<BinderFiles>(ReadBinderFiles(*platform.files, location));
    return [&platform, binder, bodies = RichBodies(*binder, BinderSection(location))](
               const TypedRecord& memo, std::size_t place) {
      const bool isRich = place < bodies.size() && IsRichText(bodies[place]);
      if (isRich) return std::string(bodies[place]);
      PWRecord record = memo.record;
      return platform.richText
          ->FromPlain(PWMemoRecord(&record).Body().View(), RichTextFont(), kLargestDocument)
          .value_or("");
    };
  });
}

}  // namespace pw

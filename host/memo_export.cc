#include "host/memo_export.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/codepage.h"
#include "base/text.h"
#include "framework/memo_record.h"
#include "host/binder_files.h"

namespace pw {
namespace {

constexpr std::size_t kLargestDocument = 1 << 30;

using BytesOf = std::function<std::string(const TypedRecord& memo)>;

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
    for (const TypedRecord& memo : category.records) {
      PWRecord record = memo.record;
      const std::string name = names.NameFor(PWMemoRecord(&record).Subject().View());
      files.push_back({folder, name + extension, bytesOfMemo(memo)});
    }
  }
  return files;
}

std::string WithPlainLineEnds(std::string_view text) {
  std::string plain;
  for (const char c : text) {
    if (c != '\r') plain += c;
  }
  return plain;
}

std::string TextOfMemo(const TypedRecord& memo) {
  PWRecord record = memo.record;
  const PWMemoRecord note(&record);
  std::string text = CodePageToUtf8(note.Subject().View()) + "\n\n" +
                     WithPlainLineEnds(CodePageToUtf8(note.Body().View()));
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
    return [&platform, binder,
            bodies = RichBodies(*binder, BinderSection(location))](const TypedRecord& memo) {
      const auto stored = bodies.find(ParseLong(memo.id));
      if (stored != bodies.end() && IsRichText(stored->second)) return std::string(stored->second);
      PWRecord record = memo.record;
      return platform.richText
          ->FromPlain(PWMemoRecord(&record).Body().View(), RichTextFont(), kLargestDocument)
          .value_or("");
    };
  });
}

}  // namespace pw

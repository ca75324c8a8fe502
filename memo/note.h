#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "memo/format.h"
#include "memo/note_fonts.h"

// A note of a binder: a subject and a body, each a rich text as it is stored, which the engine gets
// as plain text. A text that was loaded isn't owned, and the bytes must outlive the note.
class WMNote {
 public:
  // The largest rich text that is written.
  static constexpr std::size_t kLargestText = 4'023'999;

  // A new note.
  WMNote() = default;

  // A note as it was loaded, with what its file has of its texts.
  WMNote(const pw::memo::NoteHeader& header, std::string_view subject, std::string_view body);

  pw::memo::NoteHeader header;

  std::string_view Subject() const { return subject.View(); }
  std::string_view Body() const { return body.View(); }

  // The plain texts, in the organiser's code page, lines ending in "\r\n".
  std::string SubjectText() const;
  std::string BodyText() const;

  // Replace a rich text by a plain one in the font of subjects or of contents. False, and nothing
  // changed, if it would be larger than a text can be.
  bool SetSubjectText(const std::string& text);
  bool SetBodyText(const std::string& text);

 private:
  class StoredText {
   public:
    StoredText() = default;
    explicit StoredText(std::string_view loaded) : loaded(loaded) {}
    std::string_view View() const { return changed ? std::string_view(*changed) : loaded; }
    bool Set(const std::string& plain, const pw::RichTextFont& font);

   private:
    std::string_view loaded;
    std::optional<std::string> changed;
  };

  pw::NoteFontsUse fonts;
  StoredText subject;
  StoredText body;
};

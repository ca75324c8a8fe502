#include "memo/note.h"

#include <utility>

#include "platform/platform.h"

WMNote::WMNote(const pw::memo::NoteHeader& header, std::string_view subject, std::string_view body)
    : header(header), subject(subject), body(body) {}

std::string WMNote::SubjectText() const {
  return pw::CurrentPlatform().richText->ToPlain(Subject());
}

std::string WMNote::BodyText() const {
  return pw::CurrentPlatform().richText->ToPlain(Body());
}

bool WMNote::SetSubjectText(const std::string& text) {
  return subject.Set(text, pw::NoteFontsUse::Fonts().subject);
}

bool WMNote::SetBodyText(const std::string& text) {
  return body.Set(text, pw::NoteFontsUse::Fonts().content);
}

bool WMNote::StoredText::Set(const std::string& plain, const pw::RichTextFont& font) {
  auto rich = pw::CurrentPlatform().richText->FromPlain(plain, font, kLargestText);
  if (!rich) return false;
  changed = std::move(rich);
  return true;
}

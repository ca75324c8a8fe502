#include "host/check/binder_check.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/codepage.h"
#include "base/cursor.h"
#include "host/counted.h"
#include "memo/format.h"

namespace pw {
namespace {

std::uint64_t OffsetOfSection(std::size_t section) {
  constexpr std::uint64_t kCountSize = 2;
  return kCountSize + section * memo::kSectionSize;
}

std::uint64_t OffsetOfHeader(std::size_t note) {
  return memo::kHeaderFileStartSize + note * memo::kNoteHeaderSize;
}

std::string NameOf(std::size_t note, const memo::NoteHeader& header) {
  return "note " + std::to_string(note + 1) + " (id " + std::to_string(header.id) + ")";
}

// Whether all of a note's text is there.
bool IsWithin(std::uint64_t contentSize, const memo::NoteHeader& header) {
  return memo::TextSize(header, contentSize) == std::uint64_t{header.subjectSize} + header.bodySize;
}

void CheckSectionsOfNotes(const std::vector<memo::Section>& sections,
                          const std::vector<memo::NoteHeader>& headers, FileCheck& check) {
  std::unordered_set<std::uint16_t> ids;
  for (const memo::Section& section : sections) ids.insert(section.id);
  const auto orphan =
      std::find_if(headers.begin(), headers.end(),
                   [&](const memo::NoteHeader& each) { return ids.count(each.sectionId) == 0; });
  if (orphan == headers.end()) return;
  const auto note = static_cast<std::size_t>(orphan - headers.begin());
  check.Add(OffsetOfHeader(note),
            NameOf(note, *orphan) + " is of section " + std::to_string(orphan->sectionId) +
                ", which the binder hasn't got; a save leaves out this note and all behind it, and "
                "the binder can't be opened any more",
            headers.size() - note);
}

void CheckTexts(std::uint64_t contentSize, const std::vector<memo::NoteHeader>& headers,
                FileCheck& check) {
  for (std::size_t note = 0; note < headers.size(); ++note) {
    const memo::NoteHeader& header = headers[note];
    if (IsWithin(contentSize, header)) continue;
    check.Add(OffsetOfHeader(note),
              NameOf(note, header) + " has its text at " + std::to_string(header.subjectOffset) +
                  ", " + std::to_string(std::uint64_t{header.subjectSize} + header.bodySize) +
                  " bytes; the file of the texts has " + std::to_string(contentSize) + " in all",
              header.subjectOffset < contentSize ? 0 : 1);
  }
}

std::uint64_t ClaimedBytes(const std::vector<memo::NoteHeader>& headers,
                           std::uint64_t contentSize) {
  std::uint64_t claimed = 0;
  for (const memo::NoteHeader& header : headers) claimed += memo::TextSize(header, contentSize);
  return claimed;
}

// Two of one name can't be told apart by where they are found: the first one is meant.
void CheckSections(const std::vector<memo::Section>& sections, FileCheck& check) {
  std::unordered_set<std::string> names;
  std::unordered_set<std::uint16_t> ids;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const memo::Section& section = sections[i];
    const std::string text = "section \"" + CodePageToUtf8(section.name) + "\" ";
    const auto add = [&](const std::string& what) { check.Add(OffsetOfSection(i), text + what); };
    if (!names.insert(section.name).second) {
      check.AddNote(OffsetOfSection(i), text + "has the name of another one, and can't be reached");
    }
    if (section.name.size() > memo::kLongestName) {
      add("has a name of 25 bytes, of which the next save keeps 24");
    }
    if (!ids.insert(section.id).second) {
      add("has the id " + std::to_string(section.id) + ", which is another's already");
    }
  }
}

}  // namespace

FileCheck CheckSectionFile(std::string_view bytes) {
  FileCheck check;
  const auto sections = memo::DecodeSections(bytes);
  check.holds = "sections of memos: " + std::to_string(sections ? sections->size() : 0);
  if (!sections) {
    check.Add(0, "a count above 0, and as many sections of " + std::to_string(memo::kSectionSize) +
                     " bytes, were expected here; the binder can't be opened");
    return check;
  }
  CheckSections(*sections, check);
  const std::uint64_t end = OffsetOfSection(sections->size());
  if (const std::size_t more = (bytes.size() - end) / memo::kSectionSize) {
    check.Add(end, "the end was expected here; the next save cuts off " +
                       Counted(more, "section", "sections"));
  }
  return check;
}

FileCheck CheckNoteHeaders(std::string_view bytes) {
  FileCheck check;
  const auto headers = memo::DecodeNoteHeaders(bytes);
  check.records = headers ? headers->size() : 0;
  check.holds = "memos: " + Counted(check.records, "note", "notes");
  if (!headers) {
    check.Add(bytes.size(), "more notes were expected; the binder can't be opened");
    return check;
  }
  if (bytes.substr(0, memo::kMagic.size()) != memo::kMagic) {
    check.Add(0, "\"WMW300\" was expected here");
  }
  const std::uint64_t end = OffsetOfHeader(headers->size());
  if (const std::size_t more = (bytes.size() - end) / memo::kNoteHeaderSize) {
    check.Add(end, "the end was expected here, behind as many notes as are counted", more);
  }
  return check;
}

FileCheck CheckNoteContents(std::string_view bytes) {
  FileCheck check;
  check.holds = "texts of memos: " + Counted(bytes.size(), "byte", "bytes");
  return check;
}

void CheckBinder(const BinderBytes& binder, FileCheck& check) {
  if (!binder.sections || !binder.headers || !binder.contentSize) {
    check.Add(std::nullopt,
              "a binder is three files, \".WMWrite\", \".WMNoteHeader\" and \".WMContent\"; as one "
              "is missing the others can't be opened");
    return;
  }
  const auto sections = memo::DecodeSections(*binder.sections);
  const auto headers = memo::DecodeNoteHeaders(*binder.headers);
  if (!headers) return;
  if (sections) CheckSectionsOfNotes(*sections, *headers, check);
  CheckTexts(*binder.contentSize, *headers, check);
  const std::uint64_t claimed = ClaimedBytes(*headers, *binder.contentSize);
  if (claimed > *binder.contentSize) {
    check.Add(std::nullopt, "the notes claim " + std::to_string(claimed) +
                                " bytes of text, and there are " +
                                std::to_string(*binder.contentSize) +
                                ": some have the same; a save writes them apart");
  }
}

bool DoNotesShareTexts(std::string_view headers, std::uint64_t contentSize) {
  const auto notes = memo::DecodeNoteHeaders(headers);
  return notes && ClaimedBytes(*notes, contentSize) > contentSize;
}

}  // namespace pw

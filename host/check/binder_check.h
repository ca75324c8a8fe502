#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/check/finding.h"

namespace pw {

// The three files of a memo binder, each by itself.
FileCheck CheckSectionFile(std::string_view bytes);
FileCheck CheckNoteHeaders(std::string_view bytes);
FileCheck CheckNoteContents(std::string_view bytes);

// A binder's files; nothing for one that isn't there or can't be read.
struct BinderBytes {
  std::optional<std::string_view> sections;
  std::optional<std::string_view> headers;
  std::optional<std::uint64_t> contentSize;
};

// Adds what the files say of each other to the check of one of them: notes of no section, texts
// that aren't where they should be, files that are missing.
void CheckBinder(const BinderBytes& binder, FileCheck& check);

// Whether the notes claim more text than there is, as several have the same bytes. Who reads them
// all then takes much more room than the files.
bool DoNotesShareTexts(std::string_view headers, std::uint64_t contentSize);

}  // namespace pw

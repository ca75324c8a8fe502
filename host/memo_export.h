#pragma once

#include <vector>

#include "host/note_files.h"
#include "host/record_reader.h"

// Memos as files of their own, a folder for each section.
namespace pw {

// The subject in one line, an empty line, and the body, in UTF-8, lines ending in "\n".
std::vector<NoteFile> MemosAsText(const std::vector<CategoryRecords>& categories);

// The bodies as their binders have them, with all their formats. One that is no rich text there is
// made one.
std::vector<NoteFile> MemosAsRichText(const std::vector<CategoryRecords>& categories);

}  // namespace pw
